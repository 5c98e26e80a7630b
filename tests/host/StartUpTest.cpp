// Start-up of the macro: the load handler's order, the connection, the version verdict and
// the toolbar button.

#include "MacroFixture.h"

#include <regex>

namespace pluvarine::test {
namespace {

using ::testing::ElementsAre;

class StartUpTest : public MacroFixture {};

TEST_F(StartUpTest, RunsTheLoadStepsInOrderAgainstACompatibleHost) {
    macro->Form_Load();

    const std::string guid = Macro::MacroGuid;
    EXPECT_THAT(log.entries(),
                ElementsAre("ApplyLanguage()", "createConnection()",
                            "ConnectMacro(4711, '', " + guid + ")", "GetVersionText()",
                            "AddMacroButton(30x30, 16974340, " + LoadText(5005) + ", 4733)",
                            "SetMacroButtonState(7, 1, 0, true, true)", "GetProgramFolder()",
                            "LoadScene(" + workFolder() + "/main.v3o)", "fillMaterialList()",
                            "setOverhangText(0)"));
    EXPECT_FALSE(program.hasEnded());
    EXPECT_TRUE(macro->hostCompatible());
    EXPECT_FALSE(macro->skipVersionCheck());
    EXPECT_EQ(macro->hostButtonId(), 7);
    EXPECT_EQ(host->sink, macro.get());
    EXPECT_EQ(daten.workFolder, workFolder());
    EXPECT_EQ(macro->settingsFile(), workFolder() + "/obj/Data.ini");
    EXPECT_EQ(daten.oldObjectFile, workFolder() + "/obj/fallrohr.tob");
    EXPECT_EQ(macro->objectCounter(), 1); // no Data.ini yet
    EXPECT_EQ(view.overhang, "0");
}

TEST_F(StartUpTest, TheMacroIdentifiesItselfWithAGuidInRegistryForm) {
    EXPECT_TRUE(std::regex_match(
        std::string(Macro::MacroGuid),
        std::regex(R"(\{[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\})")));
}

TEST_F(StartUpTest, TheButtonGetsTheBildPictureInTheHostsFormat) {
    macro->Form_Load();
    EXPECT_EQ(host->buttonPicture.image.size(), QSize(30, 30));
    EXPECT_EQ(host->buttonPicture.image.format(), QImage::Format_ARGB32);
    EXPECT_EQ(host->buttonPicture.image.pixelColor(15, 15), QColor(Qt::blue));
}

TEST_F(StartUpTest, ResetsTheDesignFlagsAndTheRoofData) {
    daten.design.bendPartsBuilt = true;
    daten.design.bendChosen = true;
    daten.design.constructionAnswered = true;
    daten.design.modelBuilt = true;
    daten.roof = RoofData{5, 6, 7, 8, 9, 10, 11, 0, 0};

    macro->Form_Load();

    EXPECT_FALSE(daten.design.bendPartsBuilt);
    EXPECT_FALSE(daten.design.bendChosen);
    EXPECT_FALSE(daten.design.constructionAnswered);
    EXPECT_FALSE(daten.design.modelBuilt);
    EXPECT_EQ(daten.roof.roofOverhang, 0);
    EXPECT_EQ(daten.roof.gutterWidth, 0);
    EXPECT_EQ(daten.roof.roofPitch, 0);
    EXPECT_EQ(daten.roof.roofingThickness, 0);
    EXPECT_EQ(daten.roof.roofDirection, 0);
    EXPECT_EQ(daten.roof.roofLevel, 0);
    EXPECT_EQ(daten.roof.groundLevel, 0);
}

TEST_F(StartUpTest, TheCounterContinuesAfterTheStoredNumber) {
    writeFile(work / "obj" / "Data.ini", "[SEKTION]\r\nEINTRAG= 7\r\n");
    macro->Form_Load();
    EXPECT_EQ(macro->objectCounter(), 8);
}

// The start-up paths that end the program: which messages appear, and that nothing after the
// verdict runs.
struct EndingCase {
    const char* name;
    bool cannotCreate;
    bool connectResult;
    const char* failingOp;
    const char* versionText;
    int message;        // 5001 or 5000
    bool buttonCreated; // the button comes before the version verdict
    bool versionAsked;
};

class StartUpEndingTest : public MacroFixture, public ::testing::WithParamInterface<EndingCase> {};

TEST_P(StartUpEndingTest, ShowsOneMessageAndEndsBeforeTheWorkFolderIsResolved) {
    const EndingCase& c = GetParam();
    connectionCannotBeCreated = c.cannotCreate;
    host->connectResult = c.connectResult;
    host->versionText = c.versionText;
    if (*c.failingOp != '\0') {
        log.fail(c.failingOp);
    }

    macro->Form_Load();

    EXPECT_TRUE(program.hasEnded());
    const std::vector<std::string> shown = log.only({"message", "criticalMessage"});
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown[0], "message(" + LoadText(c.message) + ")");
    EXPECT_EQ(log.names().back(), "endProgram");
    EXPECT_EQ(log.contains("AddMacroButton"), c.buttonCreated);
    EXPECT_EQ(log.contains("GetVersionText"), c.versionAsked);
    EXPECT_FALSE(log.contains("GetProgramFolder"));
    EXPECT_FALSE(log.contains("LoadScene"));
    EXPECT_FALSE(log.contains("fillMaterialList"));
}

INSTANTIATE_TEST_SUITE_P(
    Paths, StartUpEndingTest,
    ::testing::Values(
        EndingCase{"NoConnectionObject", true, true, "", "Tectaro +2010", 5001, false, false},
        EndingCase{"ConnectRefused", false, false, "", "Tectaro +2010", 5001, false, false},
        EndingCase{"ConnectFails", false, true, "ConnectMacro", "Tectaro +2010", 5001, false,
                   false},
        EndingCase{"OldVersion", false, true, "", "Tectaro +2004", 5000, true, true},
        EndingCase{"OtherProduct", false, true, "", "Archicad +2010", 5000, true, true},
        EndingCase{"NoVersionNumber", false, true, "", "Tectaro 2010", 5000, true, true},
        EndingCase{"VersionTextFails", false, true, "GetVersionText", "Tectaro +2010", 5000, true,
                   true}),
    [](const auto& testCase) { return std::string(testCase.param.name); });

TEST_F(StartUpTest, AnIncompatibleHostStillGetsItsButtonBeforeTheMessage) {
    host->versionText = "Tectaro +2004";
    macro->Form_Load();
    EXPECT_THAT(log.names(),
                ElementsAre("ApplyLanguage", "createConnection", "ConnectMacro", "GetVersionText",
                            "AddMacroButton", "SetMacroButtonState", "message", "endProgram"));
}

TEST_F(StartUpTest, ARussianSystemSkipsTheVersionCheck) {
    view.russianSystem = true;
    host->versionText = "no version at all";
    macro->Form_Load();
    EXPECT_TRUE(macro->skipVersionCheck());
    EXPECT_TRUE(macro->hostCompatible());
    EXPECT_FALSE(log.contains("GetVersionText"));
    EXPECT_FALSE(program.hasEnded());
    EXPECT_TRUE(log.contains("LoadScene"));
}

TEST_F(StartUpTest, ARussianSystemStillEndsWhenTheHostCannotBeReached) {
    view.russianSystem = true;
    host->connectResult = false;
    macro->Form_Load();
    EXPECT_TRUE(program.hasEnded());
    EXPECT_EQ(log.only({"message"}), std::vector<std::string>{"message(" + LoadText(5001) + ")"});
}

TEST_F(StartUpTest, AFailedButtonCreationLeavesTheStateCallOutAndGoesOn) {
    log.fail("AddMacroButton");
    macro->Form_Load();
    EXPECT_FALSE(log.contains("SetMacroButtonState"));
    EXPECT_FALSE(program.hasEnded());
    EXPECT_EQ(macro->hostButtonId(), 0);
    EXPECT_TRUE(log.contains("LoadScene"));
}

TEST_F(StartUpTest, AFailingLoadStepIsSkipped) {
    log.fail("GetProgramFolder");
    macro->Form_Load();
    EXPECT_FALSE(program.hasEnded());
    EXPECT_TRUE(log.contains("fillMaterialList"));
    EXPECT_EQ(view.overhang, "0");
}

} // namespace
} // namespace pluvarine::test
