#pragma once

#include "engine/core/Failure.h"
#include "engine/core/Notifier.h"
#include "engine/sound/Mixer.h"
#include "engine/stream/PacketSink.h"
#include "engine/stream/PictureSource.h"
#include "engine/stream/StreamOptions.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace tide {

// What a stream needs of the process round it.
struct StreamLinks
{
    Notifier* notifier = nullptr; // outlives the stream
    std::shared_ptr<Voice> voice; // null: no sound
    std::function<void()> wake;   // a picture is due earlier than the stream said before
};

struct PictureSize
{
    int width = 0, height = 0;
};

// One stream: it opens, reads, decodes, paces and reconnects on a thread of its own. All functions may be called from
// any thread and none waits for the network or for the decoder; the one exception is the destructor, which joins the
// thread.
class Stream final : public PictureSource
{
public:
    // Failure::BadArgument for an address, a credential or a time that can never be played.
    static Failure check(const StreamOptions& options);

    Stream(int id, StreamOptions options, StreamLinks links);
    ~Stream() override;
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    // commands
    bool start(); // false when the system has no thread to give
    void stop();  // for good; the thread leaves as soon as it can
    Failure pause();
    Failure resume();
    Failure fast(); // one step of the scale 1/8, 1/4, 1/2, 1, 2, 4, 8; at its end it stays there; not of a live stream
    Failure slow();
    Failure frameForward();                                          // pauses, and shows the next picture
    Failure setReconnectAuth(const std::string& auth);               // and tries again at once when it waits for that
    void setAddition(int type, TP_AdditionFun function, void* user); // a null function ends it
    Failure setOverlay(int selector, int part, int enable);          // kept for the stream's life

    // questions
    int id() const;
    const StreamOptions& options() const;
    bool finished() const; // the thread has left: the destructor does not wait
    bool isLive() const;   // false until it is known
    float scale() const;
    std::optional<PictureSize> pictureSize() const; // nothing before the first picture is known
    std::optional<std::chrono::system_clock::time_point> pictureTime() const; // wall clock of the picture on show
    Microseconds delay() const; // of a live stream: the picture on show is so much older than what has come
    const std::shared_ptr<Voice>& voice() const;

    // The sink hears of the tracks at once when they are known, else as soon as they are. After removeSink no call of
    // the sink runs; a sink must not call back into the stream.
    void addSink(std::shared_ptr<PacketSink> sink);
    void removeSink(const std::shared_ptr<PacketSink>& sink);

    // PictureSource
    TimePoint nextDue() const override;
    PicturePtr take(TimePoint now) override;
    PicturePtr current() const override;
    void setWatched(bool watched) override; // while nobody watches, some key pictures are decoded and no others

private:
    Failure changeSpeed(double factor);
    void flushSound();

    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace tide
