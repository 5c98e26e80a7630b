#include "data/generator/PlanarPath.h"

#include <cmath>
#include <numbers>

namespace pluvarine {

PlanarPath::PlanarPath(double x, double z, double dx, double dz) : m_x(x), m_z(z) {
    const double l = std::hypot(dx, dz);
    m_dx = dx / l;
    m_dz = dz / l;
}

PlanarPath& PlanarPath::straight(double length) {
    Segment seg{m_length, length, m_x, m_z, m_dx, m_dz, 0, 0};
    m_segments.push_back(seg);
    evaluate(seg, length, m_x, m_z, m_dx, m_dz);
    m_length += length;
    return *this;
}

PlanarPath& PlanarPath::arc(double radius, double degrees) {
    const double sweep = std::abs(degrees) * std::numbers::pi / 180.0;
    Segment seg{m_length, radius * sweep, m_x, m_z, m_dx, m_dz, radius, degrees < 0 ? -1.0 : 1.0};
    m_segments.push_back(seg);
    evaluate(seg, seg.length, m_x, m_z, m_dx, m_dz);
    m_length += seg.length;
    return *this;
}

void PlanarPath::evaluate(const Segment& seg, double t, double& x, double& z, double& dx,
                          double& dz) {
    if (seg.radius == 0) {
        x = seg.x + seg.dx * t;
        z = seg.z + seg.dz * t;
        dx = seg.dx;
        dz = seg.dz;
        return;
    }
    // Centre on the turning side; the heading turns by t / radius.
    const double nx = -seg.dz * seg.sign, nz = seg.dx * seg.sign;
    const double cx = seg.x + nx * seg.radius, cz = seg.z + nz * seg.radius;
    const double phi = t / seg.radius * seg.sign;
    const double c = std::cos(phi), s = std::sin(phi);
    // Rotate the start offset (start - centre) and the heading by phi.
    const double ox = seg.x - cx, oz = seg.z - cz;
    x = cx + ox * c - oz * s;
    z = cz + ox * s + oz * c;
    dx = seg.dx * c - seg.dz * s;
    dz = seg.dx * s + seg.dz * c;
}

const PlanarPath::Segment& PlanarPath::segmentAt(double s) const {
    for (const Segment& seg : m_segments) {
        if (s < seg.start + seg.length) {
            return seg;
        }
    }
    return m_segments.back();
}

Vec3 PlanarPath::point(double s) const {
    if (m_segments.empty()) {
        return {m_x + m_dx * s, 0, m_z + m_dz * s};
    }
    double x, z, dx, dz;
    const Segment& first = m_segments.front();
    if (s < 0) {
        return {first.x + first.dx * s, 0, first.z + first.dz * s};
    }
    if (s > m_length) {
        return {m_x + m_dx * (s - m_length), 0, m_z + m_dz * (s - m_length)};
    }
    const Segment& seg = segmentAt(s);
    evaluate(seg, s - seg.start, x, z, dx, dz);
    return {x, 0, z};
}

Vec3 PlanarPath::tangent(double s) const {
    if (m_segments.empty() || s > m_length) {
        return {m_dx, 0, m_dz};
    }
    if (s < 0) {
        return {m_segments.front().dx, 0, m_segments.front().dz};
    }
    double x, z, dx, dz;
    const Segment& seg = segmentAt(s);
    evaluate(seg, s - seg.start, x, z, dx, dz);
    return {dx, 0, dz};
}

Vec3 PlanarPath::normal(double s) const {
    const Vec3 t = tangent(s);
    return {-t.z, 0, t.x};
}

Vec3 PlanarPath::ring(double s, double radius, double turn) const {
    const double angle = 2 * std::numbers::pi * turn;
    return point(s) + normal(s) * (radius * std::cos(angle)) + Vec3{0, radius * std::sin(angle), 0};
}

} // namespace pluvarine
