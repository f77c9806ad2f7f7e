#pragma once

namespace tide {

// libavformat writes to the standard error of the host, with urls that hold passwords. From here on it is silent,
// unless TIDE_PIPE_LOG is set in the environment (to "error", "info" or "debug"); credentials are struck out then.
void quietFfmpeg();

} // namespace tide
