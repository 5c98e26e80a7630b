#include "TectaroTestSupport.h"
#include "host/Macro.h"
#include "platform/tectaro/TectaroProject.h"
#include "tests/support/FaultyFolder.h"

#include <QLocale>
#include <gmock/gmock.h>

using namespace pluvarine;
using test::Names, test::readFile, test::writeFile;
using testing::Property, testing::Throws;
using HostFixture = test::ConnectedHost;

constexpr std::int32_t macroDataId = 0x20ACDCA8;

// The ground level is the building's terrain; no roof lies beyond the overhang, no face outside
// the roof, no face number outside the roof's. (The roof data read on each side of the sample
// house is checked with the placement there.)
TEST(TectaroHost, TheGroundIsTheTerrainAndNoRoofOrFaceLiesOutsideTheRoof) {
    Building raised = *test::sampleHouse();
    raised.terrainLevel = -0.35;
    test::SampleHost sample(std::make_shared<const Building>(raised));
    EXPECT_FLOAT_EQ(sample.connection->GetLevelAt(5, 0), -0.35f);
    EXPECT_FALSE(sample.roofAt(-0.65f, 4));
    const auto roof = sample.roofAt(-0.55f, 4);
    ASSERT_TRUE(roof);
    float height = 0;
    EXPECT_THROW(roof->FindRoofFaceAt(true, 30, 30, height, sample.six, sample.unusedFlag),
                 RuntimeError);
    for (std::int32_t bad : {0, 5, -1})
        EXPECT_THROW(roof->GetRoofData()->GetFacePitch(bad), RuntimeError) << bad;
}

// The host's default version text passes the macro's version test in the system locale, whose
// number rules it is read with (ctest runs this under the desktops' locales).
TEST(TectaroHost, TheDefaultVersionTextPassesTheVersionTestInTheSystemLocale) {
    EXPECT_TRUE(Macro::Versionspruefung(TectaroOptions{}.versionText))
        << QLocale::system().name().toStdString();
}

// Only a macro that connected with its GUID in registry form hears the host's events; a
// connection that goes away takes its event sink with it.
TEST(TectaroHost, OnlyAMacroConnectedWithAGuidInRegistryFormHearsEvents) {
    // clang-format off
    const char* const guids[] = { // the first two accepted, the rest refused
        "{1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1B25}", "{1b0d6c3e-7a51-4f0b-9c7e-2d4a8e6f1b25}",
        "1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1B25", "{1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1B2}",
        "{1B0D6C3E7A514F0B9C7E2D4A8E6F1B25}", "{1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1BZ5}", ""};
    // clang-format on
    for (std::size_t i = 0; i < std::size(guids); ++i) {
        test::SampleHost fresh;
        fresh.connection->setEventSink(&fresh.events);
        EXPECT_EQ(fresh.connection->ConnectMacro(1, "", guids[i]), i < 2) << guids[i];
        EXPECT_EQ(fresh.host->macroConnected(), i < 2);
        fresh.host->closeProject();
        fresh.run();
        fresh.connection.reset();
        fresh.host->newProject();
        fresh.run();
        EXPECT_EQ(fresh.events.names, i < 2 ? Names{"ProjectClosed"} : Names{});
    }
}

