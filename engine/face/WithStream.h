#pragma once

#include "engine/core/Engine.h"
#include "engine/core/Failure.h"

namespace tide {

inline int answer(Failure failure)
{
    return failure == Failure::None ? 0 : fail(failure);
}

// Looks the stream up and answers what the command answers.
template <typename Command> int withStream(int playId, Command command)
{
    const auto stream = Engine::instance().findStream(playId);
    return stream ? answer(command(*stream)) : fail(Failure::NoSuchId);
}

} // namespace tide
