#include "bench/wall/Measure.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

namespace bench {

namespace {

constexpr double kLongestStart = 30; // seconds

double secondsOf(const QElapsedTimer& clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1e9;
}

double secondsToPictures(const Wall& wall, int windows)
{
    QElapsedTimer clock;
    clock.start();
    while (wall.windowsWithPicture() < windows && secondsOf(clock) < kLongestStart)
        runFor(0.005);
    return secondsOf(clock);
}

} // namespace

void runFor(double seconds)
{
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(seconds * 1000), Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

double processorsOver(double seconds)
{
    QElapsedTimer clock;
    clock.start();
    const double before = processCpuSeconds();
    runFor(seconds);
    return (processCpuSeconds() - before) / secondsOf(clock);
}

Figures measure(Wall& wall, int windows, const Clip& clip, double seconds)
{
    Figures figures;
    const double memoryBefore = residentMegabytes();
    QElapsedTimer clock;
    clock.start();
    wall.play(clip.path);
    const double called = secondsOf(clock);
    figures.start = called + secondsToPictures(wall, windows);
    runFor(2); // what the start has put off is done

    clock.start();
    const std::uint64_t shownBefore = wall.shown();
    const double processors = processorsOver(seconds);
    const double passed = secondsOf(clock);
    const auto shown = static_cast<double>(wall.shown() - shownBefore);

    figures.cpuPerFrame = shown > 0 ? processors * passed * 1000 / shown : 0;
    figures.shownShare = shown / (passed * clip.framesPerSecond * windows);
    figures.threads = threadCount();
    figures.memory = (residentMegabytes() - memoryBefore) / windows;
    wall.hide();
    runFor(2.5); // what has just changed settles
    figures.hiddenShare = processorsOver(seconds) / processors;
    return figures;
}

} // namespace bench
