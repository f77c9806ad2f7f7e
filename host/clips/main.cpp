// Writes a clip of a checkered room through a fisheye lens to standard output, raw, three bytes a pixel; two balls roll
// round in it once in the clip's length.

#include "host/clips/Room.h"

#include <cstdio>
#include <cstring>
#include <vector>

namespace {

constexpr int kSamples = 3; // a side of a pixel
constexpr double kPi = 3.14159265358979323846;
constexpr double kBallAway = 1.8;
constexpr double kBallRadius = 0.35;

struct Order
{
    room::Mount mount = room::Mount::Ceiling;
    int width = 0, height = 0, frames = 0;
};

bool read(int argc, char** argv, Order& order)
{
    const char* const mounts[] = {"wall", "floor", "ceiling"};
    bool known = false;
    for (int i = 0; argc == 4 && i < 3; ++i) {
        if (std::strcmp(argv[1], mounts[i]) == 0) {
            order.mount = static_cast<room::Mount>(i);
            known = true;
        }
    }
    return known && std::sscanf(argv[2], "%dx%d", &order.width, &order.height) == 2 &&
           std::sscanf(argv[3], "%d", &order.frames) == 1 && order.width > 0 && order.width <= 8192 &&
           order.height > 0 && order.height <= 8192 && order.frames > 0;
}

struct Film
{
    explicit Film(const Order& given);

    room::Vector sceneAt(double x, double y, bool& inside) const;
    room::Colour mixed(int column, int row) const;
    void roll(std::vector<unsigned char>& frame, int number) const;

    Order order;
    std::vector<unsigned char> still;
    std::vector<std::array<float, 3>> scenes; // of each pixel; nothing outside the circle
};

unsigned char byteOf(double value)
{
    return static_cast<unsigned char>(std::lround(std::clamp(value, 0.0, 255.0)));
}

void put(std::vector<unsigned char>& frame, std::size_t pixel, const room::Colour& colour)
{
    frame[3 * pixel] = byteOf(colour.red);
    frame[3 * pixel + 1] = byteOf(colour.green);
    frame[3 * pixel + 2] = byteOf(colour.blue);
}

Film::Film(const Order& given)
    : order(given)
    , still(3 * static_cast<std::size_t>(given.width) * static_cast<std::size_t>(given.height))
{
    for (int row = 0; row < order.height; ++row) {
        for (int column = 0; column < order.width; ++column) {
            bool inside = false;
            const room::Vector d = sceneAt(column + 0.5, row + 0.5, inside);
            put(still, scenes.size(), mixed(column, row));
            scenes.push_back(inside
                                 ? std::array{static_cast<float>(d.x), static_cast<float>(d.y), static_cast<float>(d.z)}
                                 : std::array<float, 3>{});
        }
    }
}

room::Vector Film::sceneAt(double x, double y, bool& inside) const
{
    const double radius = 0.5 * std::min(order.width, order.height);
    const double across = (x - 0.5 * order.width) / radius;
    const double down = (y - 0.5 * order.height) / radius;
    inside = std::hypot(across, down) <= 1.0;
    return room::toRoom(order.mount, room::equidistant(across, down));
}

room::Colour Film::mixed(int column, int row) const
{
    room::Colour sum{0, 0, 0};
    for (int sample = 0; sample < kSamples * kSamples; ++sample) {
        bool inside = false;
        const room::Vector scene =
            sceneAt(column + (sample % kSamples + 0.5) / kSamples, row + (sample / kSamples + 0.5) / kSamples, inside);
        if (!inside)
            continue;
        const room::Colour colour = room::colourAt(order.mount, scene);
        sum = {sum.red + colour.red, sum.green + colour.green, sum.blue + colour.blue};
    }
    constexpr double share = 1.0 / (kSamples * kSamples);
    return {share * sum.red, share * sum.green, share * sum.blue};
}

// A ball is what lies near enough to the line to its middle.
void Film::roll(std::vector<unsigned char>& frame, int number) const
{
    const double height = room::floorOf(order.mount) + (order.mount == room::Mount::Floor ? 1.0 : kBallRadius);
    const double far = std::hypot(kBallAway, height);
    const double half = kBallRadius / far;
    for (const double side : {0.0, kPi}) {
        const double angle = 2 * kPi * number / order.frames + side;
        const room::Vector middle{kBallAway * std::sin(angle) / far, kBallAway * std::cos(angle) / far, height / far};
        const float least = static_cast<float>(std::sqrt(1.0 - half * half));
        for (std::size_t pixel = 0; pixel < scenes.size(); ++pixel) {
            const auto& [x, y, z] = scenes[pixel];
            const float near =
                x * static_cast<float>(middle.x) + y * static_cast<float>(middle.y) + z * static_cast<float>(middle.z);
            if (near < least)
                continue;
            const double away = std::sqrt(std::max(0.0, 1.0 - static_cast<double>(near) * near)) / half;
            put(frame, pixel, {255 - 90 * away, side == 0.0 ? 230 - 90 * away : 60, side == 0.0 ? 40.0 : 220});
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    Order order;
    if (!read(argc, argv, order)) {
        std::fputs("usage: room_clip wall|floor|ceiling WIDTHxHEIGHT FRAMES\n", stderr);
        return 2;
    }
    const Film film(order);
    for (int number = 0; number < order.frames; ++number) {
        std::vector<unsigned char> frame = film.still;
        film.roll(frame, number);
        if (std::fwrite(frame.data(), 1, frame.size(), stdout) != frame.size())
            return 1;
    }
    return 0;
}
