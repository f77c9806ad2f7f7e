#include "bench/wall/BenchWall.h"

#include "bench/wall/Measure.h"
#include "engine/core/Engine.h"
#include "include/lumen_deck/lumen_deck.h"

#include <QJsonArray>
#include <QJsonDocument>

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

template <class Take> void BenchWall::forEachPlay(Take take) const
{
    for (int id = firstId_; id <= lastId_; ++id)
        take(tide::Engine::instance().presenter().stats(id));
}

std::uint64_t BenchWall::shown() const
{
    std::uint64_t shown = 0;
    forEachPlay([&shown](const tide::PresenterStats& stats) { shown += stats.shown; });
    return shown;
}

int BenchWall::windowsWithPicture() const
{
    int windows = 0;
    forEachPlay([&windows](const tide::PresenterStats& stats) { windows += stats.shown > 0 ? 1 : 0; });
    return windows;
}

} // namespace bench
