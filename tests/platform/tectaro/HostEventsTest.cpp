#include "TectaroTestSupport.h"
#include "host/HostBuilding.h"
#include "platform/tectaro/TectaroProject.h"

#include <QFile>
#include <QTemporaryDir>
#include <fstream>
#include <gtest/gtest.h>

using namespace pluvarine;
using Names = std::vector<std::string>;

namespace {

// Counts the emissions of a signal.
struct SignalCount {
    int value = 0;
    template <typename Signal> SignalCount(TectaroHost* host, Signal signal) {
        QObject::connect(host, signal, host, [this]() { ++value; });
    }
    int count() const { return value; }
};

constexpr std::int32_t macroDataId = 0x20ACDCA8;

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

struct EventsFixture : ::testing::Test, test::SampleHost {
    void SetUp() override { ASSERT_TRUE(connectMacro()); }
};

} // namespace

TEST_F(EventsFixture, SaveRaisesSaveStartThenSaveBuildingThenWritesTheFile) {
    const std::string archive = path("pluvarine.dat");
    writeFile(archive, std::string("\x02\x00\x00\x00packed", 10));
    bool fileExistedDuringSaveBuilding = true;
    events.reaction = [&](const std::string& event) {
        if (event == "SaveBuilding") {
            fileExistedDuringSaveBuilding = QFile::exists(QString::fromStdString(path("p.tproj")));
            EXPECT_TRUE(connection->SaveMacroData(macroDataId, archive));
        }
    };
    SignalCount saved(host.get(), &TectaroHost::projectSaved);
    ASSERT_TRUE(host->saveProject(path("p.tproj")));
    EXPECT_TRUE(events.names.empty()) << "events are queued, never raised inside the call";
    run();
    EXPECT_EQ(events.names, (Names{"SaveStart", "SaveBuilding"}));
    EXPECT_FALSE(fileExistedDuringSaveBuilding);
    ASSERT_EQ(saved.count(), 1);
    const TectaroProject written = TectaroProject::load(path("p.tproj"));
    ASSERT_EQ(written.macroData.count(macroDataId), 1u);
    EXPECT_EQ(written.macroData.at(macroDataId), std::string("\x02\x00\x00\x00packed", 10));
    EXPECT_EQ(written.saveNumber, 1);
}

TEST_F(EventsFixture, TheChunkCountIsReadAfterTheHandlerReturns) {
    events.chunksToAdd = 1;
    host->saveProject(path("p.tproj"));
    run();
    EXPECT_EQ(host->lastChunkCount(), 1);
    events.chunksToAdd = 3;
    host->saveProject();
    run();
    EXPECT_EQ(host->lastChunkCount(), 3);
}

TEST_F(EventsFixture, AHandlerThatLetsEventsRunGetsNoEventInsideIt) {
    // Packing yields to pending events after every file; the host's next step still waits.
    events.reaction = [&](const std::string& event) {
        if (event == "SaveStart") {
            host->closeProject(); // queued behind the save
            for (int i = 0; i < 50; ++i) {
                QCoreApplication::processEvents();
            }
        }
        if (event == "SaveBuilding") {
            for (int i = 0; i < 50; ++i) {
                QCoreApplication::processEvents();
            }
            EXPECT_FALSE(QFile::exists(QString::fromStdString(path("p.tproj"))));
        }
    };
    host->saveProject(path("p.tproj"));
    run();
    EXPECT_EQ(events.maxDepth, 1);
    EXPECT_EQ(events.names, (Names{"SaveStart", "SaveBuilding", "ProjectClosed"}));
    EXPECT_TRUE(QFile::exists(QString::fromStdString(path("p.tproj"))));
}

