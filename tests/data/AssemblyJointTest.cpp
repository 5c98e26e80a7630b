// Part files composed as the constructions place them: each opening meets its neighbour.
// The placements are written out here from the construction tables (heights in mm above the
// ground, scene metres with the origin at half the height).

#include "tests/data/GlbPart.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace pluvarine {
namespace {

// One placed part: stretched along z, turned `degrees` about (0, -1, 0), reference point at
// (x, 0, z).
struct Placement {
    std::string stem;
    double x;
    double z;
    double scaleZ = 1;
    double degrees = 0;

    Vec3 turn(const Vec3& v) const {
        const double a = degrees * std::numbers::pi / 180;
        return {v.x * std::cos(a) - v.z * std::sin(a), v.y, v.x * std::sin(a) + v.z * std::cos(a)};
    }
    Vec3 point(const Vec3& local) const {
        return turn({local.x, local.y, local.z * scaleZ}) + Vec3{x, 0, z};
    }
};

const GlbPart& part(const std::string& stem) {
    return GlbPart::catalogued(stem);
}

Opening placed(const Placement& at, const std::string& name) {
    const Opening& o = part(at.stem).opening(name);
    return {name, at.point(o.centre), at.turn(o.direction), o.radius};
}

// How two openings meet: gap along the first one's axis (negative: one reaches into the other),
// the second centre's distance from that axis, and whether they face each other.
struct Meeting {
    double gapMm;
    double lateralMm;
    double facing; // -1 when the directions are opposite
};

Meeting meet(const Opening& a, const Opening& b) {
    const Vec3 d = b.centre - a.centre;
    const double gap = d.dot(a.direction);
    return {gap * 1000, (d - a.direction * gap).length() * 1000, a.direction.dot(b.direction)};
}

void expectMeeting(const Meeting& m, double gapLo, double gapHi, double lateral) {
    EXPECT_NEAR(m.facing, -1.0, 1e-6);
    EXPECT_GE(m.gapMm, gapLo);
    EXPECT_LE(m.gapMm, gapHi);
    EXPECT_LE(m.lateralMm, lateral);
}

struct BendCase {
    int degrees;
    double a, b, bLow, ch, cv, kc, ks;
    double heightH, wallOffset;
};

struct BendAssembly {
    Placement upper, lower, inclined, vertical, standpipe, outlet, cap, topClamp;
};

BendAssembly bendAssembly(const BendCase& c) {
    const double H = c.heightH, D = c.wallOffset, hs = 300, h = H / 2000;
    const double lh = D - 2 * c.a + c.ch, l = lh / c.kc, v = l * c.ks;
    const double lv = H - 186.5 - 2 * c.b - v + c.cv;
    const std::string n = std::to_string(c.degrees);
    return {
        {"Bogen_100_" + n + "_L", -(D - c.a / 2) / 1000, (H - 186.5 - c.b / 2) / 1000 - h},
        {"Bogen_100_" + n + "_R", -(c.a / 2) / 1000,
         (H - 186.5 - c.b - v - c.bLow / 2 + c.cv) / 1000 - h},
        {"Fallrohr_100_500", -(c.a + lh / 2 - c.ch / 2) / 1000,
         (H - 186.5 - c.b - (v - c.cv) / 2) / 1000 - h, l / 500, double(c.degrees)},
        {"Fallrohr_100_500", -0.05, lv / 2000 - h, lv / 500},
        {"Standrohr_125_500", -0.05, hs / 2000 - h, hs / 500},
        {"Reinhangestutzen_100_218", -(D - 50) / 1000, (H - 93.25) / 1000 - h},
        {"Abdeckkappe_100_125", -0.05, (hs + 14.7) / 1000 - h},
        {"Rohrschelle_100", 0.0127, lv / 1000 - h},
    };
}

class BendJoints : public ::testing::TestWithParam<BendCase> {};

TEST_P(BendJoints, OutletSitsOnTheUpperBend) {
    const auto p = bendAssembly(GetParam());
    expectMeeting(meet(placed(p.outlet, "bottom"), placed(p.upper, "top")), -0.01, 0.01, 0.01);
}

TEST_P(BendJoints, InclinedPipeRunsFromBendToBend) {
    const auto p = bendAssembly(GetParam());
    expectMeeting(meet(placed(p.upper, "inclined"), placed(p.inclined, "top")), -1.5, 1.5, 1.5);
    expectMeeting(meet(placed(p.inclined, "bottom"), placed(p.lower, "inclined")), -1.5, 1.5, 1.5);
}

TEST_P(BendJoints, LowerBendHandsDownToTheVerticalPipeAtTheWall) {
    const auto p = bendAssembly(GetParam());
    // The 72-degree lower bend is centred on 276.4 mm, not its 274.6: 0.9 mm overlap.
    expectMeeting(meet(placed(p.lower, "bottom"), placed(p.vertical, "top")), -1.0, 0.01, 0.01);
    // Its outer surface touches the wall face.
    EXPECT_NEAR(p.lower.x + part(p.lower.stem).highest().x, 0.0, 1e-7);
}

TEST_P(BendJoints, ClampsHoldTheVerticalPipe) {
    const auto p = bendAssembly(GetParam());
    const Opening ring = placed(p.topClamp, "ring");
    const Opening pipeTop = placed(p.vertical, "top");
    EXPECT_NEAR(ring.centre.x, pipeTop.centre.x, 1e-9);
    EXPECT_LE(ring.centre.z, pipeTop.centre.z);
}

TEST_P(BendJoints, CapRestsOnTheStandpipeRoundThePipe) {
    const auto p = bendAssembly(GetParam());
    const Opening top = placed(p.standpipe, "top");
    const Opening bore = placed(p.cap, "bore");
    EXPECT_NEAR(bore.centre.x, top.centre.x, 1e-9);
    EXPECT_NEAR(p.cap.z + part(p.cap.stem).lowest().z, top.centre.z, 1e-7);
    // Both pipes stand on the ground.
    EXPECT_NEAR(placed(p.vertical, "bottom").centre.z, -GetParam().heightH / 2000, 1e-9);
    EXPECT_NEAR(placed(p.standpipe, "bottom").centre.z, -GetParam().heightH / 2000, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(
    Constructions, BendJoints,
    ::testing::Values(BendCase{72, 230.4, 274.6, 276.4, 30, 95, 0.95, 0.309, 5000, 600},
                      BendCase{72, 230.4, 274.6, 276.4, 30, 95, 0.95, 0.309, 3200, 900},
                      BendCase{42, 192.3, 307.3, 307.3, 75, 65, 0.669, 0.743, 5000, 500},
                      BendCase{42, 192.3, 307.3, 307.3, 75, 65, 0.669, 0.743, 2800, 380}),
    [](const auto& entry) {
        return std::to_string(entry.param.degrees) + "deg_H" +
               std::to_string(int(entry.param.heightH)) + "_D" +
               std::to_string(int(entry.param.wallOffset));
    });

struct KinkCase {
    int degrees;
    double heightH, wallOffset;
};

struct KinkAssembly {
    Placement vertical, inclined, lower, upper, outlet;
};

KinkAssembly kinkAssembly(const KinkCase& c) {
    const double H = c.heightH, W = c.wallOffset, h = H / 2000;
    const bool k72 = c.degrees == 72;
    const double beta = (k72 ? 18.0 : 48.0) * std::numbers::pi / 180;
    const double l = ((W - (k72 ? 102.1 : 106)) - 30) / std::cos(beta);
    const double r = std::sin(beta) * l;
    const std::string file = k72 ? "Knick_100_72" : "Knick_100_42";
    const Placement outlet{"Reinhangestutzen_100_218", -W / 1000 + 100.0 / 2000,
                           H / 1000 - 186.5 / 2000 - h};
    if (k72) {
        const double lv = (((H - r) - 186.5) - 96.2) + 10;
        return {{"Fallrohr_100_500", -0.05, lv / 2000 - h, lv / 500},
                {"Fallrohr_100_500", -W / 2000,
                 H / 1000 - 186.5 / 1000 - r / 2000 - 96.2 / 2000 + 5.0 / 1000 - h, l / 500, 72},
                {file, -102.1 / 2000,
                 H / 1000 - r / 1000 - 186.5 / 1000 - 96.2 / 1000 + 96.2 / 2000 + 10.0 / 1000 - h},
                {file, -W / 1000 + 102.1 / 2000, H / 1000 - 96.2 / 2000 - 186.5 / 1000 - h, 1, 180},
                outlet};
    }
    const double lv = ((H - 186.5) - r) - 67.4;
    return {
        {"Fallrohr_100_500", -0.05, lv / 2000 - h, lv / 500},
        {"Fallrohr_100_500", -W / 2000, H / 1000 - r / 2000 - 186.5 / 1000 - 30.0 / 1000 - h,
         (l + 30) / 500, 42},
        {file, -103.0 / 2000, H / 1000 - 186.5 / 1000 - r / 1000 - 67.4 / 1000 + 67.4 / 2000 - h},
        {file, -W / 1000 + 106.0 / 2000, H / 1000 - 186.5 / 1000 - 67.4 / 2000 + 10.0 / 1000 - h, 1,
         180},
        outlet};
}

class KinkJoints : public ::testing::TestWithParam<KinkCase> {};

TEST_P(KinkJoints, UpperKinkHangsUnderTheOutlet) {
    const auto p = kinkAssembly(GetParam());
    // The 42-degree upper kink reaches 10 mm up into the outlet, 1.5 mm off its axis.
    expectMeeting(meet(placed(p.outlet, "bottom"), placed(p.upper, "bottom")), -10.01, 0.01, 1.6);
}

TEST_P(KinkJoints, InclinedPipeEndsInsideBothKinks) {
    const auto p = kinkAssembly(GetParam());
    expectMeeting(meet(placed(p.upper, "inclined"), placed(p.inclined, "top")), -25, -5, 2.0);
    expectMeeting(meet(placed(p.inclined, "bottom"), placed(p.lower, "inclined")), -25, -5, 2.0);
}

TEST_P(KinkJoints, LowerKinkSitsOnTheVerticalPipe) {
    const auto p = kinkAssembly(GetParam());
    expectMeeting(meet(placed(p.lower, "bottom"), placed(p.vertical, "top")), -0.01, 0.01, 0.01);
}

INSTANTIATE_TEST_SUITE_P(Constructions, KinkJoints,
                         ::testing::Values(KinkCase{72, 3000, 300}, KinkCase{72, 4200, 190},
                                           KinkCase{42, 3000, 300}, KinkCase{42, 4200, 190}),
                         [](const auto& entry) {
                             return std::to_string(entry.param.degrees) + "deg_H" +
                                    std::to_string(int(entry.param.heightH)) + "_W" +
                                    std::to_string(int(entry.param.wallOffset));
                         });

// The straight downpipe: outlet on the pipe, clamps round it, cap on the standpipe.
TEST(ContinuousJoints, PartsStackOnOneAxis) {
    const double H = 3000, wallOffset = 600, hs = 300, s = 1800, h = H / 2000,
                 d = wallOffset / 1000;
    const Placement outlet{"Reinhangestutzen_100_218", -0.05 - d, (H / 1000 - 186.5 / 2000) - h};
    const Placement pipe{"Fallrohr_100_500", -100.0 / 2000 - d, (H - 186.5) / 2000 - h,
                         (H - 186.5) / 500};
    const Placement standpipe{"Standrohr_125_500", -50.0 / 1000 - d, hs / 2000 - h, hs / 500};
    const Placement cap{"Abdeckkappe_100_125", -100.0 / 2000 - d, (hs + 29.4 / 2) / 1000 - h};
    expectMeeting(meet(placed(outlet, "bottom"), placed(pipe, "top")), -0.01, 0.01, 0.01);
    EXPECT_NEAR(placed(pipe, "bottom").centre.z, -h, 1e-9);
    EXPECT_NEAR(placed(cap, "bore").centre.x, pipe.x, 1e-9);
    EXPECT_NEAR(cap.z + part(cap.stem).lowest().z, placed(standpipe, "top").centre.z, 1e-7);
    for (int i = 0; i < 2; ++i) {
        const Placement clamp{"Rohrschelle_100", 233.4 / 2000 - 108.0 / 1000 + 4.0 / 1000 - d,
                              ((H - 549.2) + 95) / 1000 - s * i / 1000 - h};
        const Opening ring = placed(clamp, "ring");
        EXPECT_NEAR(ring.centre.x, pipe.x, 1e-9);
        // Its far end lies 4 mm beyond the far side of the pipe.
        EXPECT_NEAR(clamp.x + part(clamp.stem).lowest().x, pipe.x - 0.05 - 0.004, 1e-7);
    }
}

} // namespace
} // namespace pluvarine
