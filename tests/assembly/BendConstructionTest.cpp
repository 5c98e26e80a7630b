#include "assembly/BendConstruction.h"

#include "AssemblyTestSupport.h"
#include "base/RuntimeError.h"

#include <gtest/gtest.h>

namespace pluvarine::test {
namespace {

struct BendSizes {
    const char* upper;
    const char* lower;
    double A, B, Blow, ch, cv, kc, ks, angle;
};

const BendSizes sizes72{
    "Bogen_100_72_L.v3o", "Bogen_100_72_R.v3o", 230.4, 274.6, 276.4, 30, 95, 0.95, 0.309, 72};
const BendSizes sizes42{
    "Bogen_100_42_L.v3o", "Bogen_100_42_R.v3o", 192.3, 307.3, 307.3, 75, 65, 0.669, 0.743, 42};

// The documented bend layout, operations in the order written.
std::vector<ExpectedPart> bendLayout(const BendSizes& k, double H, double D, double hs, double s,
                                     int clamps) {
    const double h = H / 2000;
    const double Lh = D - 2 * k.A + k.ch;
    const double L = Lh / k.kc;
    const double V = L * k.ks;
    const double Lv = H - 186.5 - 2 * k.B - V + k.cv;
    std::vector<ExpectedPart> parts{
        {k.upper, {}, {-(D - k.A / 2) / 1000, 0, (H - 186.5 - k.B / 2) / 1000 - h}, {}},
        {k.lower,
         {},
         {-(k.A / 2) / 1000, 0, (H - 186.5 - k.B - V - k.Blow / 2 + k.cv) / 1000 - h},
         {}},
        {"Fallrohr_100_500.v3o",
         {{1, 1, L / 500}},
         {-(k.A + Lh / 2 - k.ch / 2) / 1000, 0, (H - 186.5 - k.B - (V - k.cv) / 2) / 1000 - h},
         {{0, -1, 0, k.angle}}},
        {"Fallrohr_100_500.v3o", {{1, 1, Lv / 500}}, {-0.05, 0, Lv / 2000 - h}, {}},
        {"Standrohr_125_500.v3o", {{1, 1, hs / 500}}, {-0.05, 0, hs / 2000 - h}, {}},
        {"Reinhangestutzen_100_218.v3o",
         {{1, 1, 1}},
         {-(D - 50) / 1000, 0, (H - 93.25) / 1000 - h},
         {}},
        {"Abdeckkappe_100_125.v3o", {{1, 1, 1}}, {-0.05, 0, (hs + 14.7) / 1000 - h}, {}},
    };
    for (int i = 0; i < clamps; ++i) {
        parts.push_back({"Rohrschelle_100.v3o", {}, {0.0127, 0, (Lv - i * s) / 1000 - h}, {}});
    }
    return parts;
}

struct BendCase {
    const char* name;
    BendAngle angle;
    double H, D, hs, s;
    int clamps;
    double inclinedLength; // L in mm, as the examples round it
    double verticalLength; // Lv in mm
    std::vector<double> centresMm;
};

class BendExamples : public ::testing::TestWithParam<BendCase> {};

TEST_P(BendExamples, PlaceTheDocumentedParts) {
    const BendCase& c = GetParam();
    const BendSizes& k = c.angle == BendAngle::Deg72 ? sizes72 : sizes42;
    Daten daten = makeDaten(c.H, c.D, c.hs, c.s);
    RecordingScene scene;
    buildBend(daten, scene, c.angle);

    EXPECT_EQ(daten.design.clampCount, c.clamps);
    expectParts(scene, bendLayout(k, c.H, c.D, c.hs, c.s, c.clamps));
    expectPlacementProtocol(scene.calls(), true);

    // Against the rounded figures of the examples.
    const SceneObject& inclined = scene.objects()[2];
    EXPECT_NEAR((*inclined.scale)[2], c.inclinedLength / 500, 2e-6);
    const SceneObject& vertical = scene.objects()[3];
    EXPECT_NEAR((*vertical.scale)[2], c.verticalLength / 500, 2e-5);
    const std::vector<double> centres = clampHeightsMm(scene, c.H);
    ASSERT_EQ(centres.size(), c.centresMm.size());
    for (std::size_t i = 0; i < centres.size(); ++i) {
        EXPECT_NEAR(centres[i], c.centresMm[i], 0.006) << "clamp " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Examples, BendExamples,
    ::testing::Values(BendCase{"Deg72Tall",
                               BendAngle::Deg72,
                               5000,
                               600,
                               300,
                               1800,
                               3,
                               178.105,
                               4304.27,
                               {4304.27, 2504.27, 704.27}},
                      // x = 1.0504: the second clamp ends up 95.73 below the top of the standpipe
                      BendCase{"Deg72Short",
                               BendAngle::Deg72,
                               2700,
                               600,
                               300,
                               1800,
                               2,
                               178.105,
                               2004.27,
                               {2004.27, 204.27}},
                      BendCase{"Deg42Tall",
                               BendAngle::Deg42,
                               5000,
                               500,
                               300,
                               1800,
                               3,
                               284.604,
                               4052.44,
                               {4052.44, 2252.44, 452.44}},
                      // D below 2A - c_h: negative inclined pipe, built as it comes
                      BendCase{"Deg42NarrowOffset",
                               BendAngle::Deg42,
                               5000,
                               240,
                               300,
                               1800,
                               3,
                               -104.036,
                               4341.20,
                               {4341.20, 2541.20, 741.20}}),
    CaseName());

TEST(BendConstruction, PartOrderAndIdsOfTheRecord) {
    Daten daten = makeDaten(5000, 600, 300, 1800);
    RecordingScene scene;
    buildBend(daten, scene, BendAngle::Deg72);
    const DesignRecord& d = daten.design;
    EXPECT_EQ(d.firstBendId, 1);
    EXPECT_EQ(d.secondBendId, 2);
    EXPECT_EQ(d.offsetPipeId, 3);
    EXPECT_EQ(d.pipeId, 4);
    EXPECT_EQ(d.standpipeId, 5);
    EXPECT_EQ(d.outletId, 6);
    EXPECT_EQ(d.capId, 7);
    EXPECT_EQ(d.lastClampId, 10);
    // The outlet hangs D - 50 from the wall, the clamps stand 12.7 mm behind its face.
    EXPECT_NEAR((*scene.object(d.outletId)->position)[0], -0.55F, 1e-7F);
    EXPECT_NEAR(heightMm((*scene.object(d.outletId)->position)[2], 5000), 5000 - 93.25, 1e-3);
    EXPECT_EQ((*scene.object(d.lastClampId)->position)[0], 0.0127F);
    // The bends keep their own size.
    EXPECT_FALSE(scene.object(d.firstBendId)->scale.has_value());
    EXPECT_FALSE(scene.object(d.secondBendId)->scale.has_value());
}

TEST(BendConstruction, ClampCountFromTheHeightAboveTheTopClamp) {
    // x = (H - 2B - V + c_v - hs) / s; the span lies 186.5 above the top clamp's Lv.
    const double H = 2700;
    const double V = (600 - 2 * 230.4 + 30) / 0.95 * 0.309;
    const double x = (H - 2 * 274.6 - V + 95 - 300) / 1800;
    EXPECT_NEAR(x, 1.0504, 1e-4);
    Daten daten = makeDaten(H, 600, 300, 1800);
    RecordingScene scene;
    buildBend(daten, scene, BendAngle::Deg72);
    EXPECT_EQ(daten.design.clampCount, 2);
}

} // namespace
} // namespace pluvarine::test
