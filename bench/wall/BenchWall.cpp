#include "bench/wall/BenchWall.h"

#include "bench/wall/Figures.h"
#include "engine/core/Engine.h"
#include "include/lumen_deck/lumen_deck.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTimer>

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

} // namespace

BenchWall::BenchWall(int windows, QSize size)
    : windows_(windows)
{
    widget_.setWindowFlags(Qt::FramelessWindowHint);
    widget_.resize(size);
    mustSucceed("LD_Initialize", LD_Initialize(&widget_));
    const QJsonDocument layout = grid(windows);
    mustSucceed("LD_SetLayout", LD_SetLayout(&widget_, &layout));
    widget_.resize(size); // the library has set the layout's own
    widget_.show();
    runFor(1);
}

void BenchWall::play(const QString& clip)
{
    firstId_ = tide::Engine::instance().newId();
    forEach("LD_Play", LD_Play, {{"url", clip}, {"auth", ""}});
    lastId_ = tide::Engine::instance().newId();
    runFor(3); // every stream has started by then
}

void BenchWall::forEach(const char* name, QJsonDocument* (*function)(QWidget*, const QJsonDocument*),
                        const QJsonObject& request)
{
    for (int i = 0; i < windows_; ++i) {
        QJsonObject own = request;
        own["wndIndex"] = nameOf(i);
        if (own.contains("fileName"))
            own["fileName"] = QString("%1 of %2").arg(request["fileName"].toString(), nameOf(i));
        const QJsonDocument document(own);
        mustSucceed(name, function(&widget_, &document));
    }
}

std::uint64_t BenchWall::shown() const
{
    std::uint64_t shown = 0;
    for (int id = firstId_; id <= lastId_; ++id)
        shown += tide::Engine::instance().presenter().stats(id).shown;
    return shown;
}

void runFor(double seconds)
{
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
    loop.exec();
}

double processorsOver(double seconds)
{
    QElapsedTimer clock;
    clock.start();
    const double before = processCpuSeconds();
    runFor(seconds);
    return (processCpuSeconds() - before) * 1e9 / static_cast<double>(clock.nsecsElapsed());
}

} // namespace bench
