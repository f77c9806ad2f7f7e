#pragma once

#include "engine/core/Ffmpeg.h"
#include "engine/core/Time.h"

#include <cstdint>
#include <memory>

namespace tide {

// The sound of one stream on its way to the mixer. The stream's decode thread pushes; closed voices drop what they get,
// so a stream need not know whether it is heard.
class Voice
{
public:
    virtual ~Voice() = default;

    // `due` is when the first sample of the frame should be heard. Converts, queues (bounded) and returns at once.
    virtual void push(const AVFrame& frame, TimePoint due) = 0;

    // Forgets what is queued: a seek, a pause, a change of speed.
    virtual void flush() = 0;

    // True while the voice is open: a stream may skip decoding its sound while it is not.
    virtual bool isOpen() const = 0;

    // 0 to 65535; kept while the voice is closed.
    virtual void setVolume(std::uint16_t volume) = 0;
    virtual std::uint16_t volume() const = 0;
};

enum class Sharing
{
    Alone, // one of them sounds at a time, as streams do
    Beside // sounds beside all others, as a talk does
};

// One thread that adds up the open voices and writes them to ALSA's default device. The device is opened with the first
// open voice and closed with the last; where there is none, ALSA's null device is used. Any thread may call.
class Mixer
{
public:
    Mixer();
    ~Mixer();
    Mixer(const Mixer&) = delete;
    Mixer& operator=(const Mixer&) = delete;

    std::shared_ptr<Voice> makeVoice(Sharing sharing = Sharing::Alone);

    bool open(const std::shared_ptr<Voice>& voice);
    void close(const std::shared_ptr<Voice>& voice);
    void closeAll(); // that sound alone

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace tide
