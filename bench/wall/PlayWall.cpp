#include "bench/wall/Figures.h"
#include "engine/core/Engine.h"
#include "include/lumen_deck/lumen_deck.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTimer>
#include <QWidget>

#include <cmath>

namespace bench {

namespace {

// Windows past the sixteenth have no index.
QString nameOf(int window)
{
    return QString("window %1").arg(window);
}

QJsonDocument grid(int windows)
{
    const int side = static_cast<int>(std::ceil(std::sqrt(windows)));
    const double length = 1.0 / side;
    QJsonArray cells;
    for (int i = 0; i < windows; ++i) {
        cells.append(QJsonObject{{"name", nameOf(i)},
                                 {"left", i % side * length},
                                 {"top", i / side * length},
                                 {"width", length},
                                 {"height", length}});
    }
    return QJsonDocument(cells);
}

void mustSucceed(const char* call, QJsonDocument* answer)
{
    if (answer == nullptr)
        return;
    qCritical("%s: %s", call, answer->toJson().constData());
    std::exit(1);
}

void runFor(double seconds)
{
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
    loop.exec();
}

// The engine gives the play ids from one counter.
struct PlayIds
{
    int first = 0;
    int last = 0;
};

std::uint64_t framesShown(const PlayIds& ids)
{
    std::uint64_t shown = 0;
    for (int id = ids.first; id <= ids.last; ++id)
        shown += tide::Engine::instance().presenter().stats(id).shown;
    return shown;
}

PlayIds playAll(QWidget& wall, int windows, const QString& clip)
{
    PlayIds ids;
    ids.first = tide::Engine::instance().newId();
    for (int i = 0; i < windows; ++i) {
        const QJsonDocument request(QJsonObject{{"wndIndex", nameOf(i)}, {"url", clip}, {"auth", ""}});
        mustSucceed("LD_Play", LD_Play(&wall, &request));
    }
    ids.last = tide::Engine::instance().newId();
    return ids;
}

// Processors in use, after a while in which what has just changed settles.
double loadOf(double seconds, double settling)
{
    runFor(settling);
    QElapsedTimer clock;
    clock.start();
    const double before = processCpuSeconds();
    runFor(seconds);
    return (processCpuSeconds() - before) * 1e9 / static_cast<double>(clock.nsecsElapsed());
}

} // namespace

Figures playWall(int windows, const QString& clip, int framesPerSecond, QSize size, double seconds)
{
    QWidget wall;
    wall.setWindowFlags(Qt::FramelessWindowHint);
    wall.resize(size);
    mustSucceed("LD_Initialize", LD_Initialize(&wall));
    const QJsonDocument layout = grid(windows);
    mustSucceed("LD_SetLayout", LD_SetLayout(&wall, &layout));
    wall.resize(size); // the library has set the layout's own
    wall.show();
    runFor(1);

    const double memoryBefore = residentMegabytes();
    const PlayIds ids = playAll(wall, windows, clip);
    runFor(3); // every stream has started by then

    QElapsedTimer clock;
    clock.start();
    const double cpuBefore = processCpuSeconds();
    const std::uint64_t shownBefore = framesShown(ids);
    runFor(seconds);
    const auto shown = static_cast<double>(framesShown(ids) - shownBefore);
    const double cpu = processCpuSeconds() - cpuBefore;
    const double passed = static_cast<double>(clock.nsecsElapsed()) / 1e9;

    Figures figures;
    figures.cpuPerFrame = shown > 0 ? cpu * 1000 / shown : 0;
    figures.shownShare = shown / (passed * framesPerSecond * windows);
    figures.threads = threadCount();
    figures.memory = (residentMegabytes() - memoryBefore) / windows;
    wall.hide();
    figures.hiddenShare = loadOf(seconds, 2.5) / (cpu / passed);
    return figures;
}

} // namespace bench
