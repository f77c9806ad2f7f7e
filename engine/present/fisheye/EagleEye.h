#pragma once

#include "engine/core/Failure.h"
#include "engine/present/fisheye/Warp.h"

#include <array>
#include <mutex>

namespace tide {

// The view of an eagle-eye stream, whose picture is a whole sphere: columns are degrees of longitude, rows of latitude.
// It is seen through a perspective view that turns, or flat, going round. Any thread may call.
class EagleEye : public WarpSource
{
public:
    explicit EagleEye(bool isFlat);

    // `yaw` to the right and `pitch` up, in radians; `zoom` narrows the view by that power of e. Hosts tell the whole
    // travel of a drag each time and of a step its own size: see the header of the engine.
    Failure rotate(double yaw, double pitch, double zoom);

    Look look(const WindowShape& shape) override;

private:
    void turn(double yaw, double pitch);
    Warp sphere(double aspect) const;
    Warp strip() const;

    const bool isFlat_;
    mutable std::mutex mutex_; // guards all below
    double yaw_ = 0.0, pitch_ = 0.0;
    double side_ = 1.0;                     // of the widest view's
    std::array<double, 2> base_{}, last_{}; // of the drag: what it began at and its travel
};

} // namespace tide
