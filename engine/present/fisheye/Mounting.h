#pragma once

#include "engine/present/fisheye/LensModel.h"

namespace tide {

enum class PlaceType
{
    Wall = 1,
    Floor = 2,
    Ceiling = 3
};

// Where a view looks: `pan` to the right of the mounting's front, `tilt` above its horizon, in radians.
struct Aim
{
    double pan = 0.0, tilt = 0.0;
};

// How a lens hangs in the room, so that what stands upright there stands upright in a view.
//
// On a wall the axis is level and up is up in the picture. On a ceiling the axis points down, on a floor up; the rim is
// the horizon then, and the front is at the top of the picture on a ceiling and at its bottom on a floor, so that a view
// along the axis stands as the picture does.
class Mounting
{
public:
    explicit Mounting(PlaceType place);

    PlaceType place() const { return place_; }
    const Ray& front() const { return front_; }
    const Ray& right() const { return right_; }
    const Ray& up() const { return up_; }
    double lowest() const { return lowest_; } // tilt that the lens sees
    double highest() const { return highest_; }

    Ray rayOf(const Aim& aim) const;
    Aim aimOf(const Ray& scene) const; // pan is 0 straight up and straight down

    // The view's position, inside the circle. On a ceiling or a floor it keeps off the very centre by a hair, where a
    // position could not tell the pan.
    Point positionOf(Aim aim, const LensModel& lens) const;

private:
    PlaceType place_;
    Ray up_, front_, right_;
    double lowest_, highest_;
};

} // namespace tide
