#pragma once

#include "engine/sound/AlsaOutput.h"
#include "engine/sound/Mixer.h"
#include "engine/sound/SoundConverter.h"

#include <atomic>
#include <cstddef>
#include <deque>
#include <mutex>
#include <vector>

namespace tide {

// What the mixer's device wants. Written by the mixer thread, read by whoever pushes.
using BusFormat = std::atomic<SoundFormat>;

// A queue between a stream's decode thread and the mixer thread.
class StreamVoice : public Voice
{
public:
    StreamVoice(std::shared_ptr<const BusFormat> bus, Sharing sharing);

    Sharing sharing() const { return sharing_; }

    // Any thread.
    void push(const AVFrame& frame, TimePoint due) override;
    void flush() override;
    bool isOpen() const override { return isOpen_; }
    void setVolume(std::uint16_t volume) override { volume_ = volume; }
    std::uint16_t volume() const override { return volume_; }

    // Under the mixer's lock, which orders the openings.
    void setOpen(bool isOpen) { isOpen_ = isOpen; }

    // Mixer thread. Adds what is to be heard from `head` on. False once the voice is closed and has faded away.
    bool mix(std::vector<float>& bus, SoundFormat format, TimePoint head);

private:
    struct Chunk
    {
        TimePoint due;
        SoundFormat format;
        std::vector<float> samples;
        std::size_t used = 0; // samples already heard, of all channels

        TimePoint nextDue() const;
        TimePoint end() const;
    };

    void enqueue(Chunk chunk);
    void clear();
    void fadeOutQueue();
    void dropSuperseded(TimePoint due);
    void fetch(std::vector<float>& out, SoundFormat format, TimePoint head);
    std::size_t align(Chunk& chunk, TimePoint head);
    std::size_t take(Chunk& chunk, std::vector<float>& out, std::size_t from);
    void addFaded(std::vector<float>& bus, const std::vector<float>& sound, SoundFormat format);

    const std::shared_ptr<const BusFormat> bus_;
    const Sharing sharing_;
    std::atomic<bool> isOpen_{false};
    std::atomic<std::uint16_t> volume_{65535};

    // Converting is slow beside queueing, and the pusher's thread has a low priority: the mixer must never wait for it.
    // Taken before queueMutex_ where both are.
    std::mutex convertMutex_;
    SoundConverter converter_; // convertMutex_

    std::mutex queueMutex_;
    std::deque<Chunk> queue_;   // queueMutex_; by due time
    bool isContinuing_ = false; // queueMutex_; the last sample that the bus got was ours

    Clock::duration latency_{}; // queueMutex_; by which all is heard after its due time

    float gain_ = 0;             // mixer thread; follows the volume
    std::vector<float> fetched_; // mixer thread
};

} // namespace tide
