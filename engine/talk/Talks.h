#pragma once

#include "engine/talk/Talk.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tide {

// The talks of the process. Never destroyed, since threads of the host may call until the very end; when the process
// leaves, the devices are told. Any thread may call.
class Talks
{
public:
    static Talks& instance();

    Failure start(TalkOptions options, int& talkId, std::string& text);
    bool stop(int talkId); // returns at once; false for an unknown id

private:
    Talks() = default;

    void awaitClosing();
    void end();

    std::mutex mutex_; // guards what follows
    int lastId_ = 0;
    bool isLeaving_ = false;
    std::map<int, std::unique_ptr<Talk>> talks_;
    std::vector<std::unique_ptr<Talk>> closing_; // stopped; their devices are being told
};

} // namespace tide
