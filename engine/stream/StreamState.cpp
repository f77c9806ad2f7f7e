#include "engine/stream/StreamState.h"

namespace tide {

StreamState::StreamState(int streamId, StreamOptions streamOptions, StreamLinks streamLinks)
    : id(streamId)
    , options(std::move(streamOptions))
    , links(std::move(streamLinks))
    , queue(options.bufferFrames, options.direction, links.wake)
    , auth_(options.auth)
{
}

std::string StreamState::auth() const
{
    std::lock_guard lock(authMutex_);
    return auth_;
}

void StreamState::setAuth(const std::string& auth)
{
    std::lock_guard lock(authMutex_);
    auth_ = auth;
}

} // namespace tide
