#include "engine/stream/PictureQueue.h"
#include "engine/stream/EffortControl.h"

#include <future>
#include <gtest/gtest.h>
#include <thread>

namespace tide {
namespace {

using namespace std::chrono_literals;

class PictureQueueTest : public ::testing::Test
{
protected:
    PictureQueue::Pushed push(Microseconds position)
    {
        auto picture = std::make_shared<Picture>();
        picture->position = position;
        return queue_.push(std::move(picture));
    }

    double dueInMs() const
    {
        return std::chrono::duration<double, std::milli>(queue_.nextDue() - Clock::now()).count();
    }

    int wakes_ = 0;
    PictureQueue queue_{4, Direction::Forward, [this] { ++wakes_; }};
};

TEST_F(PictureQueueTest, PacesByPositionAndDropsWhatIsLate)
{
    const TimePoint start = Clock::now();
    for (int i = 0; i < 5; ++i)
        push(40ms * i);
    EXPECT_EQ(wakes_, 1); // only the first changes what is due next
    EXPECT_EQ(queue_.take(Clock::now())->position, 0ms);
    EXPECT_NEAR(dueInMs(), 40, 15);
    EXPECT_EQ(queue_.take(start + 10ms), nullptr);
    EXPECT_EQ(queue_.take(start + 130ms)->position, 120ms); // 40 and 80 are passed over
    EXPECT_EQ(queue_.current()->position, 120ms);
    queue_.setSpeed(2.0);
    const double half = dueInMs();
    queue_.setSpeed(0.5);
    EXPECT_NEAR(dueInMs(), half * 4, 15);
}

TEST_F(PictureQueueTest, ProducerWaitsForHalfTheQueueAndClosingEndsTheWait)
{
    const TimePoint start = Clock::now();
    for (int i = 0; i < 4; ++i)
        push(40ms * i);
    EXPECT_FALSE(queue_.hasRoom());
    auto room = std::async(std::launch::async, [&] { return queue_.waitForRoom(); });
    EXPECT_EQ(room.wait_for(50ms), std::future_status::timeout);
    queue_.take(start + 1ms);
    EXPECT_EQ(room.wait_for(20ms), std::future_status::timeout);
    queue_.take(start + 41ms);
    EXPECT_TRUE(room.get());
    auto taken = std::async(std::launch::async, [&] { return queue_.waitUntilTaken(); });
    auto due = std::async(std::launch::async, [&] { return queue_.waitUntilDue(1h); });
    // Far ahead of the clock: it would wait for an hour.
    EXPECT_EQ(due.wait_for(20ms), std::future_status::timeout);
    queue_.close();
    EXPECT_FALSE(taken.get());
    EXPECT_FALSE(due.get());
    EXPECT_FALSE(queue_.waitForRoom());
}

TEST_F(PictureQueueTest, FileThatIsFarBehindGoesOnFromThere)
{
    push(0ms);
    queue_.take(Clock::now());
    std::this_thread::sleep_for(400ms); // the source stood still
    EXPECT_EQ(push(40ms), PictureQueue::Pushed::Late);
    EXPECT_EQ(push(80ms), PictureQueue::Pushed::OnTime);
    EXPECT_NE(queue_.take(Clock::now()), nullptr);
    EXPECT_NEAR(dueInMs(), 40, 15);
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
