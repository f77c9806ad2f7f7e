#pragma once

#include "include/tide_pipe/tide_pipe.h"

#include <string>

namespace tide {

// Why a call failed. The value is what TP_GetLastError answers; hosts see it as `tide_pipe_error_code`.
enum class Failure : unsigned
{
    None = TP_ERROR_NONE,
    BadArgument = TP_ERROR_BAD_ARGUMENT,
    NoSuchId = TP_ERROR_NO_SUCH_ID,
    NotSupported = TP_ERROR_NOT_SUPPORTED,
    WrongState = TP_ERROR_WRONG_STATE,
    NoWindow = TP_ERROR_NO_WINDOW,
    NoDisplay = TP_ERROR_NO_DISPLAY,
    OpenFailed = TP_ERROR_OPEN_FAILED,
    NoPicture = TP_ERROR_NO_PICTURE,
    WriteFailed = TP_ERROR_WRITE_FAILED,
    SoundFailed = TP_ERROR_SOUND_FAILED,
    Http = TP_ERROR_HTTP,
    Authentication = TP_ERROR_AUTHENTICATION,
    Timeout = TP_ERROR_TIMEOUT,
    Crypto = TP_ERROR_CRYPTO,
    TooLong = TP_ERROR_TOO_LONG,
    OutOfMemory = TP_ERROR_OUT_OF_MEMORY,
    Internal = TP_ERROR_INTERNAL,
};

// Keeps the reason for TP_GetLastError on this thread and answers -1, so that a face function can `return fail(...)`.
int fail(Failure reason);
Failure lastFailure();

// The server's own words about the last HTTP request of this thread.
void setHttpErrorText(std::string text);
const std::string& httpErrorText();

} // namespace tide
