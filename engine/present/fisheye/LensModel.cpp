#include "engine/present/fisheye/LensModel.h"

#include <algorithm>

namespace tide {

Circle LensModel::circleIn(int width, int height) const
{
    const double radius = 0.5 * std::min(width, height);
    return {{0.5, 0.5}, {radius / std::max(1, width), radius / std::max(1, height)}};
}

Ray LensModel::sceneAt(Point position) const
{
    const double x = 2.0 * position.x - 1.0;
    const double y = 2.0 * position.y - 1.0;
    const double away = std::hypot(x, y);
    if (away == 0.0)
        return {0.0, 0.0, 1.0};
    const double angle = std::min(away * halfAngle, kPi);
    return {std::sin(angle) * x / away, std::sin(angle) * y / away, std::cos(angle)};
}

Point LensModel::positionOf(const Ray& scene) const
{
    const double across = std::hypot(scene.x, scene.y);
    if (across == 0.0)
        return {0.5, 0.5};
    const double away = std::atan2(across, scene.z) / halfAngle;
    return {0.5 + 0.5 * away * scene.x / across, 0.5 + 0.5 * away * scene.y / across};
}

bool LensModel::sees(const Ray& scene) const
{
    return std::atan2(std::hypot(scene.x, scene.y), scene.z) <= halfAngle;
}

Point LensModel::intoCircle(Point position) const
{
    const double away = std::hypot(position.x - 0.5, position.y - 0.5);
    if (away <= 0.5)
        return position;
    return {0.5 + 0.5 * (position.x - 0.5) / away, 0.5 + 0.5 * (position.y - 0.5) / away};
}

} // namespace tide
