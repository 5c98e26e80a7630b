// Insertion into the building: export, the element and its placement matrix, the counter and
// the reset; and the cancel button, which ends a design the same way.

#include "MacroFixture.h"
#include "base/Conversions.h"
#include "store/SettingsStore.h"

#include <cmath>
#include <numbers>

namespace pluvarine::test {
namespace {

using ::testing::ElementsAre;

constexpr double kPi = std::numbers::pi;

class InsertionTest : public MacroFixture {
protected:
    void SetUp() override {
        start();
        design();
    }

    // A design at the picked wall, as the pick and the rebuild leave it.
    void design() {
        daten.roof.clickX = 4.25F;
        daten.roof.clickY = -2.5F;
        daten.roof.groundLevel = 150;
        daten.roof.roofDirection = 180;
        daten.roof.roofOverhang = 500;
        daten.roof.gutterWidth = 120;
        daten.roof.roofPitch = 40;
        daten.roof.roofingThickness = 30;
        daten.design.wallOffset = 560;
        daten.design.heightH = 2950;
        daten.design.constructionAnswered = true;
        daten.design.bendChosen = true;
        view.overhang = "500";
        view.visible = true;
    }

    // The next program run, with the counter stored in Data.ini.
    void restartWith(const std::string& dataIni) {
        writeFile(work / "obj" / "Data.ini", dataIni);
        makeMacro();
        start();
        design();
    }

    const FakeElement& onlyElement() const {
        EXPECT_EQ(host->elements.size(), 1U);
        return *host->elements.front();
    }

