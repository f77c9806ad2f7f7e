#include "engine/core/Failure.h"

#include <utility>

namespace tide {

namespace {

thread_local Failure lastReason = Failure::None;
thread_local std::string lastHttpText;

} // namespace

int fail(Failure reason)
{
    lastReason = reason;
    return -1;
}

Failure lastFailure()
{
    return lastReason;
}

void setHttpErrorText(std::string text)
{
    lastHttpText = std::move(text);
}

const std::string& httpErrorText()
{
    return lastHttpText;
}

} // namespace tide
