#pragma once

#include <csignal>

namespace tide {

// While it lives, a write to a line that the other side has closed is an error for this thread and no signal that ends
// the host: TLS writes cannot ask for that themselves.
class SigpipeGuard
{
public:
    SigpipeGuard();
    ~SigpipeGuard();
    SigpipeGuard(const SigpipeGuard&) = delete;
    SigpipeGuard& operator=(const SigpipeGuard&) = delete;

private:
    sigset_t before_{};
    bool wasPending_ = false;
};

} // namespace tide
