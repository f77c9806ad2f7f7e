#include "engine/core/Engine.h"

#include "engine/core/Log.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace tide {

Engine& Engine::instance()
{
    static Engine* const engine = new Engine;
    return *engine;
}

Engine::Engine()
{
    quietFfmpeg();
}

Failure Engine::play(StreamOptions options, int& playId)
{
    if (const Failure failure = Stream::check(options); failure != Failure::None)
        return failure;
    if (options.window == 0)
        return Failure::NoWindow;
    const int id = newId();
    const TP_WId window = options.window;
    options.bufferFrames = displayBuffer_;
    const auto eagleEye = options.eagleEye ? std::make_shared<EagleEye>(options.eagleEye->isFlat) : nullptr;
    auto stream = std::make_shared<Stream>(id, std::move(options),
                                           StreamLinks{&notifier_, mixer_.makeVoice(), [this] { presenter_.wake(); }});
    if (!presenter_.add(id, window, stream, eagleEye))
        return Failure::NoWindow;
    stopAtExit();
    notifier_.open(id);
    const Failure failure = enter({std::move(stream), std::make_shared<FisheyeViews>(), eagleEye});
    if (failure == Failure::None) {
        playId = id;
    } else {
        presenter_.remove(id);
        notifier_.close(id);
    }
    return failure;
}

// The stream starts under the lock, so that nobody stops one that has not started.
Failure Engine::enter(Playing playing)
{
    std::vector<std::shared_ptr<Stream>> finished; // joined without the lock
    std::lock_guard lock(mutex_);
    if (leaving_)
        return Failure::WrongState;
    finished = takeFinished();
    if (!playing.stream->start())
        return Failure::OutOfMemory;
    const int id = playing.stream->id();
    streams_[id] = std::move(playing);
    return Failure::None;
}

Failure Engine::playView(int playId, TP_WId window, PlaceType place, CorrectType correct, const ViewParam& param,
                         int& viewId)
{
    const auto views = findViews(playId);
    const auto stream = findStream(playId);
    if (!views || !stream)
        return Failure::NoSuchId;
    if (window == 0)
        return Failure::NoWindow;
    const int id = newId();
    Failure failure = Failure::NoWindow;
    if (presenter_.add(id, window, stream, views->add(id, place, correct, param)))
        failure = enterView(id, {playId, window});
    if (failure == Failure::None) {
        viewId = id;
    } else {
        presenter_.remove(id);
        views->remove(id);
    }
    return failure;
}

// The stream may have been stopped while its view was made.
Failure Engine::enterView(int viewId, const View& view)
{
    const std::lock_guard lock(mutex_);
    if (streams_.count(view.playId) == 0)
        return Failure::NoSuchId;
    views_[viewId] = view;
    notifier_.follow(viewId, view.playId);
    return Failure::None;
}

const Engine::Playing* Engine::find(int id) const
{
    const auto view = views_.find(id);
    const auto found = streams_.find(view == views_.end() ? id : view->second.playId);
    return found == streams_.end() ? nullptr : &found->second;
}

std::shared_ptr<Stream> Engine::findStream(int id) const
{
    const std::lock_guard lock(mutex_);
    const Playing* playing = find(id);
    return playing ? playing->stream : nullptr;
}

int Engine::streamOf(int id) const
{
    const std::lock_guard lock(mutex_);
    const auto view = views_.find(id);
    return view == views_.end() ? id : view->second.playId;
}

TP_WId Engine::windowOf(int id) const
{
    const std::lock_guard lock(mutex_);
    const auto view = views_.find(id);
    if (view != views_.end())
        return view->second.window;
    const Playing* playing = find(id);
    return playing ? playing->stream->options().window : 0;
}

std::shared_ptr<FisheyeViews> Engine::findViews(int playId) const
{
    const std::lock_guard lock(mutex_);
    const auto found = streams_.find(playId);
    return found == streams_.end() ? nullptr : found->second.views;
}

std::shared_ptr<FisheyeViews> Engine::findViews(int playId, int viewId) const
{
    return streamOf(viewId) == playId && viewId != playId ? findViews(playId) : nullptr;
}

std::shared_ptr<EagleEye> Engine::findEagleEye(int playId) const
{
    const std::lock_guard lock(mutex_);
    const auto found = streams_.find(playId);
    return found == streams_.end() ? nullptr : found->second.eagleEye;
}

Failure Engine::record(int playId, const std::string& path)
{
    const std::shared_ptr<Stream> stream = findStream(playId);
    const Failure failure = stream ? recordings_.start(stream, path) : Failure::NoSuchId;
    if (failure == Failure::None && !findStream(stream->id())) // stopped meanwhile
        recordings_.stop(stream->id());
    return failure;
}

bool Engine::stop(int playId)
{
    std::shared_ptr<Stream> stream;
    {
        std::lock_guard lock(mutex_);
        const auto found = streams_.find(playId);
        if (found != streams_.end()) {
            stream = std::move(found->second.stream);
            streams_.erase(found); // no view enters any more
        }
    }
    if (!stream)
        return stopView(playId);
    for (const int viewId : viewsOf(playId))
        stopView(viewId);
    presenter_.remove(playId);
    notifier_.close(playId);
    stream->stop();
    recordings_.stop(playId);
    mixer_.close(stream->voice());
    retire(std::move(stream));
    return true;
}

bool Engine::stopView(int viewId)
{
    std::shared_ptr<FisheyeViews> views;
    {
        const std::lock_guard lock(mutex_);
        const Playing* playing = find(viewId);
        if (playing)
            views = playing->views;
        if (views_.erase(viewId) == 0)
            return false;
    }
    presenter_.remove(viewId);
    notifier_.close(viewId);
    if (views)
        views->remove(viewId);
    return true;
}

std::vector<int> Engine::viewsOf(int playId) const
{
    const std::lock_guard lock(mutex_);
    std::vector<int> ids;
    for (const auto& [id, view] : views_) {
        if (view.playId == playId)
            ids.push_back(id);
    }
    return ids;
}

// A stopped stream may still wait for the network for a moment. It is put aside, so that nobody else has to wait.
void Engine::retire(std::shared_ptr<Stream> stream)
{
    std::vector<std::shared_ptr<Stream>> finished; // joined without the lock
    std::lock_guard lock(mutex_);
    finished = takeFinished();
    retired_.push_back(std::move(stream));
}

std::vector<std::shared_ptr<Stream>> Engine::takeFinished()
{
    const auto running =
        std::stable_partition(retired_.begin(), retired_.end(), [](const auto& stream) { return stream->finished(); });
    std::vector<std::shared_ptr<Stream>> finished(std::make_move_iterator(retired_.begin()),
                                                  std::make_move_iterator(running));
    retired_.erase(retired_.begin(), running);
    return finished;
}

// Registered once a window is shown, hence after the GL driver has registered its own: the streams end before it does.
void Engine::stopAtExit()
{
    static const int registered = std::atexit([] { instance().stopAll(); });
    static_cast<void>(registered);
}

void Engine::stopAll()
{
    std::vector<int> ids;
    {
        std::lock_guard lock(mutex_);
        leaving_ = true;
        for (const auto& [id, playing] : streams_)
            ids.push_back(id);
    }
    for (const int id : ids)
        stop(id);
    std::vector<std::shared_ptr<Stream>> retired; // joined without the lock
    std::lock_guard lock(mutex_);
    retired.swap(retired_);
}

} // namespace tide
