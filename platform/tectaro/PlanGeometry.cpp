#include "platform/tectaro/PlanGeometry.h"

#include <algorithm>
#include <cmath>

namespace pluvarine::plan {

double dot(QPointF a, QPointF b) {
    return a.x() * b.x() + a.y() * b.y();
}

double cross(QPointF a, QPointF b) {
    return a.x() * b.y() - a.y() * b.x();
}

double length(QPointF v) {
    return std::hypot(v.x(), v.y());
}

QPointF unit(QPointF v) {
    const double l = length(v);
    return l > 0 ? v / l : QPointF();
}

QPointF rightNormal(QPointF direction) {
    return unit(QPointF(direction.y(), -direction.x()));
}

double distanceToSegment(QPointF p, QPointF a, QPointF b) {
    const QPointF ab = b - a;
    const double l2 = dot(ab, ab);
    double t = l2 > 0 ? dot(p - a, ab) / l2 : 0.0;
    t = std::clamp(t, 0.0, 1.0);
    return length(p - (a + t * ab));
}

double distanceToOutline(const QPolygonF& polygon, QPointF p) {
    double best = INFINITY;
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        best = std::min(best, distanceToSegment(p, polygon[i], polygon[(i + 1) % polygon.size()]));
    }
    return best;
}

double signedArea2(const QPolygonF& polygon) {
    double sum = 0;
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        sum += cross(polygon[i], polygon[(i + 1) % polygon.size()]);
    }
    return sum;
}

std::vector<QPointF> offsetLine(const std::vector<QPointF>& line, bool closed, double offset) {
    const std::size_t n = line.size();
    std::vector<QPointF> result;
    if (n < 2) {
        return result;
    }
    const std::size_t segments = closed ? n : n - 1;
    auto direction = [&](std::size_t i) { return line[(i + 1) % n] - line[i]; };
    result.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        const bool hasBefore = closed || i > 0;
        const bool hasAfter = closed || i + 1 < n;
        const std::size_t before = (i + segments - 1) % segments;
        const std::size_t after = i % segments;
        if (!hasBefore) {
            result.push_back(line[i] + offset * rightNormal(direction(0)));
            continue;
        }
        if (!hasAfter) {
            result.push_back(line[i] + offset * rightNormal(direction(segments - 1)));
            continue;
        }
        // The mitre: along the sum of the two normals, long enough to reach both offset
        // lines; exact for square corners, so faces on round coordinates stay round.
        const QPointF n1 = rightNormal(direction(before));
        const QPointF n2 = rightNormal(direction(after));
        const double denominator = 1.0 + dot(n1, n2);
        if (denominator < 1e-9) {
            result.push_back(line[i] + offset * n2); // the line turns back on itself
            continue;
        }
        result.push_back(line[i] + (offset / denominator) * (n1 + n2));
    }
    return result;
}

std::vector<std::array<int, 3>> triangulate(const QPolygonF& polygon) {
    std::vector<std::array<int, 3>> triangles;
    std::vector<int> remaining;
    for (int i = 0; i < polygon.size(); ++i) {
        remaining.push_back(i);
    }
    // Work counter-clockwise so that an ear is a left turn.
    if (signedArea2(polygon) < 0) {
        std::reverse(remaining.begin(), remaining.end());
    }
    auto inside = [&](QPointF p, QPointF a, QPointF b, QPointF c) {
        return cross(b - a, p - a) > 0 && cross(c - b, p - b) > 0 && cross(a - c, p - c) > 0;
    };
    std::size_t guard = remaining.size() * remaining.size() + 3;
    while (remaining.size() > 3 && guard-- > 0) {
        const std::size_t n = remaining.size();
        bool clipped = false;
        for (std::size_t i = 0; i < n; ++i) {
            const int ia = remaining[(i + n - 1) % n];
            const int ib = remaining[i];
            const int ic = remaining[(i + 1) % n];
            const QPointF a = polygon[ia], b = polygon[ib], c = polygon[ic];
            if (cross(b - a, c - b) <= 0) {
                continue; // reflex or straight: not an ear
            }
            bool empty = true;
            for (int j : remaining) {
                if (j != ia && j != ib && j != ic && inside(polygon[j], a, b, c)) {
                    empty = false;
                    break;
                }
            }
            if (empty) {
                triangles.push_back({ia, ib, ic});
                remaining.erase(remaining.begin() + static_cast<std::ptrdiff_t>(i));
                clipped = true;
                break;
            }
        }
        if (!clipped) {
            break; // degenerate outline: give up on the rest rather than loop
        }
    }
    if (remaining.size() == 3) {
        triangles.push_back({remaining[0], remaining[1], remaining[2]});
    }
    return triangles;
}

} // namespace pluvarine::plan
