#include "host/Options.h"

#include <CLI/CLI.hpp>
#include <QDir>
#include <QFileInfo>
#include <QUrl>
#include <lumen_deck/lumen_deck.h>

#include <cmath>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace quillmark::lumen_wall {

namespace {

constexpr int kMostSources = 16;
constexpr int kSecondsForScreenshot = 6;

const std::map<std::string, int> kRatios{{"fill", 0}, {"4:3", 1}, {"16:9", 2}, {"original", 3}, {"1:1", 4}};
const std::map<std::string, int> kProtocols{{"tcp", 0}, {"udp", 1}, {"multicast", 2}, {"auto", 3}, {"http", 4}};
const std::map<std::string, std::string> kLogRules{
    {"quiet", "*=false"}, {"warnings", "*.debug=false\n*.info=false"}, {"debug", "default.debug=true"}};

// What the command line says, in the types of its parser.
struct Raw
{
    std::vector<std::string> sources;
    std::string size = "1280x780", ratio = "fill", protocol, log = "warnings", screenshot;
};

// A file is named from where the program was called, since the library's own root may lie elsewhere.
QString sourceOf(const std::string& text)
{
    const QString source = QString::fromStdString(text);
    return QFileInfo::exists(source) ? QDir::current().absoluteFilePath(source) : source;
}

std::string checkSource(const std::string& text)
{
    const QString source = QString::fromStdString(text);
    const bool address = source.contains(':') && !QUrl(source).scheme().isEmpty();
    return address || QFileInfo(source).isFile() ? std::string() : text + ": there is no such file";
}

std::string checkSize(const std::string& text)
{
    int width = 0, height = 0;
    char rest = 0;
    const bool good = std::sscanf(text.c_str(), "%dx%d%c", &width, &height, &rest) == 2 && width >= 320 &&
                      height >= 240 && width <= 16384 && height <= 16384;
    return good ? std::string() : "a size is WIDTHxHEIGHT, from 320x240 to 16384x16384";
}

QSize sizeOf(const std::string& text)
{
    const QStringList parts = QString::fromStdString(text).split('x');
    return {parts[0].toInt(), parts[1].toInt()};
}

int gridFor(int sources)
{
    return std::max(1, static_cast<int>(std::ceil(std::sqrt(sources))));
}

void addWall(CLI::App& app, Raw& raw, Options& options)
{
    app.add_option("SOURCE", raw.sources, "files and addresses (rtsp, http, https, test), one a window")
        ->check(checkSource)
        ->expected(0, kMostSources);
    app.add_option("-g,--grid", options.grid, "windows a side, 1 to 4; left out: as many as the sources need")
        ->check(CLI::Range(1, 4));
    app.add_option("--ratio", raw.ratio, "how pictures fit: fill, 4:3, 16:9, original or 1:1")
        ->check(CLI::IsMember(kRatios));
    app.add_option("--sound", options.sound, "the window to be heard, counted from 1")
        ->check(CLI::Range(1, kMostSources));
    app.add_option("--protocol", raw.protocol,
                   "how rtsp streams travel: tcp, udp, multicast, auto or http; kept for the next time")
        ->check(CLI::IsMember(kProtocols));
    app.add_flag("--loop", options.loop, "start a source again when it ends");
}

void addWindow(CLI::App& app, Raw& raw, Options& options)
{
    app.add_option("--size", raw.size, "size of the window, 1280x780 if left out")->check(checkSize);
    app.add_flag("--full-screen", options.fullScreen, "fill the screen");
    app.add_flag("--dragable", options.dragable, "let windows be moved with the mouse");
    app.add_flag("!--no-names", options.names, "no names on the windows");
}

void addProgram(CLI::App& app, Raw& raw, Options& options)
{
    app.add_option("--seconds", options.seconds, "end after that time")->check(CLI::Range(1, 1000000));
    app.add_option("--screenshot", raw.screenshot,
                   "write a picture of the window there at the end (--seconds 6 if left out)");
    app.add_flag("--control", options.control, "be driven by JSON lines on standard input");
    app.add_option("--log", raw.log, "quiet, warnings or debug, on standard error")->check(CLI::IsMember(kLogRules));
}

void complete(Options& options, const Raw& raw)
{
    for (const std::string& source : raw.sources)
        options.sources.append(sourceOf(source));
    if (options.grid == 0)
        options.grid = gridFor(options.sources.size());
    if (!raw.protocol.empty())
        options.protocol = kProtocols.at(raw.protocol);
    options.ratio = kRatios.at(raw.ratio);
    options.size = sizeOf(raw.size);
    options.logRules = QString::fromStdString(kLogRules.at(raw.log));
    options.screenshot = QString::fromStdString(raw.screenshot);
    if (!options.screenshot.isEmpty())
        options.screenshot = QDir::current().absoluteFilePath(options.screenshot);
    if (!options.screenshot.isEmpty() && options.seconds == 0)
        options.seconds = kSecondsForScreenshot;
}

// What no single option can tell; empty when all is well.
std::string contradiction(const Options& options)
{
    const int windows = options.grid * options.grid;
    if (options.sources.size() > windows)
        return std::to_string(options.sources.size()) + " sources do not fit into " + std::to_string(windows) +
               " windows";
    if (options.sound > windows)
        return "there is no window " + std::to_string(options.sound);
    return {};
}

} // namespace

CommandLine parseCommandLine(int argc, char** argv)
{
    CommandLine result;
    Raw raw;
    CLI::App app{"lumen-wall: a wall of live and recorded video"};
    app.get_formatter()->column_width(30);
    app.set_version_flag("--version", "lumen-wall " LUMEN_DECK_VERSION);
    app.footer("\nExamples:\n"
               "  lumen-wall film.mp4\n"
               "  lumen-wall --sound 1 rtsp://camera-1/stream rtsp://camera-2/stream yard.mp4\n"
               "  lumen-wall --grid 3 --control < commands.jsonl");
    addWall(app, raw, result.options);
    addWindow(app, raw, result.options);
    addProgram(app, raw, result.options);
    try {
        app.parse(argc, argv);
        complete(result.options, raw);
        if (const std::string wrong = contradiction(result.options); !wrong.empty())
            throw CLI::ValidationError(wrong);
    } catch (const CLI::ParseError& error) { // the parser's own way to say it
        result.exitCode = app.exit(error, std::cout, std::cerr);
    }
    return result;
}

} // namespace quillmark::lumen_wall
