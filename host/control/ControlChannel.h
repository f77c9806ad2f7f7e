#pragma once

#include "host/control/LineReader.h"
#include "host/control/LineWriter.h"
#include "host/control/Request.h"
#include "host/wall/WorkerPool.h"
#include "host/wall/Deck.h"

#include <QObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace quillmark::lumen_wall {

// Drives the wall by lines of JSON. Requests for the main thread are carried out one at a time in the order they came,
// those for workers side by side with everything.
class ControlChannel : public QObject
{
    Q_OBJECT

public:
    struct Services
    { // main thread
        std::function<QJsonObject()> status;
        std::function<QString(const QString& path)> screenshot; // empty, or why there is none
    };

    ControlChannel(Deck& deck, Services services, int input, int output);
    ~ControlChannel() override; // stops reading, then waits for the workers, whose calls the main thread has to serve

signals:
    void ended(); // main thread: asked to quit, or everything read and answered, or nobody reads the answers

private:
    // reader's thread
    void accept(const QByteArray& line);
    void enqueue(Request request);
    void refuse(const QJsonValue& id, const QString& why);
    void onInputEnd();

    // any thread
    void answer(const QJsonValue& id, const Reply& reply);
    void finishOne();
    void endIfDone();
    void runOnWorker(const QJsonValue& id, const CallRequest& call);

    // main thread
    void wake();
    void workOnNext();
    void dismissDialogs();
    void carryOut(const Request& request);
    Reply perform(const CallRequest& call);
    Reply perform(const StatusRequest& status);
    Reply perform(const ScreenshotRequest& screenshot);
    Reply perform(const QuitRequest& quit);
    Reply perform(const BadRequest& bad);

    Deck& deck_;
    const Services services_;
    bool busy_ = false;     // main thread: a call may run an event loop of its own
    bool quitting_ = false; // main thread

    std::mutex lock_; // guards what follows
    std::condition_variable settled_;
    std::deque<Request> inbox_;
    int open_ = 0; // requests accepted and not yet answered
    bool inputEnded_ = false;
    bool closing_ = false;

    LineWriter writer_;
    WorkerPool workers_;
    std::unique_ptr<LineReader> reader_;
};

} // namespace quillmark::lumen_wall