// Save, open, close, new and exit: each queues its events, which follow one another in order.
TEST_F(HostFixture, ProjectEventsAreQueuedAndRaisedInOrderOneAfterTheOther) {
    const std::string block("\x02\x00\x00\x00packed", 10);
    writeFile(path("pluvarine.dat"), block);
    // A handler that lets events run (packing does, after every file) gets no event inside it.
    events.reaction = [&](const std::string& event) {
        if (event == "SaveStart")
            host->closeProject(); // queued behind the save
        for (int i = 0; i < 50; ++i)
            QCoreApplication::processEvents();
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
    // Nothing open: no ProjectClosed before it.
    ASSERT_TRUE(settled(host->openProject(path("p.tproj"))));
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
    EXPECT_EQ(std::tuple(saved, opened, exited), std::tuple(1, 3, 1));
}

// Failures change nothing and raise no event; without a project, or once the host is gone, the
// host's objects fail as host errors.
TEST_F(HostFixture, FailuresChangeNothingAndRaiseNothingAndTheObjectsFailAsHostErrors) {
    EXPECT_EQ(connection->GetVersionText(), "Tectaro Architektur +2026");
    const std::shared_ptr<HostBuilding> building = connection->GetActiveBuilding();
    writeFile(path("bad.tproj"), "{\"format\": \"tectaro-project\", \"version\": 1}");
    std::string error;
    EXPECT_FALSE(host->openProject(path("bad.tproj"), &error));
    EXPECT_NE(error.find("building"), std::string::npos) << error;
    EXPECT_FALSE(host->openProject(path("missing.tproj"), &error));
    EXPECT_FALSE(host->saveProject({}, &error)); // untitled
    // Macro data: only blocks the project holds, only from and to files that can be reached.
    EXPECT_FALSE(connection->LoadMacroData(macroDataId, path("x.dat")) ||
                 std::filesystem::exists(path("x.dat")));
    writeFile(path("in.dat"), std::string("\0\1\2\3", 4));
    EXPECT_TRUE(connection->SaveMacroData(42, path("in.dat")));
    EXPECT_FALSE(connection->SaveMacroData(42, path("missing.dat")) ||
                 connection->LoadMacroData(42, path("no/such/folder/x.dat")));
    run();
    EXPECT_TRUE(events.names.empty());
    host->closeProject();
    run();
    EXPECT_FALSE(settled(host->saveProject(path("p.tproj"), &error)));
    EXPECT_EQ(events.names, (Names{"ProjectClosed"}));
    EXPECT_THAT([&] { connection->GetActiveBuilding(); },
                Throws<RuntimeError>(Property(&RuntimeError::number, RuntimeError::HostError)));
    EXPECT_THROW(connection->GetLevelAt(0, 0), RuntimeError);
    host.reset();
    EXPECT_THROW(building->GetRoofList(), RuntimeError);
    EXPECT_THROW(connection->GetVersionText(), RuntimeError);
    connection.reset(); // no crash
}

// A save into a folder that cannot be written or onto a full disk fails with the reason, leaves
// the project file as it was and marks the project until a save succeeds. A save hands over
// only the blocks the macro gives in it: none, after a failed pack.
TEST_F(HostFixture, AFailedSaveKeepsTheFileAndIsReportedAndOnlyTodaysBlocksAreSaved) {
    bool handOver = true;
    events.reaction = [&](const std::string& event) {
        if (event == "SaveBuilding" && handOver) {
            writeFile(path("pluvarine.dat"), "archive");
            connection->SaveMacroData(macroDataId, path("pluvarine.dat"));
        }
    };
    std::vector<QString> failures;
    QObject::connect(host.get(), &TectaroHost::projectSaveFailed,
                     [&](const QString& reason) { failures.push_back(reason); });
    std::filesystem::create_directory(path("projects"));
    const std::string file = path("projects/p.tproj");
    ASSERT_TRUE(settled(host->saveProject(file)));
    const std::string saved = readFile(file);
    for (const bool full : {false, true}) {
        test::FaultyFolder projects(path("projects"));
        if (!(full ? projects.makeFull() : projects.makeReadOnly()))
            continue; // a full disk needs mount rights
        ASSERT_TRUE(settled(host->saveProject(file)));
        ASSERT_FALSE(failures.empty());
        EXPECT_TRUE(failures.back().contains(QString::fromStdString(file)))
            << failures.back().toStdString();
        EXPECT_TRUE(host->saveFailed());
        EXPECT_EQ(readFile(file), saved);
    }
    handOver = false;
    ASSERT_TRUE(settled(host->saveProject(file)));
    EXPECT_TRUE(!host->saveFailed() && TectaroProject::load(file).macroData.empty());
    EXPECT_EQ(TectaroProject::load(file).saveNumber, 2);
}
