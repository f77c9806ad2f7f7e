#include "engine/present/fisheye/EagleEye.h"

#include <algorithm>

namespace tide {

namespace {

constexpr double kMostTurn = 1000.0;    // radians; what is beyond it no pointer has travelled
constexpr double kWidestHalfSide = 1.0; // the tangent of half of 90 degrees
constexpr double kNarrowest = 0.1;

// Steps of a host are whole multiples of these. The travel of a pointer, in pixels, never is.
constexpr double kYawStep = 0.0026 * kPi;
constexpr double kPitchStep = 0.0013 * kPi;
constexpr double kMostSteps = 7.5;

bool isStep(double value, double unit)
{
    const double count = std::abs(value) / unit;
    return count < kMostSteps && std::abs(count - std::round(count)) < 1e-5;
}

} // namespace

EagleEye::EagleEye(bool isFlat)
    : isFlat_(isFlat)
{
}

Failure EagleEye::rotate(double yaw, double pitch, double zoom)
{
    if (!std::isfinite(zoom) || !(std::abs(yaw) <= kMostTurn) || !(std::abs(pitch) <= kMostTurn))
        return Failure::BadArgument;
    const std::lock_guard lock(mutex_);
    side_ = std::clamp(side_ * std::exp(-zoom), kNarrowest, 1.0);
    if (yaw == 0.0 && pitch == 0.0)
        return Failure::None;
    if ((pitch == 0.0 && isStep(yaw, kYawStep)) || (yaw == 0.0 && isStep(pitch, kPitchStep))) {
        last_ = {};
        turn(yaw_ + yaw, pitch_ + pitch);
        return Failure::None;
    }
    const bool goesOn = std::hypot(yaw - last_[0], pitch - last_[1]) < std::hypot(yaw, pitch);
    if (!goesOn || (last_[0] == 0.0 && last_[1] == 0.0))
        base_ = {yaw_, pitch_};
    last_ = {yaw, pitch};
    turn(base_[0] + yaw, base_[1] + pitch);
    return Failure::None;
}

void EagleEye::turn(double yaw, double pitch)
{
    yaw_ = std::remainder(yaw, 2 * kPi);
    pitch_ = std::clamp(pitch, -kPi / 2, kPi / 2);
}

WarpSource::Look EagleEye::look(const WindowShape& shape)
{
    const std::lock_guard lock(mutex_);
    return {isFlat_ ? strip() : sphere(shape.aspect()), {}};
}

Warp EagleEye::sphere(double aspect) const
{
    const Ray heading{std::sin(yaw_), 0.0, std::cos(yaw_)};
    const Ray zenith{0.0, -1.0, 0.0};
    const double longer = kWidestHalfSide * side_;
    Warp warp;
    warp.kind = WarpKind::Sphere;
    warp.front = std::cos(pitch_) * heading + std::sin(pitch_) * zenith;
    warp.right = std::min(1.0, aspect) * longer * Ray{std::cos(yaw_), 0.0, -std::sin(yaw_)};
    warp.up = std::min(1.0, 1.0 / aspect) * longer * (-std::sin(pitch_) * heading + std::cos(pitch_) * zenith);
    return warp;
}

// As high as it can be shown where the view is narrower than the picture; the pitch goes up and down in it then.
Warp EagleEye::strip() const
{
    const double middle = std::clamp(0.5 - pitch_ / kPi, 0.5 * side_, 1.0 - 0.5 * side_);
    Warp warp;
    warp.kind = WarpKind::Strip;
    warp.span = side_;
    warp.turn = yaw_ / (2 * kPi);
    warp.rows = {middle - 0.5 * side_, middle + 0.5 * side_};
    return warp;
}

} // namespace tide
