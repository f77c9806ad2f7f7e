// What a wall costs: CPU time a shown frame, share of the frames shown, threads and memory for walls of several sizes,
// beside decoding alone on the same clip in the same run; and what share of it is left while the wall is hidden. Each
// figure comes from a process of its own.
//
//     wall_bench                      the whole table
//     wall_bench --windows 16 --fps 25 --width 704 --height 576 --seconds 20        one wall, as JSON

#include "bench/wall/BenchWall.h"
#include "bench/wall/Figures.h"
#include "bench/wall/Program.h"

#include <QJsonDocument>
#include <QProcess>

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>

namespace {

using bench::Figures;

constexpr double kAny = std::numeric_limits<double>::infinity();

struct Wall
{
    int width, height;
    int framesPerSecond;
    int windows;
    // To reach.
    double cpuPerFrame = kAny;
    double shownShare = 0;
    double threads = kAny;
    double memory = kAny;
    double hiddenShare = 0.1;
};

constexpr Wall kWalls[] = {
    {1920, 1080, 5, 1},
    {1920, 1080, 5, 4},
    {1920, 1080, 5, 9},
    {1920, 1080, 5, 16, 6.5, 0, 30, 15},
    {1920, 1080, 5, 64, kAny, 0.95, 85},
    {704, 576, 25, 1},
    {704, 576, 25, 4},
    {704, 576, 25, 9},
    {704, 576, 25, 16, kAny, 0.95},
};

std::optional<Figures> measureApart(const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), arguments);
    if (!process.waitForFinished(300000) || process.exitCode() != 0)
        return std::nullopt;
    return Figures::fromJson(QJsonDocument::fromJson(process.readAllStandardOutput()).object());
}

QStringList argumentsFor(const Wall& wall, const QString& seconds)
{
    return {"--windows", QString::number(wall.windows),
            "--fps",     QString::number(wall.framesPerSecond),
            "--width",   QString::number(wall.width),
            "--height",  QString::number(wall.height),
            "--seconds", seconds};
}

bool reaches(const Wall& wall, const Figures& got)
{
    return got.cpuPerFrame <= wall.cpuPerFrame && got.shownShare >= wall.shownShare && got.threads <= wall.threads &&
           got.memory <= wall.memory && got.hiddenShare <= wall.hiddenShare;
}

bool printRow(const Wall& wall, const QString& seconds)
{
    const std::optional<Figures> decoding = measureApart({"--decode", "--fps", QString::number(wall.framesPerSecond)});
    const std::optional<Figures> got = measureApart(argumentsFor(wall, seconds));
    if (!decoding || !got) {
        std::printf("%4dx%-4d %3d/s %3d   no figures\n", wall.width, wall.height, wall.framesPerSecond, wall.windows);
        return false;
    }
    const bool reached = reaches(wall, *got);
    std::printf("%4dx%-4d %3d/s %7d %8.2f %8.2f %6.2f %7.1f%% %8d %8.1f %7.1f%%   %s\n", wall.width, wall.height,
                wall.framesPerSecond, wall.windows, got->cpuPerFrame, decoding->cpuPerFrame,
                got->cpuPerFrame / decoding->cpuPerFrame, 100 * got->shownShare, got->threads, got->memory,
                100 * got->hiddenShare, reached ? "" : "MISSED");
    std::fflush(stdout);
    return reached;
}

int printTable(const QString& seconds)
{
    double load = 0;
    getloadavg(&load, 1);
    std::printf("704x576 H.264; load of the machine before the start: %.2f\n", load);
    std::printf("wall      clip  windows  CPU ms/  decode   ratio   shown  threads     MB/  hidden\n"
                "                         frame    alone                            window\n");
    bool reached = true;
    for (const Wall& wall : kWalls)
        reached = printRow(wall, seconds) && reached;
    return reached ? 0 : 1;
}

int printDecoding(const QString& clip)
{
    if (!clip.isEmpty())
        bench::print(bench::decodeOnly(clip));
    return clip.isEmpty() ? 1 : 0;
}

} // namespace

int main(int argc, char** argv)
{
    const bench::Program program(argc, argv,
                                 bench::wallOptions() + QList<QCommandLineOption>{{"decode", "decode the clip only"}});
    if (program.isSet("decode"))
        return printDecoding(bench::clip(program.integer("fps")));
    if (program.integer("windows") <= 0)
        return printTable(QString::number(program.seconds()));
    return bench::printWall(program,
                            [](int windows, QSize size) { return std::make_unique<bench::BenchWall>(windows, size); });
}
