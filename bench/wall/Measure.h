#pragma once

#include "bench/wall/Figures.h"
#include "bench/wall/Wall.h"

namespace bench {

void runFor(double seconds);           // the event loop
double processorsOver(double seconds); // in use by the process while the event loop runs

struct Clip
{
    QString path;
    int framesPerSecond;
};

// Plays the clip in all windows and hides them in the end. `seconds` are measured on show, and as many hidden.
Figures measure(Wall& wall, int windows, const Clip& clip, double seconds);

} // namespace bench
