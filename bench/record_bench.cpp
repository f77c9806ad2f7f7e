// What recording costs on top of playing, and what snapshots do to the pictures on show.
//
//     record_bench [--windows 16] [--pairs 5] [--seconds 8]

#include "bench/wall/BenchWall.h"
#include "bench/wall/Measure.h"
#include "bench/wall/Program.h"
#include "include/lumen_deck/lumen_deck.h"

#include <QElapsedTimer>
#include <QJsonDocument>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

namespace {

using bench::BenchWall;

constexpr int kFramesPerSecond = 25;
constexpr double kStart = 3; // seconds, every stream has started by then

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Playing and recording in turns, so that what else the machine does meets both.
bool measureRecording(int windows, int pairs, double seconds)
{
    BenchWall wall(windows, {1920, 1080});
    wall.play(bench::clip(kFramesPerSecond));
    bench::runFor(kStart);
    std::vector<double> playing;
    std::vector<double> recording;
    std::vector<double> ratios;
    for (int pair = 0; pair < pairs; ++pair) {
        playing.push_back(1000 * bench::processorsOver(seconds));
        wall.forEach("LD_StartSave", LD_StartSave, {{"fileName", QString("pair %1").arg(pair)}});
        recording.push_back(1000 * bench::processorsOver(seconds));
        wall.forEach("LD_StopSave", LD_StopSave, {});
        ratios.push_back(recording.back() / playing.back());
    }
    const auto [least, most] = std::minmax_element(playing.begin(), playing.end());
    const double spread = *most / *least;
    const double ratio = median(ratios);
    const bool reached = ratio <= std::max(1.05, spread);
    std::printf(
        "%d windows of 704x576, %d/s: CPU ms a second, playing %.0f (%.0f to %.0f), recording %.0f, ratio %.3f, "
        "spread of playing %.3f %s\n",
        windows, kFramesPerSecond, median(playing), *least, *most, median(recording), ratio, spread,
        reached ? "" : "MISSED");
    return reached;
}

// The times between shown frames, milliseconds, while `during` is asked for twice a second.
template <class Action> std::vector<double> gaps(const BenchWall& wall, double seconds, Action during)
{
    std::vector<double> found;
    std::atomic<bool> goesOn{true};
    std::thread watch([&] {
        QElapsedTimer sinceLast;
        sinceLast.start();
        for (std::uint64_t before = wall.shown(); goesOn; std::this_thread::sleep_for(std::chrono::milliseconds(1))) {
            if (wall.shown() == before)
                continue;
            before = wall.shown();
            found.push_back(static_cast<double>(sinceLast.nsecsElapsed()) / 1e6);
            sinceLast.start();
        }
    });
    for (double passed = 0; passed < seconds; passed += 0.5) {
        during();
        bench::runFor(0.5);
    }
    goesOn = false;
    watch.join();
    std::sort(found.begin(), found.end());
    return found;
}

void print(const char* what, const std::vector<double>& gaps)
{
    std::printf("%-34s %4zu frames, time between two: median %.1f ms, 99 %% %.1f ms, longest %.1f ms\n", what,
                gaps.size(), gaps[gaps.size() / 2], gaps[gaps.size() * 99 / 100], gaps.back());
}

void measureSnapshots(double seconds)
{
    BenchWall wall(1, {1280, 720});
    wall.play(bench::clip(kFramesPerSecond, {1920, 1080}));
    bench::runFor(kStart);
    print("1080p, playing", gaps(wall, seconds, [] {}));
    print("1080p, two snapshots a second", gaps(wall, seconds, [&wall, number = 0]() mutable {
              wall.forEach("LD_Snapshot", LD_Snapshot, {{"fileName", QString("picture %1").arg(++number)}});
          }));
}

} // namespace

int main(int argc, char** argv)
{
    const bench::Program program(argc, argv,
                                 {{"windows", "that record", "n", "16"},
                                  {"pairs", "of playing and recording", "n", "5"},
                                  {"seconds", "of each measurement", "n", "8"}});
    const bool reached = measureRecording(program.integer("windows"), program.integer("pairs"), program.seconds());
    measureSnapshots(program.seconds());
    return reached ? 0 : 1;
}
