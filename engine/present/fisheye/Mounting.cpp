#include "engine/present/fisheye/Mounting.h"

#include <algorithm>

namespace tide {

namespace {

constexpr double kOffTheAxis = 0.001;
constexpr double kQuarter = kPi / 2;

struct Row
{
    Ray up, front;
    double lowest, highest;
};

const Row& rowOf(PlaceType place)
{
    static const Row wall{{0, -1, 0}, {0, 0, 1}, -kQuarter, kQuarter};
    static const Row floor{{0, 0, 1}, {0, 1, 0}, 0.0, kQuarter};
    static const Row ceiling{{0, 0, -1}, {0, -1, 0}, -kQuarter, 0.0};
    return place == PlaceType::Wall ? wall : place == PlaceType::Floor ? floor : ceiling;
}

} // namespace

Mounting::Mounting(PlaceType place)
    : place_(place)
    , up_(rowOf(place).up)
    , front_(rowOf(place).front)
    , right_(cross(front_, up_))
    , lowest_(rowOf(place).lowest)
    , highest_(rowOf(place).highest)
{
}

Ray Mounting::rayOf(const Aim& aim) const
{
    const Ray heading = std::cos(aim.pan) * front_ + std::sin(aim.pan) * right_;
    return std::cos(aim.tilt) * heading + std::sin(aim.tilt) * up_;
}

Aim Mounting::aimOf(const Ray& scene) const
{
    const double ahead = dot(scene, front_);
    const double aside = dot(scene, right_);
    const double level = std::hypot(ahead, aside);
    return {level > 0.0 ? std::atan2(aside, ahead) : 0.0, std::atan2(dot(scene, up_), level)};
}

Point Mounting::positionOf(Aim aim, const LensModel& lens) const
{
    const double margin = place_ == PlaceType::Wall ? 0.0 : kOffTheAxis;
    aim.tilt = std::clamp(aim.tilt, std::max(lowest_, margin - kQuarter), std::min(highest_, kQuarter - margin));
    return lens.intoCircle(lens.positionOf(rayOf(aim)));
}

} // namespace tide
