#pragma once

#include <cmath>

namespace pluvarine {

// A point or direction in the scene frame (x towards the wall, y along it, z up).
struct Vec3 {
    double x = 0;
    double y = 0;
    double z = 0;

    Vec3 operator+(const Vec3& o) const { return {x + o.x, y + o.y, z + o.z}; }
    Vec3 operator-(const Vec3& o) const { return {x - o.x, y - o.y, z - o.z}; }
    Vec3 operator-() const { return {-x, -y, -z}; }
    Vec3 operator*(double f) const { return {x * f, y * f, z * f}; }
    double dot(const Vec3& o) const { return x * o.x + y * o.y + z * o.z; }
    Vec3 cross(const Vec3& o) const {
        return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
    }
    double length() const { return std::sqrt(dot(*this)); }
    Vec3 normalized() const {
        const double l = length();
        return l > 0 ? *this * (1.0 / l) : Vec3{};
    }
};

} // namespace pluvarine
