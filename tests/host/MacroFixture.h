#pragma once

#include "Fakes.h"
#include "assembly/Daten.h"
#include "host/HostJournal.h"
#include "host/JournalingHostConnection.h"
#include "host/Macro.h"
#include "ui/text/LoadText.h"

#include <QTemporaryDir>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pluvarine::test {

using ::testing::ElementsAre;

// A macro wired to the fakes, in a fresh host program folder with the installed working-folder
// tree (obj/ and destination/, empty).
class MacroFixture : public ::testing::Test {
protected:
    MacroFixture() {
        std::filesystem::create_directories(work / "obj");
        std::filesystem::create_directories(work / "destination");
        makeMacro();
    }

    // A fresh program run: a new host connection and a new macro on the same folders.
    void makeMacro() {
        macro.reset();
        pendingHost = std::make_unique<FakeHost>(log);
        host = pendingHost.get();
        host->programFolder = dir.path().toStdString() + "/";
        host->building = model;
        host->objectTemplate = model;
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
            daten, scene, [this] { log.call("rebuild"); }, window, window, window, window,
            [this] { ++pumps; }});
    }

    // The start-up; afterwards the log starts empty.
    void start() {
        macro->Form_Load();
        log.entries.clear();
    }

    std::string objFile(const std::string& name) const { return (work / "obj" / name).string(); }
    static std::string readFile(const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static void writeFile(const std::filesystem::path& path, const std::string& bytes) {
        std::ofstream(path, std::ios::binary) << bytes;
    }

    QTemporaryDir dir;
    std::filesystem::path work =
        std::filesystem::path(dir.path().toStdString()) / "Standard" / LoadText(8002) / "Pluvarine";
    CallLog log;
    std::shared_ptr<FakeModel> model = std::make_shared<FakeModel>(log);
    std::unique_ptr<FakeHost> pendingHost;
    FakeHost* host = nullptr;
    Daten daten;
    ObjectFileScene scene{log};
    FakeWindow window{log};
    int pumps = 0;
    bool connectionCannotBeCreated = false;
    std::unique_ptr<HostJournal> journal; // when set, the connection is journaled
    std::unique_ptr<Macro> macro;
};

} // namespace pluvarine::test
