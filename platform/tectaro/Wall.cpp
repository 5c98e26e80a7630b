#include "platform/tectaro/Wall.h"

#include "platform/tectaro/PlanGeometry.h"

#include <cmath>

namespace pluvarine {

namespace {
double sideSign(bool exteriorOnRight) {
    return exteriorOnRight ? 1.0 : -1.0;
}
} // namespace

std::vector<QPointF> Wall::exteriorFace() const {
    return plan::offsetLine(line, closed, sideSign(exteriorOnRight) * thickness / 2);
}

std::vector<QPointF> Wall::interiorFace() const {
    return plan::offsetLine(line, closed, -sideSign(exteriorOnRight) * thickness / 2);
}

int Wall::segmentCount() const {
    const int n = static_cast<int>(line.size());
    if (n < 2) {
        return 0;
    }
    return closed ? n : n - 1;
}

std::vector<QPolygonF> Wall::segmentOutlines() const {
    const std::vector<QPointF> outer = exteriorFace();
    const std::vector<QPointF> inner = interiorFace();
    std::vector<QPolygonF> outlines;
    const int n = static_cast<int>(line.size());
    for (int i = 0; i < segmentCount(); ++i) {
        const int j = (i + 1) % n;
        outlines.push_back(QPolygonF({outer[i], outer[j], inner[j], inner[i]}));
    }
    return outlines;
}

std::optional<WallHit> Wall::exteriorHit(QPointF p, double outside, double inside) const {
    const std::vector<QPointF> face = exteriorFace();
    const int n = static_cast<int>(line.size());
    std::optional<WallHit> best;
    for (int i = 0; i < segmentCount(); ++i) {
        const QPointF a = face[i];
        const QPointF b = face[(i + 1) % n];
        const double len = plan::length(b - a);
        if (len <= 0) {
            continue;
        }
        const QPointF along = (b - a) / len;
        const QPointF outward = sideSign(exteriorOnRight) * plan::rightNormal(along);
        const double t = plan::dot(p - a, along);
        const double distance = plan::dot(p - a, outward);
        if (t < 0 || t > len || distance > outside || distance < -inside) {
            continue;
        }
        if (!best || std::abs(distance) < std::abs(best->distance)) {
            best = WallHit{-1, i, a + t * along, outward, distance};
        }
    }
    return best;
}

} // namespace pluvarine
