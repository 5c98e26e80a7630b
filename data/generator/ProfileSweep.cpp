#include "data/generator/ProfileSweep.h"

#include <algorithm>

namespace pluvarine {

ProfileSweep::ProfileSweep(MeshBuilder& mesh, const PlanarPath& path, int around)
    : m_mesh(mesh), m_path(path), m_around(around) {}

void ProfileSweep::line(double r0, double s0, double r1, double s1, int steps) {
    m_mesh.addPeriodicSurface(ProfileSweep::steps(0, 1, steps), m_around, [&](double t, double v) {
        return m_path.ring(s0 + (s1 - s0) * t, r0 + (r1 - r0) * t, v);
    });
}

void ProfileSweep::wall(const std::function<double(double)>& radius,
                        const std::vector<double>& ss) {
    m_mesh.addPeriodicSurface(ss, m_around,
                              [&](double s, double v) { return m_path.ring(s, radius(s), v); });
}

void ProfileSweep::tube(const std::function<double(double)>& outer,
                        const std::vector<double>& outerSamples, double bore,
                        const std::vector<double>& boreSamples) {
    const double s0 = outerSamples.front(), s1 = outerSamples.back();
    line(bore, s0, outer(s0), s0);
    wall(outer, outerSamples);
    line(outer(s1), s1, bore, s1);
    std::vector<double> down(boreSamples.rbegin(), boreSamples.rend());
    wall([bore](double) { return bore; }, down);
}

std::vector<double> ProfileSweep::steps(double a, double b, int n) {
    std::vector<double> result;
    for (int i = 0; i <= n; ++i) {
        result.push_back(i == n ? b : a + (b - a) * i / n);
    }
    return result;
}

} // namespace pluvarine
