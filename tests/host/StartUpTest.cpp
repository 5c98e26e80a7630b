// Start-up of the macro: the load handler's order, the connection, the version verdict and
// the toolbar button.

#include "MacroFixture.h"

#include <optional>
#include <tuple>

namespace pluvarine::test {
namespace {

using StartUpTest = MacroFixture;

TEST_F(StartUpTest, RunsTheLoadStepsInOrderAgainstACompatibleHost) {
    const std::string workFolder = work.string();
    DesignRecord& d = daten.design;
    d.modelBuilt = d.bendPartsBuilt = d.constructionAnswered = d.bendChosen = true;
    daten.roof = RoofData{5, 6, 7, 8, 9, 10, 11, 0, 0};

    macro->Form_Load();

    EXPECT_THAT(log.entries,
                ElementsAre("ApplyLanguage()", "createConnection()",
                            "ConnectMacro(4711, '', " + std::string(Macro::MacroGuid) + ")",
                            "GetVersionText()",
                            "AddMacroButton(30x30, 16974340, " + LoadText(5005) + ", 4733)",
                            "SetMacroButtonState(7, 1, 0, true, true)", "GetProgramFolder()",
                            "LoadScene(" + workFolder + "/main.v3o)", "fillMaterialList()",
                            "setOverhangText(0)"));
    EXPECT_FALSE(window.ended);
    EXPECT_TRUE(macro->hostCompatible());
    EXPECT_FALSE(macro->skipVersionCheck());
    EXPECT_EQ(macro->hostButtonId(), 7);
    EXPECT_EQ(host->sink, macro.get());
    EXPECT_EQ(host->buttonPicture.image.format(), QImage::Format_ARGB32);
    EXPECT_EQ(host->buttonPicture.image.pixelColor(15, 15), QColor(Qt::blue)); // Bild
    EXPECT_EQ(daten.workFolder, workFolder);
    EXPECT_EQ(macro->settingsFile(), workFolder + "/obj/Data.ini");
    EXPECT_EQ(daten.oldObjectFile, workFolder + "/obj/fallrohr.tob");
    EXPECT_EQ(macro->objectCounter(), 1); // no Data.ini yet
    EXPECT_FALSE(d.bendPartsBuilt || d.bendChosen || d.constructionAnswered || d.modelBuilt);
    const RoofData& r = daten.roof;
    EXPECT_EQ(std::tie(r.roofOverhang, r.gutterWidth, r.roofPitch, r.roofingThickness,
                       r.roofDirection, r.roofLevel, r.groundLevel),
              std::make_tuple(0.0, 0.0, 0.0, 0.0, 0.0, 0.0F, 0.0F));
}

// The start-up paths that end the program with one message before the work folder is resolved.
struct EndingCase {
    const char* name;
    bool russian;
    bool cannotCreate;
    bool connectResult;
    const char* failingOp;
    const char* versionText;
    int message;
    bool buttonCreated; // before the message: the button comes before the version verdict
    bool versionAsked;
};

class StartUpEndingTest : public MacroFixture, public ::testing::WithParamInterface<EndingCase> {};

TEST_P(StartUpEndingTest, ShowsOneMessageAndEnds) {
    const EndingCase& c = GetParam();
    window.russianSystem = c.russian;
    connectionCannotBeCreated = c.cannotCreate;
    host->connectResult = c.connectResult;
    host->versionText = c.versionText;
    log.failing.insert(c.failingOp);

    macro->Form_Load();

    EXPECT_TRUE(window.ended);
    EXPECT_THAT(log.only({"message", "criticalMessage"}),
                ElementsAre("message(" + LoadText(c.message) + ")"));
    const std::vector<std::string> names = log.names();
    EXPECT_THAT(std::vector(names.end() - 2, names.end()), ElementsAre("message", "endProgram"));
    EXPECT_EQ(log.contains("AddMacroButton"), c.buttonCreated);
    EXPECT_EQ(log.contains("SetMacroButtonState"), c.buttonCreated);
    EXPECT_EQ(log.contains("GetVersionText"), c.versionAsked);
    EXPECT_FALSE(log.contains("GetProgramFolder") || log.contains("LoadScene") ||
                 log.contains("fillMaterialList"));
}

INSTANTIATE_TEST_SUITE_P(
    Paths, StartUpEndingTest,
    ::testing::Values(
        EndingCase{"NoConnectionObject", false, true, true, "", "Tectaro +2010", 5001, false,
                   false},
        EndingCase{"ConnectRefused", false, false, false, "", "Tectaro +2010", 5001, false, false},
        EndingCase{"ConnectFails", false, false, true, "ConnectMacro", "", 5001, false, false},
        EndingCase{"RussianUnreachable", true, false, false, "", "", 5001, false, false},
        EndingCase{"OldVersion", false, false, true, "", "Tectaro +2004", 5000, true, true},
        EndingCase{"OtherProduct", false, false, true, "", "Archicad +2010", 5000, true, true},
        EndingCase{"NoVersionNumber", false, false, true, "", "Tectaro 2010", 5000, true, true},
        EndingCase{"VersionTextFails", false, false, true, "GetVersionText", "Tectaro +2010", 5000,
                   true, true}),
    [](const auto& testCase) { return std::string(testCase.param.name); });

TEST_F(StartUpTest, ARussianSystemSkipsTheVersionCheck) {
    window.russianSystem = true;
    host->versionText = "no version at all";
    macro->Form_Load();
    EXPECT_TRUE(macro->skipVersionCheck());
    EXPECT_TRUE(macro->hostCompatible());
    EXPECT_FALSE(log.contains("GetVersionText"));
    EXPECT_FALSE(window.ended);
    EXPECT_TRUE(log.contains("LoadScene"));
}

TEST_F(StartUpTest, AFailedButtonCreationLeavesTheStateCallOutAndGoesOn) {
    log.failing = {"AddMacroButton"};
    macro->Form_Load();
    EXPECT_FALSE(log.contains("SetMacroButtonState"));
    EXPECT_EQ(macro->hostButtonId(), 0);
    EXPECT_FALSE(window.ended);
    EXPECT_TRUE(log.contains("LoadScene"));
}

TEST_F(StartUpTest, AFailingLoadStepIsSkipped) {
    log.failing = {"GetProgramFolder"};
    macro->Form_Load();
    EXPECT_FALSE(window.ended);
    EXPECT_TRUE(log.contains("fillMaterialList"));
    EXPECT_EQ(window.overhang, "0");
}

// The version test: the host family by name, the number read after "+" signs; no verdict
// (nullopt) when the number cannot be read.
struct VersionCase {
    const char* text;
    std::optional<bool> verdict;
};

class VersionCheckTest : public ::testing::TestWithParam<VersionCase> {};

TEST_P(VersionCheckTest, Verdict) {
    const VersionCase& c = GetParam();
    if (c.verdict) {
        EXPECT_EQ(Macro::Versionspruefung(c.text), *c.verdict) << c.text;
    } else {
        EXPECT_THROW(Macro::Versionspruefung(c.text), RuntimeError) << c.text;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Table, VersionCheckTest,
    ::testing::Values(
        VersionCase{"Tectaro Vorex +2010", true}, VersionCase{"Tectaro Vorex +2004", false},
        VersionCase{"Tectaro Vorex 2010", std::nullopt}, VersionCase{"Tectaro +2005", true},
        VersionCase{"Vorex +2005.9", true}, VersionCase{"Vorex +2004.99", false},
        // A blank ends the number (2010.5, then 200: with the 5 appended it would read 2005).
        VersionCase{"Tectaro +2010.5 build 7", true}, VersionCase{"Tectaro +200 build 5", false},
        // Other characters are skipped; a later "+" appends to the same number text.
        VersionCase{"Tectaro +20a10", true}, VersionCase{"Tectaro +20(04)", false},
        VersionCase{"Tectaro +20 and +10", true}, VersionCase{"Tectaro+2010", true},
        VersionCase{"MyVorexBuild +2011", true}, VersionCase{"tectaro +2010", false},
        VersionCase{"VOREX +2010", false}, VersionCase{"Archicad +2010", false},
        VersionCase{"Archicad 2010", std::nullopt}, VersionCase{"Tectaro +", std::nullopt},
        VersionCase{"Tectaro + 2010", std::nullopt}, VersionCase{"Tectaro +1.2.3", std::nullopt},
        VersionCase{"", std::nullopt}));

} // namespace
} // namespace pluvarine::test
