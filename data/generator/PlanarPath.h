#pragma once

#include "data/generator/Vec3.h"

#include <vector>

namespace pluvarine {

// The centre line of a tube in the x-z plane (y = 0), made of straight runs and circular arcs,
// parametrised by its length s in millimetres. Beyond either end it runs on straight.
class PlanarPath {
public:
    // Starts at (x, 0, z) heading along (dx, 0, dz).
    PlanarPath(double x, double z, double dx, double dz);

    PlanarPath& straight(double length);
    // Turns through `degrees` on a circle of `radius`: positive turns left (counter-clockwise
    // with x to the right and z up), negative right.
    PlanarPath& arc(double radius, double degrees);

    double length() const { return m_length; }
    Vec3 point(double s) const;
    Vec3 tangent(double s) const;
    // The left normal of the tangent, in the x-z plane.
    Vec3 normal(double s) const;
    // The point at `radius` from the centre line, a fraction `turn` round from the normal towards
    // +y.
    Vec3 ring(double s, double radius, double turn) const;

private:
    struct Segment {
        double start = 0; // s at the segment's start
        double length = 0;
        double x = 0, z = 0;   // start point
        double dx = 0, dz = 0; // start heading
        double radius = 0;     // 0 for a straight run
        double sign = 0;       // +1 left turn, -1 right turn
    };

    const Segment& segmentAt(double s) const;
    static void evaluate(const Segment& seg, double t, double& x, double& z, double& dx,
                         double& dz);

    std::vector<Segment> m_segments;
    double m_x, m_z, m_dx, m_dz;
    double m_length = 0;
};

} // namespace pluvarine
