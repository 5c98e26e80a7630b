"""Plan geometry in millimetres: x east, y north, counter-clockwise positive."""

import math


def dot(a, b):
    return a[0] * b[0] + a[1] * b[1]


def sub(a, b):
    return (a[0] - b[0], a[1] - b[1])


def unit(v):
    length = math.hypot(v[0], v[1])
    return (v[0] / length, v[1] / length) if length > 0 else (0.0, 0.0)


def right_normal(direction):
    """The unit normal on the right of a running direction."""
    return unit((direction[1], -direction[0]))


def signed_area2(points):
    """Twice the signed area: positive for a counter-clockwise polygon."""
    n = len(points)
    return sum(points[i][0] * points[(i + 1) % n][1] - points[(i + 1) % n][0] * points[i][1]
               for i in range(n))


def distance_to_segment(p, a, b):
    ab = sub(b, a)
    l2 = dot(ab, ab)
    t = max(0.0, min(1.0, dot(sub(p, a), ab) / l2)) if l2 > 0 else 0.0
    return math.hypot(p[0] - a[0] - t * ab[0], p[1] - a[1] - t * ab[1])


def contains(polygon, p, tolerance=0.0):
    """p inside the polygon (even-odd), or within `tolerance` of its outline."""
    inside = False
    n = len(polygon)
    for i in range(n):
        a, b = polygon[i], polygon[(i + 1) % n]
        if (a[1] > p[1]) != (b[1] > p[1]):
            x = a[0] + (p[1] - a[1]) * (b[0] - a[0]) / (b[1] - a[1])
            if p[0] < x:
                inside = not inside
    if inside:
        return True
    return any(distance_to_segment(p, polygon[i], polygon[(i + 1) % n]) <= tolerance
               for i in range(n))


def line_intersection(p1, d1, p2, d2):
    """Where the line through p1 along d1 meets the line through p2 along d2, or None."""
    cross = d1[0] * d2[1] - d1[1] * d2[0]
    if abs(cross) < 1e-12:
        return None
    t = ((p2[0] - p1[0]) * d2[1] - (p2[1] - p1[1]) * d2[0]) / cross
    return (p1[0] + t * d1[0], p1[1] + t * d1[1])


def offset_line(line, closed, offset):
    """The line moved sideways by `offset` (positive: to the right), with mitred corners."""
    n = len(line)
    segments = n if closed else n - 1
    direction = [sub(line[(i + 1) % n], line[i]) for i in range(segments)]
    result = []
    for i in range(n):
        if not closed and i == 0:
            nrm = right_normal(direction[0])
            result.append((line[i][0] + offset * nrm[0], line[i][1] + offset * nrm[1]))
            continue
        if not closed and i == n - 1:
            nrm = right_normal(direction[-1])
            result.append((line[i][0] + offset * nrm[0], line[i][1] + offset * nrm[1]))
            continue
        n1 = right_normal(direction[(i - 1) % segments])
        n2 = right_normal(direction[i % segments])
        denominator = 1.0 + dot(n1, n2)
        if denominator < 1e-9:
            result.append((line[i][0] + offset * n2[0], line[i][1] + offset * n2[1]))
            continue
        k = offset / denominator
        result.append((line[i][0] + k * (n1[0] + n2[0]), line[i][1] + k * (n1[1] + n2[1])))
    return result


def direction_degrees(outward):
    """The host's direction of a plan vector: (sin d, -cos d) points along it; 0 <= d < 360.

    Rounded to 1e-9 degrees so that exact sides (0, 90, 180, 270) stay exact."""
    d = math.degrees(math.atan2(outward[0], -outward[1])) % 360.0
    d = round(d, 9)
    return 0.0 if d >= 360.0 else d
