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
    auto stream = std::make_shared<Stream>(id, std::move(options),
                                           StreamLinks{&notifier_, mixer_.makeVoice(), [this] { presenter_.wake(); }});
    if (!presenter_.add(id, window, stream))
        return Failure::NoWindow;
    stopAtExit();
    notifier_.open(id);
    const Failure failure = enter(stream);
    if (failure == Failure::None) {
        playId = id;
    } else {
        presenter_.remove(id);
        notifier_.close(id);
    }
    return failure;
}

// The stream starts under the lock, so that nobody stops one that has not started.
Failure Engine::enter(const std::shared_ptr<Stream>& stream)
{
    std::vector<std::shared_ptr<Stream>> finished; // joined without the lock
    std::lock_guard lock(mutex_);
    if (leaving_)
        return Failure::WrongState;
    finished = takeFinished();
    if (!stream->start())
        return Failure::OutOfMemory;
    streams_[stream->id()] = stream;
    return Failure::None;
}

std::shared_ptr<Stream> Engine::findStream(int playId) const
{
    std::lock_guard lock(mutex_);
    const auto found = streams_.find(playId);
    return found == streams_.end() ? nullptr : found->second;
}

Failure Engine::record(int playId, const std::string& path)
{
    const std::shared_ptr<Stream> stream = findStream(playId);
    const Failure failure = stream ? recordings_.start(stream, path) : Failure::NoSuchId;
    if (failure == Failure::None && !findStream(playId)) // stopped meanwhile
        recordings_.stop(playId);
    return failure;
}

bool Engine::stop(int playId)
{
    std::shared_ptr<Stream> stream;
    {
        std::lock_guard lock(mutex_);
        const auto found = streams_.find(playId);
        if (found == streams_.end())
            return false;
        stream = std::move(found->second);
        streams_.erase(found);
    }
    presenter_.remove(playId);
    notifier_.close(playId);
    stream->stop();
    recordings_.stop(playId);
    mixer_.close(stream->voice());
    retire(std::move(stream));
    return true;
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
        for (const auto& [id, stream] : streams_)
            ids.push_back(id);
    }
    for (const int id : ids)
        stop(id);
    std::vector<std::shared_ptr<Stream>> retired; // joined without the lock
    std::lock_guard lock(mutex_);
    retired.swap(retired_);
}

} // namespace tide
