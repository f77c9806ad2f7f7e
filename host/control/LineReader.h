#pragma once

#include <QByteArray>

#include <functional>
#include <thread>

namespace quillmark::lumen_wall {

// Cuts a stream of bytes into lines. A line above the limit is dropped up to its end and told as too long.
class LineSplitter
{
public:
    using OnLine = std::function<void(const QByteArray& line)>;
    using OnTooLong = std::function<void()>;
    LineSplitter(int limit, OnLine onLine, OnTooLong onTooLong);

    void feed(const char* bytes, int count);
    void end(); // the last line may lack its line feed

private:
    void append(const char* bytes, int count);
    void finishLine();

    const int limit_;
    const OnLine onLine_;
    const OnTooLong onTooLong_;
    QByteArray pending_;
    bool tooLong_ = false;
};

// Reads a descriptor on a thread of its own until it ends or the reader is destroyed.
class LineReader
{
public:
    LineReader(int descriptor, LineSplitter splitter, std::function<void()> onEnd);
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

private:
    void run();
    bool waitForInput() const;

    const int descriptor_;
    int stop_[2]; // a pipe: its write end is closed to stop the thread
    LineSplitter splitter_;
    const std::function<void()> onEnd_;
    std::thread thread_;
};

} // namespace quillmark::lumen_wall
