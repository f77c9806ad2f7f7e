#include "engine/transfer/SigpipeGuard.h"

#include <ctime>

namespace tide {

namespace {

sigset_t onlySigpipe()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    return set;
}

bool isPending()
{
    sigset_t pending;
    return sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
}

} // namespace

SigpipeGuard::SigpipeGuard()
    : wasPending_(isPending())
{
    const sigset_t set = onlySigpipe();
    pthread_sigmask(SIG_BLOCK, &set, &before_);
}

// A signal of ours is swallowed; one that was there before stays the host's.
SigpipeGuard::~SigpipeGuard()
{
    const sigset_t set = onlySigpipe();
    const timespec now{};
    if (!wasPending_ && isPending())
        sigtimedwait(&set, nullptr, &now);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

} // namespace tide
