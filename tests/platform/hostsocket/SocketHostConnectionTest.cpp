// The connection object and the host's objects over the host protocol: every operation's
// request and the value read from its reply, and the events as the macro receives them.

#include "platform/hostsocket/SocketHostConnection.h"

#include "FakePeer.h"
#include "base/RuntimeError.h"
#include "host/HostBuilding.h"
#include "host/HostElement.h"
#include "host/HostEvents.h"
#include "host/HostObjectTemplate.h"
#include "host/HostRoof.h"
#include "host/HostRoofData.h"
#include "host/HostRoofList.h"

#include <gmock/gmock.h>
#include <map>
#include <sstream>

namespace pluvarine::test {
namespace {

using ::testing::ElementsAre;

// The events as the macro's handlers see them; exe_SaveStart announces one block more.
struct RecordingEvents : HostEvents {
    std::vector<std::string> events;
    std::function<void()> duringSaveBuilding;

    void exe_ProgramExit() override { events.push_back("ProgramExit"); }
    void exe_GotOneClick(bool valid, float x, float y, std::int32_t id) override {
        std::ostringstream out;
        out << "GotOneClick " << valid << ' ' << x << ' ' << y << ' ' << id;
        events.push_back(out.str());
    }
    void exe_ButtonChange(std::int32_t btnId, std::int32_t evnt, std::int32_t selectedIndex,
                          bool pressed, bool visible, bool enabled) override {
        std::ostringstream out;
        out << "ButtonChange " << btnId << ' ' << evnt << ' ' << selectedIndex << ' ' << pressed
            << visible << enabled;
        events.push_back(out.str());
    }
    void exe_LoadComplete(bool successfull) override {
        events.push_back("LoadComplete " + std::to_string(successfull));
    }
    void exe_LoadBuilding(std::shared_ptr<HostBuilding> b, std::int32_t saveNo) override {
        events.push_back(std::string("LoadBuilding ") + (b ? "object " : "none ") +
                         std::to_string(saveNo));
    }
    void exe_SaveStart(const std::string& fileName, std::int32_t numBuildings, bool isAutoSave,
                       std::int32_t& numChunksToSave) override {
        events.push_back("SaveStart " + fileName + ' ' + std::to_string(numBuildings) + ' ' +
                         std::to_string(isAutoSave));
        ++numChunksToSave;
    }
    void exe_SaveBuilding(std::int32_t buildingNo, std::shared_ptr<HostBuilding> b) override {
        events.push_back("SaveBuilding " + std::to_string(buildingNo) + (b ? " object" : " none"));
        if (duringSaveBuilding) {
            duringSaveBuilding();
        }
    }
    void exe_ProjectClosed() override { events.push_back("ProjectClosed"); }
    void exe_NewCurrentProject() override { events.push_back("NewCurrentProject"); }
};

struct Connected {
    explicit Connected(FakePeer::Respond respond, int timeoutMs = 2000)
        : peer(std::move(respond)), client(std::make_shared<HostSocketClient>(timeoutMs)) {
        client->setProblemReporter([this](const std::string& p) { problems.push_back(p); });
        client->open(peer.path(), Json::object());
        connection = std::make_unique<SocketHostConnection>(client);
        connection->setEventSink(&events);
    }
    FakePeer peer;
    std::shared_ptr<HostSocketClient> client;
    std::unique_ptr<SocketHostConnection> connection;
    RecordingEvents events;
    std::vector<std::string> problems;
};

// Each row: the operation as the macro calls it (its value as text), the request the host
// receives (op, target, args) and what it answers.
struct OperationCase {
    const char* name;
    std::function<std::string(HostConnection&)> call;
    Json request;
    Json result;
    std::string value;
};

// A picture as it arrives: the PNG's size and first pixel (ARGB).
std::string picture(const Json& value) {
    const QImage image =
        QImage::fromData(QByteArray::fromBase64(QByteArray::fromStdString(value.at("png"))), "PNG");
    if (image.isNull()) {
        return "no picture";
    }
    return std::to_string(image.width()) + "x" + std::to_string(image.height()) + " " +
           QString::number(image.pixel(0, 0), 16).toStdString();
}

std::string text(const auto& value) {
    std::ostringstream out;
    out << std::boolalpha << value;
    return out.str();
}

// Objects reached through the host's handles: 5 building, 6 roof list, 7 roof, 8 roof data,
// 9 template, 10 element.
std::shared_ptr<HostRoof> roof(HostConnection& c) {
    std::int32_t ignored = 0;
    std::array<float, 6> six{1, 1, 1, 1, 1, 1};
    bool flag = false;
    return c.GetActiveBuilding()->GetRoofList()->FindRoofAt(true, 1.5F, -0.25F, ignored, six, flag);
}
std::shared_ptr<HostElement> element(HostConnection& c) {
    return c.LoadObjectFile("/w/obj/ 1.tob", 0)->CreateElement(nullptr, 0);
}

const std::vector<OperationCase>& operationCases() {
    static const std::vector<OperationCase> cases = {
        {"GetProgramFolder",
         [](HostConnection& c) { return c.GetProgramFolder(); },
         {{"op", "GetProgramFolder"}, {"args", Json::object()}},
         "/p/",
         "/p/"},
        {"GetVersionText",
         [](HostConnection& c) { return c.GetVersionText(); },
         {{"op", "GetVersionText"}, {"args", Json::object()}},
         "Tectaro +2026",
         "Tectaro +2026"},
        {"AddMacroButton",
         [](HostConnection& c) {
             QImage bitmap(2, 1, QImage::Format_RGB32);
             bitmap.fill(QColor(255, 0, 0));
             return text(c.AddMacroButton(SocketHostConnection::pictureFromBitmap(bitmap),
                                          0x01030204, "Fallrohr", 4733));
         },
         {{"op", "AddMacroButton"},
          {"args",
           {{"picture", "2x1 ffff0000"},
            {"flags", 16974340},
            {"tooltip", "Fallrohr"},
            {"code", 4733}}}},
         3,
         "3"},
        {"RequestOneClick",
         [](HostConnection& c) {
             c.RequestOneClick("", HostPicture{}, 1);
             return std::string("done");
         },
         {{"op", "RequestOneClick"},
          {"args", {{"text", ""}, {"cursor", "no picture"}, {"count", 1}}}},
         nullptr,
         "done"},
        {"GetLevelAt",
         [](HostConnection& c) { return text(c.GetLevelAt(1.5F, -0.25F)); },
         {{"op", "GetLevelAt"}, {"args", {{"x", 1.5}, {"y", -0.25}}}},
         -0.125,
         "-0.125"},
        {"LoadMacroData",
         [](HostConnection& c) { return text(c.LoadMacroData(548199592, "/d")); },
         {{"op", "LoadMacroData"}, {"args", {{"dataId", 548199592}, {"path", "/d"}}}},
         true,
         "true"},
        {"SetMacroButtonState",
         [](HostConnection& c) { return text(c.SetMacroButtonState(3, 1, 0, true, false)); },
         {{"op", "SetMacroButtonState"},
          {"args", {{"buttonId", 3}, {"a", 1}, {"b", 0}, {"shown", true}, {"enabled", false}}}},
         0,
         "0"},
        {"ShowPrompt",
         [](HostConnection& c) {
             c.ShowPrompt("Bitte klicken Sie außen an die Wand!");
             return std::string("done");
         },
         {{"op", "ShowPrompt"}, {"args", {{"text", "Bitte klicken Sie außen an die Wand!"}}}},
         nullptr,
         "done"},
        {"ShowProgress",
         [](HostConnection& c) {
             c.ShowProgress("1.tob", 50);
             return std::string("done");
         },
         {{"op", "ShowProgress"}, {"args", {{"text", "1.tob"}, {"percentage", 50}}}},
         nullptr,
         "done"},
        {"EndProgress",
         [](HostConnection& c) {
             c.EndProgress();
             return std::string("done");
         },
         {{"op", "EndProgress"}, {"args", Json::object()}},
         nullptr,
         "done"},
        {"SaveMacroData",
         [](HostConnection& c) { return text(c.SaveMacroData(548199592, "/d")); },
         {{"op", "SaveMacroData"}, {"args", {{"dataId", 548199592}, {"path", "/d"}}}},
         false,
         "false"},
        {"ConnectMacro",
         [](HostConnection& c) { return text(c.ConnectMacro(4711, "", "{G}")); },
         {{"op", "ConnectMacro"},
          {"args", {{"windowHandle", 4711}, {"text", ""}, {"macroGuid", "{G}"}}}},
         true,
         "true"},
        {"FindRoofAt none",
         [](HostConnection& c) { return text(roof(c) == nullptr); },
         {{"op", "FindRoofAt"},
          {"target", 6},
          {"args", {{"flag", true}, {"x", 1.5}, {"y", -0.25}, {"six", {1, 1, 1, 1, 1, 1}}}}},
         {{"roof", nullptr}, {"ignored", 0}, {"six", {1, 1, 1, 1, 1, 1}}, {"ignoredFlag", false}},
         "true"},
        {"FindRoofFaceAt",
         [](HostConnection& c) {
             float height = 0;
             std::array<float, 6> six{1, 1, 1, 1, 1, 1};
             bool ignored = false;
             const std::int32_t face = roof(c)->FindRoofFaceAt(true, 2, 3, height, six, ignored);
             return text(face) + " " + text(height) + " " + text(six[5]);
         },
         {{"op", "FindRoofFaceAt"},
          {"target", 7},
          {"args", {{"flag", true}, {"x", 2}, {"y", 3}, {"six", {1, 1, 1, 1, 1, 1}}}}},
         {{"face", 2}, {"height", 4.75}, {"six", {0, 0, 0, 0, 0, 9}}, {"ignored", true}},
         "2 4.75 9"},
        {"GetRoofingThickness",
         [](HostConnection& c) { return text(roof(c)->GetRoofData()->GetRoofingThickness()); },
         {{"op", "GetRoofingThickness"}, {"target", 8}, {"args", Json::object()}},
         0.04,
         "0.04"},
        {"GetGutterWidth",
         [](HostConnection& c) { return text(roof(c)->GetRoofData()->GetGutterWidth()); },
         {{"op", "GetGutterWidth"}, {"target", 8}, {"args", Json::object()}},
         0.06,
         "0.06"},
        {"GetFaceOverhang",
         [](HostConnection& c) {
             bool ignored = false;
             return text(roof(c)->GetRoofData()->GetFaceOverhang(3, ignored));
         },
         {{"op", "GetFaceOverhang"}, {"target", 8}, {"args", {{"face", 3}}}},
         {{"value", 0.6}, {"ignored", false}},
         "0.6"},
        {"GetFacePitch",
         [](HostConnection& c) { return text(roof(c)->GetRoofData()->GetFacePitch(1)); },
         {{"op", "GetFacePitch"}, {"target", 8}, {"args", {{"face", 1}}}},
         35,
         "35"},
        {"GetFaceDirection",
         [](HostConnection& c) { return text(roof(c)->GetRoofData()->GetFaceDirection(1)); },
         {{"op", "GetFaceDirection"}, {"target", 8}, {"args", {{"face", 1}}}},
         270,
         "270"},
        {"PrepareElement",
         [](HostConnection& c) {
             element(c)->PrepareElement(true);
             return std::string("done");
         },
         {{"op", "PrepareElement"}, {"target", 10}, {"args", {{"flag", true}}}},
         nullptr,
         "done"},
        {"SetElementMatrix",
         [](HostConnection& c) {
             PlacementMatrix m;
             m.at(0, 3) = 5; // the translation's x, stored 13th
             m.at(3, 3) = 1;
             return text(element(c)->SetElementMatrix(m));
         },
         {{"op", "SetElementMatrix"},
          {"target", 10},
          {"args", {{"matrix", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5, 0, 0, 1}}}}},
         0,
         "0"},
        {"CommitElement",
         [](HostConnection& c) { return text(element(c)->CommitElement(true)); },
         {{"op", "CommitElement"}, {"target", 10}, {"args", {{"flag", true}}}},
         1,
         "1"},
    };
    return cases;
}

// The host's answers to the requests that lead to the objects; the case's own op gets `result`.
FakePeer::Respond answering(const OperationCase& c) {
    return [&c](const Json& request) -> std::vector<std::string> {
        const std::string op = request["op"];
        if (op == c.request["op"]) {
            return {reply(request, c.result)};
        }
        static const std::map<std::string, Json> objects = {
            {"GetActiveBuilding", 5},
            {"GetRoofList", 6},
            {"FindRoofAt",
             {{"roof", 7}, {"ignored", 0}, {"six", {1, 1, 1, 1, 1, 1}}, {"ignoredFlag", false}}},
            {"GetRoofData", 8},
            {"LoadObjectFile", 9},
            {"CreateElement", 10}};
        return {reply(request, objects.at(op))};
    };
}

TEST(SocketHostConnectionTest, EveryOperationSendsItsRequestAndReadsItsReply) {
    for (const OperationCase& c : operationCases()) {
        SCOPED_TRACE(c.name);
        Connected host(answering(c));
        EXPECT_EQ(c.call(*host.connection), c.value);
        Json sent = host.peer.received().back();
        sent.erase("id");
        for (const char* key : {"picture", "cursor"}) {
            if (sent["args"].contains(key)) {
                sent["args"][key] = picture(sent["args"][key]);
            }
        }
        EXPECT_EQ(sent, c.request);
    }
}

// Replies the macro cannot use fail the call as a host error naming the operation.
TEST(SocketHostConnectionTest, ErrorRepliesAndWrongValuesAreHostErrors) {
    const std::pair<Json, std::string> cases[] = {
        {{{"error", {{"message", "no document is open"}}}}, "GetVersionText: no document is open"},
        {{{"result", 2026}}, "GetVersionText: the host sent 2026 where a text belongs"},
        {{{"result", nullptr}}, "GetVersionText: the host sent null where a text belongs"},
    };
    for (const auto& [answer, message] : cases) {
        Connected host([&answer](const Json& request) {
            Json line = answer;
            line["id"] = request["id"];
            return std::vector<std::string>{line.dump()};
        });
        try {
            host.connection->GetVersionText();
            ADD_FAILURE() << "no error for " << answer.dump();
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.number(), RuntimeError::HostError);
            EXPECT_EQ(error.description(), message);
        }
    }
}

