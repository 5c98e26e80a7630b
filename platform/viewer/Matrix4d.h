#pragma once

#include <array>

namespace pluvarine {

// A 4 x 4 affine transform in double precision, column-major (element (r, c) at c * 4 + r),
// the layout glTF and OpenGL use. The scene keeps its placements in double precision so that
// the single-precision numbers the constructions hand over are composed without further
// rounding; the renderer converts to float at the end.
class Matrix4d {
public:
    Matrix4d(); // identity

    static Matrix4d fromColumnMajor(const std::array<double, 16>& m);
    static Matrix4d translation(double x, double y, double z);
    static Matrix4d scaling(double sx, double sy, double sz);
    // Right-hand rule about the axis (ax, ay, az) through the origin; the axis need not be unit
    // length. A zero axis gives the identity.
    static Matrix4d rotation(double ax, double ay, double az, double degrees);

    double operator()(int row, int column) const { return m_m[column * 4 + row]; }
    double& operator()(int row, int column) { return m_m[column * 4 + row]; }
    const std::array<double, 16>& columnMajor() const { return m_m; }
    std::array<float, 16> toFloat() const;

    Matrix4d operator*(const Matrix4d& other) const;
    bool operator==(const Matrix4d& other) const = default;

    std::array<double, 3> map(const std::array<double, 3>& point) const;
    std::array<double, 3> mapVector(const std::array<double, 3>& vector) const;
    std::array<double, 3> translationPart() const { return {m_m[12], m_m[13], m_m[14]}; }
    bool isIdentity() const { return *this == Matrix4d(); }

private:
    std::array<double, 16> m_m;
};

} // namespace pluvarine
