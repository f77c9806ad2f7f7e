#pragma once

#include <algorithm>
#include <array>
#include <cmath>

// A room that is known by arithmetic: what stands in a direction has a colour that follows from nothing but that
// direction. Its walls, floor and ceiling are checkered and numbered, so that a picture of it can be judged by eye, and
// by a test to the pixel.
namespace room {

// East, north, up; the camera is in the origin.
struct Vector
{
    double x, y, z;
};

struct Colour
{
    double red, green, blue; // 0 to 255
};

enum class Mount
{
    Wall,
    Floor,
    Ceiling
};

// Of lens coordinates: right and down in the picture, and along the axis.
inline Vector toRoom(Mount mount, const Vector& lens)
{
    if (mount == Mount::Ceiling) // north is up in the picture
        return {lens.x, -lens.y, -lens.z};
    if (mount == Mount::Floor) // north is at the bottom
        return {lens.x, lens.y, lens.z};
    return {lens.x, lens.z, -lens.y}; // looks north
}

// Where the lens looks at the point (x, y) of its circle, -1 to 1 each way; equidistant, half the scene in the circle.
inline Vector equidistant(double x, double y)
{
    const double away = std::hypot(x, y);
    const double angle = away * std::acos(0.0);
    const double across = away > 0.0 ? std::sin(angle) / away : 0.0;
    return {across * x, across * y, std::cos(angle)};
}

struct Face
{
    Colour colour;
    int number;
};

constexpr double kHalfWidth = 3.0;
constexpr double kHeight = 2.8;
constexpr double kTile = 0.5;
constexpr double kDot = 0.2; // of a digit

// Rows from above, five dots each, the leftmost highest.
constexpr std::array<std::array<int, 7>, 6> kDigits{{{4, 12, 4, 4, 4, 4, 14},
                                                     {14, 17, 1, 2, 4, 8, 31},
                                                     {31, 2, 4, 2, 1, 17, 14},
                                                     {2, 6, 10, 18, 31, 2, 2},
                                                     {31, 16, 30, 1, 1, 17, 14},
                                                     {6, 8, 16, 30, 17, 17, 14}}};

inline double floorOf(Mount mount)
{
    return mount == Mount::Ceiling ? -2.6 : mount == Mount::Floor ? -0.2 : -1.4;
}

// `across` and `above` are metres from the middle of the face.
inline Colour paint(const Face& face, double across, double above)
{
    const int column = static_cast<int>(std::floor(across / kDot + 2.5));
    const int row = static_cast<int>(std::floor(3.5 - above / kDot));
    const bool inDigit = column >= 0 && column < 5 && row >= 0 && row < 7;
    if (inDigit &&
        (kDigits[static_cast<std::size_t>(face.number - 1)][static_cast<std::size_t>(row)] >> (4 - column) & 1))
        return {255, 255, 255};
    const auto tile = static_cast<long>(std::floor(across / kTile) + std::floor(above / kTile));
    const double shade = tile % 2 == 0 ? 1.0 : 0.6;
    return {shade * face.colour.red, shade * face.colour.green, shade * face.colour.blue};
}

// What stands in the direction, of any length.
inline Colour colourAt(Mount mount, const Vector& d)
{
    const double floor = floorOf(mount);
    const double toSide = kHalfWidth / std::max({std::abs(d.x), std::abs(d.y), 1e-9});
    const double toEnd = (d.z < 0 ? floor : floor + kHeight) / (std::abs(d.z) > 1e-9 ? d.z : 1e-9);
    if (toEnd < toSide && toEnd > 0) {
        const Face face = d.z < 0 ? Face{{150, 150, 150}, 5} : Face{{190, 180, 160}, 6};
        return paint(face, toEnd * d.x, d.z < 0 ? toEnd * d.y : -toEnd * d.y);
    }
    const double above = toSide * d.z - floor - kHeight / 2;
    if (std::abs(d.y) >= std::abs(d.x))
        return d.y > 0 ? paint({{200, 60, 60}, 1}, toSide * d.x, above)
                       : paint({{60, 90, 210}, 3}, -toSide * d.x, above);
    return d.x > 0 ? paint({{60, 170, 70}, 2}, -toSide * d.y, above) : paint({{200, 140, 40}, 4}, toSide * d.y, above);
}

} // namespace room
