#include "platform/viewer/Matrix4d.h"

#include <cmath>
#include <numbers>

namespace pluvarine {

Matrix4d::Matrix4d() : m_m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1} {}

Matrix4d Matrix4d::fromColumnMajor(const std::array<double, 16>& m) {
    Matrix4d result;
    result.m_m = m;
    return result;
}

Matrix4d Matrix4d::translation(double x, double y, double z) {
    Matrix4d result;
    result(0, 3) = x;
    result(1, 3) = y;
    result(2, 3) = z;
    return result;
}

Matrix4d Matrix4d::scaling(double sx, double sy, double sz) {
    Matrix4d result;
    result(0, 0) = sx;
    result(1, 1) = sy;
    result(2, 2) = sz;
    return result;
}

Matrix4d Matrix4d::rotation(double ax, double ay, double az, double degrees) {
    const double length = std::sqrt(ax * ax + ay * ay + az * az);
    if (length == 0) {
        return {};
    }
    const double x = ax / length, y = ay / length, z = az / length;
    const double radians = degrees * std::numbers::pi / 180;
    const double c = std::cos(radians), s = std::sin(radians), t = 1 - c;
    // Rodrigues' formula.
    Matrix4d r;
    r(0, 0) = t * x * x + c;
    r(0, 1) = t * x * y - s * z;
    r(0, 2) = t * x * z + s * y;
    r(1, 0) = t * x * y + s * z;
    r(1, 1) = t * y * y + c;
    r(1, 2) = t * y * z - s * x;
    r(2, 0) = t * x * z - s * y;
    r(2, 1) = t * y * z + s * x;
    r(2, 2) = t * z * z + c;
    return r;
}

std::array<float, 16> Matrix4d::toFloat() const {
    std::array<float, 16> result{};
    for (int i = 0; i < 16; ++i) {
        result[i] = static_cast<float>(m_m[i]);
    }
    return result;
}

Matrix4d Matrix4d::operator*(const Matrix4d& other) const {
    Matrix4d result;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            double sum = 0;
            for (int k = 0; k < 4; ++k) {
                sum += (*this)(r, k) * other(k, c);
            }
            result(r, c) = sum;
        }
    }
    return result;
}

std::array<double, 3> Matrix4d::map(const std::array<double, 3>& p) const {
    const auto v = mapVector(p);
    return {v[0] + m_m[12], v[1] + m_m[13], v[2] + m_m[14]};
}

std::array<double, 3> Matrix4d::mapVector(const std::array<double, 3>& v) const {
    return {m_m[0] * v[0] + m_m[4] * v[1] + m_m[8] * v[2],
            m_m[1] * v[0] + m_m[5] * v[1] + m_m[9] * v[2],
            m_m[2] * v[0] + m_m[6] * v[1] + m_m[10] * v[2]};
}

} // namespace pluvarine
