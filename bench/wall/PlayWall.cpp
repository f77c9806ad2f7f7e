#include "bench/wall/BenchWall.h"
#include "bench/wall/Figures.h"

#include <QElapsedTimer>

namespace bench {

Figures playWall(int windows, const QString& clip, int framesPerSecond, QSize size, double seconds)
{
    BenchWall wall(windows, size);
    const double memoryBefore = residentMegabytes();
    wall.play(clip);

    QElapsedTimer clock;
    clock.start();
    const std::uint64_t shownBefore = wall.shown();
    const double processors = processorsOver(seconds);
    const double passed = static_cast<double>(clock.nsecsElapsed()) / 1e9;
    const auto shown = static_cast<double>(wall.shown() - shownBefore);

    Figures figures;
    figures.cpuPerFrame = shown > 0 ? processors * passed * 1000 / shown : 0;
    figures.shownShare = shown / (passed * framesPerSecond * windows);
    figures.threads = threadCount();
    figures.memory = (residentMegabytes() - memoryBefore) / windows;
    wall.hide();
    runFor(2.5); // what has just changed settles
    figures.hiddenShare = processorsOver(seconds) / processors;
    return figures;
}

} // namespace bench
