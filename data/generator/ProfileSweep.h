#pragma once

#include "data/generator/MeshBuilder.h"
#include "data/generator/PlanarPath.h"

#include <functional>
#include <vector>

namespace pluvarine {

// Sweeps a closed cross-section profile round a centre line: a profile point (radius, s) becomes
// the circle of that radius about the path point at length s. The pieces must be added in
// counter-clockwise order of the profile (radius to the right, s upwards), i.e. with the solid on
// the left; each piece is its own smooth surface and pieces meet at creases.
class ProfileSweep {
public:
    ProfileSweep(MeshBuilder& mesh, const PlanarPath& path, int around);

    // The straight profile edge from (r0, s0) to (r1, s1), in `steps` equal parts.
    void line(double r0, double s0, double r1, double s1, int steps = 1);
    // A wall at radius(s), sampled at `ss` in profile order (ascending for an outer wall,
    // descending for a bore).
    void wall(const std::function<double(double)>& radius, const std::vector<double>& ss);

    // A hollow tube from s0 to s1: end faces, outer wall at outer(s) sampled at `outerSamples`
    // (ascending, from s0 to s1), and a bore of radius `bore` sampled at `boreSamples`.
    void tube(const std::function<double(double)>& outer, const std::vector<double>& outerSamples,
              double bore, const std::vector<double>& boreSamples);

    // n + 1 equally spaced values from a to b.
    static std::vector<double> steps(double a, double b, int n);

private:
    MeshBuilder& m_mesh;
    const PlanarPath& m_path;
    int m_around;
};

} // namespace pluvarine
