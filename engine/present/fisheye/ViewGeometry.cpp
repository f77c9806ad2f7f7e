#include "engine/present/fisheye/ViewGeometry.h"

#include <algorithm>

namespace tide {

namespace {

constexpr double kWidestHalfSide = 1.0; // the tangent of half of 90 degrees
constexpr double kZoomRate = 4.0;
constexpr double kCylinderTilt = 70 * kPi / 180;     // what stands steeper would fill the strip by itself
constexpr double kWallCylinderTilt = 60 * kPi / 180; // there it is cut above and below
constexpr double kScanEnd = 60 * kPi / 180;
constexpr int kOutlineSteps = 24; // a side
constexpr double kFarOutside = 10.0;

Point bounded(Point at)
{
    return {std::clamp(at.x, -kFarOutside, kFarOutside), std::clamp(at.y, -kFarOutside, kFarOutside)};
}

Warp perspective(const Mounting& mounting, const Aim& aim, float zoom, double aspect)
{
    const double longer = kWidestHalfSide * std::exp(-kZoomRate * (zoom - kWidestZoom));
    Warp warp;
    warp.kind = WarpKind::Perspective;
    warp.front = mounting.rayOf(aim);
    warp.right = std::min(1.0, aspect) * longer * mounting.rayOf({aim.pan + kPi / 2, 0.0});
    warp.up = std::min(1.0, 1.0 / aspect) * longer * mounting.rayOf({aim.pan, aim.tilt + kPi / 2});
    return warp;
}

// From the highest row to the lowest one; on a wall half a turn lies from side to side.
Warp strip(const Mounting& mounting, WarpKind kind, double turn)
{
    const bool onWall = mounting.place() == PlaceType::Wall;
    Warp warp;
    warp.kind = kind;
    warp.front = mounting.front();
    warp.right = mounting.right();
    warp.up = mounting.up();
    warp.rows = {mounting.highest(), mounting.lowest()};
    if (kind == WarpKind::Cylinder) {
        const double steepest = onWall ? kWallCylinderTilt : kCylinderTilt;
        for (double& row : warp.rows)
            row = std::tan(std::clamp(row, -steepest, steepest));
    }
    warp.span = onWall ? kPi : 2 * kPi;
    warp.turn = turn;
    return warp;
}

Warp warpOf(const Mounting& mounting, CorrectType correct, const Aim& aim, const ViewParam& param, double aspect)
{
    const double turn = param.angle / (2 * kPi);
    switch (correct) {
    case CorrectType::View:
        return perspective(mounting, aim, param.z, aspect);
    case CorrectType::Cylinder:
        return strip(mounting, WarpKind::Cylinder, turn);
    case CorrectType::Unrolled:
        return strip(mounting, WarpKind::Unrolled, turn);
    case CorrectType::Whole:
        return strip(Mounting(PlaceType::Wall), WarpKind::Unrolled, turn);
    default: {
        Warp circle;
        circle.turn = turn;
        return circle;
    }
    }
}

double nearestTurn(double angle, double to)
{
    return angle - 2 * kPi * std::round((angle - to) / (2 * kPi));
}

} // namespace

ViewGeometry::ViewGeometry(PlaceType place, CorrectType correct, const ViewParam& param, const WindowShape& shape)
    : mounting_(place)
    , correct_(correct)
    , aim_(mounting_.aimOf(LensModel().sceneAt({param.x, param.y})))
    , part_(shape.part)
    , warp_(warpOf(mounting_, correct, aim_, param, shape.aspect()))
{
}

std::optional<Ray> ViewGeometry::sceneAt(Point inWindow) const
{
    const Ray scene = rayAt(inWindow);
    return warp_.lens.sees(scene) ? std::optional(scene) : std::nullopt;
}

Ray ViewGeometry::rayAt(Point inWindow) const
{
    return unit(*warp_.sceneAt(part_.ofView(bounded(inWindow))));
}

std::optional<Point> ViewGeometry::pointOf(const Ray& scene) const
{
    const std::optional<Point> point = warp_.pointOf(scene);
    return point ? std::optional(part_.inWindow(*point)) : std::nullopt;
}

bool ViewGeometry::shows(const Ray& scene) const
{
    const std::optional<Point> at = pointOf(scene);
    return at && at->x >= 0.0 && at->x <= 1.0 && at->y >= 0.0 && at->y <= 1.0;
}

// An upright view has two freedoms. The height of the scene point gives the tilt: with the ray to `to` as (ahead, aside,
// above) in the view, ahead * sin(tilt) + above * cos(tilt) is that height. What is left is a turn round the vertical.
Point ViewGeometry::grabbed(Point from, Point to) const
{
    const Ray scene = rayAt(from);
    const Ray ray = rayAt(to);
    const double ahead = dot(ray, warp_.front);
    const double aside = dot(ray, unit(warp_.right));
    const double above = dot(ray, unit(warp_.up));
    const double height = dot(scene, mounting_.up());

    const double offset = std::atan2(above, ahead);
    const double rise = std::asin(std::clamp(height / std::hypot(ahead, above), -1.0, 1.0));
    const double solutions[] = {nearestTurn(rise - offset, aim_.tilt), nearestTurn(kPi - rise - offset, aim_.tilt)};
    const bool first = std::abs(solutions[0] - aim_.tilt) <= std::abs(solutions[1] - aim_.tilt);
    const double tilt = std::clamp(solutions[first ? 0 : 1], mounting_.lowest(), mounting_.highest());

    const double level = ahead * std::cos(tilt) - above * std::sin(tilt);
    const double pan = mounting_.aimOf(scene).pan - std::atan2(aside, level);
    return mounting_.positionOf({pan, tilt}, warp_.lens);
}

Point ViewGeometry::facing(Point to) const
{
    return mounting_.positionOf(mounting_.aimOf(rayAt(to)), warp_.lens);
}

std::optional<Point> ViewGeometry::movedBox(Point position, Point from, Point to) const
{
    const std::optional<Point> box = pointOf(warp_.lens.sceneAt(position));
    if (!box)
        return std::nullopt;
    const Point moved{box->x + to.x - from.x, box->y + to.y - from.y};
    Point ofView = part_.ofView(bounded(moved));
    if (warp_.kind != WarpKind::Circle)
        ofView.y = std::clamp(ofView.y, 0.0, 1.0);
    return mounting_.positionOf(mounting_.aimOf(unit(*warp_.sceneAt(ofView))), warp_.lens);
}

std::vector<std::optional<Point>> ViewGeometry::outlineOf(const ViewGeometry& view) const
{
    constexpr Point corners[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}};
    std::vector<std::optional<Point>> line;
    for (int side = 0; side < 4; ++side) {
        const Point a = corners[side];
        const Point b = corners[side + 1];
        for (int step = side == 0 ? 0 : 1; step <= kOutlineSteps; ++step) {
            const double share = static_cast<double>(step) / kOutlineSteps;
            line.push_back(pointOf(view.rayAt({a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)})));
        }
    }
    return line;
}

Point scanned(PlaceType place, Point position, double step, int& sign)
{
    const Mounting mounting(place);
    const LensModel lens;
    Aim aim = mounting.aimOf(lens.sceneAt(lens.intoCircle(position)));
    double pan = aim.pan + sign * step * kPi;
    if (place == PlaceType::Wall && std::abs(pan) > kScanEnd && std::abs(pan) > std::abs(aim.pan)) {
        sign = -sign;
        pan = aim.pan + sign * step * kPi;
    }
    aim.pan = pan;
    return mounting.positionOf(aim, lens);
}

} // namespace tide