TEST_F(EventsFixture, OpenClosesTheOpenProjectThenLoadsWithAndWithoutABuilding) {
    const std::string archive = path("pluvarine.dat");
    writeFile(archive, "block bytes");
    events.reaction = [&](const std::string& event) {
        if (event == "SaveBuilding") {
            connection->SaveMacroData(macroDataId, archive);
        }
    };
    host->saveProject(path("p.tproj"));
    run();
    events.names.clear();

    const std::string restored = path("restored.dat");
    bool loaded = false;
    events.reaction = [&](const std::string& event) {
        if (event == "LoadBuilding()") {
            loaded = connection->LoadMacroData(macroDataId, restored);
        }
    };
    SignalCount opened(host.get(), &TectaroHost::projectOpened);
    ASSERT_TRUE(host->openProject(path("p.tproj")));
    EXPECT_TRUE(events.names.empty());
    run();
    EXPECT_EQ(events.names,
              (Names{"ProjectClosed", "LoadBuilding(b)", "LoadBuilding()", "LoadComplete"}));
    ASSERT_EQ(events.loadedBuildings.size(), 2u);
    EXPECT_TRUE(events.loadedBuildings[0]);
    EXPECT_FALSE(events.loadedBuildings[1]);
    EXPECT_TRUE(loaded);
    EXPECT_EQ(readFile(restored), "block bytes");
    EXPECT_EQ(opened.count(), 1);
    ASSERT_TRUE(host->hasProject());
    EXPECT_EQ(host->project()->path, path("p.tproj"));
}

TEST_F(EventsFixture, OpeningWhileClosedRaisesNoProjectClosed) {
    host->saveProject(path("p.tproj"));
    host->closeProject();
    run();
    events.names.clear();
    host->openProject(path("p.tproj"));
    run();
    EXPECT_EQ(events.names, (Names{"LoadBuilding(b)", "LoadBuilding()", "LoadComplete"}));
}

TEST_F(EventsFixture, AnUnreadableProjectChangesNothingAndRaisesNothing) {
    writeFile(path("bad.tproj"), "{\"format\": \"tectaro-project\", \"version\": 1}");
    std::string error;
    EXPECT_FALSE(host->openProject(path("bad.tproj"), &error));
    EXPECT_NE(error.find("building"), std::string::npos) << error;
    EXPECT_FALSE(host->openProject(path("missing.tproj"), &error));
    run();
    EXPECT_TRUE(events.names.empty());
    EXPECT_TRUE(host->hasProject());
}

TEST_F(EventsFixture, CloseNewAndExit) {
    SignalCount exited(host.get(), &TectaroHost::exitRequested);
    host->closeProject();
    run();
    EXPECT_EQ(events.names, (Names{"ProjectClosed"}));
    EXPECT_FALSE(host->hasProject());
    host->closeProject(); // nothing is open: nothing to tell
    run();
    EXPECT_EQ(events.names.size(), 1u);

    events.names.clear();
    host->newProject();
    run();
    EXPECT_EQ(events.names, (Names{"NewCurrentProject"}));
    ASSERT_TRUE(host->hasProject());
    EXPECT_EQ(host->building()->walls.size(), 1u); // the default building
    host->newProject();
    run();
    EXPECT_EQ(events.names, (Names{"NewCurrentProject", "ProjectClosed", "NewCurrentProject"}));

    events.names.clear();
    host->exitProgram();
    EXPECT_EQ(exited.count(), 0);
    run();
    EXPECT_EQ(events.names, (Names{"ProgramExit"}));
    EXPECT_EQ(exited.count(), 1);
}

TEST_F(EventsFixture, SavingNeedsAProjectAndAPath) {
    std::string error;
    EXPECT_FALSE(host->saveProject({}, &error)); // untitled
    EXPECT_FALSE(error.empty());
    host->closeProject();
    run();
    EXPECT_FALSE(host->saveProject(path("p.tproj"), &error));
    run();
    EXPECT_EQ(events.names, (Names{"ProjectClosed"}));
}

TEST_F(EventsFixture, MacroDataLoadsOnlyWhatTheProjectHolds) {
    EXPECT_FALSE(connection->LoadMacroData(macroDataId, path("x.dat")));
    EXPECT_FALSE(QFile::exists(QString::fromStdString(path("x.dat"))));
    writeFile(path("in.dat"), std::string("\0\1\2\3", 4));
    EXPECT_TRUE(connection->SaveMacroData(42, path("in.dat")));
    EXPECT_FALSE(connection->LoadMacroData(macroDataId, path("x.dat")));
    EXPECT_TRUE(connection->LoadMacroData(42, path("x.dat")));
    EXPECT_EQ(readFile(path("x.dat")), std::string("\0\1\2\3", 4));
    EXPECT_FALSE(connection->SaveMacroData(42, path("missing.dat")));
    EXPECT_FALSE(connection->LoadMacroData(42, path("no/such/folder/x.dat")));
}

