#include "engine/talk/Talks.h"

#include "engine/core/Engine.h"
#include "engine/transfer/Transfers.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace tide {

Talks& Talks::instance()
{
    static Talks* const talks = [] {
        Transfers::instance(); // sets libcurl up
        std::atexit([] { instance().end(); });
        return new Talks;
    }();
    return *talks;
}

Failure Talks::start(TalkOptions options, int& talkId, std::string& text)
{
    awaitClosing();
    auto talk = std::make_unique<Talk>(std::move(options), Engine::instance().mixer());
    const Failure failure = talk->open(text);
    if (failure != Failure::None)
        return failure;
    const std::lock_guard lock(mutex_);
    if (isLeaving_)
        return Failure::WrongState;
    talkId = ++lastId_;
    talks_[talkId] = std::move(talk);
    return Failure::None;
}

// A device that is still being closed would take the opening for one too many, or the closing for the new talk's.
void Talks::awaitClosing()
{
    std::vector<std::unique_ptr<Talk>> closing; // waited for without the lock
    const std::lock_guard lock(mutex_);
    closing.swap(closing_);
}

bool Talks::stop(int talkId)
{
    std::vector<std::unique_ptr<Talk>> finished; // joined without the lock
    const std::lock_guard lock(mutex_);
    auto found = talks_.extract(talkId);
    if (!found)
        return false;
    found.mapped()->stop();
    const auto running =
        std::stable_partition(closing_.begin(), closing_.end(), [](const auto& talk) { return talk->isFinished(); });
    finished.assign(std::make_move_iterator(closing_.begin()), std::make_move_iterator(running));
    closing_.erase(closing_.begin(), running);
    closing_.push_back(std::move(found.mapped()));
    return true;
}

void Talks::end()
{
    std::map<int, std::unique_ptr<Talk>> talks; // stopped and waited for without the lock
    {
        const std::lock_guard lock(mutex_);
        isLeaving_ = true;
        talks.swap(talks_);
    }
    for (const auto& [id, talk] : talks)
        talk->stop();
    talks.clear();
    awaitClosing();
}

} // namespace tide
