#pragma once

#include "engine/core/Notifier.h"
#include "engine/present/Presenter.h"
#include "engine/present/fisheye/EagleEye.h"
#include "engine/present/fisheye/FisheyeViews.h"
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
    // Shows a dewarped view of the stream in a window of its own. It ends with the stream at the latest.
    Failure playView(int playId, TP_WId window, PlaceType place, CorrectType correct, const ViewParam& param,
                     int& viewId);

    // Of a view its stream. Null for an unknown id.
    std::shared_ptr<Stream> findStream(int id) const;
    int streamOf(int id) const;    // of a view its stream; others are answered as they are
    TP_WId windowOf(int id) const; // 0 for an unknown id

    std::shared_ptr<FisheyeViews> findViews(int playId) const;             // of a stream; null for other ids
    std::shared_ptr<FisheyeViews> findViews(int playId, int viewId) const; // null unless the view is of the stream
    std::shared_ptr<EagleEye> findEagleEye(int playId) const;              // null when the stream was played without

    // After it returns no draw hook of the stream or the view runs and no message of it is begun. Of a stream it ends
    // the views as well. False for an unknown id.
    bool stop(int id);

    // Starts to record the stream; it ends with it at the latest.
    Failure record(int playId, const std::string& path);

    void setDisplayBuffer(int frames) { displayBuffer_ = frames; } // of the streams made from now on
    int displayBuffer() const { return displayBuffer_; }

private:
    Engine();

    struct Playing
    {
        std::shared_ptr<Stream> stream;
        std::shared_ptr<FisheyeViews> views;
        std::shared_ptr<EagleEye> eagleEye;
    };
    struct View
    {
        int playId;
        TP_WId window;
    };

    Failure enter(Playing playing);
    Failure enterView(int viewId, const View& view);
    const Playing* find(int id) const; // mutex_ is held; of a view its stream
    bool stopView(int viewId);
    std::vector<int> viewsOf(int playId) const;
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
    std::unordered_map<int, Playing> streams_;
    std::unordered_map<int, View> views_;
    std::vector<std::shared_ptr<Stream>> retired_; // stopped; their threads may still be on the way out of the network
    bool leaving_ = false;                         // the process exits: nothing is started any more
};

} // namespace tide
