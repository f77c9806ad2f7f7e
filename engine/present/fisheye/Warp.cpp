#include "engine/present/fisheye/Warp.h"

#include <algorithm>

namespace tide {

namespace {

constexpr double kLeastAhead = 1e-6; // of a direction that a perspective view can show

double fraction(double value)
{
    return value - std::floor(value);
}

bool isInside(Point at)
{
    return at.x >= 0.0 && at.x <= 1.0 && at.y >= 0.0 && at.y <= 1.0;
}

} // namespace

Point Warp::turned(Point at, double by) const
{
    const double angle = 2 * kPi * by;
    const double x = at.x - 0.5;
    const double y = at.y - 0.5;
    return {0.5 + std::cos(angle) * x - std::sin(angle) * y, 0.5 + std::sin(angle) * x + std::cos(angle) * y};
}

std::optional<Ray> Warp::sceneAt(Point at) const
{
    switch (kind) {
    case WarpKind::Circle:
        return lens.sceneAt(turned(at, -turn));
    case WarpKind::Perspective:
    case WarpKind::Sphere:
        return front + (2.0 * at.x - 1.0) * right + (1.0 - 2.0 * at.y) * up;
    case WarpKind::Cylinder:
    case WarpKind::Unrolled: {
        const double aside = (fraction(at.x - turn) - 0.5) * span;
        const double row = rows[0] + at.y * (rows[1] - rows[0]);
        const Ray heading = std::cos(aside) * front + std::sin(aside) * right;
        return kind == WarpKind::Cylinder ? heading + row * up : std::cos(row) * heading + std::sin(row) * up;
    }
    default:
        return std::nullopt;
    }
}

std::optional<Point> Warp::pointOf(const Ray& scene) const
{
    switch (kind) {
    case WarpKind::Circle:
        return turned(lens.positionOf(scene), turn);
    case WarpKind::Perspective:
    case WarpKind::Sphere: {
        const double ahead = dot(scene, front);
        if (ahead < kLeastAhead)
            return std::nullopt;
        const double x = dot(scene, right) / dot(right, right) / ahead;
        const double y = dot(scene, up) / dot(up, up) / ahead;
        return Point{0.5 + 0.5 * x, 0.5 - 0.5 * y};
    }
    case WarpKind::Cylinder:
    case WarpKind::Unrolled: {
        const double ahead = dot(scene, front);
        const double aside = dot(scene, right);
        const double level = std::hypot(ahead, aside);
        const double angle = level > 0.0 ? std::atan2(aside, ahead) : 0.0;
        if (std::abs(angle) > 0.5 * span + kLeastAhead)
            return std::nullopt;
        const double slope = dot(scene, up) / std::max(level, kLeastAhead);
        const double row = kind == WarpKind::Cylinder ? slope : std::atan(slope);
        return Point{fraction(angle / span + 0.5 + turn), (row - rows[0]) / (rows[1] - rows[0])};
    }
    default:
        return std::nullopt;
    }
}

std::optional<Point> Warp::pictureAt(Point at, int width, int height) const
{
    if (kind == WarpKind::Strip)
        return Point{fraction(0.5 + (at.x - 0.5) * span + turn), rows[0] + at.y * (rows[1] - rows[0])};
    const Ray scene = *sceneAt(at);
    if (kind == WarpKind::Sphere) {
        const Ray one = unit(scene);
        return Point{0.5 + std::atan2(one.x, one.z) / (2 * kPi), 0.5 + std::asin(std::clamp(one.y, -1.0, 1.0)) / kPi};
    }
    if (kind != WarpKind::Circle && !lens.sees(scene))
        return std::nullopt;
    const Point position = kind == WarpKind::Circle ? turned(at, -turn) : lens.positionOf(scene);
    const Circle circle = lens.circleIn(width, height);
    const Point place{circle.centre.x + circle.radius.x * (2.0 * position.x - 1.0),
                      circle.centre.y + circle.radius.y * (2.0 * position.y - 1.0)};
    return isInside(place) ? std::optional(place) : std::nullopt;
}

} // namespace tide
