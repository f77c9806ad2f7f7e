#pragma once

#include "engine/present/fisheye/Ray.h"

namespace tide {

// Where the round picture of a lens lies in the picture of its stream, in fractions of its width and height.
struct Circle
{
    Point centre;
    Point radius;
};

// How a lens draws: equidistant, so that the distance from the centre of the circle grows evenly with the angle to the
// axis, and with half the scene in the circle. Its circle is the largest one that fits into the middle of the picture.
//
// Positions are points of the round picture: 0 to 1 across the square round the circle, whatever the picture round it.
struct LensModel
{
    double halfAngle = kPi / 2; // from the axis to the rim

    Circle circleIn(int width, int height) const;

    Ray sceneAt(Point position) const; // goes on beyond the rim in the same way
    Point positionOf(const Ray& scene) const;
    bool sees(const Ray& scene) const;

    // The nearest position inside the circle. For any number that is finite.
    Point intoCircle(Point position) const;
};

} // namespace tide
