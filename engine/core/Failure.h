#pragma once

#include <string>

namespace tide {

// Why a call failed. The value is what TP_GetLastError answers; hosts see it as `tide_pipe_error_code`.
enum class Failure : unsigned {
    None = 0,
    BadArgument = 1,
    NoSuchId = 2,
    NotSupported = 3,
    WrongState = 4,
    NoWindow = 5,
    NoDisplay = 6,
    OpenFailed = 7,
    NoPicture = 8,
    WriteFailed = 9,
    SoundFailed = 10,
    Http = 11,
    Authentication = 12,
    Timeout = 13,
    Crypto = 14,
    TooLong = 15,
    OutOfMemory = 16,
    Internal = 17,
};

// Keeps the reason for TP_GetLastError on this thread and answers -1, so that a face function can `return fail(...)`.
int fail(Failure reason);
Failure lastFailure();

// The server's own words about the last HTTP request of this thread.
void setHttpErrorText(std::string text);
const std::string& httpErrorText();

} // namespace tide
