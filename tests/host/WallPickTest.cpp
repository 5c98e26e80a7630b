// The wall pick: asking the host for a click, taking the answer, reading the roof at the point
// and deriving the height of the downpipe.

#include "MacroFixture.h"
#include "base/Conversions.h"

namespace pluvarine::test {
namespace {

class WallPickTest : public MacroFixture {
protected:
    void SetUp() override { start(); }

    void readAt(float x, float y) {
        daten.roof.clickX = x;
        daten.roof.clickY = y;
        macro->getData();
    }
};

TEST_F(WallPickTest, ThePickButtonAsksForOneClickAndForgetsTheConstructionAnswer) {
    daten.design.constructionAnswered = daten.design.bendChosen = true;
    macro->Command5_Click();
    EXPECT_THAT(log.entries,
                ElementsAre("RequestOneClick('', 30x30, 1)", "ShowPrompt(" + LoadText(8000) + ")"));
    EXPECT_EQ(host->cursor.image.pixelColor(0, 0), QColor(Qt::red)); // Bild2, not Bild
    EXPECT_FALSE(daten.design.constructionAnswered || daten.design.bendChosen);

    log.entries.clear();
    log.failing = {"RequestOneClick"};
    macro->Command5_Click();
    EXPECT_THAT(log.names(), ElementsAre("RequestOneClick", "ShowPrompt"));
}

TEST_F(WallPickTest, TheHostButtonHidesTheWindowAndKeepsTheAnswer) {
    daten.design.constructionAnswered = daten.design.bendChosen = true;
    macro->exe_ButtonChange(8, 2, 0, true, true, true);  // another button
    macro->exe_ButtonChange(7, 1, 0, true, true, true);  // another event
    macro->exe_ButtonChange(7, 2, 0, false, true, true); // released
    EXPECT_TRUE(log.entries.empty());

    macro->exe_ButtonChange(7, 2, 0, true, true, true);
    EXPECT_THAT(log.names(), ElementsAre("hideWindow", "RequestOneClick", "ShowPrompt"));
    EXPECT_TRUE(daten.design.constructionAnswered && daten.design.bendChosen);
}

TEST_F(WallPickTest, AValidClickIsStoredShownAndBuiltTwice) {
    macro->exe_GotOneClick(true, 2.5F, -1.25F, 99);

    EXPECT_EQ(daten.roof.clickX, 2.5F);
    EXPECT_EQ(daten.roof.clickY, -1.25F);
    EXPECT_EQ(window.labelX, singleToText(2.5F));
    EXPECT_EQ(window.labelY, singleToText(-1.25F));
    const std::vector<std::string> names = log.names();
    EXPECT_THAT(std::vector(names.begin(), names.begin() + 4),
                ElementsAre("setClickLabels", "stayOnTop", "showWindow", "GetActiveBuilding"));
    EXPECT_LT(std::ranges::find(names, "setOverhangText"), std::ranges::find(names, "rebuild"));
    EXPECT_THAT(std::vector(names.end() - 2, names.end()), ElementsAre("rebuild", "enableTimer1"));
    EXPECT_TRUE(window.topmost && window.visible);
    EXPECT_FALSE(log.contains("message"));
}

TEST_F(WallPickTest, AnInvalidClickReadsAtThePreviousPositionOrTheOrigin) {
    macro->exe_GotOneClick(false, 3, 4, 0);
    EXPECT_EQ(log.entries.front(), "message(" + LoadText(5002) + ")");
    EXPECT_EQ(window.labelX, ".....");
    EXPECT_EQ(log.only({"FindRoofAt"}).at(0), "FindRoofAt(true, 0, 0, 1, 1, 1, 1, 1, 1)");
    EXPECT_EQ(log.names().back(), "enableTimer1");
    EXPECT_TRUE(log.contains("rebuild"));

    macro->exe_GotOneClick(true, 1.5F, 2, 0);
    log.entries.clear();
    macro->exe_GotOneClick(false, 7, 8, 0);
    EXPECT_EQ(daten.roof.clickX, 1.5F);
    EXPECT_EQ(window.labelX, singleToText(1.5F));
    EXPECT_EQ(log.only({"FindRoofAt"}).at(0), "FindRoofAt(true, 1.5, 2, 1, 1, 1, 1, 1, 1)");
}

TEST_F(WallPickTest, ReadsTheRoofInTheDefinedOrderInSinglePrecision) {
    readAt(2, 3);
    EXPECT_THAT(log.entries,
                ElementsAre("GetActiveBuilding()", "GetRoofList()",
                            "FindRoofAt(true, 2, 3, 1, 1, 1, 1, 1, 1)", "GetRoofData()",
                            "GetLevelAt(2, 3)", "GetGutterWidth()", "GetRoofingThickness()",
                            "FindRoofFaceAt(true, 2, 3, 1, 1, 1, 1, 1, 1)", "GetFacePitch(1)",
                            "GetFaceDirection(1)", "GetFaceOverhang(1)",
                            "setOverhangText(" + doubleToText(500.0) + ")"));
    const RoofData& roof = daten.roof;
    EXPECT_EQ(std::tie(roof.gutterWidth, roof.roofingThickness, roof.roofPitch, roof.roofDirection,
                       roof.roofOverhang),
              std::make_tuple(100.0, 50.0, 45.0, 180.0, 500.0));
    // float(3.1F * 1000) is 3100 exactly, float(0.2F * 1000) 200: no double digits survive.
    EXPECT_EQ(roof.roofLevel, 3000.0F);
    EXPECT_EQ(roof.groundLevel, 200.0F);
    EXPECT_DOUBLE_EQ(daten.design.heightH, 2360);
}

TEST_F(WallPickTest, TheHostsFaceNumberIsOneLessThanTheRoofDatas) {
    readAt(7, 3); // the second face: host number 1
    EXPECT_THAT(log.only({"GetFacePitch", "GetFaceDirection", "GetFaceOverhang"}),
                ElementsAre("GetFacePitch(2)", "GetFaceDirection(2)", "GetFaceOverhang(2)"));
    EXPECT_EQ(std::tie(daten.roof.roofPitch, daten.roof.roofDirection, daten.roof.roofOverhang),
              std::make_tuple(30.0, 90.0, 300.0));
    EXPECT_EQ(daten.roof.roofLevel, 3400);
}

TEST_F(WallPickTest, AClickWithoutRoofKeepsTheValuesAndStillDerivesTheHeight) {
    readAt(7, 3);
    readAt(20, 3);
    const RoofData& roof = daten.roof;
    EXPECT_EQ(std::tie(roof.gutterWidth, roof.roofingThickness, roof.roofPitch, roof.roofDirection,
                       roof.roofOverhang),
              std::make_tuple(100.0, 50.0, 30.0, 90.0, 300.0));
    EXPECT_EQ(roof.roofLevel, -100); // no face height read: this reading starts at 0
    EXPECT_EQ(roof.groundLevel, 200);
    EXPECT_EQ(log.names().back(), "setOverhangText"); // Maße ran
    EXPECT_DOUBLE_EQ(daten.design.heightH, -300 - 300 * 0.57735026918962573 + 60);
    EXPECT_FALSE(log.contains("message"));
}

TEST_F(WallPickTest, WithoutABuildingNothingIsReadAndTheValuesStayZero) {
    host->building = nullptr;
    readAt(2, 3);
    EXPECT_EQ(std::tie(daten.roof.gutterWidth, daten.roof.roofPitch, daten.roof.roofOverhang),
              std::make_tuple(0.0, 0.0, 0.0));
    EXPECT_EQ(daten.roof.groundLevel, 200); // the level is the connection's own call
    EXPECT_EQ(window.overhang, "0");
}

TEST_F(WallPickTest, EachFailingCallLeavesOnlyItsOwnValue) {
    readAt(2, 3);
    log.failing = {"GetFacePitch", "GetGutterWidth"};
    readAt(7, 3);
    EXPECT_EQ(std::tie(daten.roof.roofPitch, daten.roof.gutterWidth, daten.roof.roofDirection,
                       daten.roof.roofOverhang),
              std::make_tuple(45.0, 100.0, 90.0, 300.0));
}

struct HeightCase {
    float roofLevel;
    float groundLevel;
    double overhang;
    double pitch;
    double heightH;
};

class HeightTest : public WallPickTest, public ::testing::WithParamInterface<HeightCase> {};

TEST_P(HeightTest, Maße) {
    const HeightCase& c = GetParam();
    daten.roof.roofLevel = c.roofLevel;
    daten.roof.groundLevel = c.groundLevel;
    daten.roof.roofOverhang = c.overhang;
    daten.roof.roofPitch = c.pitch;
    macro->Maße();
    EXPECT_DOUBLE_EQ(daten.design.heightH, c.heightH);
    EXPECT_EQ(window.overhang, doubleToText(c.overhang));
}

INSTANTIATE_TEST_SUITE_P(Examples, HeightTest,
                         ::testing::Values(HeightCase{3000, 0, 500, 45, 2560},
                                           HeightCase{3000, 0, 500, 0, 3060}, // no fall
                                           HeightCase{5900, 150, 0, 30, 5810},
                                           HeightCase{2500, -300, 150.5, 0, 2860}));

} // namespace
} // namespace pluvarine::test
