#include "engine/stream/PictureQueue.h"
#include "engine/stream/EffortControl.h"

#include <future>
#include <gtest/gtest.h>
#include <thread>

namespace tide {
namespace {

using namespace std::chrono_literals;

PicturePtr pictureAt(Microseconds position)
{
    auto picture = std::make_shared<Picture>();
    picture->position = position;
    return picture;
}

class PictureQueueTest : public ::testing::Test
{
protected:
    void pushMany(PictureQueue& queue, int count)
    {
        for (int i = 0; i < count; ++i)
            queue.push(pictureAt(40ms * i));
    }

    double dueInMs(const PictureQueue& queue)
    {
        return std::chrono::duration<double, std::milli>(queue.nextDue() - Clock::now()).count();
    }

    int wakes_ = 0;
    std::function<void()> wake_ = [this] { ++wakes_; };
};

TEST_F(PictureQueueTest, PacesByPositionAndDropsWhatIsLate)
{
    PictureQueue queue(6, Direction::Forward, wake_);
    const TimePoint start = Clock::now();
    pushMany(queue, 5);
    EXPECT_EQ(wakes_, 1); // only the first changes what is due next
    EXPECT_EQ(queue.take(Clock::now())->position, 0ms);
    EXPECT_NEAR(dueInMs(queue), 40, 15);
    EXPECT_EQ(queue.take(start + 10ms), nullptr);
    EXPECT_EQ(queue.take(start + 130ms)->position, 120ms); // 40 and 80 are passed over
    EXPECT_EQ(queue.current()->position, 120ms);
    queue.setSpeed(2.0);
    const double half = dueInMs(queue);
    queue.setSpeed(0.5);
    EXPECT_NEAR(dueInMs(queue), half * 4, 15);
}

TEST_F(PictureQueueTest, ProducerWaitsForHalfTheQueueAndClosingEndsTheWait)
{
    PictureQueue queue(4, Direction::Forward, wake_);
    const TimePoint start = Clock::now();
    pushMany(queue, 4);
    EXPECT_FALSE(queue.hasRoom());
    auto room = std::async(std::launch::async, [&] { return queue.waitForRoom(); });
    EXPECT_EQ(room.wait_for(50ms), std::future_status::timeout);
    queue.take(start + 1ms);
    EXPECT_EQ(room.wait_for(20ms), std::future_status::timeout);
    queue.take(start + 41ms);
    EXPECT_TRUE(room.get());
    auto taken = std::async(std::launch::async, [&] { return queue.waitUntilTaken(); });
    auto due = std::async(std::launch::async, [&] { return queue.waitUntilDue(1h); });
    // Far ahead of the clock: it would wait for an hour.
    EXPECT_EQ(due.wait_for(20ms), std::future_status::timeout);
    queue.close();
    EXPECT_FALSE(taken.get());
    EXPECT_FALSE(due.get());
    EXPECT_FALSE(queue.waitForRoom());
}

TEST_F(PictureQueueTest, FileThatIsFarBehindGoesOnFromThere)
{
    PictureQueue queue(6, Direction::Forward, wake_);
    pushMany(queue, 1);
    queue.take(Clock::now());
    std::this_thread::sleep_for(400ms); // the source stood still
    EXPECT_EQ(queue.push(pictureAt(40ms)), PictureQueue::Pushed::Late);
    EXPECT_EQ(queue.push(pictureAt(80ms)), PictureQueue::Pushed::OnTime);
    EXPECT_NE(queue.take(Clock::now()), nullptr);
    EXPECT_NEAR(dueInMs(queue), 40, 15);
}

TEST(EffortControlTest, DoesLessWhenLateForLongAndMoreWhenInTime)
{
    using Effort = Decoder::Effort;
    constexpr auto kLate = PictureQueue::Pushed::Late;
    constexpr auto kOnTime = PictureQueue::Pushed::OnTime;
    EffortControl control;
    TimePoint now = Clock::now();
    EXPECT_EQ(control.after(kLate, 1.0, now), Effort::All);
    EXPECT_EQ(control.after(kLate, 1.0, now += 600ms), Effort::NoSpare);
    EXPECT_EQ(control.after(kLate, 1.0, now += 600ms), Effort::NoSpare); // key pictures alone are for fast play
    EXPECT_EQ(control.after(kLate, 8.0, now += 600ms), Effort::KeysOnly);
    EXPECT_EQ(control.after(kOnTime, 8.0, now += 1s), Effort::KeysOnly);
    EXPECT_EQ(control.after(kOnTime, 1.0, now += 1s), Effort::NoSpare);
    EXPECT_EQ(control.after(kOnTime, 1.0, now += 3s), Effort::All);
}

} // namespace
} // namespace tide
