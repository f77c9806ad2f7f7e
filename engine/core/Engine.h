#pragma once

#include "engine/core/Notifier.h"
#include "engine/present/Presenter.h"
#include "engine/record/Recordings.h"
#include "engine/sound/Mixer.h"
#include "engine/stream/Stream.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace tide {

// What there is once in a process. Made by the first call that needs it and never destroyed, since threads of the host
// may call until the very end; the streams are stopped when the process leaves through exit().
//
//     std::shared_ptr<Stream> stream = Engine::instance().findStream(playId);
//     if (!stream)
//         return fail(Failure::NoSuchId);
class Engine
{
public:
    static Engine& instance();

    Presenter& presenter() { return presenter_; }
    Mixer& mixer() { return mixer_; }
    Notifier& notifier() { return notifier_; }
    Recordings& recordings() { return recordings_; }

    int newId() { return ++lastId_; } // the one counter of play ids and view ids

    // Makes the stream, shows it in its window and sets it going.
    Failure play(StreamOptions options, int& playId);
    std::shared_ptr<Stream> findStream(int playId) const;

    // After it returns no draw hook of the stream runs and no message of it is begun. False for an unknown id.
    bool stop(int playId);

    // Starts to record the stream; it ends with it at the latest.
    Failure record(int playId, const std::string& path);

    void setDisplayBuffer(int frames) { displayBuffer_ = frames; } // of the streams made from now on
    int displayBuffer() const { return displayBuffer_; }

private:
    Engine();

    Failure enter(const std::shared_ptr<Stream>& stream);
    std::vector<std::shared_ptr<Stream>> takeFinished();
    void stopAtExit();
    void stopAll();
    void retire(std::shared_ptr<Stream> stream);

    std::atomic<int> lastId_{0};
    std::atomic<int> displayBuffer_{6};
    Notifier notifier_;
    Mixer mixer_;
    Recordings recordings_{notifier_};
    Presenter presenter_;

    mutable std::mutex mutex_; // guards all below
    std::unordered_map<int, std::shared_ptr<Stream>> streams_;
    std::vector<std::shared_ptr<Stream>> retired_; // stopped; their threads may still be on the way out of the network
    bool leaving_ = false;                         // the process exits: nothing is started any more
};

} // namespace tide
