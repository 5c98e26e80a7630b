#include "assembly/KinkConstruction.h"

#include "AssemblyTestSupport.h"
#include "base/RuntimeError.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace pluvarine::test {
namespace {

struct Offset {
    double L, R;
};

Offset offsetFor(double W, double a, double betaDegrees) {
    const double beta = betaDegrees * std::numbers::pi / 180;
    const double L = ((W - a) - 30) / std::cos(beta);
    return {L, std::sin(beta) * L};
}

// The parts both members place the same way (with the R of their own angle).
struct SharedKinkParts {
    ExpectedPart outlet, standpipe, cap;
    std::vector<ExpectedPart> clamps;
};

SharedKinkParts sharedParts(double H, double W, double hs, double s, double R, int count) {
    const double h = H / 2000;
    SharedKinkParts shared{
        {"Reinhangestutzen_100_218.v3o",
         {{1, 1, 1}},
         {-W / 1000 + 100.0 / 2000, 0, H / 1000 - 186.5 / 2000 - h},
         {}},
        {"Standrohr_125_500.v3o", {{1, 1, hs / 500}}, {-50.0 / 1000, 0, hs / 2000 - h}, {}},
        {"Abdeckkappe_100_125.v3o",
         {{1, 1, 1}},
         {-100.0 / 2000, 0, (hs + 29.4 / 2) / 1000 - h},
         {}},
        {}};
    for (int i = 0; i < count; ++i) {
        shared.clamps.push_back({"Rohrschelle_100.v3o",
                                 {},
                                 {233.4 / 2000 - 108.0 / 1000 + 4.0 / 1000, 0,
                                  (((H - 549.2) - R) + 95) / 1000 - i * s / 1000 - h},
                                 {}});
    }
    return shared;
}

// The documented 72-degree member, in its placing order.
std::vector<ExpectedPart> kink72Layout(double H, double W, double hs, double s, int count) {
    const double h = H / 2000;
    const auto [L, R] = offsetFor(W, 102.1, 18);
    const double Lv = (((H - R) - 186.5) - 96.2) + 10;
    const SharedKinkParts shared = sharedParts(H, W, hs, s, R, count);
    std::vector<ExpectedPart> parts{
        {"Fallrohr_100_500.v3o", {{1, 1, Lv / 500}}, {-100.0 / 2000, 0, Lv / 2000 - h}, {}},
        {"Fallrohr_100_500.v3o",
         {{1, 1, L / 500}},
         {-W / 2000, 0, H / 1000 - 186.5 / 1000 - R / 2000 - 96.2 / 2000 + 5.0 / 1000 - h},
         {{0, -1, 0, 72}}},
        {"Knick_100_72.v3o",
         {{1, 1, 1}},
         {-102.1 / 2000, 0,
          H / 1000 - R / 1000 - 186.5 / 1000 - 96.2 / 1000 + 96.2 / 2000 + 10.0 / 1000 - h},
         {}},
        {"Knick_100_72.v3o",
         {{1, 1, 1}},
         {-W / 1000 + 102.1 / 2000, 0, H / 1000 - 96.2 / 2000 - 186.5 / 1000 - h},
         {{0, -1, 0, 180}}},
        shared.standpipe,
        shared.outlet,
        shared.cap,
    };
    parts.insert(parts.end(), shared.clamps.begin(), shared.clamps.end());
    return parts;
}

// The 42-degree member: outlet first, its own kink offsets and a 30 mm longer inclined pipe.
std::vector<ExpectedPart> kink42Layout(double H, double W, double hs, double s, int count) {
    const double h = H / 2000;
    const auto [L, R] = offsetFor(W, 106, 48);
    const double Lv = ((H - 186.5) - R) - 67.4;
    const SharedKinkParts shared = sharedParts(H, W, hs, s, R, count);
    std::vector<ExpectedPart> parts{
        shared.outlet,
        {"Fallrohr_100_500.v3o", {{1, 1, Lv / 500}}, {-100.0 / 2000, 0, Lv / 2000 - h}, {}},
        {"Fallrohr_100_500.v3o",
         {{1, 1, (L + 30) / 500}},
         {-W / 2000, 0, H / 1000 - R / 2000 - 186.5 / 1000 - 30.0 / 1000 - h},
         {{0, -1, 0, 42}}},
        {"Knick_100_42.v3o",
         {{1, 1, 1}},
         {-103.0 / 2000, 0, H / 1000 - 186.5 / 1000 - R / 1000 - 67.4 / 1000 + 67.4 / 2000 - h},
         {}},
        {"Knick_100_42.v3o",
         {{1, 1, 1}},
         {-W / 1000 + 106.0 / 2000, 0, H / 1000 - 186.5 / 1000 - 67.4 / 2000 + 10.0 / 1000 - h},
         {{0, -1, 0, 180}}},
        shared.standpipe,
        shared.cap,
    };
    parts.insert(parts.end(), shared.clamps.begin(), shared.clamps.end());
    return parts;
}

struct KinkCase {
    const char* name;
    BendAngle angle;
    double H, W, hs, s;
    int clamps;
    double inclinedScale; // as the examples round it
    double verticalLength;
    std::vector<double> centresMm;
};

class KinkExamples : public ::testing::TestWithParam<KinkCase> {};

TEST_P(KinkExamples, PlaceTheDocumentedParts) {
    const KinkCase& c = GetParam();
    Daten daten = makeDaten(c.H, c.W, c.hs, c.s);
    RecordingScene scene;
    buildKink(daten, scene, c.angle);

    EXPECT_EQ(daten.design.clampCount, c.clamps);
    expectParts(scene, c.angle == BendAngle::Deg72 ? kink72Layout(c.H, c.W, c.hs, c.s, c.clamps)
                                                   : kink42Layout(c.H, c.W, c.hs, c.s, c.clamps));
    expectPlacementProtocol(scene.calls(), true);

    const DesignRecord& d = daten.design;
    EXPECT_NEAR((*scene.object(d.offsetPipeId)->scale)[2], c.inclinedScale, 1e-5);
    EXPECT_NEAR((*scene.object(d.pipeId)->scale)[2], c.verticalLength / 500, 2e-5);
    const std::vector<double> centres = clampHeightsMm(scene, c.H);
    ASSERT_EQ(centres.size(), c.centresMm.size());
    for (std::size_t i = 0; i < centres.size(); ++i) {
        EXPECT_NEAR(centres[i], c.centresMm[i], 0.006) << "clamp " << i;
    }
    // The outlet's axis lies W - 50 from the wall, as in the bend construction.
    EXPECT_NEAR((*scene.object(d.outletId)->position)[0], -(c.W - 50) / 1000, 1e-7);
}

INSTANTIATE_TEST_SUITE_P(
    Examples, KinkExamples,
    ::testing::Values(
        KinkCase{"Deg72",
                 BendAngle::Deg72,
                 3000,
                 300,
                 300,
                 1800,
                 2,
                 0.35308,
                 2672.75,
                 {2491.25, 691.25}},
        KinkCase{"Deg42",
                 BendAngle::Deg42,
                 3000,
                 300,
                 300,
                 1800,
                 2,
                 0.55019,
                 2563.96,
                 {2363.66, 563.66}},
        // hs above H - R - 454.2: no clamp, the view is still updated
        KinkCase{"Deg72NoClamp", BendAngle::Deg72, 3000, 300, 2600, 1800, 0, 0.35308, 2672.75, {}},
        KinkCase{"Deg42NoClamp", BendAngle::Deg42, 3000, 300, 2500, 1800, 0, 0.55019, 2563.96, {}}),
    CaseName());

TEST(KinkConstruction, IdsFollowEachMembersOrder) {
    Daten daten72 = makeDaten(3000, 300, 300, 1800);
    RecordingScene scene72;
    buildKink(daten72, scene72, BendAngle::Deg72);
    const DesignRecord& a = daten72.design;
    EXPECT_EQ((std::vector<std::int32_t>{a.pipeId, a.offsetPipeId, a.firstBendId, a.secondBendId,
                                         a.standpipeId, a.outletId, a.capId, a.lastClampId}),
              (std::vector<std::int32_t>{1, 2, 3, 4, 5, 6, 7, 9}));

    Daten daten42 = makeDaten(3000, 300, 300, 1800);
    RecordingScene scene42;
    buildKink(daten42, scene42, BendAngle::Deg42);
    const DesignRecord& b = daten42.design;
    EXPECT_EQ((std::vector<std::int32_t>{b.outletId, b.pipeId, b.offsetPipeId, b.firstBendId,
                                         b.secondBendId, b.standpipeId, b.capId, b.lastClampId}),
              (std::vector<std::int32_t>{1, 2, 3, 4, 5, 6, 7, 9}));
}

TEST(KinkConstruction, PlainPositionsOfTheKinks) {
    const double H = 3000;
    const double W = 300;
    Daten daten = makeDaten(H, W, 300, 1800);
    RecordingScene scene;
    buildKink(daten, scene, BendAngle::Deg72);
    const DesignRecord& d = daten.design;
    const double Lv = 2672.75;
    const auto& kink1 = *scene.object(d.firstBendId)->position;
    const auto& kink2 = *scene.object(d.secondBendId)->position;
    EXPECT_NEAR(kink1[0] * 1000, -51.05, 1e-3);
    EXPECT_NEAR(heightMm(kink1[2], H), Lv + 48.1, 0.006);
    EXPECT_NEAR(kink2[0] * 1000, -(W - 51.05), 1e-3);
    EXPECT_NEAR(heightMm(kink2[2], H), H - 234.6, 1e-3);
    EXPECT_NEAR(heightMm((*scene.object(d.offsetPipeId)->position)[2], H),
                H - 186.5 - 54.55 / 2 - 43.1, 0.006);
}

TEST(KinkConstruction, SmallOffsetGivesANegativeInclinedPipeWithoutFailing) {
    // W below a + 30: L and R come out negative; the parts are placed as computed.
    Daten daten = makeDaten(3000, 100, 300, 1800);
    RecordingScene scene;
    buildKink(daten, scene, BendAngle::Deg72);
    EXPECT_LT((*scene.object(daten.design.offsetPipeId)->scale)[2], 0.0F);
    expectParts(scene, kink72Layout(3000, 100, 300, 1800, daten.design.clampCount));
}

} // namespace
} // namespace pluvarine::test
