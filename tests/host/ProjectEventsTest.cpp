// The host's project events: the macro's data block at save and load, the counter after a
// load, clearing the project folders at close, the button state and the end of the program.

#include "MacroFixture.h"

namespace pluvarine::test {
namespace {

using ::testing::ElementsAre;

class ProjectEventsTest : public MacroFixture {
protected:
    void SetUp() override { start(); }

    std::filesystem::path archive() const { return work / "destination" / "pluvarine.dat"; }
    std::string enable() const { return "SetMacroButtonState(7, 1, 0, true, true)"; }
};

TEST_F(ProjectEventsTest, SaveStartAnnouncesOneMoreDataBlock) {
    std::int32_t chunks = 3;
    macro->exe_SaveStart("house.tpr", 1, false, chunks);
    EXPECT_EQ(chunks, 4);
    EXPECT_TRUE(log.entries().empty());
}

TEST_F(ProjectEventsTest, SavingAnEmptyObjFolderHandsOverAFourByteArchive) {
    macro->exe_SaveBuilding(0, building);

    EXPECT_EQ(readFile(archive()), std::string(4, '\0'));
    EXPECT_THAT(log.entries(), ElementsAre("EndProgress()",
                                           "SaveMacroData(548199592, " + archive().string() + ")"));
    EXPECT_EQ(host->macroData.at(Macro::MacroDataId), std::string(4, '\0'));
}

TEST_F(ProjectEventsTest, SavingPacksEveryObjectFileWithProgressInTheHost) {
    writeFile(work / "obj" / "Data.ini", "[SEKTION]\r\nEINTRAG= 2\r\n");
    writeFile(work / "obj" / " 1.tob", "first");
    macro->exe_SaveBuilding(0, nullptr);

    EXPECT_THAT(log.only({"ShowProgress", "EndProgress"}),
                ElementsAre("ShowProgress(" + LoadText(4000) + ", 50)",
                            "ShowProgress(" + LoadText(4000) + ", 100)", "EndProgress()"));
    EXPECT_EQ(pumps, 2); // pending events run after every file
    const std::string& block = host->macroData.at(Macro::MacroDataId);
    EXPECT_EQ(block, readFile(archive()));
    EXPECT_EQ(block.size(), 4 + (2 + 6 + 4 + 5) + (2 + 8 + 4 + 23U));
}

TEST_F(ProjectEventsTest, AFailedPackStillHandsOverWhatIsThere) {
    std::filesystem::remove_all(work / "obj");
    macro->exe_SaveBuilding(0, nullptr);
    EXPECT_TRUE(log.contains("SaveMacroData"));
    EXPECT_TRUE(log.only({"message"}).empty());
}

TEST_F(ProjectEventsTest, LoadingWithABuildingOnlyEnablesTheButton) {
    writeFile(work / "obj" / " 1.tob", "keep me");
    host->macroData[Macro::MacroDataId] = std::string(4, '\0');

    macro->exe_LoadBuilding(building, 0);

    EXPECT_THAT(log.entries(), ElementsAre(enable()));
    EXPECT_EQ(readFile(work / "obj" / " 1.tob"), "keep me");
}

TEST_F(ProjectEventsTest, LoadingWithoutABuildingRestoresObjAndTheCounter) {
    writeFile(work / "obj" / "Data.ini", "[SEKTION]\r\nEINTRAG= 5\r\n");
    writeFile(work / "obj" / " 4.tob", std::string("four\0bytes", 10));
    writeFile(work / "obj" / " 5.tob", "");
    macro->exe_SaveBuilding(0, nullptr);
    const std::string saved = host->macroData.at(Macro::MacroDataId);
    macro->exe_ProjectClosed();
    ASSERT_TRUE(std::filesystem::is_empty(work / "obj"));
    log.clear();

    macro->exe_LoadBuilding(nullptr, 0);

    const std::string programFolderText = host->programFolder;
    const std::string below = "Standard/" + LoadText(8002) + "/Pluvarine";
    EXPECT_THAT(log.only({"SetMacroButtonState", "GetProgramFolder", "LoadMacroData"}),
                ElementsAre(enable(), "GetProgramFolder()", "GetProgramFolder()",
                            "LoadMacroData(548199592, " + programFolderText + below +
                                "/destination/pluvarine.dat)"));
    EXPECT_EQ(readFile(work / "obj" / " 4.tob"), std::string("four\0bytes", 10));
    EXPECT_TRUE(std::filesystem::exists(work / "obj" / " 5.tob"));
    EXPECT_EQ(readFile(work / "obj" / " 5.tob"), "");
    EXPECT_EQ(readFile(work / "obj" / "Data.ini"), "[SEKTION]\r\nEINTRAG= 5\r\n");
    EXPECT_EQ(macro->objectCounter(), 5); // the stored number itself
    EXPECT_THAT(log.only({"ShowProgress"}).size(), 3U);
    EXPECT_TRUE(log.only({"message"}).empty());

    macro->exe_LoadComplete(true);
    EXPECT_EQ(macro->objectCounter(), 6);
    EXPECT_EQ(log.entries().back(), enable());
}

TEST_F(ProjectEventsTest, ALoadWithoutMacroDataLeavesObjAsItWas) {
    writeFile(work / "obj" / " 3.tob", "three");
    macro->exe_LoadBuilding(nullptr, 0);
    EXPECT_EQ(readFile(work / "obj" / " 3.tob"), "three");
    EXPECT_EQ(macro->objectCounter(), 1);
    EXPECT_FALSE(log.contains("ShowProgress"));
    EXPECT_TRUE(log.only({"message", "criticalMessage"}).empty());
}

TEST_F(ProjectEventsTest, LoadErrorsShowTheFixedGermanTextAndLoadingGoesOn) {
    log.fail("SetMacroButtonState");
    log.fail("LoadMacroData");

    macro->exe_LoadBuilding(nullptr, 0);

    const std::string expected = "Fehler in Funktion Main_LoadBuilding: \r1002 - ";
    EXPECT_THAT(log.only({"message"}),
                ElementsAre("message(" + expected + "SetMacroButtonState failed" +
                                "\rDas Programm wird fortgesetzt.)",
                            "message(" + expected + "LoadMacroData failed" +
                                "\rDas Programm wird fortgesetzt.)"));
    EXPECT_TRUE(log.contains("LoadMacroData")); // the failure of the first step did not stop it
    EXPECT_FALSE(program.hasEnded());
}

TEST_F(ProjectEventsTest, ADamagedArchiveIsReportedAndLeavesObjAlone) {
    writeFile(work / "obj" / " 3.tob", "three");
    host->macroData[Macro::MacroDataId] = std::string("\x05\0\0\0", 4); // five records, none there
    macro->exe_LoadBuilding(nullptr, 0);
    const std::vector<std::string> shown = log.only({"message"});
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_TRUE(shown[0].starts_with("message(Fehler in Funktion Main_LoadBuilding: \r"));
    EXPECT_EQ(readFile(work / "obj" / " 3.tob"), "three");
}

TEST_F(ProjectEventsTest, LoadCompleteWithoutDataIniStartsTheCounterAtOne) {
    macro->Command4_Click();
    macro->Command4_Click();
    ASSERT_EQ(macro->objectCounter(), 3);
    macro->exe_ProjectClosed();
    macro->exe_LoadComplete(false);
    EXPECT_EQ(macro->objectCounter(), 1);
}

TEST_F(ProjectEventsTest, ClosingTheProjectDisablesTheButtonAndDeletesTheProjectFiles) {
    writeFile(work / "obj" / "Data.ini", "[SEKTION]\r\nEINTRAG= 2\r\n");
    writeFile(work / "obj" / " 1.tob", "one");
    writeFile(work / "destination" / "pluvarine.dat", "archive");
    std::filesystem::create_directory(work / "obj" / "sub");
    writeFile(work / "obj" / "sub" / "inner.txt", "stays");
    daten.design.heightH = 2500;
    daten.roof.roofOverhang = 300;

    macro->exe_ProjectClosed();

    EXPECT_THAT(log.entries(), ElementsAre("SetMacroButtonState(7, 1, 0, true, false)"));
    EXPECT_FALSE(std::filesystem::exists(work / "obj" / "Data.ini"));
    EXPECT_FALSE(std::filesystem::exists(work / "obj" / " 1.tob"));
    EXPECT_FALSE(std::filesystem::exists(work / "destination" / "pluvarine.dat"));
    EXPECT_EQ(readFile(work / "obj" / "sub" / "inner.txt"), "stays"); // sub-folders untouched
    // Nothing in memory is reset.
    EXPECT_EQ(daten.design.heightH, 2500);
    EXPECT_EQ(daten.roof.roofOverhang, 300);
    EXPECT_EQ(macro->objectCounter(), 1);
}

TEST_F(ProjectEventsTest, ClosingDeletesTheFilesEvenWhenTheButtonCannotBeChanged) {
    writeFile(work / "obj" / " 1.tob", "one");
    log.fail("SetMacroButtonState");
    macro->exe_ProjectClosed();
    EXPECT_FALSE(std::filesystem::exists(work / "obj" / " 1.tob"));
}

TEST_F(ProjectEventsTest, ANewProjectEnablesTheButton) {
    macro->exe_NewCurrentProject();
    EXPECT_THAT(log.entries(), ElementsAre(enable()));
}

TEST_F(ProjectEventsTest, ProgramExitEndsAtOnceEvenWithTheWindowOpen) {
    view.visible = true;
    macro->exe_ProgramExit();
    EXPECT_TRUE(program.hasEnded());
    EXPECT_THAT(log.entries(), ElementsAre("endProgram()"));
}

TEST_F(ProjectEventsTest, ProgressWithoutAConnectionFailsLikeAHostCall) {
    const std::unique_ptr<HostConnection> none;
    HostProgress progress(none);
    EXPECT_THROW(progress.EndProgress(), RuntimeError);
    EXPECT_THROW(progress.ShowProgress("x", 5), RuntimeError);
}

} // namespace
} // namespace pluvarine::test
