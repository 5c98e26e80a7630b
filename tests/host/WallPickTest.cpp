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

TEST_F(WallPickTest, ThePickButtonAndTheHostButtonAskForOneClick) {
    daten.design.constructionAnswered = daten.design.bendChosen = true;
    macro->exe_ButtonChange(8, 2, 0, true, true, true);  // another button
    macro->exe_ButtonChange(7, 1, 0, true, true, true);  // another event
    macro->exe_ButtonChange(7, 2, 0, false, true, true); // released
    macro->exe_ButtonChange(7, 2, 0, true, true, true);  // only this one asks
    EXPECT_THAT(log.entries, ElementsAre("hideWindow()", "RequestOneClick('', 30x30, 1)",
                                         "ShowPrompt(" + LoadText(8000) + ")"));
    EXPECT_EQ(host->cursor.image.pixelColor(0, 0), QColor(Qt::red)); // Bild2, not Bild
    EXPECT_TRUE(daten.design.constructionAnswered && daten.design.bendChosen);

    log.entries.clear();
    log.failing = {"RequestOneClick"};
    macro->Command5_Click(); // the next rebuild asks for the construction again
    EXPECT_THAT(log.only(), ElementsAre("RequestOneClick", "ShowPrompt"));
    EXPECT_FALSE(daten.design.constructionAnswered || daten.design.bendChosen);
}

TEST_F(WallPickTest, AClickIsShownAndBuiltTwiceAnInvalidOneReadsAtThePreviousPosition) {
    macro->exe_GotOneClick(false, 3, 4, 0);
    EXPECT_EQ(log.entries.front(), "message(" + LoadText(5002) + ")");
    // No labels shown, read at (0, 0), built.
    EXPECT_THAT(
        log.only({"setClickLabels", "FindRoofAt", "rebuild", "enableTimer1"}),
        ElementsAre("FindRoofAt(true, 0, 0, 1, 1, 1, 1, 1, 1)", "rebuild()", "enableTimer1()"));

    log.entries.clear();
    macro->exe_GotOneClick(true, 2.5F, -1.25F, 99);
    // Taken, shown, read at the point in the defined order, built.
    const std::string labels = singleToText(2.5F) + ", " + singleToText(-1.25F);
    EXPECT_EQ(log.entries,
              std::vector<std::string>(
                  {"setClickLabels(" + labels + ")", "stayOnTop(true)", "showWindow()",
                   "GetActiveBuilding()", "GetRoofList()",
                   "FindRoofAt(true, 2.5, -1.25, 1, 1, 1, 1, 1, 1)", "GetRoofData()",
                   "GetLevelAt(2.5, -1.25)", "GetGutterWidth()", "GetRoofingThickness()",
                   "FindRoofFaceAt(true, 2.5, -1.25, 1, 1, 1, 1, 1, 1)", "GetFacePitch(1)",
                   "GetFaceDirection(1)", "GetFaceOverhang(1)",
                   "setOverhangText(" + doubleToText(500.0) + ")", "rebuild()", "enableTimer1()"}));

    log.entries.clear();
    macro->exe_GotOneClick(false, 7, 8, 0);
    EXPECT_EQ(log.only({"FindRoofAt"}).at(0), "FindRoofAt(true, 2.5, -1.25, 1, 1, 1, 1, 1, 1)");
}

TEST_F(WallPickTest, TheRoofValuesAndWhatAFailingCallOrAMissingRoofOrBuildingLeaves) {
    using Roof = std::tuple<double, double, double, double, double, float, float>;
    // A first reading (x, 0: none), the failing calls, the call returning nothing, the second
    // reading's x, the values afterwards and the height. float(3.1F * 1000) is 3100 exactly,
    // float(0.2F * 1000) 200: no double digits survive. The second face is number 2 (the host's
    // face 1); without a roof no face height is read, so the roof level starts at 0; the ground
    // level is the connection's own call.
    const std::tuple<float, std::set<std::string>, const char*, float, Roof, double> table[] = {
        {0, {}, "", 2, {100, 50, 45, 180, 500, 3000, 200}, 2360},
        {2, {"GetFacePitch", "GetGutterWidth"}, "", 7, {100, 50, 45, 90, 300, 3400, 200}, 2960},
        {7, {}, "", 20, {100, 50, 30, 90, 300, -100, 200}, -300 - 300 * 0.57735026918962573 + 60},
        {0, {}, "GetActiveBuilding", 2, {0, 0, 0, 0, 0, -100, 200}, -240}};
    for (const auto& [first, failing, empty, second, values, heightH] : table) {
        makeMacro();
        start();
        if (first != 0) {
            readAt(first, 3);
        }
        log.failing = failing;
        log.empty = {empty};
        readAt(second, 3);
        EXPECT_EQ(roof(), values) << second;
        EXPECT_DOUBLE_EQ(daten.design.heightH, heightH) << second;
        EXPECT_EQ(log.only().back(), "setOverhangText"); // Maße ran
        EXPECT_FALSE(log.contains("message"));
    }
}

TEST_F(WallPickTest, HeightExamples) {
    // roof level, ground level, overhang, pitch -> height H
    const std::array<double, 5> table[] = {{3000, 0, 500, 45, 2560},
                                           {3000, 0, 500, 0, 3060},
                                           {5900, 150, 0, 30, 5810},
                                           {2500, -300, 150.5, 0, 2860}};
    for (const auto& [roofLevel, groundLevel, overhangValue, pitch, heightH] : table) {
        daten.roof = RoofData{overhangValue, 0, pitch, 0, 0, float(roofLevel), float(groundLevel)};
        macro->Maße();
        EXPECT_DOUBLE_EQ(daten.design.heightH, heightH) << roofLevel << " " << pitch;
        EXPECT_EQ(overhang, doubleToText(overhangValue));
    }
}

} // namespace
} // namespace pluvarine::test
