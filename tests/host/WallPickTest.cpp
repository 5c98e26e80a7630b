// The wall pick: asking the host for a click on both paths and taking the answer.

#include "MacroFixture.h"
#include "base/Conversions.h"

#include <algorithm>

namespace pluvarine::test {
namespace {

using ::testing::ElementsAre;

class WallPickTest : public MacroFixture {
protected:
    void SetUp() override { start(); }

    // The host calls of one reading of the roof data (the order getData makes them in).
    std::vector<std::string> roofReading() const {
        return log.only({"GetActiveBuilding", "GetRoofList", "FindRoofAt", "GetRoofData",
                         "GetLevelAt", "GetGutterWidth", "GetRoofingThickness", "FindRoofFaceAt",
                         "GetFacePitch", "GetFaceDirection", "GetFaceOverhang"});
    }
};

TEST_F(WallPickTest, ThePickButtonAsksForOneClickWithTheCursorAndPrompt) {
    daten.design.constructionAnswered = true;
    daten.design.bendChosen = true;

    macro->Command5_Click();

    EXPECT_THAT(log.entries(),
                ElementsAre("RequestOneClick('', 30x30, 1)", "ShowPrompt(" + LoadText(8000) + ")"));
    EXPECT_EQ(host->cursor.image.pixelColor(0, 0), QColor(Qt::red)); // Bild2, not Bild
    EXPECT_EQ(macro->clickCursor().image.size(), QSize(30, 30));
    // The next rebuild treats the construction as not yet chosen.
    EXPECT_FALSE(daten.design.constructionAnswered);
    EXPECT_FALSE(daten.design.bendChosen);
}

TEST_F(WallPickTest, TheHostButtonHidesTheWindowAndKeepsTheAnswer) {
    daten.design.constructionAnswered = true;
    daten.design.bendChosen = true;

    macro->exe_ButtonChange(7, 2, 0, true, true, true);

    EXPECT_THAT(log.names(), ElementsAre("hideWindow", "RequestOneClick", "ShowPrompt"));
    EXPECT_TRUE(daten.design.constructionAnswered);
    EXPECT_TRUE(daten.design.bendChosen);
}

TEST_F(WallPickTest, OtherButtonEventsAreIgnored) {
    macro->exe_ButtonChange(8, 2, 0, true, true, true);  // another button
    macro->exe_ButtonChange(7, 1, 0, true, true, true);  // another event
    macro->exe_ButtonChange(7, 2, 0, false, true, true); // released
    EXPECT_TRUE(log.entries().empty());
}

TEST_F(WallPickTest, AFailingRequestStillShowsThePrompt) {
    log.fail("RequestOneClick");
    macro->Command5_Click();
    EXPECT_THAT(log.names(), ElementsAre("RequestOneClick", "ShowPrompt"));
}

TEST_F(WallPickTest, AValidClickIsStoredShownAndBuiltTwice) {
    macro->exe_GotOneClick(true, 2.5F, -1.25F, 99);

    EXPECT_EQ(daten.roof.clickX, 2.5F);
    EXPECT_EQ(daten.roof.clickY, -1.25F);
    EXPECT_EQ(view.labelX, singleToText(2.5F));
    EXPECT_EQ(view.labelY, singleToText(-1.25F));
    // Labels, topmost, shown, the roof data, the rebuild, then the timer for the second one.
    const std::vector<std::string> names = log.names();
    const auto at = [&](const std::string& name) {
        return std::find(names.begin(), names.end(), name) - names.begin();
    };
    EXPECT_EQ(at("setClickLabels"), 0);
    EXPECT_EQ(at("stayOnTop"), 1);
    EXPECT_EQ(at("showWindow"), 2);
    EXPECT_EQ(at("GetActiveBuilding"), 3);
    EXPECT_LT(at("setOverhangText"), at("rebuild")); // Maße before the rebuild
    EXPECT_EQ(names[names.size() - 2], "rebuild");
    EXPECT_EQ(names.back(), "enableTimer1");
    EXPECT_TRUE(view.topmost);
    EXPECT_TRUE(view.visible);
    EXPECT_TRUE(log.only({"message"}).empty());
}

TEST_F(WallPickTest, AnInvalidClickBeforeAnyValidOneReadsAtTheOrigin) {
    macro->exe_GotOneClick(false, 3, 4, 0);

    EXPECT_EQ(log.entries().front(), "message(" + LoadText(5002) + ")");
    EXPECT_EQ(daten.roof.clickX, 0);
    EXPECT_EQ(daten.roof.clickY, 0);
    EXPECT_EQ(view.labelX, ".....");
    EXPECT_EQ(roofReading()[2], "FindRoofAt(true, 0, 0, 1, 1, 1, 1, 1, 1)");
    EXPECT_EQ(log.names().back(), "enableTimer1");
    EXPECT_TRUE(log.contains("rebuild"));
}

TEST_F(WallPickTest, AnInvalidClickReadsAgainAtThePreviousPosition) {
    macro->exe_GotOneClick(true, 1.5F, 2, 0);
    log.clear();

    macro->exe_GotOneClick(false, 7, 8, 0);

    EXPECT_EQ(daten.roof.clickX, 1.5F);
    EXPECT_EQ(view.labelX, singleToText(1.5F));
    EXPECT_EQ(roofReading()[2], "FindRoofAt(true, 1.5, 2, 1, 1, 1, 1, 1, 1)");
}

TEST_F(WallPickTest, TheSecondOfTwoValidClicksReplacesTheFirst) {
    macro->exe_GotOneClick(true, 1, 2, 0);
    macro->exe_GotOneClick(true, 6, 7, 0);
    EXPECT_EQ(daten.roof.clickX, 6);
    EXPECT_EQ(daten.roof.clickY, 7);
    EXPECT_EQ(view.labelX, singleToText(6.0F));
    EXPECT_EQ(view.labelY, singleToText(7.0F));
}

} // namespace
} // namespace pluvarine::test
