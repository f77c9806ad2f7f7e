// What nine dewarped views of one 1080p stream cost beside one plain window of the same stream: processor time of the
// process, the software rasteriser's threads ("llvmpipe-*") and all others, in turns.

#include "engine/core/Engine.h"

#include <X11/Xlib.h>
#undef None
#undef Bool
#undef Status

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace {

int wallWidth = 1440;
int wallHeight = 810;
constexpr int kRounds = 5;
constexpr std::chrono::seconds kWarmUp{2};
constexpr std::chrono::seconds kMeasured{6};

struct Cost
{
    double rest = 0, rasteriser = 0; // seconds of processor time
    std::uint64_t shown = 0;         // windows drawn with a new picture
};

// Nanoseconds on a processor stand first in "schedstat".
Cost processorTime()
{
    Cost cost;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string name;
        double nanoseconds = 0;
        std::ifstream(task.path() / "comm") >> name;
        std::ifstream(task.path() / "schedstat") >> nanoseconds;
        (name.rfind("llvmpipe", 0) == 0 ? cost.rasteriser : cost.rest) += nanoseconds / 1e9;
    }
    return cost;
}

class Wall
{
public:
    Wall()
        : display_(XOpenDisplay(nullptr))
    {
        if (!display_) {
            std::fputs("no display\n", stderr);
            std::exit(1);
        }
    }
    ~Wall() { XCloseDisplay(display_); }
    Wall(const Wall&) = delete;
    Wall& operator=(const Wall&) = delete;

    Window window(int x, int y, int width, int height, bool mapped)
    {
        XSetWindowAttributes attributes{};
        attributes.override_redirect = True;
        const Window made = XCreateWindow(display_, DefaultRootWindow(display_), x, y, static_cast<unsigned>(width),
                                          static_cast<unsigned>(height), 0, CopyFromParent, InputOutput, nullptr,
                                          CWOverrideRedirect, &attributes);
        if (mapped)
            XMapRaised(display_, made);
        XSync(display_, False);
        windows_.push_back(made);
        return made;
    }

    void clear()
    {
        for (const Window window : windows_)
            XDestroyWindow(display_, window);
        XSync(display_, False);
        windows_.clear();
    }

private:
    Display* const display_;
    std::vector<Window> windows_;
};

int play(const std::string& clip, Window window)
{
    const int id = TP_Play(clip.c_str(), "", 0, window, "", "", 0, nullptr, nullptr, -1);
    if (id < 0) {
        std::fprintf(stderr, "%s cannot be played: %u\n", clip.c_str(), TP_GetLastError());
        std::exit(1);
    }
    return id;
}

// The whole circle in the middle, with the boxes of the eight views round it.
std::vector<int> showViews(Wall& wall, int real)
{
    constexpr float places[][2] = {{0.34F, 0.31F}, {0.5F, 0.25F},  {0.66F, 0.31F}, {0.26F, 0.5F}, {0.5F, 0.5F},
                                   {0.74F, 0.5F},  {0.34F, 0.69F}, {0.5F, 0.75F},  {0.66F, 0.69F}};
    std::vector<int> ids;
    for (int i = 0; i < 9; ++i) {
        _TP_FISHEYEPARAM param{};
        param.mask = 24;
        param.x = places[i][0];
        param.y = places[i][1];
        const unsigned char colour[] = {static_cast<unsigned char>(i % 2 * 255),
                                        static_cast<unsigned char>(i % 3 * 127), static_cast<unsigned char>(i % 4 * 85),
                                        255};
        std::copy_n(colour, 4, param.color);
        const Window window =
            wall.window(i % 3 * wallWidth / 3, i / 3 * wallHeight / 3, wallWidth / 3, wallHeight / 3, true);
        ids.push_back(TP_FEC_Play(real, window, &param, 3, i == 4 ? 0 : 0x100));
    }
    TP_FEC_SetDrawType(real, 1);
    return ids;
}

Cost measure(const std::vector<int>& ids)
{
    const auto shown = [&] {
        std::uint64_t all = 0;
        for (const int id : ids)
            all += tide::Engine::instance().presenter().stats(id).shown;
        return all;
    };
    std::this_thread::sleep_for(kWarmUp);
    const Cost before = processorTime();
    const std::uint64_t shownBefore = shown();
    std::this_thread::sleep_for(kMeasured);
    const Cost after = processorTime();
    return {after.rest - before.rest, after.rasteriser - before.rasteriser, shown() - shownBefore};
}

Cost plain(Wall& wall, const std::string& clip, int width, int height)
{
    const int id = play(clip, wall.window(0, 0, width, height, true));
    const Cost cost = measure({id});
    TP_Stop(id);
    wall.clear();
    return cost;
}

Cost views(Wall& wall, const std::string& clip)
{
    const int real = play(clip, wall.window(0, 0, 16, 16, false));
    const Cost cost = measure(showViews(wall, real));
    TP_Stop(real);
    wall.clear();
    return cost;
}

// The round with the least of it: others are at work on the machine as well.
const Cost& cheapest(const std::vector<Cost>& rounds)
{
    return *std::min_element(rounds.begin(), rounds.end(),
                             [](const Cost& a, const Cost& b) { return a.rest < b.rest; });
}

void print(const char* what, const std::vector<Cost>& rounds, double base)
{
    const Cost& cost = cheapest(rounds);
    constexpr double seconds = kMeasured.count();
    std::printf("%-34s rest %6.1f ms/s  ratio %4.2f   rasteriser %7.1f ms/s   drawn %5.1f/s\n", what,
                cost.rest / seconds * 1000, cost.rest / base, cost.rasteriser / seconds * 1000,
                static_cast<double>(cost.shown) / seconds);
}

} // namespace

int main(int argc, char** argv)
{
    const bool sized = argc == 3 && std::sscanf(argv[2], "%dx%d", &wallWidth, &wallHeight) == 2;
    if ((argc != 2 && !sized) || wallWidth < 30 || wallHeight < 30) {
        std::fputs("usage: fisheye_bench CLIP [WIDTHxHEIGHT of the wall]\n", stderr);
        return 2;
    }
    Wall wall;
    std::vector<Cost> large, small, nine;
    for (int round = 0; round < kRounds; ++round) {
        large.push_back(plain(wall, argv[1], wallWidth, wallHeight));
        nine.push_back(views(wall, argv[1]));
        small.push_back(plain(wall, argv[1], wallWidth / 3, wallHeight / 3));
    }
    const double base = cheapest(large).rest;
    print("one plain window of the whole wall", large, base);
    print("one plain window of a view's size", small, base);
    print("nine views", nine, base);
    return 0;
}
