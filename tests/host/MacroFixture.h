#pragma once

#include "CallLog.h"
#include "FakeBuilding.h"
#include "FakeHelp.h"
#include "FakeHost.h"
#include "FakeMessages.h"
#include "FakeProgram.h"
#include "FakeView.h"
#include "ObjectFileScene.h"
#include "assembly/Daten.h"
#include "host/HostJournal.h"
#include "host/JournalingHostConnection.h"
#include "host/Macro.h"
#include "ui/text/LoadText.h"

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <string>

namespace pluvarine::test {

// A macro wired to the fake host and fake window services, in a fresh host program folder with
// the installed working-folder tree (obj/ and destination/, empty). The sample building has
// one roof over x 0..10 m with two faces: x 0..5 (height 3.1 m; overhang 0.5 m, pitch 45°,
// direction 180°) and x 5..10 (height 3.5 m; overhang 0.3 m, pitch 30°, direction 90°);
// gutter width 0.1 m, roofing thickness 0.05 m; the terrain at 0.2 m.
class MacroFixture : public ::testing::Test {
protected:
    MacroFixture() {
        programFolder = std::filesystem::path(dir.path().toStdString());
        work = programFolder / "Standard" / LoadText(8002) / "Pluvarine";
        std::filesystem::create_directories(work / "obj");
        std::filesystem::create_directories(work / "destination");

        roofData = std::make_shared<FakeRoofData>(
            log, 0.05, 0.1, std::vector<FakeRoofData::Face>{{0.5, 45, 180}, {0.3, 30, 90}});
        auto roof = std::make_shared<FakeRoof>(
            log, roofData, std::vector<FakeRoof::FaceArea>{{0, 5, 3.1F}, {5, 10, 3.5F}});
        building = std::make_shared<FakeBuilding>(
            log, std::make_shared<FakeRoofList>(
                     log, std::vector<FakeRoofList::RoofArea>{{0, 10, roof}}));
        makeMacro();
    }

    // A fresh program run: a new host connection and a new macro on the same folders.
    void makeMacro() {
        macro.reset();
        auto owned = std::make_unique<FakeHost>(log);
        host = owned.get();
        pendingHost = std::move(owned);
        host->programFolder = programFolder.string() + "/";
        host->level = 0.2F;
        host->building = building;

        macro = std::make_unique<Macro>(MacroEnvironment{
            [this]() -> std::unique_ptr<HostConnection> {
                log.call("createConnection");
                if (connectionCannotBeCreated) {
                    throw RuntimeError(RuntimeError::HostError, "cannot create the connection");
                }
                if (journal) {
                    return std::make_unique<JournalingHostConnection>(std::move(pendingHost),
                                                                      *journal);
                }
                return std::move(pendingHost);
            },
            daten,
            scene,
            [this] { log.call("rebuild"); },
            view,
            messages,
            program,
            help,
            [this] { ++pumps; },
        });
    }

    // The start-up; afterwards the log starts empty.
    void start() {
        macro->Form_Load();
        log.clear();
    }

    std::string workFolder() const { return work.string(); }
    std::string objFile(const std::string& name) const { return (work / "obj" / name).string(); }
    static std::string readFile(const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static void writeFile(const std::filesystem::path& path, const std::string& bytes) {
        std::ofstream(path, std::ios::binary) << bytes;
    }

    QTemporaryDir dir;
    std::filesystem::path programFolder;
    std::filesystem::path work;
    CallLog log;
    std::unique_ptr<FakeHost> pendingHost;
    FakeHost* host = nullptr;
    std::shared_ptr<FakeRoofData> roofData;
    std::shared_ptr<FakeBuilding> building;
    Daten daten;
    ObjectFileScene scene{log};
    FakeView view{log};
    FakeMessages messages{log};
    FakeProgram program{log};
    FakeHelp help{log};
    int pumps = 0;
    bool connectionCannotBeCreated = false;
    std::unique_ptr<HostJournal> journal; // when set, the connection is journaled
    std::unique_ptr<Macro> macro;
};

} // namespace pluvarine::test
