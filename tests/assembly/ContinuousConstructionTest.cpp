#include "assembly/ContinuousConstruction.h"

#include "AssemblyTestSupport.h"
#include "base/RuntimeError.h"

#include <gtest/gtest.h>

namespace pluvarine::test {
namespace {

// The documented layout of the straight downpipe, operation order as written.
std::vector<ExpectedPart> continuousLayout(double H, double wallOffset, double hs, double s,
                                           int clamps) {
    const double h = H / 2000;
    const double d = wallOffset / 1000;
    std::vector<ExpectedPart> parts{
        {"Reinhangestutzen_100_218.v3o",
         {{1, 1, 1}},
         {-0.05 - d, 0, (H / 1000 - 186.5 / 2000) - h},
         {}},
        {"Fallrohr_100_500.v3o",
         {{1, 1, (H - 186.5) / 500}},
         {-100.0 / 2000 - d, 0, (H - 186.5) / 2000 - h},
         {}},
        {"dummy.v3o", {{wallOffset / 100000, 0.1, 0.1}}, {-d, 0, 1.0}, {}},
        {"Standrohr_125_500.v3o", {{1, 1, hs / 500}}, {-50.0 / 1000 - d, 0, hs / 2000 - h}, {}},
        {"Abdeckkappe_100_125.v3o",
         {{1, 1, 1}},
         {-100.0 / 2000 - d, 0, (hs + 29.4 / 2) / 1000 - h},
         {}},
    };
    for (int i = 0; i < clamps; ++i) {
        parts.push_back({"Rohrschelle_100.v3o",
                         {},
                         {233.4 / 2000 - 108.0 / 1000 + 4.0 / 1000 - d, 0,
                          ((H - 549.2) + 95) / 1000 - s * i / 1000 - h},
                         {}});
    }
    return parts;
}

struct ClampCase {
    const char* name;
    double H;
    double hs;
    double s;
    int clamps;
    std::vector<double> centresMm; // above the ground
};

class ContinuousClamps : public ::testing::TestWithParam<ClampCase> {};

TEST_P(ContinuousClamps, PlacesTheDocumentedPartsAndClamps) {
    const ClampCase& c = GetParam();
    Daten daten = makeDaten(c.H, 300, c.hs, c.s);
    RecordingScene scene;
    buildContinuous(daten, scene);

    EXPECT_EQ(daten.design.clampCount, c.clamps);
    expectParts(scene, continuousLayout(c.H, 300, c.hs, c.s, c.clamps));
    expectPlacementProtocol(scene.calls(), true);
    const std::vector<double> centres = clampHeightsMm(scene, c.H);
    ASSERT_EQ(centres.size(), c.centresMm.size());
    for (std::size_t i = 0; i < centres.size(); ++i) {
        EXPECT_NEAR(centres[i], c.centresMm[i], 0.001) << "clamp " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Examples, ContinuousClamps,
    ::testing::Values(
        ClampCase{"Ordinary", 3000, 300, 1800, 2, {2545.8, 745.8}},
        // x = 1 exactly: the tie goes to the even 2, the lowest clamp on the standpipe
        ClampCase{"TieOddWhole", 2554.2, 300, 1800, 2, {2100, 300}},
        // x = 2 exactly: 2.5 rounds to 2, not 3
        ClampCase{"TieEvenWhole", 4354.2, 300, 1800, 2, {3900, 2100}},
        ClampCase{"ZeroCount", 754.2, 300, 1800, 0, {}},
        ClampCase{"StandpipeAboveTopClamp", 3000, 2600, 1800, 0, {}},
        ClampCase{"NegativeCount", 3000, 300, -400, -5, {}},
        ClampCase{"NarrowSpacing",
                  3000,
                  300,
                  300,
                  8,
                  {2545.8, 2245.8, 1945.8, 1645.8, 1345.8, 1045.8, 745.8, 445.8}}),
    CaseName());

TEST(ContinuousConstruction, IdsGoIntoTheRecordInPlacingOrder) {
    Daten daten = makeDaten(3000, 300, 300, 1800);
    RecordingScene scene;
    scene.LoadScene("/wf/main.v3o");
    scene.AddPart("/wf/res/leftover.v3o"); // ids continue from here
    buildContinuous(daten, scene);
    const DesignRecord& d = daten.design;
    EXPECT_EQ(d.outletId, 2);
    EXPECT_EQ(d.pipeId, 3);
    EXPECT_EQ(d.standpipeId, 5); // 4 is the dummy, kept nowhere
    EXPECT_EQ(d.capId, 6);
    EXPECT_EQ(d.lastClampId, 8);
    EXPECT_EQ(d.offsetPipeId, 0); // left as it was
}

TEST(ContinuousConstruction, WallOffsetOfMinus60PutsThePipeAxisOnTheWallSide) {
    Daten daten = makeDaten(3000, -60, 300, 1800);
    RecordingScene scene;
    buildContinuous(daten, scene);
    const SceneObject* pipe = scene.object(daten.design.pipeId);
    ASSERT_NE(pipe, nullptr);
    EXPECT_NEAR((*pipe->position)[0], 0.01F, 1e-7F);
    EXPECT_EQ((*pipe->position)[0], static_cast<float>(-100.0 / 2000 - -0.06));
    // The dummy is scaled to the offset: -60 / 100000.
    EXPECT_EQ((*scene.objects()[2].scale)[0], -0.0006F);
}

TEST(ContinuousConstruction, PlainHeightsOfThePartsMatchTheStack) {
    const double H = 3000;
    Daten daten = makeDaten(H, 300, 300, 1800);
    RecordingScene scene;
    buildContinuous(daten, scene);
    const auto z = [&](std::int32_t id) { return heightMm((*scene.object(id)->position)[2], H); };
    EXPECT_NEAR(z(daten.design.outletId), H - 93.25, 1e-3);
    EXPECT_NEAR(z(daten.design.pipeId), (H - 186.5) / 2, 1e-3);
    EXPECT_NEAR(z(daten.design.standpipeId), 150, 1e-3);
    EXPECT_NEAR(z(daten.design.capId), 314.7, 1e-3);
    EXPECT_NEAR((*scene.object(daten.design.pipeId)->position)[0], -0.35F, 1e-7F);
    EXPECT_NEAR((*scene.objects().back().position)[0], 0.0127F - 0.3F, 1e-7F);
}

TEST(ContinuousConstruction, ViewerErrorEndsItAtThatPart) {
    Daten daten = makeDaten(3000, 300, 300, 1800);
    RecordingScene scene;
    scene.failAddPartOf("Standrohr_125_500.v3o");
    EXPECT_THROW(buildContinuous(daten, scene), RuntimeError);
    EXPECT_EQ(partFiles(scene), (std::vector<std::string>{"Reinhangestutzen_100_218.v3o",
                                                          "Fallrohr_100_500.v3o", "dummy.v3o"}));
    EXPECT_EQ(daten.design.standpipeId, 0);
    EXPECT_EQ(scene.viewUpdates(), 0);
}

TEST(ContinuousConstruction, ANumberBeyondSinglePrecisionStopsAtItsCall) {
    Daten daten = makeDaten(1e42, 300, 300, 1800);
    RecordingScene scene;
    EXPECT_THROW(buildContinuous(daten, scene), RuntimeError);
    // The outlet was added and made current; its scale (1, 1, 1) went through; the move failed.
    EXPECT_EQ(opNames(scene.calls()),
              (std::vector<std::string>{"AddPart", "CurrentObject", "ScaleObject"}));
}

} // namespace
} // namespace pluvarine::test
