#pragma once

#include "engine/stream/PictureSource.h"
#include "engine/stream/PlayClock.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>

namespace tide {

// The pictures of one stream between the decode thread, which pushes, and the render thread, which takes; and the clock
// that says when each is due. Any thread may give commands.
class PictureQueue
{
public:
    enum class Pushed
    {
        OnTime,
        Late
    };

    PictureQueue(int capacity, Direction direction, std::function<void()> wake);

    // decode thread
    bool hasRoom() const;
    bool waitForRoom();    // false once closed. Wakes only when half the queue is free: one switch for several pictures
    void giveWay();        // waits a little for a picture that is due to be taken: drawing is behind, not decoding
    bool waitUntilTaken(); // until the queue is empty; false once closed
    bool waitUntilDue(Microseconds position); // paces a source without pictures; false once closed
    bool passUntilDue(Microseconds position); // paces pictures that are not made; ends early when they are watched
    Pushed push(PicturePtr picture);          // never waits
    void restart();                           // what comes next is due at once; what waits is dropped
    void replace(PicturePtr picture);         // on show at once, even when held; the clock and what waits stay

    // A live source sets its own pace: a full queue pulls the clock forward instead of holding the source back.
    void setLive(bool live);

    // commands
    void close();
    void hold();
    void release();
    void setSpeed(double speed);
    void step();
    void setWatched(bool watched);

    // questions
    bool isWatched() const; // or was a moment ago, or is stepped through
    bool isHeld() const;
    bool isEmpty() const;
    double speed() const;
    TimePoint due(Microseconds position) const; // max() when nothing is: held, or not started

    // PictureSource
    TimePoint nextDue() const;
    PicturePtr take(TimePoint now);
    PicturePtr current() const;

private:
    template <typename Early> bool waitUntilDue(Microseconds position, Early early);
    bool isLookedAt() const;
    void begin(Microseconds position, TimePoint now);
    Pushed schedule(Microseconds position, TimePoint now);
    Pushed scheduleLive(Microseconds position, TimePoint now);
    void makeRoomLive(TimePoint now);
    void learnInterval(Microseconds position);
    Microseconds cushion() const;
    TimePoint frontDue() const;
    PicturePtr takeDue(TimePoint now);
    PicturePtr takeStep();

    const std::size_t capacity_;
    const std::function<void()> wake_; // called without the lock

    mutable std::mutex mutex_; // guards all below
    std::condition_variable moved_;
    std::deque<PicturePtr> waiting_;
    PicturePtr current_;
    PicturePtr replacement_; // for current_
    PlayClock clock_;
    Microseconds lastPosition_{};
    Microseconds interval_{40000}; // between two pictures, smoothed
    int steps_ = 0;
    bool hasLast_ = false;
    bool live_ = false;
    bool closed_ = false;
    bool givesWay_ = false;
    bool watched_ = true;
    TimePoint lookedAtUntil_{}; // by whom does not watch
};

} // namespace tide