TEST_F(EventsFixture, NothingReachesAMacroThatHasNotConnected) {
    TectaroOptions options;
    options.programFolder = folder.path().toStdString();
    TectaroHost other(options);
    auto unconnected = other.createConnection();
    test::RecordingEvents silent;
    unconnected->setEventSink(&silent);
    other.closeProject();
    test::runUntilIdle(other);
    EXPECT_TRUE(silent.names.empty());
    unconnected.reset(); // drops the sink
    other.newProject();
    test::runUntilIdle(other);
}

TEST_F(EventsFixture, OneClickIsAnsweredValidOnTheWallFaceAndThenClickModeEnds) {
    EXPECT_FALSE(host->click({5, -0.1})); // nobody asked
    SignalCount mode(host.get(), &TectaroHost::clickModeChanged);
    QImage cursor(30, 30, QImage::Format_ARGB32);
    connection->RequestOneClick("", HostPicture{cursor}, 1);
    connection->ShowPrompt("Please click on the outside of the wall!");
    ASSERT_TRUE(host->clickRequest());
    EXPECT_EQ(host->clickRequest()->cursor.size(), QSize(30, 30));
    EXPECT_EQ(host->prompt(), "Please click on the outside of the wall!");
    EXPECT_TRUE(events.names.empty());

    EXPECT_TRUE(host->click({10.2, 4.5}));
    EXPECT_FALSE(host->clickRequest());
    EXPECT_TRUE(host->prompt().empty());
    EXPECT_TRUE(events.names.empty()) << "the answer is queued";
    EXPECT_FALSE(host->click({10.2, 4.5}));
    run();
    ASSERT_EQ(events.clickValid, std::vector<bool>{true});
    EXPECT_FLOAT_EQ(events.clickPoints[0].first, 10.0f);
    EXPECT_FLOAT_EQ(events.clickPoints[0].second, 4.5f);
    EXPECT_EQ(mode.count(), 2);
}

TEST_F(EventsFixture, ClicksOffTheExteriorSideAreInvalidWithTheClickedPoint) {
    QImage cursor(30, 30, QImage::Format_ARGB32);
    for (QPointF p : {QPointF(5, 4), QPointF(5, 0.3), QPointF(30, 30), QPointF(5, -0.5)}) {
        connection->RequestOneClick("", HostPicture{cursor}, 1);
        host->click(p);
    }
    run();
    EXPECT_EQ(events.clickValid, std::vector<bool>(4, false));
    EXPECT_FLOAT_EQ(events.clickPoints[1].second, 0.3f);
    EXPECT_FLOAT_EQ(events.clickPoints[3].second, -0.5f);
}

TEST_F(EventsFixture, TheMacroButtonFollowsTheMacrosStateAndReportsPresses) {
    EXPECT_FALSE(host->pressMacroButton()); // none yet
    QImage image(30, 30, QImage::Format_ARGB32);
    image.fill(Qt::blue);
    const std::int32_t id =
        connection->AddMacroButton(HostPicture{image}, 0x01030204, "Downpipe macro", 4733);
    ASSERT_TRUE(host->macroButton());
    EXPECT_EQ(host->macroButton()->tooltip, "Downpipe macro");
    EXPECT_EQ(host->macroButton()->image.pixelColor(3, 3), QColor(Qt::blue));
    EXPECT_EQ(connection->SetMacroButtonState(id, 1, 0, true, false), 1);
    EXPECT_FALSE(host->pressMacroButton());
    EXPECT_EQ(connection->SetMacroButtonState(id + 1, 1, 0, true, true), 0);
    EXPECT_FALSE(host->macroButton()->enabled);
    connection->SetMacroButtonState(id, 1, 0, true, true);
    EXPECT_TRUE(host->pressMacroButton());
    EXPECT_TRUE(events.buttonIds.empty());
    run();
    EXPECT_EQ(events.buttonIds, std::vector<std::int32_t>{id});
    connection->SetMacroButtonState(id, 1, 0, false, true);
    EXPECT_FALSE(host->pressMacroButton());
}
