#pragma once

#include <cmath>

namespace tide {

constexpr double kPi = 3.14159265358979323846;

// A point of a window or of a picture, 0 to 1 each way from the top left.
struct Point
{
    double x = 0.0, y = 0.0;
};

// A direction from the lens into the scene: x to the right of the picture, y down the picture, z along the axis of the
// lens. Of length 1 unless it says otherwise.
struct Ray
{
    double x = 0.0, y = 0.0, z = 1.0;
};

inline Ray operator+(const Ray& a, const Ray& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Ray operator*(double factor, const Ray& a)
{
    return {factor * a.x, factor * a.y, factor * a.z};
}

inline double dot(const Ray& a, const Ray& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Ray cross(const Ray& a, const Ray& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline Ray unit(const Ray& a)
{
    return 1.0 / std::sqrt(dot(a, a)) * a;
}

} // namespace tide