    void expectDesignEnded(double direction = 180) const {
        EXPECT_FALSE(daten.design.constructionAnswered);
        EXPECT_FALSE(daten.design.bendChosen);
        EXPECT_EQ(view.overhang, "0");
        EXPECT_EQ(daten.roof.roofingThickness, 0);
        EXPECT_EQ(daten.roof.gutterWidth, 0);
        EXPECT_EQ(daten.roof.roofPitch, 0);
        EXPECT_EQ(daten.design.heightH, 0);
        EXPECT_FALSE(view.visible);
        // Kept: the overhang value and the direction, the preview.
        EXPECT_EQ(daten.roof.roofOverhang, 500);
        EXPECT_EQ(daten.roof.roofDirection, direction);
        EXPECT_FALSE(log.contains("LoadScene"));
    }
};

TEST_F(InsertionTest, ExportsLoadsPlacesCountsAndEndsTheDesign) {
    macro->Command4_Click();

    const std::string file = objFile(" 1.tob");
    EXPECT_THAT(log.entries(),
                ElementsAre("SaveScene(" + file + ", Fallrohr, '')",
                            "LoadObjectFile(" + file + ", 0)", "CreateElement(none, 0)",
                            "PrepareElement(true)", "SetElementMatrix()", "CommitElement(true)",
                            "SetMacroButtonState(7, 1, 0, true, true)", "setOverhangText(0)",
                            "hideWindow()"));
    EXPECT_TRUE(std::filesystem::exists(file));
    const FakeElement& element = onlyElement();
    EXPECT_TRUE(element.prepared());
    EXPECT_TRUE(element.committed());
    ASSERT_TRUE(element.matrix());
    EXPECT_EQ(macro->objectCounter(), 2);
    // The number text with its sign position; reading trims the blank.
    EXPECT_NE(readFile(work / "obj" / "Data.ini").find("EINTRAG= 1\r\n"), std::string::npos);
    EXPECT_EQ(ReadIni(macro->settingsFile(), "Sektion", "Eintrag"), "1");
    expectDesignEnded();
}

TEST_F(InsertionTest, TheCounterNamesTheFilesOfTwoInsertionsWithoutDataIni) {
    ASSERT_FALSE(std::filesystem::exists(work / "obj" / "Data.ini"));
    macro->Command4_Click();
    macro->Command4_Click();
    EXPECT_THAT(log.only({"SaveScene"}),
                ElementsAre("SaveScene(" + objFile(" 1.tob") + ", Fallrohr, '')",
                            "SaveScene(" + objFile(" 2.tob") + ", Fallrohr, '')"));
    EXPECT_EQ(macro->objectCounter(), 3);
    // Written in capitals, found in any case.
    EXPECT_NE(readFile(work / "obj" / "Data.ini").find("EINTRAG= 2"), std::string::npos);
    EXPECT_EQ(ReadIni(macro->settingsFile(), "Sektion", "Eintrag"), "2");
}

TEST_F(InsertionTest, TheCounterContinuesFromDataIni) {
    restartWith("[Sektion]\r\nEintrag= 41\r\n");
    ASSERT_EQ(macro->objectCounter(), 42);

    macro->Command4_Click();
    macro->Command4_Click();

    EXPECT_THAT(log.only({"LoadObjectFile"}),
                ElementsAre("LoadObjectFile(" + objFile(" 42.tob") + ", 0)",
                            "LoadObjectFile(" + objFile(" 43.tob") + ", 0)"));
    EXPECT_EQ(macro->objectCounter(), 44);
    EXPECT_EQ(ReadIni(macro->settingsFile(), "SEKTION", "EINTRAG"), "43");
}

TEST_F(InsertionTest, TheCounterStopsAtTheTopOfItsRange) {
    restartWith("[SEKTION]\r\nEINTRAG= 32766\r\n");
    ASSERT_EQ(macro->objectCounter(), 32767);
    macro->Command4_Click();
    EXPECT_EQ(macro->objectCounter(), 32767);
    macro->Command4_Click(); // reuses the last file name
    EXPECT_EQ(log.only({"SaveScene"}).back(),
              "SaveScene(" + objFile(" 32767.tob") + ", Fallrohr, '')");
}

TEST_F(InsertionTest, WithoutTheObjFolderTheInsertionFailsAndTheCounterRestartsAtOne) {
    macro->Command4_Click();
    macro->Command4_Click();
    ASSERT_EQ(macro->objectCounter(), 3);
    std::filesystem::remove_all(work / "obj");
    host->elements.clear();

    macro->Command4_Click();

    EXPECT_EQ(macro->objectCounter(), 1);
    expectDesignEnded();
}

TEST_F(InsertionTest, AFailedExportStillCountsRestoresTheButtonAndEndsTheDesign) {
    log.fail("LoadObjectFile");
    macro->Command4_Click();
    EXPECT_FALSE(log.contains("CreateElement"));
    EXPECT_TRUE(host->elements.empty());
    EXPECT_EQ(macro->objectCounter(), 2);
    EXPECT_TRUE(log.contains("SetMacroButtonState"));
    expectDesignEnded();
}

TEST_F(InsertionTest, AnElementThatWasNotCreatedIsNotPlaced) {
    host->templateCreatesNothing = true;
    macro->Command4_Click();
    EXPECT_FALSE(log.contains("PrepareElement"));
    EXPECT_EQ(macro->objectCounter(), 2);
    expectDesignEnded();
}

TEST_F(InsertionTest, EachPlacementCallIsMadeEvenWhenTheOneBeforeFailed) {
    log.fail("PrepareElement");
    macro->Command4_Click();
    EXPECT_THAT(log.only({"PrepareElement", "SetElementMatrix", "CommitElement"}),
                ElementsAre("PrepareElement(true)", "SetElementMatrix()", "CommitElement(true)"));
}

TEST_F(InsertionTest, CancelEndsTheDesignWithoutInsertingOrCounting) {
    macro->Command2_Click();
    EXPECT_THAT(log.entries(), ElementsAre("SetMacroButtonState(7, 1, 0, true, true)",
                                           "setOverhangText(0)", "hideWindow()"));
    EXPECT_EQ(macro->objectCounter(), 1);
    EXPECT_FALSE(std::filesystem::exists(work / "obj" / "Data.ini"));
    expectDesignEnded();
}

TEST_F(InsertionTest, CancelEndsTheDesignEvenWhenTheHostFails) {
    log.fail("SetMacroButtonState");
    macro->Command2_Click();
    expectDesignEnded();
}

TEST_F(InsertionTest, HelpOpensTheTopicInTheHostsHelpFile) {
    macro->Command7_Click();
    EXPECT_THAT(log.entries(),
                ElementsAre("GetProgramFolder()",
                            "HtmlHelp(" + host->programFolder + "Tectaro.chm::/Pluvarine.htm)"));
}

// ---- The placement matrix -----------------------------------------------------------------

struct PlacementCase {
    double d;
    int placementCase; // 1..4, 0 when no case covers d
};

class PlacementTest : public InsertionTest, public ::testing::WithParamInterface<PlacementCase> {};

// The reference point by the case table, computed in double precision.
std::array<double, 2> referencePoint(int placementCase, double d, double X, double Y, double W) {
    const double r = W / 2000;
    switch (placementCase) {
    case 1: {
        const double a2 = (270 - d) * kPi / 180;
        return {X - r * std::cos(a2) - 8.0 / 1000, Y + r * std::sin(a2) + 8.0 / 1000};
    }
    case 2: {
        const double a2 = std::abs(d - 270) * kPi / 180;
        return {X - r * std::cos(a2) - 8.0 / 1000, Y - r * std::sin(a2) - 8.0 / 1000};
    }
    case 3: {
        const double a2 = (90 - d) * kPi / 180;
        return {X + r * std::cos(a2) + 8.0 / 1000, Y - r * std::sin(a2) - 8.0 / 1000};
    }
    default: {
        const double a2 = std::abs(d - 90) * kPi / 180;
        return {X + r * std::cos(a2) + 8.0 / 1000, Y + r * std::sin(a2) + 8.0 / 1000};
    }
    }
}

TEST_P(PlacementTest, MatrixByTheCaseTable) {
    const PlacementCase& c = GetParam();
    daten.roof.roofDirection = c.d;
    const double X = daten.roof.clickX;
    const double Y = daten.roof.clickY;
    const double W = daten.design.wallOffset;
    const double H = daten.design.heightH;
    const double Z = daten.roof.groundLevel;

    macro->Command4_Click();

    if (c.placementCase == 0) {
        EXPECT_FALSE(log.contains("PrepareElement"));
        EXPECT_FALSE(log.contains("SetElementMatrix"));
        EXPECT_FALSE(log.contains("CommitElement"));
        EXPECT_FALSE(onlyElement().matrix());
        // Counter, button and reset still happen.
        EXPECT_EQ(macro->objectCounter(), 2);
        expectDesignEnded(c.d);
        return;
    }
    const PlacementMatrix& m = *onlyElement().matrix();
    const double a = (-c.d - 90 - 180) * kPi / 180;
    const auto [x, y] = referencePoint(c.placementCase, c.d, X, Y, W);
    const double z = H / 2000 + 110.0 / 1000 + Z / 1000;
    const std::array<std::array<float, 4>, 4> expected{{
        {float(std::cos(a)), float(std::sin(a)), 0, float(x)},
        {float(-std::sin(a)), float(std::cos(a)), 0, float(y)},
        {0, 0, 1, float(z)},
        {0, 0, 0, 1},
    }};
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            EXPECT_EQ(m.at(row, column), expected[row][column])
                << "M(" << row << "," << column << ")";
        }
    }
    // Stored with the first index varying fastest.
    EXPECT_EQ(m.values[1], expected[1][0]);
    EXPECT_EQ(m.values[4], expected[0][1]);
    EXPECT_EQ(m.values[12], expected[0][3]);

