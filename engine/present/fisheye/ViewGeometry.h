#pragma once

#include "engine/present/fisheye/Mounting.h"
#include "engine/present/fisheye/Warp.h"

#include <array>
#include <optional>

namespace tide {

enum class CorrectType
{
    Circle = 0,
    View = 0x100,     // pan, tilt and zoom
    Cylinder = 0x200, // panorama on a cylinder
    Unrolled = 0x300, // panorama of the whole circle
    Whole = 0x400     // the whole picture of a lens on a wall
};

// What a host sets of a view.
struct ViewParam
{
    float x = 0.5F, y = 0.5F; // position
    float z = -0.05F;         // zoom
    float angle = 0.0F;       // radians, of what turns as a whole
    std::array<unsigned char, 4> colour{};
};

// The zoom: from -0.05, 90 degrees along the window's longer side, each 0.025 takes a tenth off what the side shows.
constexpr float kWidestZoom = -0.05F;
constexpr float kNarrowestZoom = 0.55F;

// One fisheye view in its window: the whole arithmetic between a point of the window, the scene and the position in
// the picture. Everything that must agree about it asks here: shaders, boxes, drags, scans and saved pictures.
class ViewGeometry
{
public:
    ViewGeometry(PlaceType place, CorrectType correct, const ViewParam& param, const WindowShape& shape);

    const Warp& warp() const { return warp_; }
    bool isView() const { return correct_ == CorrectType::View; }

    // Nothing beyond what the lens sees.
    std::optional<Ray> sceneAt(Point inWindow) const;
    // May lie outside of the window; nothing for what lies behind the view.
    std::optional<Point> pointOf(const Ray& scene) const;
    bool shows(const Ray& scene) const;

    // The position at which the scene that is under `from` now would be under `to`, or as near to that as an upright
    // view inside the circle comes.
    Point grabbed(Point from, Point to) const;
    // The position from which the scene at `to` would be in the middle.
    Point facing(Point to) const;
    // Where a view that stands at `position` is after its box in this window was moved. Nothing when it is not here.
    std::optional<Point> movedBox(Point position, Point from, Point to) const;

    // The border of what `view` shows, as a line in this window.
    std::vector<std::optional<Point>> outlineOf(const ViewGeometry& view) const;

private:
    Ray rayAt(Point inWindow) const;

    Mounting mounting_;
    CorrectType correct_;
    Aim aim_;
    Part part_;
    Warp warp_;
};

// The next position of a scan: `step` half turns on. On a ceiling and a floor it goes round; on a wall it goes between
// left and right and `sign` changes at the ends.
Point scanned(PlaceType place, Point position, double step, int& sign);

} // namespace tide
