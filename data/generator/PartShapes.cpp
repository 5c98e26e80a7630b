#include "data/generator/PartShapes.h"

#include "data/generator/ProfileSweep.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>

namespace pluvarine::PartShapes {

namespace {

constexpr double kPi = std::numbers::pi;

// Every part is made for the 100 mm downpipe; walls of 1.5 mm (2 mm for the standpipe).
constexpr double kPipeRadius = 50.0;
constexpr double kPipeBore = 48.5;
constexpr int kAround = 48; // facets round a 100 mm tube: 0.1 mm chord error

double radians(double degrees) {
    return degrees * kPi / 180.0;
}

// A pressed bead: a smooth raised ring of `height` at `centre`, `halfWidth` to either side.
double bead(double s, double centre, double halfWidth, double height) {
    const double t = (s - centre) / halfWidth;
    return std::abs(t) >= 1 ? 0.0 : height * 0.5 * (1 + std::cos(kPi * t));
}

std::vector<double> joined(std::initializer_list<std::vector<double>> parts) {
    std::vector<double> result;
    for (const auto& part : parts) {
        for (double value : part) {
            if (result.empty() || value > result.back() + 1e-9) {
                result.push_back(value);
            }
        }
    }
    return result;
}

// A flat-shaded prism: the convex polygon (counter-clockwise in x-y) from z0 to z1.
void addPrism(MeshBuilder& mesh, const std::vector<std::pair<double, double>>& polygon, double z0,
              double z1) {
    const std::size_t n = polygon.size();
    for (double z : {z0, z1}) {
        const Vec3 normal{0, 0, z == z0 ? -1.0 : 1.0};
        std::vector<std::uint32_t> ring;
        for (const auto& [x, y] : polygon) {
            ring.push_back(mesh.addVertex({x, y, z}, normal));
        }
        for (std::size_t i = 1; i + 1 < n; ++i) {
            mesh.addTriangle(ring[0], ring[i], ring[i + 1]);
        }
    }
    for (std::size_t i = 0; i < n; ++i) {
        const auto [x0, y0] = polygon[i];
        const auto [x1, y1] = polygon[(i + 1) % n];
        const Vec3 normal = Vec3{y1 - y0, x0 - x1, 0}.normalized();
        mesh.addQuad(mesh.addVertex({x0, y0, z0}, normal), mesh.addVertex({x1, y1, z0}, normal),
                     mesh.addVertex({x1, y1, z1}, normal), mesh.addVertex({x0, y0, z1}, normal));
    }
}

void addBox(MeshBuilder& mesh, const Vec3& lo, const Vec3& hi) {
    addPrism(mesh, {{lo.x, lo.y}, {hi.x, lo.y}, {hi.x, hi.y}, {lo.x, hi.y}}, lo.z, hi.z);
}

// A solid round bar along z from z0 to z1.
MeshBuilder bar(double radius, double z0, double z1, int around) {
    MeshBuilder mesh;
    const PlanarPath axis(0, 0, 0, 1);
    ProfileSweep sweep(mesh, axis, around);
    sweep.line(0, z0, radius, z0);
    sweep.line(radius, z0, radius, z1);
    sweep.line(radius, z1, 0, z1);
    return mesh;
}

// Maps a model built along z onto the x axis (a proper rotation: windings stay outward).
void appendAlongX(MeshBuilder& mesh, const MeshBuilder& part, const Vec3& origin) {
    mesh.append(part, {0, 0, -1}, {0, 1, 0}, {1, 0, 0}, origin);
}

// A plain hollow pipe piece along z, centred, `length` long.
PartModel straightPipe(const std::string& name, double radius, double bore, double length) {
    PartModel part{name, {}, {}, false};
    const PlanarPath axis(0, 0, 0, 1);
    ProfileSweep sweep(part.mesh, axis, 64);
    const auto samples = ProfileSweep::steps(-length / 2, length / 2, 4);
    sweep.tube([radius](double) { return radius; }, samples, bore, samples);
    part.openings = {{"bottom", {0, 0, -length / 2}, {0, 0, -1}, radius},
                     {"top", {0, 0, length / 2}, {0, 0, 1}, radius}};
    return part;
}

// Distance field of the outlet's plate outline, a rounded rectangle centred on the axis.
double plateOutline(double x, double y) {
    constexpr double halfX = 90, halfY = 109, corner = 30;
    const double qx = std::abs(x) - (halfX - corner), qy = std::abs(y) - (halfY - corner);
    return std::hypot(std::max(qx, 0.0), std::max(qy, 0.0)) + std::min(std::max(qx, qy), 0.0) -
           corner;
}

// The outlet's plate from z0 to z1: faces from the funnel's rims (outer radius `rimBelow` at
// z0, bore radius `rimAbove` at z1) out to the outline, and its edge. Each column takes its
// direction from the funnel's rings, so the seams close.
void addPlate(MeshBuilder& mesh, const PlanarPath& axis, int around, double z0, double z1,
              double rimBelow, double rimAbove) {
    std::vector<Vec3> outline, edgeNormal;
    for (int j = 0; j < around; ++j) {
        const Vec3 dir = axis.ring(0, 1, static_cast<double>(j) / around);
        double lo = 0, hi = 200;
        for (int it = 0; it < 80; ++it) {
            const double mid = (lo + hi) / 2;
            (plateOutline(dir.x * mid, dir.y * mid) < 0 ? lo : hi) = mid;
        }
        const Vec3 p = dir * lo;
        outline.push_back(p);
        constexpr double e = 1e-5;
        edgeNormal.push_back({plateOutline(p.x + e, p.y) - plateOutline(p.x - e, p.y),
                              plateOutline(p.x, p.y + e) - plateOutline(p.x, p.y - e), 0});
    }
    const Vec3 up{0, 0, 1}, down{0, 0, -1}, atZ0{0, 0, z0}, atZ1{0, 0, z1};
    for (int j = 0; j < around; ++j) {
        const int k = (j + 1) % around;
        const double vj = static_cast<double>(j) / around, vk = static_cast<double>(k) / around;
        mesh.addQuad(mesh.addVertex(axis.ring(z1, rimAbove, vj), up),
                     mesh.addVertex(axis.ring(z1, rimAbove, vk), up),
                     mesh.addVertex(outline[k] + atZ1, up), mesh.addVertex(outline[j] + atZ1, up));
        mesh.addQuad(mesh.addVertex(axis.ring(z0, rimBelow, vj), down),
                     mesh.addVertex(axis.ring(z0, rimBelow, vk), down),
                     mesh.addVertex(outline[k] + atZ0, down),
                     mesh.addVertex(outline[j] + atZ0, down));
        mesh.addQuad(mesh.addVertex(outline[j] + atZ0, edgeNormal[j]),
                     mesh.addVertex(outline[k] + atZ0, edgeNormal[k]),
                     mesh.addVertex(outline[k] + atZ1, edgeNormal[k]),
                     mesh.addVertex(outline[j] + atZ1, edgeNormal[j]));
    }
}

} // namespace

PartModel pipe() {
    return straightPipe("Fallrohr_100_500", kPipeRadius, kPipeBore, 500);
}

PartModel standpipe() {
    return straightPipe("Standrohr_125_500", 62.5, 60.5, 500);
}

PartModel outlet() {
    // 186.5 mm high: the lower tube takes the downpipe, a funnel widens it to the plate that
    // hangs in the gutter (218 mm along the gutter, 180 mm across it).
    constexpr double half = 93.25, plate = 1.5, funnelFoot = 10, funnelTop = 77;
    constexpr int around = 96; // the plate's rounded corners need the finer division
    const double plateBottom = half - plate;
    const double holeRadius =
        kPipeBore + (funnelTop - kPipeRadius) * (half - funnelFoot) / (plateBottom - funnelFoot);

    PartModel part{"Reinhangestutzen_100_218", {}, {}, false};
    const PlanarPath axis(0, 0, 0, 1);
    ProfileSweep sweep(part.mesh, axis, around);
    sweep.line(kPipeBore, -half, kPipeRadius, -half);
    const auto outer = [](double s) { return kPipeRadius + bead(s, -55, 4, 1.5); };
    sweep.wall(outer, joined({ProfileSweep::steps(-half, -59, 2), ProfileSweep::steps(-59, -51, 16),
                              ProfileSweep::steps(-51, funnelFoot, 2)}));
    sweep.line(kPipeRadius, funnelFoot, funnelTop, plateBottom, 4);
    sweep.line(holeRadius, half, kPipeBore, funnelFoot, 4);
    sweep.line(kPipeBore, funnelFoot, kPipeBore, -half, 2);

    addPlate(part.mesh, axis, around, plateBottom, half, funnelTop, holeRadius);
    part.openings = {{"bottom", {0, 0, -half}, {0, 0, -1}, kPipeRadius}};
    return part;
}

PartModel cap() {
    // 29.4 mm high: rests on the 125 standpipe and closes it round the 100 pipe.
    constexpr double half = 14.7, bore = 50.5, skirt = 64.5, collar = 53;
    PartModel part{"Abdeckkappe_100_125", {}, {}, false};
    const PlanarPath axis(0, 0, 0, 1);
    ProfileSweep sweep(part.mesh, axis, 64);
    sweep.line(bore, -half, skirt, -half, 2);
    sweep.line(skirt, -half, skirt, -4);
    sweep.line(skirt, -4, collar, 9, 3);
    sweep.line(collar, 9, collar, half);
    sweep.line(collar, half, bore, half);
    sweep.line(bore, half, bore, -half, 2);
    part.openings = {{"bore", {0, 0, 0}, {0, 0, 1}, bore}};
    return part;
}

PartModel clamp() {
    // 233.4 mm deep along x: a 4 mm ring (108 mm across) round the pipe whose axis lies at
    // x = -62.7, and a threaded rod from the ring into the wall. Ring closure on +y, hinge on -y.
    constexpr double axisX = -62.7, inner = kPipeRadius, outer = 54, band = 12.5;
    constexpr double rodEnd = 233.4 / 2;
    PartModel part{"Rohrschelle_100", {}, {}, false};
    MeshBuilder& mesh = part.mesh;
    {
        const PlanarPath axis(axisX, 0, 0, 1);
        ProfileSweep sweep(mesh, axis, 64);
        sweep.line(inner, -band, outer - 1, -band);
        sweep.line(outer - 1, -band, outer, -band + 1);
        sweep.line(outer, -band + 1, outer, band - 1);
        sweep.line(outer, band - 1, outer - 1, band);
        sweep.line(outer - 1, band, inner, band);
        sweep.line(inner, band, inner, -band, 2);
    }
    // Boss on the wall side, hexagon nut, rod; they overlap rather than share faces.
    appendAlongX(mesh, bar(9, -12, 3, 32), {});
    MeshBuilder nut;
    std::vector<std::pair<double, double>> hexagon;
    for (int i = 0; i < 6; ++i) {
        const double a = kPi / 3 * i + kPi / 6;
        hexagon.emplace_back(9.815 * std::cos(a), 9.815 * std::sin(a));
    }
    addPrism(nut, hexagon, 2, 10);
    appendAlongX(mesh, nut, {});
    appendAlongX(mesh, bar(5, 9, rodEnd, 24), {});
    // Closure and hinge: two lugs and their bolt on each side, so that the box is centred on
    // the clamp's reference point.
    for (const double side : {1.0, -1.0}) {
        addBox(mesh, {axisX - 5, side * 57 - 7, -10}, {axisX - 2, side * 57 + 7, 10});
        addBox(mesh, {axisX + 2, side * 57 - 7, -10}, {axisX + 5, side * 57 + 7, 10});
        appendAlongX(mesh, bar(2.5, -8.5, 8.5, 16), {axisX, side * 58, 0});
    }
    part.openings = {{"ring", {axisX, 0, -band}, {0, 0, -1}, inner},
                     {"rod", {rodEnd, 0, 0}, {1, 0, 0}, 5}};
    return part;
}

PartModel bend(int degrees, bool upper) {
    // Horizontal size A and vertical size B as the bend construction uses them. The upper bend
    // takes the pipe vertically at x = 50 - A/2 on its top face and leaves along the inclined
    // pipe's axis; its ends are plain 100 mm ends, so the box is A x B over the tube itself.
    if (degrees != 72 && degrees != 42) {
        throw std::invalid_argument("no bend of " + std::to_string(degrees) + " degrees");
    }
    const double sizeA = degrees == 72 ? 230.4 : 192.3;
    const double sizeB = degrees == 72 ? 274.6 : 307.3;
    constexpr double bendRadius = 150;
    const double a = radians(degrees);
    const double x0 = kPipeRadius - sizeA / 2;
    // Straight legs before and after the arc, solved so that the far end's rim touches x = A/2
    // and z = -B/2.
    const double leg2 =
        (sizeA / 2 - kPipeRadius * std::cos(a) - x0 - bendRadius * (1 - std::cos(a))) / std::sin(a);
    const double leg1 =
        sizeB - kPipeRadius * std::sin(a) - bendRadius * std::sin(a) - leg2 * std::cos(a);
    if (leg1 < 20 || leg2 < 20) {
        throw std::logic_error("bend legs too short");
    }
    PlanarPath path(x0, sizeB / 2, 0, -1);
    path.straight(leg1).arc(bendRadius, degrees).straight(leg2);
    const double end = path.length();
    const double beadAt = end - 14;

    MeshBuilder mesh;
    ProfileSweep sweep(mesh, path, kAround);
    const auto arc = ProfileSweep::steps(leg1, leg1 + bendRadius * a, 16);
    const auto outer = [beadAt](double s) { return kPipeRadius + bead(s, beadAt, 4, 1.5); };
    sweep.tube(outer,
               joined({ProfileSweep::steps(0, leg1, 2), arc,
                       ProfileSweep::steps(leg1 + bendRadius * a, beadAt - 4, 2),
                       ProfileSweep::steps(beadAt - 4, beadAt + 4, 16),
                       ProfileSweep::steps(beadAt + 4, end, 2)}),
               kPipeBore, joined({{0, leg1}, arc, {end}}));

    std::vector<Opening> openings{{"top", {x0, 0, sizeB / 2}, {0, 0, 1}, kPipeRadius},
                                  {"inclined", path.point(end), path.tangent(end), kPipeRadius}};
    const std::string name = "Bogen_100_" + std::to_string(degrees) + (upper ? "_L" : "_R");
    if (upper) {
        return {name, mesh, openings, false};
    }
    // The lower bend is the upper one turned half round the y axis: it takes the inclined pipe
    // at its top and hands the pipe down at x = A/2 - 50, its outer surface on the wall face.
    PartModel lower{name, {}, {}, false};
    const Vec3 ex{-1, 0, 0}, ey{0, 1, 0}, ez{0, 0, -1};
    lower.mesh.append(mesh, ex, ey, ez);
    const auto turn = [&](const Vec3& p) { return ex * p.x + ey * p.y + ez * p.z; };
    lower.openings = {
        {"bottom", turn(openings[0].centre), turn(openings[0].direction), kPipeRadius},
        {"inclined", turn(openings[1].centre), turn(openings[1].direction), kPipeRadius}};
    return lower;
}

PartModel kink(int degrees) {
    // A tight elbow, k high: its lower end (the kink on top of the vertical pipe) is the plain
    // end at z = -k/2, axis at x = xv; it turns towards -x into the inclined pipe, and the rim of
    // that end reaches exactly z = +k/2. The inclined pipe's end slides into it.
    if (degrees != 72 && degrees != 42) {
        throw std::invalid_argument("no kink of " + std::to_string(degrees) + " degrees");
    }
    const double height = degrees == 72 ? 96.2 : 67.4;
    const double axisX = degrees == 72 ? 1.05 : 1.5;
    const double a = radians(degrees);
    const double bendRadius = height / std::sin(a) - kPipeRadius;
    PlanarPath path(axisX, -height / 2, 0, 1);
    path.arc(bendRadius, degrees);
    const double end = path.length();

    PartModel part{"Knick_100_" + std::to_string(degrees), {}, {}, false};
    ProfileSweep sweep(part.mesh, path, kAround);
    const auto samples = ProfileSweep::steps(0, end, 12);
    sweep.tube([](double) { return kPipeRadius; }, samples, kPipeBore, samples);
    part.openings = {{"bottom", {axisX, 0, -height / 2}, {0, 0, -1}, kPipeRadius},
                     {"inclined", path.point(end), path.tangent(end), kPipeRadius}};
    return part;
}

PartModel baseMarker() {
    PartModel part{"main", {}, {}, true};
    addBox(part.mesh, {-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5});
    return part;
}

PartModel dummy() {
    PartModel part{"dummy", {}, {}, true};
    addBox(part.mesh, {-500, -500, -500}, {500, 500, 500});
    return part;
}

std::vector<PartModel> catalogue() {
    return {outlet(),        pipe(),         standpipe(),     cap(),    clamp(),  bend(72, true),
            bend(72, false), bend(42, true), bend(42, false), kink(72), kink(42), dummy()};
}

} // namespace pluvarine::PartShapes
