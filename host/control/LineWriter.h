#pragma once

#include <QByteArray>
#include <QJsonObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace quillmark::lumen_wall {

// Writes whole lines from any thread without ever waiting for the reader. Answers are all kept; events that a slow
// reader leaves waiting are dropped past a limit, and a line {"dropped": n} tells how many.
class LineWriter
{
public:
    // `onGone` is called once, on the writer's thread, when nobody can read any more.
    LineWriter(int descriptor, std::function<void()> onGone);
    ~LineWriter(); // what waits is written, unless the reader takes nothing for some seconds
    LineWriter(const LineWriter&) = delete;
    LineWriter& operator=(const LineWriter&) = delete;

    void answer(const QJsonObject& line);
    void event(const QJsonObject& line);

private:
    void push(const QJsonObject& line);
    void run();
    bool write(const QByteArray& bytes);
    bool waitForRoom();
    bool closing();

    const int descriptor_;
    const std::function<void()> onGone_;

    std::mutex lock_; // guards what follows
    std::condition_variable changed_;
    std::deque<QByteArray> lines_;
    int dropped_ = 0;
    bool closing_ = false;

    std::thread thread_;
};

} // namespace quillmark::lumen_wall