TEST(SocketHostConnectionTest, EventsReachTheHandlersWithTheirArguments) {
    Connected host({});
    host.peer.send({
        event("exe_GotOneClick", 1, {{"valid", true}, {"x", 10.25}, {"y", 4}, {"id", 2}}),
        event("exe_ButtonChange", 2,
              {{"btnId", 3},
               {"evnt", 2},
               {"selectedIndex", 0},
               {"pressed", true},
               {"visible", true},
               {"enabled", false}}),
        event("exe_LoadBuilding", 3, {{"building", 5}, {"saveNo", 1}}),
        event("exe_LoadBuilding", 4, {{"building", nullptr}, {"saveNo", 1}}),
        event("exe_LoadComplete", 5, {{"successfull", true}}),
        event("exe_SaveStart", 6,
              {{"fileName", "/h/a.FCStd"},
               {"numBuildings", 1},
               {"isAutoSave", false},
               {"numChunksToSave", 3}}),
        event("exe_SaveBuilding", 7, {{"buildingNo", 0}, {"building", 5}}),
        event("exe_ProjectClosed", 8),
        event("exe_NewCurrentProject", 9),
        event("exe_ProgramExit", 10),
    });
    ASSERT_TRUE(runUntil([&] { return host.peer.received().size() == 11; }));
    EXPECT_THAT(host.events.events,
                ElementsAre("GotOneClick 1 10.25 4 2", "ButtonChange 3 2 0 110",
                            "LoadBuilding object 1", "LoadBuilding none 1", "LoadComplete 1",
                            "SaveStart /h/a.FCStd 1 0", "SaveBuilding 0 object", "ProjectClosed",
                            "NewCurrentProject", "ProgramExit"));
    // Acks in order; the save's start answers one block more than it was given.
    EXPECT_EQ(host.peer.traffic()[5], R"({"ack":6,"result":{"numChunksToSave":4}})");
    EXPECT_EQ(host.peer.traffic()[9], R"({"ack":10})");
}

