#include "engine/record/Recordings.h"

#include <utility>

namespace tide {

namespace {

constexpr std::chrono::seconds kPatience{10}; // with a disk that hangs; the host waits meanwhile

} // namespace

Failure Recordings::start(const std::shared_ptr<Stream>& stream, const std::string& path)
{
    const int id = stream->id();
    const std::shared_ptr<Recorder> running = find(id);
    const bool isBackward = stream->options().direction == Direction::Backward;
    if (isBackward || (running && running->isRunning()))
        return Failure::WrongState;
    const auto recorder =
        Recorder::start(path, [&notifier = notifier_, id] { notifier.message(id, TP_MESSAGE_RECORD_FAILED); });
    if (!recorder)
        return Failure::WriteFailed;
    const std::optional<Entry> ended = take(id);
    {
        const std::lock_guard lock(mutex_);
        entries_[id] = {stream, recorder};
    }
    if (ended)
        finish(*ended);
    stream->addSink(recorder);
    return Failure::None;
}

Failure Recordings::switchFile(int id, const std::string& path)
{
    const std::shared_ptr<Recorder> recorder = find(id);
    if (!recorder || !recorder->isRunning())
        return Failure::WrongState;
    return recorder->switchTo(path) ? Failure::None : Failure::WriteFailed;
}

Failure Recordings::stop(int id)
{
    const std::optional<Entry> entry = take(id);
    return entry ? finish(*entry) : Failure::WrongState;
}

std::optional<std::int64_t> Recordings::size(int id) const
{
    const std::shared_ptr<Recorder> recorder = find(id);
    return recorder ? std::optional(recorder->size()) : std::nullopt;
}

std::shared_ptr<Recorder> Recordings::find(int id) const
{
    const std::lock_guard lock(mutex_);
    const auto found = entries_.find(id);
    return found == entries_.end() ? nullptr : found->second.recorder;
}

std::optional<Recordings::Entry> Recordings::take(int id)
{
    const std::lock_guard lock(mutex_);
    auto node = entries_.extract(id);
    return node ? std::optional(std::move(node.mapped())) : std::nullopt;
}

Failure Recordings::finish(const Entry& entry)
{
    entry.stream->removeSink(entry.recorder);
    return entry.recorder->finish(kPatience) ? Failure::None : Failure::Timeout;
}

} // namespace tide
