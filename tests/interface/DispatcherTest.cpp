#include "src/interface/CallFrame.h"
#include "tests/support/Wall.h"

#include <QThread>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>
#include <vector>

using namespace quillmark::lumen_deck;

namespace {

using Pending = std::shared_ptr<std::promise<QJsonDocument*>>;

QThread* ranOn = nullptr;

QJsonDocument* noteThread()
{
    ranOn = QThread::currentThread();
    return new QJsonDocument(QJsonObject{{"done", true}});
}

QJsonDocument* noteThreadOf(QWidget*)
{
    return noteThread();
}

ApiFunctionDescriptor withWidget(std::function<QJsonDocument*(QWidget*)> function)
{
    ApiFunctionDescriptor descriptor;
    descriptor.withWidget = std::move(function);
    return descriptor;
}

template <class Call> auto onWorker(Call call)
{
    return std::async(std::launch::async, std::move(call));
}

// What a call on a worker answers; the main thread does its events meanwhile.
template <class Result> Result turnUntilReady(std::future<Result>& result)
{
    while (result.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
        QCoreApplication::processEvents();
    return result.get();
}

class DispatcherTest : public ::testing::Test
{
protected:
    DispatcherTest() { ranOn = nullptr; }

    // A call that a worker has put into the queue.
    Pending post(std::function<QJsonDocument*(QWidget*)> function)
    {
        return onWorker([&] { return acquireDispatcher()->makeCall(withWidget(function), widget_.get(), nullptr); })
            .get();
    }

    std::unique_ptr<QWidget> widget_ = std::make_unique<QWidget>();
};

TEST_F(DispatcherTest, CallOfAWorkerWaitsForTheMainThread)
{
    auto answer = onWorker([&] { return makeCall(&noteThreadOf, widget_.get()); });
    EXPECT_EQ(answer.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    EXPECT_TRUE(wall::take(turnUntilReady(answer)).object["done"].toBool());
    EXPECT_EQ(ranOn, widget_->thread());
}

TEST_F(DispatcherTest, CallWithoutAWidgetStaysOnItsThread)
{
    auto call = onWorker([] {
        wall::take(makeCall(&noteThread));
        return QThread::currentThread() == ranOn;
    });
    EXPECT_TRUE(call.get());
    EXPECT_NE(ranOn, QThread::currentThread());
}

TEST_F(DispatcherTest, QueuedCallsRunInTheOrderOfTheirArrival)
{
    std::vector<int> order;
    for (int i = 0; i < 3; ++i) {
        post([&order, i](QWidget*) -> QJsonDocument* {
            order.push_back(i);
            return nullptr;
        });
    }
    EXPECT_TRUE(order.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2}));
}

TEST_F(DispatcherTest, ManyCallersNeverOverlap)
{
    std::atomic<int> running = 0;
    std::atomic<int> overlaps = 0;
    int calls = 0; // main thread, by the queue alone
    const auto work = [&](QWidget*) -> QJsonDocument* {
        overlaps += running.fetch_add(1);
        ++calls;
        --running;
        return nullptr;
    };
    std::vector<std::future<void>> workers;
    for (int i = 0; i < 8; ++i) {
        workers.push_back(onWorker([&] {
            for (int j = 0; j < 100; ++j)
                makeCall(work, widget_.get());
        }));
    }
    for (auto& worker : workers)
        turnUntilReady(worker);
    EXPECT_EQ(calls, 800);
    EXPECT_EQ(overlaps, 0);
}

TEST_F(DispatcherTest, CallWhoseWidgetDiesInTheQueueIsRefused)
{
    const Pending pending = post(&noteThreadOf);
    widget_.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(wall::take(pending->get_future().get()).code(), 501);
    EXPECT_EQ(ranOn, nullptr);
}

TEST_F(DispatcherTest, NobodyWaitsForAnApplicationThatIsGone)
{
    const Pending before = post(&noteThreadOf);
    emit QCoreApplication::instance()->destroyed();
    const Pending after = post(&noteThreadOf);
    acquireDispatcher()->serve();
    const Pending again = post(&noteThreadOf);
    EXPECT_EQ(wall::take(before->get_future().get()).code(), 501);
    EXPECT_EQ(wall::take(after->get_future().get()).code(), 501);
    EXPECT_EQ(ranOn, nullptr);
    QCoreApplication::processEvents();
    EXPECT_TRUE(wall::take(again->get_future().get()).object["done"].toBool());
}

// The first call of the process may come from a worker: the dispatcher belongs on the application's thread all the
// same.
TEST(Dispatcher, BuiltByAWorkerServesTheApplication)
{
    QWidget widget;
    std::unique_ptr<ApiDispatcher> dispatcher;
    const Pending pending = onWorker([&] {
                                dispatcher = std::make_unique<ApiDispatcher>();
                                return dispatcher->makeCall(withWidget(&noteThreadOf), &widget, nullptr);
                            }).get();
    QCoreApplication::processEvents();
    EXPECT_TRUE(wall::take(pending->get_future().get()).object["done"].toBool());
}

TEST(Callbacks, OneForEachTypeAndNullIsNone)
{
    static std::string heard;
    const LD_EventCallback first = [](LD_EventType, QWidget*, const QJsonDocument*) { heard += "first "; };
    const LD_EventCallback second = [](LD_EventType type, QWidget*, const QJsonDocument*) {
        heard += "second ";
        LD_InstallEventCallback(type, nullptr); // a host may change the callbacks from inside one
    };
    const auto type = static_cast<LD_EventType>(77);
    const auto other = static_cast<LD_EventType>(78);
    callCallback(type, nullptr, nullptr);
    EXPECT_EQ(LD_InstallEventCallback(type, first), nullptr);
    callCallback(type, nullptr, nullptr);
    callCallback(other, nullptr, nullptr);
    EXPECT_EQ(LD_InstallEventCallback(type, second), first);
    callCallback(type, nullptr, nullptr);
    callCallback(type, nullptr, nullptr);
    EXPECT_EQ(heard, "first second ");
    EXPECT_EQ(LD_InstallEventCallback(type, nullptr), nullptr);
}

} // namespace