    // The same point in other words (0 <= d <= 360): half the wall offset along (sin d, -cos d),
    // then 8 mm on each axis in the sign of that direction (case 1: -x, +y).
    // Where both components are clearly non-zero.
    const double dr = c.d * kPi / 180;
    const double sx = std::sin(dr);
    const double sy = -std::cos(dr);
    if (c.d >= 0 && c.d <= 360 && std::abs(sx) > 1e-9 && std::abs(sy) > 1e-9) {
        const double gx = c.placementCase == 1 ? -1 : (sx < 0 ? -1 : 1);
        const double gy = c.placementCase == 1 ? 1 : (sy < 0 ? -1 : 1);
        EXPECT_NEAR(m.at(0, 3), X + W / 2000 * sx + 0.008 * gx, 1e-5);
        EXPECT_NEAR(m.at(1, 3), Y + W / 2000 * sy + 0.008 * gy, 1e-5);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Directions, PlacementTest,
    ::testing::Values(PlacementCase{0, 3}, PlacementCase{45, 3}, PlacementCase{90, 3},
                      PlacementCase{135, 4}, PlacementCase{180, 1}, PlacementCase{225, 1},
                      PlacementCase{270, 1}, PlacementCase{315, 2}, PlacementCase{360, 2},
                      PlacementCase{-45, 3}, PlacementCase{-135, 4}, PlacementCase{-300, 2},
                      PlacementCase{-200, 0}, PlacementCase{400, 0}, PlacementCase{-400, 0}),
    [](const auto& testCase) {
        const double d = testCase.param.d;
        return (d < 0 ? "minus" : "") + std::to_string(int(std::abs(d)));
    });

TEST_F(InsertionTest, Direction270TurnsLike180AndSitsBesideThePoint) {
    daten.roof.roofDirection = 270;
    macro->Command4_Click();
    const PlacementMatrix& m = *onlyElement().matrix();
    // a = -540 degrees: the same turn as 180.
    EXPECT_NEAR(m.at(0, 0), -1, 1e-6);
    EXPECT_NEAR(m.at(0, 1), 0, 1e-6);
    EXPECT_EQ(m.at(0, 3), float(4.25 - 560.0 / 2000 - 0.008));
    EXPECT_EQ(m.at(1, 3), float(-2.5 + 0.008));
}

TEST_F(InsertionTest, Direction0SitsOnTheNegativeYSide) {
    daten.roof.roofDirection = 0;
    macro->Command4_Click();
    const PlacementMatrix& m = *onlyElement().matrix();
    EXPECT_EQ(m.at(0, 3), float(4.25 + 560.0 / 2000 * std::cos(kPi / 2) + 0.008));
    EXPECT_EQ(m.at(1, 3), float(-2.5 - 560.0 / 2000 - 0.008));
    EXPECT_EQ(m.at(2, 3), float(2950.0 / 2000 + 0.11 + 0.15));
}

} // namespace
} // namespace pluvarine::test
