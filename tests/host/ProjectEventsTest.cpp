// The host's project events: the macro's data block at save and load, the counter after a
// load, clearing the project folders at close, the button state and the end of the program.

#include "MacroFixture.h"

namespace pluvarine::test {
namespace {

class ProjectEventsTest : public MacroFixture {
protected:
    void SetUp() override { start(); }

    const std::string archive = (work / "destination" / "pluvarine.dat").string();
    const std::string load = "LoadMacroData(548199592, " + archive + ")";
    const std::string enable = "SetMacroButtonState(7, 1, 0, true, true)";
};

TEST_F(ProjectEventsTest, SavingHandsTheObjFolderToTheHostAsOneMoreDataBlock) {
    std::int32_t chunks = 3;
    macro->exe_SaveStart("house.tpr", 1, false, chunks);
    EXPECT_EQ(chunks, 4); // and nothing else happens

    macro->exe_SaveBuilding(0, nullptr); // an empty obj folder: a four-byte archive
    EXPECT_THAT(log.entries,
                ElementsAre("EndProgress()", "SaveMacroData(548199592, " + archive + ")"));
    EXPECT_EQ(host->macroData.at(Macro::MacroDataId), std::string(4, '\0'));

    log.entries.clear();
    writeFile(objFile("Data.ini"), "[SEKTION]\r\nEINTRAG= 2\r\n");
    writeFile(objFile(" 1.tob"), "first");
    macro->exe_SaveBuilding(0, nullptr);
    const std::string progress = "ShowProgress(" + LoadText(4000);
    EXPECT_THAT(log.only({"ShowProgress", "EndProgress"}),
                ElementsAre(progress + ", 50)", progress + ", 100)", "EndProgress()"));
    EXPECT_EQ(pumps, 2); // pending events run after every file
    const std::string& block = host->macroData.at(Macro::MacroDataId);
    EXPECT_EQ(block, readFile(archive));
    EXPECT_EQ(block.size(), 4 + (2 + 6 + 4 + 5) + (2 + 8 + 4 + 23U));

    log.entries.clear();
    std::filesystem::remove_all(work / "obj"); // a failed pack still hands over what is there
    macro->exe_SaveBuilding(0, nullptr);
    EXPECT_TRUE(log.contains("SaveMacroData") && !log.contains("message"));
}

// Loading with a building, without macro data or from a damaged archive leaves obj alone; errors
// show the fixed German text and loading goes on.
TEST_F(ProjectEventsTest, LoadingWithABuildingOrWithoutUsableMacroDataLeavesObjAlone) {
    writeFile(objFile(" 1.tob"), "keep me");
    macro->exe_LoadBuilding(nullptr, 0);
    host->macroData[Macro::MacroDataId] = std::string(4, '\0');
    macro->exe_LoadBuilding(host->self, 0);
    EXPECT_THAT(log.only({"SetMacroButtonState", "LoadMacroData", "message", "ShowProgress"}),
                ElementsAre(enable, load, enable));
    EXPECT_EQ(macro->objectCounter(), 1);

    host->macroData[Macro::MacroDataId] = std::string("\x05\0\0\0", 4); // five records, none there
    log.failing = {"SetMacroButtonState"};
    macro->exe_LoadBuilding(nullptr, 0);
    EXPECT_THAT(
        log.only({"message"}),
        ElementsAre("message(Fehler in Funktion Main_LoadBuilding: \r1002 - "
                    "SetMacroButtonState failed\rDas Programm wird fortgesetzt.)",
                    ::testing::StartsWith("message(Fehler in Funktion Main_LoadBuilding: ")));
    EXPECT_EQ(readFile(objFile(" 1.tob")), "keep me");
    EXPECT_FALSE(ended);
}

TEST_F(ProjectEventsTest, LoadingWithoutABuildingRestoresObjAndTheCounter) {
    const std::string four("four\0bytes", 10);
    writeFile(objFile("Data.ini"), "[SEKTION]\r\nEINTRAG= 5\r\n");
    writeFile(objFile(" 4.tob"), four);
    writeFile(objFile(" 5.tob"), "");
    macro->exe_SaveBuilding(0, nullptr);
    macro->exe_ProjectClosed();
    ASSERT_TRUE(std::filesystem::is_empty(work / "obj"));
    log.entries.clear();

    macro->exe_LoadBuilding(nullptr, 0);

    EXPECT_THAT(log.only({"SetMacroButtonState", "GetProgramFolder", "LoadMacroData"}),
                ElementsAre(enable, "GetProgramFolder()", "GetProgramFolder()", load));
    EXPECT_EQ(readFile(objFile(" 4.tob")), four);
    EXPECT_TRUE(std::filesystem::exists(objFile(" 5.tob")));
    EXPECT_EQ(macro->objectCounter(), 5); // the stored number itself
    EXPECT_EQ(log.only({"ShowProgress"}).size(), 3U);
    EXPECT_FALSE(log.contains("message"));

    macro->exe_LoadComplete(true);
    EXPECT_EQ(macro->objectCounter(), 6);
    EXPECT_EQ(log.entries.back(), enable);
    macro->exe_ProjectClosed();
    macro->exe_LoadComplete(false); // without Data.ini
    EXPECT_EQ(macro->objectCounter(), 1);
}

TEST_F(ProjectEventsTest, ClosingTheProjectDisablesTheButtonAndDeletesTheProjectFiles) {
    writeFile(objFile("Data.ini"), "[SEKTION]\r\nEINTRAG= 2\r\n");
    writeFile(objFile(" 1.tob"), "one");
    writeFile(archive, "archive");
    std::filesystem::create_directory(objFile("sub"));
    writeFile(objFile("sub/inner.txt"), "stays");
    daten.design.heightH = 2500;

    macro->exe_ProjectClosed();

    EXPECT_THAT(log.entries, ElementsAre("SetMacroButtonState(7, 1, 0, true, false)"));
    EXPECT_TRUE(std::filesystem::is_empty(work / "destination"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(work / "obj"), {}), 1);
    EXPECT_EQ(readFile(objFile("sub/inner.txt")), "stays"); // sub-folders untouched
    EXPECT_EQ(daten.design.heightH, 2500);                  // nothing in memory reset
}

TEST_F(ProjectEventsTest, ANewProjectEnablesTheButtonAndProgramExitEndsAtOnce) {
    macro->exe_NewCurrentProject();
    macro->exe_ProgramExit();
    EXPECT_THAT(log.entries, ElementsAre(enable, "endProgram()"));
}

TEST_F(ProjectEventsTest, ProgressWithoutAConnectionFailsLikeAHostCall) {
    const std::unique_ptr<HostConnection> none;
    HostProgress progress(none);
    EXPECT_THROW(progress.EndProgress(), RuntimeError);
    EXPECT_THROW(progress.ShowProgress("x", 5), RuntimeError);
}

} // namespace
} // namespace pluvarine::test
