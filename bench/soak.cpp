// Plays, draws, arranges, records and stops, over and over, and prints what the process holds. What grows with the cycles
// is a leak.
//
//     soak_double [--cycles 100000]      on the engine double
//     soak_engine [--cycles 2000]        on the real engine

#include "bench/wall/Figures.h"
#include "bench/wall/Program.h"
#include "include/lumen_deck/lumen_deck.h"

#include <QDir>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>
#include <QWidget>

#include <X11/Xlib.h>
#include <X11/extensions/XRes.h>

#include <cstdio>
#include <vector>

#ifdef LUMEN_SOAK_DOUBLE
#include "tests/double/EngineDouble.h"
#endif

namespace {

// What a process may not gather.
struct Held
{
    double megabytes = 0;
    double threads = 0;
    double files = 0;
    double xResources = 0;
};

// Of all clients of the server: the engine has a connection of its own.
double xResources(Display* display)
{
    int clients = 0;
    XResClient* found = nullptr;
    XResQueryClients(display, &clients, &found);
    double count = 0;
    for (int i = 0; i < clients; ++i) {
        int types = 0;
        XResType* resources = nullptr;
        XResQueryClientResources(display, found[i].resource_base, &types, &resources);
        for (int k = 0; k < types; ++k)
            count += resources[k].count;
        XFree(resources);
    }
    XFree(found);
    return count;
}

Held held(Display* display)
{
    return {bench::residentMegabytes(), static_cast<double>(bench::threadCount()),
            static_cast<double>(QDir("/proc/self/fd").entryList(QDir::Files | QDir::System).size()),
            xResources(display)};
}

// Least squares over equal steps, in units a step.
double slope(const std::vector<Held>& samples, double Held::*value)
{
    const auto n = static_cast<double>(samples.size());
    double x = 0, y = 0, xx = 0, xy = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto at = static_cast<double>(i);
        x += at;
        y += samples[i].*value;
        xx += at * at;
        xy += at * (samples[i].*value);
    }
    return (n * xy - x * y) / (n * xx - x * x);
}

void wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

class Soak
{
public:
    explicit Soak(int dwell)
        : dwell_(dwell)
    {
        frame_.setFixedSize(640, 480); // an arrangement makes a wall by itself a pixel wider
        (new QHBoxLayout(&frame_))->addWidget(&wall_);
        LD_Release(LD_Initialize(&wall_));
        frame_.show();
    }

    void cycle(int number)
    {
        ask(LD_ArrangeWindow, number % 2 ? R"({"type":2})" : R"({"type":1})");
        ask(LD_Play, R"({"wndIndex":0,"url":"test:pattern?size=320x240&rate=25","auth":""})");
        ask(LD_SetRectInfo, R"({"rectInfo":[{"points":[[0.1,0.1],[0.4,0.1],[0.4,0.4],[0.1,0.4]],"id":1}]})");
        ask(LD_SetTextOverlay, R"({"textInfo":[{"text":"cycle","x":0.1,"y":0.1,"id":2}]})");
        wait(dwell_);
        ask(LD_StartSave, R"({"wndIndex":0,"fileName":"soak"})");
        wait(dwell_);
        ask(LD_StopSave, R"({"wndIndex":0})");
        ask(LD_ClearShapeByType, R"({"type":"all"})");
        ask(LD_Stop, R"({"wndIndex":0})");
    }

private:
    void ask(QJsonDocument* (*function)(QWidget*, const QJsonDocument*), const char* request)
    {
        const QJsonDocument document = QJsonDocument::fromJson(request);
        QJsonDocument* const answer = function(&wall_, &document);
        if (answer != nullptr && answer->object()["errorCode"].toInt() != 0)
            qFatal("%s: %s", request, answer->toJson().constData()); // a cycle that does not play tells nothing
        LD_Release(answer);
    }

    QWidget frame_;
    QWidget& wall_ = *new QWidget(&frame_);
    int dwell_;
};

void print(int cycle, const Held& held)
{
    std::printf("%8d cycles: %7.1f MB %4.0f threads %4.0f files %6.0f X resources\n", cycle, held.megabytes,
                held.threads, held.files, held.xResources);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
#ifdef LUMEN_SOAK_DOUBLE
    constexpr int dwell = 0;
    constexpr auto many = "100000";
#else
    constexpr int dwell = 60; // some pictures are shown and recorded
    constexpr auto many = "2000";
#endif
    const bench::Program program(argc, argv, {{"cycles", "of the whole", "n", many}});
    const int cycles = program.integer("cycles");
    Display* const display = XOpenDisplay(nullptr);
    Soak soak(dwell);
    const int step = cycles / 20 > 0 ? cycles / 20 : 1;
    std::vector<Held> samples;
    for (int i = 1; i <= cycles; ++i) {
        soak.cycle(i);
#ifdef LUMEN_SOAK_DOUBLE
        engine_double::reset(); // forgets the calls that it has kept
#endif
        if (i % step == 0) {
            const Held now = held(display);
            print(i, now);
            if (i > cycles / 4) // caches are warm
                samples.push_back(now);
        }
    }
    XCloseDisplay(display);
    const double thousands = step / 1000.0;
    std::printf("growth in 1000 cycles: %.3f MB, %.3f threads, %.3f files, %.3f X resources\n",
                slope(samples, &Held::megabytes) / thousands, slope(samples, &Held::threads) / thousands,
                slope(samples, &Held::files) / thousands, slope(samples, &Held::xResources) / thousands);
    return 0;
}
