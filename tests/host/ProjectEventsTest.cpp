// The host's project events: the macro's data block at save and load, the counter after a
// load, clearing the project folders at close, the button state and the end of the program.

#include "MacroFixture.h"
#include "tests/support/FaultyFolder.h"

namespace pluvarine::test {
namespace {

class ProjectEventsTest : public MacroFixture {
protected:
    void SetUp() override { start(); }

    // Every file below the working folder's obj and destination, with its bytes.
    std::map<std::string, std::string> folderBytes() const {
        std::map<std::string, std::string> files;
        for (const char* folder : {"obj", "destination"}) {
            for (const auto& entry : std::filesystem::directory_iterator(work / folder)) {
                if (!entry.path().filename().string().starts_with('.')) {
                    files[entry.path().string()] = readFile(entry.path());
                }
            }
        }
        return files;
    }

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
    EXPECT_FALSE(log.contains("message"));
}

// A save whose pack fails (a folder that cannot be written, a full disk, no obj) hands over no
// archive, so no older one stands in for it, and tells the user; every file stays as it was.
// Files left out of an archive are named.
TEST_F(ProjectEventsTest, ASaveWithoutTheObjectFilesHandsOverNothingAndSaysSo) {
    writeFile(objFile("Data.ini"), "[SEKTION]\r\nEINTRAG= 2\r\n");
    writeFile(objFile(" 2.tob"), "this session");
    enum class Fault { ReadOnly, Full, NoObj };
    for (const Fault fault : {Fault::ReadOnly, Fault::Full, Fault::NoObj}) {
        SCOPED_TRACE(static_cast<int>(fault));
        writeFile(archive, "an older save's archive");
        const auto before = folderBytes();
        FaultyFolder destination(work / "destination");
        if (fault == Fault::ReadOnly && !destination.makeReadOnly()) {
            GTEST_SKIP() << "no read-only folder here";
        }
        if (fault == Fault::Full && !destination.makeFull()) {
            continue; // a full disk needs mount rights
        }
        if (fault == Fault::NoObj) {
            std::filesystem::rename(work / "obj", work / "obj.away");
        }
        log.entries.clear();
        macro->exe_SaveBuilding(0, nullptr);
        EXPECT_FALSE(log.contains("SaveMacroData"));
        EXPECT_THAT(log.only({"message"}),
                    ElementsAre(::testing::StartsWith("message(" + LoadText(5003) + "\r")));
        if (fault == Fault::NoObj) {
            std::filesystem::rename(work / "obj.away", work / "obj");
        }
        EXPECT_EQ(folderBytes(), before);
    }
    EXPECT_FALSE(host->macroData.contains(Macro::MacroDataId));

    const std::string unpackable = "\xe4\xb8\x80.tob"; // no Windows-1252 name
    writeFile(objFile(unpackable), "left out");
    log.entries.clear();
    macro->exe_SaveBuilding(0, nullptr);
    EXPECT_TRUE(log.contains("SaveMacroData"));
    EXPECT_THAT(log.only({"message"}),
                ElementsAre("message(" + LoadText(5006) + "\r" + unpackable +
                            ": the name cannot be written in the code page Windows-1252)"));
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

// Closing disables the button and deletes the project files; a new project enables it again,
// and the program's exit ends it at once.
TEST_F(ProjectEventsTest, ClosingANewProjectAndTheExitSetTheButtonAndEnd) {
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

    log.entries.clear();
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
