#pragma once

#include "include/tide_pipe/tide_pipe.h"

#include <optional>
#include <string>

namespace tide {

enum class Direction
{
    Forward,
    Backward
};

// The picture is a whole sphere that turns.
struct EagleEyeOptions
{
    bool isFlat = false;
};

// What TP_Play and TP_ReversePlay were asked for. Fixed for the life of a stream.
struct StreamOptions
{
    std::string url;
    std::string auth;
    int protocol = 0;
    TP_WId window = 0;
    std::string startTime;
    std::string stopTime;
    int correctionType = 0;
    std::optional<EagleEyeOptions> eagleEye;
    Direction direction = Direction::Forward;
    int bufferFrames = 6; // length of the picture queue
};

} // namespace tide
