// Part files composed as the constructions place them: each opening meets its neighbour.
// The placements are written out here from the construction tables, in millimetres with the
// ground at z = 0.

#include "tests/data/GlbPart.h"

#include <gtest/gtest.h>

namespace pluvarine {
namespace {

// One placed part: stretched to `length` along z (0: as drawn), turned `degrees` about
// (0, -1, 0), reference point at (x, 0, z).
struct Placement {
    std::string stem;
    double x, z, length = 0, degrees = 0;

    Vec3 turn(const Vec3& v) const {
        const double a = degrees * std::numbers::pi / 180;
        return {v.x * std::cos(a) - v.z * std::sin(a), v.y, v.x * std::sin(a) + v.z * std::cos(a)};
    }
    Opening opening(const std::string& name) const {
        const Opening& o = GlbPart::catalogued(stem).opening(name);
        // Stretched from its drawn 500 mm.
        const Vec3 centre{o.centre.x * 1000, o.centre.y * 1000,
                          o.centre.z * (length ? 2 * length : 1000)};
        return {name, turn(centre) + Vec3{x, 0, z}, turn(o.direction), o.radius};
    }
};

// Opening `a` of part `from` meets opening `b` of part `to`: the gap along a's axis (negative:
// one reaches into the other) and the distance of b's centre from that axis, in mm; facing each
// other unless only the axes must agree (a clamp's ring, the cap's bore).
struct Joint {
    const char *from, *a, *to, *b;
    double gapLo, gapHi, lateral;
    bool facing = true;
};

// The parts of a construction by their role.
using Parts = std::map<std::string, Placement>;

const std::vector<Joint> kBendJoints = {
    {"outlet", "bottom", "upper", "top", -0.01, 0.01, 0.01},
    {"upper", "inclined", "inclined", "top", -1.5, 1.5, 1.5},
    {"inclined", "bottom", "lower", "inclined", -1.5, 1.5, 1.5},
    // The 72-degree lower bend is centred on 276.4 mm, not its 274.6: 0.9 mm overlap.
    {"lower", "bottom", "vertical", "top", -1.0, 0.01, 0.01},
    {"vertical", "top", "clamp", "ring", -1e9, 0, 1e-6, false},
    // The cap rests on the standpipe: its bore, half its height up, round the pipe's axis.
    {"standpipe", "top", "cap", "bore", 14.7 - 1e-4, 14.7 + 1e-4, 1e-6, false},
};

// The 42-degree upper kink reaches 10 mm up into the outlet, 1.5 mm off its axis; the inclined
// pipe ends inside both kinks.
const std::vector<Joint> kKinkJoints = {
    {"outlet", "bottom", "upper", "bottom", -10.01, 0.01, 1.6},
    {"upper", "inclined", "inclined", "top", -25, -5, 2.0},
    {"inclined", "bottom", "lower", "inclined", -25, -5, 2.0},
    {"lower", "bottom", "vertical", "top", -0.01, 0.01, 0.01},
};

// a, b, bLow: effective sizes of the upper and lower bend; ch, cv, kc, ks: the construction
// constants of the angle.
Parts bend(int degrees, double a, double b, double bLow, double ch, double cv, double kc, double ks,
           double H, double D) {
    const double hs = 300, lh = D - 2 * a + ch, l = lh / kc, v = l * ks;
    const double lv = H - 186.5 - 2 * b - v + cv;
    const std::string n = std::to_string(degrees);
    return {{"upper", {"Bogen_100_" + n + "_L", -(D - a / 2), H - 186.5 - b / 2}},
            {"lower", {"Bogen_100_" + n + "_R", -a / 2, H - 186.5 - b - v - bLow / 2 + cv}},
            {"inclined",
             {"Fallrohr_100_500", -(a + lh / 2 - ch / 2), H - 186.5 - b - (v - cv) / 2, l,
              double(degrees)}},
            {"vertical", {"Fallrohr_100_500", -50, lv / 2, lv}},
            {"standpipe", {"Standrohr_125_500", -50, hs / 2, hs}},
            {"outlet", {"Reinhangestutzen_100_218", -(D - 50), H - 93.25}},
            {"cap", {"Abdeckkappe_100_125", -50, hs + 14.7}},
            {"clamp", {"Rohrschelle_100", 12.7, lv}}};
}

// beta: the inclined pipe's angle from the horizontal; w: the kinks' reach from the wall;
// k: their effective height; the rest, the construction's small allowances.
Parts kink(int degrees, double beta, double w, double k, double lift, double incline, double extra,
           double upperLift, double lowerX, double upperX, double H, double W) {
    const double l = (W - w - 30) / std::cos(beta * std::numbers::pi / 180);
    const double r = std::sin(beta * std::numbers::pi / 180) * l;
    const double lv = H - 186.5 - r - k + lift;
    const std::string file = "Knick_100_" + std::to_string(degrees);
    return {{"vertical", {"Fallrohr_100_500", -50, lv / 2, lv}},
            {"inclined",
             {"Fallrohr_100_500", -W / 2, H - 186.5 - r / 2 + incline, l + extra, double(degrees)}},
            {"lower", {file, -lowerX, H - 186.5 - r - k / 2 + lift}},
            {"upper", {file, -W + upperX, H - 186.5 - k / 2 + upperLift, 0, 180}},
            {"outlet", {"Reinhangestutzen_100_218", -W + 50, H - 93.25}}};
}

// Besides the joints: the pipes stand on the ground.
TEST(Constructions, EveryOpeningMeetsItsNeighbour) {
    const std::pair<Parts, std::vector<Joint>> constructions[] = {
        {bend(72, 230.4, 274.6, 276.4, 30, 95, 0.95, 0.309, 5000, 600), kBendJoints},
        {bend(72, 230.4, 274.6, 276.4, 30, 95, 0.95, 0.309, 3200, 900), kBendJoints},
        {bend(42, 192.3, 307.3, 307.3, 75, 65, 0.669, 0.743, 5000, 500), kBendJoints},
        {bend(42, 192.3, 307.3, 307.3, 75, 65, 0.669, 0.743, 2800, 380), kBendJoints},
        {kink(72, 18, 102.1, 96.2, 10, -43.1, 0, 0, 51.05, 51.05, 3000, 300), kKinkJoints},
        {kink(72, 18, 102.1, 96.2, 10, -43.1, 0, 0, 51.05, 51.05, 4200, 190), kKinkJoints},
        {kink(42, 48, 106, 67.4, 0, -30, 30, 10, 51.5, 53, 3000, 300), kKinkJoints},
        {kink(42, 48, 106, 67.4, 0, -30, 30, 10, 51.5, 53, 4200, 190), kKinkJoints},
        // The straight downpipe 600 mm from the wall, H 3000: two clamps 1800 apart.
        {{{"outlet", {"Reinhangestutzen_100_218", -650, 3000 - 93.25}},
          {"vertical", {"Fallrohr_100_500", -650, (3000 - 186.5) / 2, 3000 - 186.5}},
          {"standpipe", {"Standrohr_125_500", -650, 150, 300}},
          {"cap", {"Abdeckkappe_100_125", -650, 300 + 14.7}},
          {"clamp", {"Rohrschelle_100", 12.7 - 600, 3000 - 549.2 + 95}},
          {"clamp2", {"Rohrschelle_100", 12.7 - 600, 3000 - 549.2 + 95 - 1800}}},
         {{"outlet", "bottom", "vertical", "top", -0.01, 0.01, 0.01},
          {"vertical", "top", "clamp", "ring", -1e9, 0, 1e-6, false},
          {"vertical", "top", "clamp2", "ring", -1e9, 0, 1e-6, false},
          {"standpipe", "top", "cap", "bore", 14.7 - 1e-4, 14.7 + 1e-4, 1e-6, false}}},
    };
    for (std::size_t i = 0; i < std::size(constructions); ++i) {
        SCOPED_TRACE("construction " + std::to_string(i));
        const auto& [p, joints] = constructions[i];
        for (const Joint& j : joints) {
            SCOPED_TRACE(std::string(j.from) + " " + j.a + " / " + j.to + " " + j.b);
            const Opening a = p.at(j.from).opening(j.a), b = p.at(j.to).opening(j.b);
            const Vec3 d = b.centre - a.centre;
            const double gap = d.dot(a.direction);
            EXPECT_TRUE(!j.facing || std::abs(a.direction.dot(b.direction) + 1) < 1e-6);
            EXPECT_TRUE(gap >= j.gapLo && gap <= j.gapHi) << gap;
            EXPECT_LE((d - a.direction * gap).length(), j.lateral);
        }
        for (const char* pipe : {"vertical", "standpipe"}) {
            EXPECT_NEAR(p.contains(pipe) ? p.at(pipe).opening("bottom").centre.z : 0, 0, 1e-4);
        }
    }
}

} // namespace
} // namespace pluvarine
