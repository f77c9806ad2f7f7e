#pragma once

#include "engine/present/fisheye/LensModel.h"

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace tide {

enum class WarpKind
{
    Circle,      // the round picture as it is, turned
    Perspective, // a plane in front of the lens: what is straight stays straight
    Cylinder,    // a cylinder round the lens: what stands upright keeps its shape
    Unrolled,    // rows of the same angle each
    Sphere,      // a perspective view into a picture of the whole sphere
    Strip        // a picture of the whole sphere, flat, going round
};
constexpr std::size_t kWarpKinds = 6;

// How the points of a window lie in a picture. The shaders have the same arithmetic with the same numbers.
struct Warp
{
    WarpKind kind = WarpKind::Circle;
    LensModel lens;
    // Perspective and Sphere: the view's axis and its half sides, on a plane at distance 1.
    // Cylinder and Unrolled: the middle of the strip, a quarter turn to the right, and up.
    Ray front{0, 0, 1}, right{1, 0, 0}, up{0, -1, 0};
    // The first and the last row. Unrolled: radians above the horizon. Cylinder: their tangents. Strip: of the picture.
    std::array<double, 2> rows{0.0, 1.0};
    double span = 2 * kPi; // radians from side to side. Strip: columns of the picture, 0 to 1
    double turn = 0.0;     // of the whole strip, or of the circle, to the right; 1 is all the way round

    bool isOfLens() const { return kind != WarpKind::Sphere && kind != WarpKind::Strip; }

    // Where a point of the window looks; nothing for a strip. Longer than 1.
    std::optional<Ray> sceneAt(Point at) const;
    // The other way round; nothing for what a window of any size would not show.
    std::optional<Point> pointOf(const Ray& scene) const;
    // The point of a picture of that size that a point of the window shows; nothing where it stays black.
    std::optional<Point> pictureAt(Point at, int width, int height) const;

private:
    Point turned(Point at, double by) const;
};

// The part of a view that fills its window.
struct Part
{
    double left = 0.0, top = 0.0, right = 1.0, bottom = 1.0;

    Point ofView(Point inWindow) const
    {
        return {left + inWindow.x * (right - left), top + inWindow.y * (bottom - top)};
    }
    Point inWindow(Point ofView) const
    {
        return {(ofView.x - left) / (right - left), (ofView.y - top) / (bottom - top)};
    }
};

// A line over a picture, in points of the window; it is broken where there is nothing.
struct Outline
{
    std::vector<std::optional<Point>> points;
    std::array<unsigned char, 4> colour{}; // red, green, blue, alpha
    float width = 1.0F;
};

struct WindowShape
{
    int width = 4, height = 3;
    Part part;

    double aspect() const { return static_cast<double>(width) / height; }
};

// What bends the picture of one window. Called on the render thread before each drawing; holds no lock meanwhile that
// anybody keeps for long.
class WarpSource
{
public:
    struct Look
    {
        Warp warp;
        std::vector<Outline> outlines;
    };

    virtual ~WarpSource() = default;
    virtual Look look(const WindowShape& shape) = 0;
};

} // namespace tide