TEST(SocketHostConnectionTest, AnEventWithWrongArgumentsIsAnsweredWithAnErrorAndNotHandled) {
    Connected host({});
    host.peer.send({event("exe_GotOneClick", 1, {{"valid", true}, {"x", "ten"}, {"y", 4}}),
                    event("exe_Unknown", 2), event("exe_ProjectClosed", 3)});
    ASSERT_TRUE(runUntil([&] { return host.peer.received().size() == 4; }));
    EXPECT_THAT(host.events.events, ElementsAre("ProjectClosed"));
    EXPECT_THAT(
        host.peer.traffic(),
        ElementsAre(
            R"({"ack":1,"error":{"message":"exe_GotOneClick: the host sent \"ten\" where a number belongs"}})",
            R"({"ack":2,"error":{"message":"an event the macro does not handle"}})",
            R"({"ack":3})"));
    EXPECT_EQ(host.problems.size(), 2U);
}

// Packing inside a handler lets the event loop run: the host's next event still waits for the
// handler to return, and the handler's own calls are answered meanwhile.
TEST(SocketHostConnectionTest, AHandlerThatLetsEventsRunIsNotInterruptedByTheNextEvent) {
    Connected host([](const Json& request) {
        return std::vector<std::string>{event("exe_ProjectClosed", 3), reply(request, true)};
    });
    host.events.duringSaveBuilding = [&] {
        host.connection->SaveMacroData(548199592, "/d");
        runFor(100);
        host.events.events.push_back("SaveBuilding ends");
    };
    host.peer.send({event("exe_SaveBuilding", 1, {{"buildingNo", 0}, {"building", 5}}),
                    event("exe_NewCurrentProject", 2)});
    ASSERT_TRUE(runUntil([&] { return host.events.events.size() == 4; }));
    EXPECT_THAT(host.events.events, ElementsAre("SaveBuilding 0 object", "SaveBuilding ends",
                                                "NewCurrentProject", "ProjectClosed"));
}

} // namespace
} // namespace pluvarine::test
