// Insertion into the building: export, the element and its placement matrix, the counter and
// the reset; and the cancel button, which ends a design the same way.

#include "MacroFixture.h"
#include "host/ElementPlacement.h"
#include "store/SettingsStore.h"

namespace pluvarine::test {
namespace {

class InsertionTest : public MacroFixture {
protected:
    void SetUp() override { restartWith(""); }

    // A program run (with the counter stored in Data.ini unless empty) and a design at the
    // picked wall, as the pick and the rebuild leave it.
    void restartWith(const std::string& dataIni) {
        if (!dataIni.empty()) {
            writeFile(objFile("Data.ini"), dataIni);
        }
        makeMacro();
        start();
        daten.roof = RoofData{500, 120, 40, 30, 180, 0, 150, 4.25F, -2.5F};
        daten.design.wallOffset = 560;
        daten.design.heightH = 2950;
        daten.design.constructionAnswered = daten.design.bendChosen = true;
    }

    // The button enabled, the window hidden; kept: the overhang value, the direction, the levels,
    // the preview.
    void expectDesignEnded(double direction = 180) const {
        EXPECT_EQ(roof(), std::make_tuple(0.0, 0.0, 0.0, direction, 500.0, 0.0F, 150.0F));
        EXPECT_EQ(std::tie(daten.design.heightH, overhang), std::make_tuple(0.0, "0"));
        EXPECT_TRUE(log.contains("SetMacroButtonState") && log.contains("hideWindow"));
        EXPECT_FALSE(daten.design.constructionAnswered || daten.design.bendChosen ||
                     log.contains("LoadScene"));
    }
    std::string saved(const std::string& name) const {
        return "SaveScene(" + objFile(name) + ", Fallrohr, '')";
    }
};

TEST_F(InsertionTest, ExportsLoadsPlacesCountsAndEndsTheDesign) {
    macro->Command4_Click();

    EXPECT_THAT(log.entries,
                ElementsAre(saved(" 1.tob"), "LoadObjectFile(" + objFile(" 1.tob") + ", 0)",
                            "CreateElement(none, 0)", "PrepareElement(true)", "SetElementMatrix()",
                            "CommitElement(true)", "SetMacroButtonState(7, 1, 0, true, true)",
                            "setOverhangText(0)", "hideWindow()"));
    // X, Y, W, H and Z reach the placement (the numbers: PlacementTest).
    EXPECT_EQ(host->matrix.value_or(PlacementMatrix{}).values,
              elementPlacement({180, 4.25F, -2.5F, 150, 560, 2950})->values);
    // The number text with its sign position (reading trims the blank).
    EXPECT_NE(readFile(objFile("Data.ini")).find("EINTRAG= 1\r\n"), std::string::npos);
    expectDesignEnded();
}

// The counter names the object files and never replaces one: numbers whose file is there are
// passed over, and past the end of the 16-bit range the insertion is refused with a message and
// the design stays open. Data.ini is read without regard to case.
TEST_F(InsertionTest, TheCounterNamesTheFilesAndNeverReplacesOne) {
    // Data.ini (none at first), the numbers written while 5 and 6 are there, whether one more
    // insertion is then refused, the counter afterwards; the last number written is stored.
    const std::tuple<std::string, std::vector<int>, bool, int> table[] = {
        {"", {1, 2}, false, 3},
        {"[Sektion]\r\nEintrag= 41\r\n", {42, 43}, false, 44},
        {"[SEKTION]\r\nEINTRAG= 32765\r\n", {32766, 32767}, true, 32767},
        {"[SEKTION]\r\nEINTRAG= 99999\r\n", {32767}, true, 32767},
        {"[SEKTION]\r\nEINTRAG= 2147483647\r\n", {32767}, true, 32767},
        {"[SEKTION]\r\nEINTRAG=" + std::string(40000, '9') + "\r\n", {32767}, true, 32767},
        {"[SEKTION]\r\nEINTRAG= 4\r\n", {7, 8}, false, 9}};
    for (const auto& [dataIni, numbers, refused, counter] : table) {
        SCOPED_TRACE(dataIni.substr(0, 32));
        std::filesystem::remove_all(work / "obj");
        writeFile(objFile(" 5.tob"), "an earlier downpipe");
        writeFile(objFile(" 6.tob"), "another one");
        restartWith(dataIni);
        std::vector<std::string> written;
        for (const int number : numbers) {
            written.push_back(saved(" " + std::to_string(number) + ".tob"));
            macro->Command4_Click();
        }
        if (refused) {
            macro->Command4_Click();
        }
        EXPECT_EQ(log.only({"SaveScene"}), written);
        EXPECT_EQ(log.only({"message"}), refused ? std::vector{"message(" + LoadText(5004) + ")"}
                                                 : std::vector<std::string>{});
        EXPECT_EQ(log.only({"hideWindow"}).size(), written.size()); // the refused design stays
        EXPECT_EQ(macro->objectCounter(), counter);
        EXPECT_EQ(ReadIni(macro->settingsFile(), "sektion", "eintrag"),
                  std::to_string(numbers.back()));
        EXPECT_EQ(readFile(objFile(" 5.tob")), "an earlier downpipe");
        EXPECT_EQ(readFile(objFile(" 6.tob")), "another one");
    }
}

TEST_F(InsertionTest, AFailingStepIsSkippedAndTheDesignStillEnds) {
    // The failing operation, the one returning nothing, the direction, a call then left out.
    const std::tuple<const char*, const char*, double, const char*> table[] = {
        {"LoadObjectFile", "", 180, "CreateElement"},
        {"", "CreateElement", 180, "PrepareElement"},
        {"", "", -200, "SetElementMatrix"},
        {"PrepareElement", "", 180, "none"}};
    for (const auto& [failing, empty, direction, leftOut] : table) {
        restartWith("");
        daten.roof.roofDirection = direction;
        log.failing = {failing};
        log.empty = {empty};
        const int counter = macro->objectCounter();
        macro->Command4_Click();
        EXPECT_FALSE(log.contains(leftOut)) << leftOut;
        EXPECT_EQ(macro->objectCounter(), counter + 1);
        expectDesignEnded(direction);
    }
    // Each placement call is made even when the one before failed.
    EXPECT_THAT(log.only({"PrepareElement", "SetElementMatrix", "CommitElement"}),
                ElementsAre("PrepareElement(true)", "SetElementMatrix()", "CommitElement(true)"));
    // Without the obj folder the export fails and the counter restarts at 1.
    std::filesystem::remove_all(work / "obj");
    macro->Command4_Click();
    EXPECT_EQ(macro->objectCounter(), 1);
    expectDesignEnded();
}

TEST_F(InsertionTest, CancelEndsTheDesignWithoutInsertingOrCounting) {
    macro->Command2_Click();
    EXPECT_THAT(log.entries, ElementsAre("SetMacroButtonState(7, 1, 0, true, true)",
                                         "setOverhangText(0)", "hideWindow()"));
    EXPECT_EQ(macro->objectCounter(), 1);
    EXPECT_FALSE(std::filesystem::exists(work / "obj" / "Data.ini"));
    expectDesignEnded();
}

TEST_F(InsertionTest, HelpOpensTheTopicInTheHostsHelpFile) {
    macro->Command7_Click();
    EXPECT_THAT(log.entries, ElementsAre("GetProgramFolder()", "HtmlHelp(" + host->programFolder +
                                                                   "Tectaro.chm::/Pluvarine.htm)"));
}

// The placement of a downpipe picked at (4.25, -2.5) m, wall offset 560 mm, height 2950 mm,
// ground level 150 mm: a turn by a = -d - 270 degrees, the point half the wall offset plus 8 mm
// on each axis away from the pick, at 1.735 m. Other directions give no placement.
TEST(PlacementTest, MatrixByDirection) {
    // d, cos a, sin a, x, y
    const std::array<float, 5> table[] = {
        {0, 0, 1, 4.258F, -2.788F},    {90, 1, 0, 4.538F, -2.508F},
        {180, 0, -1, 4.242F, -2.212F}, {270, -1, 0, 3.962F, -2.492F},
        {360, 0, 1, 4.242F, -2.788F},  {-45, -0.70710678F, 0.70710678F, 4.0600101F, -2.7059899F}};
    for (const auto& [d, c, s, x, y] : table) {
        const auto m = elementPlacement({d, 4.25F, -2.5F, 150, 560, 2950});
        ASSERT_TRUE(m) << d;
        // Rows (c, s, 0, x), (-s, c, 0, y), (0, 0, 1, 1.735), (0, 0, 0, 1), stored column by
        // column: the first index varies fastest.
        const std::array<float, 16> expected{c, -s, 0, 0, s, c, 0, 0, 0, 0, 1, 0, x, y, 1.735F, 1};
        EXPECT_THAT(m->values, ::testing::Pointwise(::testing::FloatNear(1e-6F), expected)) << d;
    }
    EXPECT_FALSE(elementPlacement({-200, 4.25F, -2.5F, 150, 560, 2950}));
    EXPECT_FALSE(elementPlacement({400, 4.25F, -2.5F, 150, 560, 2950}));
}

} // namespace
} // namespace pluvarine::test
