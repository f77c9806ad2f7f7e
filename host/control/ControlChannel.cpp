#include "host/control/ControlChannel.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <utility>

namespace quillmark::lumen_wall {

namespace {

constexpr int kLongestLine = 16 << 20;
constexpr int kOpenRequests = 1024; // a faster writer is not read from until some are answered
constexpr size_t kWorkers = 64;
constexpr int kDialogMs = 200;

} // namespace

ControlChannel::ControlChannel(Deck& deck, Services services, int input, int output)
    : deck_(deck)
    , services_(std::move(services))
    , writer_(output, [this] { QMetaObject::invokeMethod(this, &ControlChannel::ended, Qt::QueuedConnection); })
    , workers_(kWorkers)
{
    deck_.events().setListener([this](int type, const QJsonObject& document) {
        writer_.event({{"event", type}, {"document", document}});
    });
    LineSplitter splitter(
        kLongestLine, [this](const QByteArray& line) { accept(line); },
        [this] { refuse(QJsonValue::Null, "the line is too long"); });
    reader_ = std::make_unique<LineReader>(input, std::move(splitter), [this] { onInputEnd(); });
}

ControlChannel::~ControlChannel()
{
    {
        const std::lock_guard guard(lock_);
        closing_ = true;
        open_ -= static_cast<int>(inbox_.size());
        inbox_.clear();
    }
    settled_.notify_all();
    reader_.reset();
    deck_.events().setListener(nullptr);
    for (std::unique_lock guard(lock_); open_ > 0; guard.lock()) {
        guard.unlock();
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::ExcludeUserInputEvents);
    }
}

void ControlChannel::accept(const QByteArray& line)
{
    Request request = parseRequest(line);
    if (const auto* bad = std::get_if<BadRequest>(&request.what)) {
        refuse(request.id, bad->why);
        return;
    }
    {
        std::unique_lock guard(lock_);
        settled_.wait(guard, [this] { return closing_ || open_ < kOpenRequests; });
        if (closing_)
            return;
        ++open_;
    }
    const auto* call = std::get_if<CallRequest>(&request.what);
    if (call && call->onWorker)
        runOnWorker(request.id, *call);
    else
        enqueue(std::move(request));
}

void ControlChannel::enqueue(Request request)
{
    {
        const std::lock_guard guard(lock_);
        inbox_.push_back(std::move(request));
    }
    wake();
}

void ControlChannel::refuse(const QJsonValue& id, const QString& why)
{
    writer_.answer({{"id", id}, {"error", why}});
}

void ControlChannel::onInputEnd()
{
    {
        const std::lock_guard guard(lock_);
        inputEnded_ = true;
    }
    QMetaObject::invokeMethod(this, &ControlChannel::dismissDialogs, Qt::QueuedConnection);
    endIfDone();
}

void ControlChannel::answer(const QJsonValue& id, const Reply& reply)
{
    if (reply.refusal.isEmpty())
        writer_.answer({{"id", id}, {"result", reply.result}});
    else
        refuse(id, reply.refusal);
    finishOne();
}

void ControlChannel::finishOne()
{
    {
        const std::lock_guard guard(lock_);
        --open_;
    }
    settled_.notify_all();
    endIfDone();
}

void ControlChannel::endIfDone()
{
    const std::lock_guard guard(lock_);
    if (closing_ ? open_ == 0 : inputEnded_ && open_ == 0)
        QMetaObject::invokeMethod(this, &ControlChannel::ended, Qt::QueuedConnection);
}

void ControlChannel::runOnWorker(const QJsonValue& id, const CallRequest& call)
{
    workers_.run([this, id, call] { answer(id, perform(call)); });
}

void ControlChannel::wake()
{
    QMetaObject::invokeMethod(this, &ControlChannel::workOnNext, Qt::QueuedConnection);
}

// One a turn of the event loop, so that a flood of requests leaves room for mouse and painting.
void ControlChannel::workOnNext()
{
    if (busy_ || quitting_)
        return;
    Request request;
    {
        const std::lock_guard guard(lock_);
        if (inbox_.empty())
            return;
        request = std::move(inbox_.front());
        inbox_.pop_front();
    }
    busy_ = true;
    carryOut(request);
    busy_ = false;
    wake();
}

// Once the input has ended, nobody may be there to answer a dialog that a call has opened.
void ControlChannel::dismissDialogs()
{
    if (QWidget* dialog = busy_ ? QApplication::activeModalWidget() : nullptr)
        dialog->close();
    QTimer::singleShot(kDialogMs, this, &ControlChannel::dismissDialogs);
}

void ControlChannel::carryOut(const Request& request)
{
    answer(request.id, std::visit([this](const auto& what) { return perform(what); }, request.what));
}

Reply ControlChannel::perform(const CallRequest& call)
{
    return deck_.invoke(*call.function, call.args);
}

Reply ControlChannel::perform(const StatusRequest&)
{
    return {services_.status(), {}};
}

Reply ControlChannel::perform(const ScreenshotRequest& screenshot)
{
    return {QJsonValue::Null, services_.screenshot(screenshot.path)};
}

Reply ControlChannel::perform(const QuitRequest&)
{
    quitting_ = true;
    QMetaObject::invokeMethod(this, &ControlChannel::ended, Qt::QueuedConnection);
    return {QJsonValue::Null, {}};
}

Reply ControlChannel::perform(const BadRequest& bad)
{
    return {{}, bad.why};
}

} // namespace quillmark::lumen_wall
