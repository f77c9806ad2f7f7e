#include "tests/double/EngineDouble.h"
#include "tests/double/Recorder.h"

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace engine_double {

namespace {

struct Stream
{
    int parent = -1;
    int running = 0; // hooks that run now
    std::function<void(void*)> draw;
};

struct Streams
{
    std::mutex mutex; // guards everything; never held while a hook runs
    std::condition_variable left;
    std::map<int, std::shared_ptr<Stream>> live;
    std::pair<TP_MessageHandler, void*> messageHandler;
    TP_FishMsgFun fishHandler = nullptr;
};

Streams& streams()
{
    static auto* const instance = new Streams;
    return *instance;
}

template <class Use> auto withStreams(Use use)
{
    Streams& s = streams();
    const std::lock_guard lock(s.mutex);
    return use(s);
}

// With the lock: takes the stream out and waits until its hooks have left.
void closeOne(Streams& s, std::unique_lock<std::mutex>& lock, int playId)
{
    const auto found = s.live.find(playId);
    if (found == s.live.end())
        return;
    const std::shared_ptr<Stream> stream = found->second;
    s.live.erase(found);
    s.left.wait(lock, [&] { return stream->running == 0; });
}

} // namespace

int opened(int playId, int parent)
{
    if (playId != -1)
        withStreams([=](Streams& s) { s.live[playId] = std::make_shared<Stream>(Stream{parent, 0, {}}); });
    return playId;
}

int closed(int playId, int result)
{
    Streams& s = streams();
    std::unique_lock lock(s.mutex);
    if (result < 0 || playId < 0)
        return result;
    std::vector<int> views;
    for (const auto& [id, stream] : s.live) {
        if (stream->parent == playId)
            views.push_back(id);
    }
    for (const int view : views)
        closeOne(s, lock, view);
    closeOne(s, lock, playId);
    return result;
}

void closeAll()
{
    for (const int playId : livePlays())
        closed(playId, 0);
}

void setDrawHook(int playId, std::function<void(void*)> hook)
{
    withStreams([&](Streams& s) {
        if (const auto found = s.live.find(playId); found != s.live.end())
            found->second->draw = std::move(hook);
    });
}

void setMessageHandler(TP_MessageHandler handler, void* user)
{
    withStreams([=](Streams& s) { s.messageHandler = {handler, user}; });
}

void setFishMessageHandler(TP_FishMsgFun handler)
{
    withStreams([=](Streams& s) { s.fishHandler = handler; });
}

void emitMessage(int playId, unsigned message)
{
    const auto [handler, user] = withStreams([](const Streams& s) { return s.messageHandler; });
    if (handler)
        handler(playId, message, user);
}

void emitFishMessage(void* data, unsigned length)
{
    if (const auto handler = withStreams([](const Streams& s) { return s.fishHandler; }))
        handler(0, 0, data, length);
}

// The stop of the stream waits meanwhile.
bool drawFrame(int playId, void* drawContext)
{
    Streams& s = streams();
    std::unique_lock lock(s.mutex);
    const auto found = s.live.find(playId);
    if (found == s.live.end() || !found->second->draw)
        return false;
    const std::shared_ptr<Stream> stream = found->second;
    const auto draw = stream->draw;
    ++stream->running;
    lock.unlock();
    draw(drawContext);
    lock.lock();
    --stream->running;
    s.left.notify_all();
    return true;
}

std::vector<int> livePlays()
{
    return withStreams([](const Streams& s) {
        std::vector<int> ids;
        for (const auto& stream : s.live)
            ids.push_back(stream.first);
        return ids;
    });
}

} // namespace engine_double
