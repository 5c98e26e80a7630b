// Reading the roof at the picked point and deriving the height of the downpipe.

#include "MacroFixture.h"
#include "base/Conversions.h"

#include <cmath>
#include <numbers>

namespace pluvarine::test {
namespace {

using ::testing::ElementsAre;

class RoofDataTest : public MacroFixture {
protected:
    void SetUp() override { start(); }

    void readAt(float x, float y) {
        daten.roof.clickX = x;
        daten.roof.clickY = y;
        macro->getData();
    }
};

TEST_F(RoofDataTest, AsksTheHostInTheDefinedOrder) {
    readAt(2, 3);
    EXPECT_THAT(log.entries(),
                ElementsAre("GetActiveBuilding()", "GetRoofList()",
                            "FindRoofAt(true, 2, 3, 1, 1, 1, 1, 1, 1)", "GetRoofData()",
                            "GetLevelAt(2, 3)", "GetGutterWidth()", "GetRoofingThickness()",
                            "FindRoofFaceAt(true, 2, 3, 1, 1, 1, 1, 1, 1)", "GetFacePitch(1)",
                            "GetFaceDirection(1)", "GetFaceOverhang(1)",
                            "setOverhangText(" + doubleToText(500.0) + ")"));
    EXPECT_EQ(macro->activeBuilding(), building);
    EXPECT_EQ(macro->roofData(), roofData);
}

TEST_F(RoofDataTest, ConvertsToMillimetresAndDerivesTheHeight) {
    readAt(2, 3);
    const RoofData& roof = daten.roof;
    EXPECT_EQ(roof.gutterWidth, 0.1 * 1000);
    EXPECT_EQ(roof.roofingThickness, 0.05 * 1000);
    EXPECT_EQ(roof.roofPitch, 45);
    EXPECT_EQ(roof.roofDirection, 180);
    EXPECT_EQ(roof.roofOverhang, 0.5 * 1000);
    // Single precision throughout: each operation rounds to float.
    const float s = 3.1F;
    const float expectedRoofLevel = static_cast<float>(static_cast<float>(s * 1000.0F) - 100.0F);
    EXPECT_EQ(roof.roofLevel, expectedRoofLevel);
    EXPECT_EQ(roof.groundLevel, 0.2F * 1000.0F);
    const float levels = roof.roofLevel - roof.groundLevel;
    EXPECT_EQ(daten.design.heightH, levels - 500.0 * std::tan(45 * std::numbers::pi / 180) + 60);
    EXPECT_NEAR(daten.design.heightH, 3000 - 200 - 500 + 60, 1e-3);
    EXPECT_EQ(view.overhang, doubleToText(500.0));
}

TEST_F(RoofDataTest, TheHostsFaceNumberIsOneLessThanTheRoofDatas) {
    readAt(7, 3); // the second face: host number 1
    EXPECT_THAT(log.only({"GetFacePitch", "GetFaceDirection", "GetFaceOverhang"}),
                ElementsAre("GetFacePitch(2)", "GetFaceDirection(2)", "GetFaceOverhang(2)"));
    EXPECT_EQ(daten.roof.roofPitch, 30);
    EXPECT_EQ(daten.roof.roofDirection, 90);
    EXPECT_EQ(daten.roof.roofOverhang, 0.3 * 1000);
}

TEST_F(RoofDataTest, AnotherFaceReplacesTheFaceValuesOnly) {
    readAt(2, 3);
    readAt(7, 3);
    EXPECT_EQ(daten.roof.gutterWidth, 100);
    EXPECT_EQ(daten.roof.roofingThickness, 50);
    EXPECT_EQ(daten.roof.roofPitch, 30);
    EXPECT_EQ(daten.roof.roofLevel, 3400);
}

TEST_F(RoofDataTest, AClickWithoutRoofKeepsTheValuesAndStillDerivesTheHeight) {
    readAt(7, 3);
    log.clear();

    readAt(20, 3); // no roof there

    EXPECT_EQ(daten.roof.roofPitch, 30);
    EXPECT_EQ(daten.roof.roofDirection, 90);
    EXPECT_EQ(daten.roof.roofOverhang, 300);
    EXPECT_EQ(daten.roof.gutterWidth, 100);
    EXPECT_EQ(daten.roof.roofingThickness, 50);
    // No face height was read: this reading's height starts at 0.
    EXPECT_EQ(daten.roof.roofLevel, -100);
    EXPECT_EQ(daten.roof.groundLevel, 200);
    EXPECT_EQ(log.names().back(), "setOverhangText"); // Maße ran
    EXPECT_EQ(view.overhang, doubleToText(300.0));
    EXPECT_EQ(daten.design.heightH, static_cast<float>(-100.0F - 200.0F) -
                                        300 * std::tan(30 * std::numbers::pi / 180) + 60);
    EXPECT_TRUE(log.only({"message"}).empty());
}

TEST_F(RoofDataTest, WithoutABuildingNothingIsReadAndTheValuesStayZero) {
    host->building = nullptr;
    readAt(2, 3);
    EXPECT_EQ(daten.roof.gutterWidth, 0);
    EXPECT_EQ(daten.roof.roofPitch, 0);
    EXPECT_EQ(daten.roof.roofOverhang, 0);
    EXPECT_EQ(daten.roof.groundLevel, 200); // the level is the connection's own call
    EXPECT_EQ(view.overhang, "0");
}

TEST_F(RoofDataTest, EachFailingCallLeavesOnlyItsOwnValue) {
    readAt(2, 3);
    log.fail("GetFacePitch");
    log.fail("GetGutterWidth");
    readAt(7, 3);
    EXPECT_EQ(daten.roof.roofPitch, 45);    // kept
    EXPECT_EQ(daten.roof.gutterWidth, 100); // kept
    EXPECT_EQ(daten.roof.roofDirection, 90);
    EXPECT_EQ(daten.roof.roofOverhang, 300);
}

struct HeightCase {
    float roofLevel;
    float groundLevel;
    double overhang;
    double pitch;
    double heightH;
};

class HeightTest : public RoofDataTest, public ::testing::WithParamInterface<HeightCase> {};

TEST_P(HeightTest, Maße) {
    const HeightCase& c = GetParam();
    daten.roof.roofLevel = c.roofLevel;
    daten.roof.groundLevel = c.groundLevel;
    daten.roof.roofOverhang = c.overhang;
    daten.roof.roofPitch = c.pitch;
    macro->Maße();
    EXPECT_DOUBLE_EQ(daten.design.heightH, c.heightH);
    EXPECT_EQ(view.overhang, doubleToText(c.overhang));
}

INSTANTIATE_TEST_SUITE_P(Examples, HeightTest,
                         ::testing::Values(HeightCase{3000, 0, 500, 45, 2560},
                                           HeightCase{3000, 0, 500, 0, 3060}, // no fall
                                           HeightCase{5900, 150, 0, 30, 5810},
                                           HeightCase{2500, -300, 150.5, 0, 2860}));

} // namespace
} // namespace pluvarine::test
