#pragma once

#include "engine/core/Failure.h"
#include "engine/record/Recorder.h"
#include "engine/stream/Stream.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace tide {

// Which stream is being recorded. A recording that the disk has ended stays known until it is stopped, or replaced by a
// new one of the stream. Any thread may call.
class Recordings
{
public:
    explicit Recordings(Notifier& notifier)
        : notifier_(notifier)
    {
    }

    Failure start(const std::shared_ptr<Stream>& stream, const std::string& path);
    Failure switchFile(int id, const std::string& path);
    Failure stop(int id); // waits until the file is complete
    std::optional<std::int64_t> size(int id) const;

private:
    struct Entry
    {
        std::shared_ptr<Stream> stream;
        std::shared_ptr<Recorder> recorder;
    };

    std::optional<Entry> take(int id);
    std::shared_ptr<Recorder> find(int id) const;
    static Failure finish(const Entry& entry);

    Notifier& notifier_;
    mutable std::mutex mutex_;
    std::unordered_map<int, Entry> entries_; // mutex_
};

} // namespace tide
