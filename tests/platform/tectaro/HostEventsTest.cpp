#include "TectaroTestSupport.h"
#include "platform/tectaro/TectaroProject.h"

using namespace pluvarine;
using test::Names;
using test::readFile, test::writeFile;
using EventsFixture = test::ConnectedHost;

constexpr std::int32_t macroDataId = 0x20ACDCA8;

// Save, open, close, new and exit: each queues its events, which follow one another in order.
TEST_F(EventsFixture, ProjectEventsAreQueuedAndRaisedInOrderOneAfterTheOther) {
    const std::string block("\x02\x00\x00\x00packed", 10);
    writeFile(path("pluvarine.dat"), block);
    // A handler that lets events run (packing does, after every file) gets no event inside it.
    events.reaction = [&](const std::string& event) {
        if (event == "SaveStart") {
            host->closeProject(); // queued behind the save
        }
        for (int i = 0; i < 50; ++i) {
            QCoreApplication::processEvents();
        }
        if (event == "SaveBuilding") {
            EXPECT_FALSE(std::filesystem::exists(path("p.tproj")));
            EXPECT_TRUE(connection->SaveMacroData(macroDataId, path("pluvarine.dat")));
        }
        if (event == "LoadBuilding()") {
            EXPECT_TRUE(connection->LoadMacroData(macroDataId, path("restored.dat")));
        }
    };
    int saved = 0, opened = 0, exited = 0;
    QObject::connect(host.get(), &TectaroHost::projectSaved, [&] { ++saved; });
    QObject::connect(host.get(), &TectaroHost::projectOpened, [&] { ++opened; });
    QObject::connect(host.get(), &TectaroHost::exitRequested, [&] { ++exited; });
    ASSERT_TRUE(host->saveProject(path("p.tproj")));
    EXPECT_TRUE(events.names.empty()) << "events are queued, never raised inside the call";
    run();
    EXPECT_EQ(host->lastChunkCount(), 1);
    const TectaroProject written = TectaroProject::load(path("p.tproj"));
    EXPECT_EQ(written.macroData.at(macroDataId), block);
    EXPECT_EQ(written.saveNumber, 1);
    ASSERT_TRUE(host->openProject(path("p.tproj"))); // nothing open: no ProjectClosed before it
    run();
    EXPECT_EQ(host->project()->path, path("p.tproj"));
    host->openProject(path("p.tproj")); // closes the open one first
    host->closeProject();
    host->closeProject(); // nothing is open any more: nothing to tell
    host->openProject(path("p.tproj"));
    host->newProject();
    run();
    EXPECT_EQ(host->building()->walls.size(), 1u); // the default building
    host->exitProgram();
    EXPECT_EQ(exited, 0);
    run();
    EXPECT_EQ(
        events.names,
        (Names{"SaveStart", "SaveBuilding", "ProjectClosed", "LoadBuilding(b)", "LoadBuilding()",
               "LoadComplete", "ProjectClosed", "LoadBuilding(b)", "LoadBuilding()", "LoadComplete",
               "ProjectClosed", "LoadBuilding(b)", "LoadBuilding()", "LoadComplete",
               "ProjectClosed", "NewCurrentProject", "ProgramExit"}));
    EXPECT_EQ(events.maxDepth, 1);
    EXPECT_EQ(readFile(path("restored.dat")), block);
    EXPECT_EQ(saved, 1);
    EXPECT_EQ(opened, 3);
    EXPECT_EQ(exited, 1);
}

TEST_F(EventsFixture, FailuresChangeNothingAndRaiseNothing) {
    writeFile(path("bad.tproj"), "{\"format\": \"tectaro-project\", \"version\": 1}");
    std::string error;
    EXPECT_FALSE(host->openProject(path("bad.tproj"), &error));
    EXPECT_NE(error.find("building"), std::string::npos) << error;
    EXPECT_FALSE(host->openProject(path("missing.tproj"), &error));
    EXPECT_FALSE(host->saveProject({}, &error)); // untitled
    // Macro data: only blocks the project holds, only from and to files that can be reached.
    EXPECT_FALSE(connection->LoadMacroData(macroDataId, path("x.dat")));
    EXPECT_FALSE(std::filesystem::exists(path("x.dat")));
    writeFile(path("in.dat"), std::string("\0\1\2\3", 4));
    EXPECT_TRUE(connection->SaveMacroData(42, path("in.dat")));
    EXPECT_FALSE(connection->SaveMacroData(42, path("missing.dat")));
    EXPECT_FALSE(connection->LoadMacroData(42, path("no/such/folder/x.dat")));
    run();
    EXPECT_TRUE(events.names.empty());
    host->closeProject();
    run();
    EXPECT_FALSE(host->saveProject(path("p.tproj"), &error));
    run();
    EXPECT_EQ(events.names, (Names{"ProjectClosed"}));
}
