#pragma once

#include "host/HostBuilding.h"
#include "host/HostEvents.h"
#include "host/HostRoof.h"
#include "host/HostRoofData.h"
#include "host/HostRoofList.h"
#include "platform/system/UserMessages.h"
#include "platform/system/UserQuestions.h"
#include "platform/tectaro/TectaroHost.h"
#include "tests/support/FileBytes.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <filesystem>
#include <gtest/gtest.h>

namespace pluvarine::test {

using Names = std::vector<std::string>;

inline std::shared_ptr<const Building> sampleHouse() {
    return std::make_shared<const Building>(
        Building::load(std::string(PLUVARINE_SOURCE_DIR) + "/data/sample/house.json"));
}

// A macro stand-in that records every event by name ("Pressed <id>" for a press of a macro
// button), and every click answer, and runs an optional reaction for each named event;
// maxDepth shows whether an event was ever raised inside another's handler.
class RecordingEvents : public HostEvents {
public:
    std::vector<std::string> names;
    std::vector<std::tuple<bool, float, float>> clicks; // valid, x, y
    std::function<void(const std::string& event)> reaction;
    int depth = 0, maxDepth = 0;

    void exe_ProgramExit() override { record("ProgramExit"); }
    void exe_GotOneClick(bool valid, float x, float y, std::int32_t) override {
        clicks.emplace_back(valid, x, y);
    }
    void exe_ButtonChange(std::int32_t id, std::int32_t evnt, std::int32_t, bool pressed, bool,
                          bool) override {
        record(evnt == 2 && pressed ? "Pressed " + std::to_string(id) : "ButtonChange");
    }
    void exe_LoadComplete(bool) override { record("LoadComplete"); }
    void exe_LoadBuilding(std::shared_ptr<HostBuilding> b, std::int32_t) override {
        record(b ? "LoadBuilding(b)" : "LoadBuilding()");
    }
    void exe_SaveStart(const std::string&, std::int32_t, bool, std::int32_t& chunks) override {
        ++chunks;
        record("SaveStart");
    }
    void exe_SaveBuilding(std::int32_t, std::shared_ptr<HostBuilding>) override {
        record("SaveBuilding");
    }
    void exe_ProjectClosed() override { record("ProjectClosed"); }
    void exe_NewCurrentProject() override { record("NewCurrentProject"); }

private:
    void record(const std::string& name) {
        maxDepth = std::max(maxDepth, ++depth);
        names.push_back(name);
        if (reaction)
            reaction(name);
        --depth;
    }
};

// A host with the sample house (or `building`) in a scratch program folder, and the macro's
// connection to it.
struct SampleHost {
    QTemporaryDir folder;
    std::unique_ptr<TectaroHost> host;
    std::unique_ptr<HostConnection> connection;
    RecordingEvents events;

    explicit SampleHost(std::shared_ptr<const Building> building = sampleHouse()) {
        TectaroOptions options;
        options.programFolder = folder.path().toStdString();
        options.defaultBuilding = std::move(building);
        host = std::make_unique<TectaroHost>(options);
        connection = host->createConnection();
    }
    std::string path(const char* name) const { return folder.filePath(name).toStdString(); }
    // Lets the event loop run until the host's queue is empty.
    void run() {
        for (int turn = 0; turn < 10000 && host->busy(); ++turn)
            QCoreApplication::processEvents();
    }
    // A call's result once the events it queued have been raised.
    bool settled(bool result) {
        run();
        return result;
    }
    // The roof at a plan point as the macro finds it, and the out-parameters the macro passes to
    // the roof lookups and leaves unread.
    std::shared_ptr<HostRoof> roofAt(float x, float y) {
        const auto roofs = connection->GetActiveBuilding()->GetRoofList();
        return roofs->FindRoofAt(true, x, y, unusedId, six, unusedFlag);
    }
    std::int32_t unusedId = 0;
    std::array<float, 6> six{1, 1, 1, 1, 1, 1};
    bool unusedFlag = false;
};

// The host window's message boxes and questions: kept, questions answered with `answer`.
struct RecordingMessages : UserMessages, UserQuestions {
    std::vector<std::string> messages, questions;
    bool answer = false;
    void showMessage(const std::string& text, Icon) override { messages.push_back(text); }
    bool askYesNo(const std::string& text) override {
        questions.push_back(text);
        return answer;
    }
};

// The sample host with the macro connected: `events` is its event sink.
struct ConnectedHost : ::testing::Test, SampleHost {
    void SetUp() override {
        connection->setEventSink(&events);
        ASSERT_TRUE(connection->ConnectMacro(7, "", "{1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1B25}"));
    }
};

} // namespace pluvarine::test
