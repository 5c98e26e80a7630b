// The connection object and the host's objects over the host protocol: every operation's
// request and the value read from its reply, and the events as the macro receives them.

#include "platform/hostsocket/SocketHostConnection.h"

#include "Connected.h"
#include "host/HostBuilding.h"
#include "host/HostElement.h"
#include "host/HostEvents.h"
#include "host/HostObjectTemplate.h"
#include "host/HostRoof.h"
#include "host/HostRoofData.h"
#include "host/HostRoofList.h"

#include <gmock/gmock.h>
#include <sstream>

namespace pluvarine::test {
namespace {

using ::testing::ElementsAre;

// The events as the macro's handlers see them, each with its arguments; exe_SaveStart announces
// one block more.
struct RecordingEvents : HostEvents {
    std::vector<std::string> events;
    std::function<void()> duringSaveBuilding;

    void record(const char* name, const auto&... values) {
        std::ostringstream out;
        out << name;
        ((out << ' ' << values), ...);
        events.push_back(out.str());
    }
    void exe_ProgramExit() override { record("ProgramExit"); }
    void exe_GotOneClick(bool valid, float x, float y, std::int32_t id) override {
        record("GotOneClick", valid, x, y, id);
    }
    void exe_ButtonChange(std::int32_t btnId, std::int32_t evnt, std::int32_t selectedIndex,
                          bool pressed, bool visible, bool enabled) override {
        record("ButtonChange", btnId, evnt, selectedIndex, pressed, visible, enabled);
    }
    void exe_LoadComplete(bool successfull) override { record("LoadComplete", successfull); }
    void exe_LoadBuilding(std::shared_ptr<HostBuilding> b, std::int32_t saveNo) override {
        record("LoadBuilding", b != nullptr, saveNo);
    }
    void exe_SaveStart(const std::string& fileName, std::int32_t numBuildings, bool isAutoSave,
                       std::int32_t& numChunksToSave) override {
        record("SaveStart", fileName, numBuildings, isAutoSave);
        ++numChunksToSave;
    }
    void exe_SaveBuilding(std::int32_t buildingNo, std::shared_ptr<HostBuilding> b) override {
        record("SaveBuilding", buildingNo, b != nullptr);
        if (duringSaveBuilding) {
            duringSaveBuilding();
        }
    }
    void exe_ProjectClosed() override { record("ProjectClosed"); }
    void exe_NewCurrentProject() override { record("NewCurrentProject"); }
};

struct ConnectedMacro : Connected {
    explicit ConnectedMacro(FakePeer::Respond respond) : Connected(std::move(respond)) {
        connection.setEventSink(&events);
    }
    RecordingEvents events;
    SocketHostConnection connection{client};
};

using Call = std::function<std::string(HostConnection&)>;

// An operation's call with its value as text ("" for none).
Call op(auto call) {
    return [call](HostConnection& c) {
        std::ostringstream out;
        if constexpr (std::is_void_v<decltype(call(c))>) {
            call(c);
        } else {
            out << std::boolalpha << call(c);
        }
        return out.str();
    };
}
// The call of one expression on the connection `c`.
#define CALL(...) op([](HostConnection& c) { return __VA_ARGS__; })

// Each row: the operation as the macro calls it, the request the host receives ("op@target
// {args}", no target for the connection itself), what it answers and the value the call returns
// when that is not the answer as it stands.
struct OperationCase {
    Call call;
    std::string request;
    const char* result;
    std::string value{};

    Json sent() const {
        const auto space = request.find(' ');
        const auto at = request.find('@');
        Json sent{{"op", request.substr(0, std::min(space, at))},
                  {"args", Json::parse(request.substr(space + 1))}};
        if (at < space) {
            sent["target"] = std::stoi(request.substr(at + 1));
        }
        return sent;
    }

    std::string expected() const {
        const Json answer = Json::parse(result);
        return !value.empty()       ? value
               : answer.is_string() ? answer.get<std::string>()
               : answer.is_null()   ? ""
                                    : answer.dump();
    }
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

bool ignoredFlag = false; // an out-argument the operations' values do not show

// Objects reached through the host's handles: 5 building, 6 roof list, 7 roof, 8 roof data,
// 9 template, 10 element.
std::shared_ptr<HostRoof> roof(HostConnection& c) {
    std::int32_t ignored = 0;
    std::array<float, 6> six{1, 1, 1, 1, 1, 1};
    bool flag = false;
    return c.GetActiveBuilding()->GetRoofList()->FindRoofAt(true, 1.5F, -0.25F, ignored, six, flag);
}
std::shared_ptr<HostRoofData> roofData(HostConnection& c) {
    return roof(c)->GetRoofData();
}
std::shared_ptr<HostElement> element(HostConnection& c) {
    return c.LoadObjectFile("/w/obj/ 1.tob", 0)->CreateElement(nullptr, 0);
}

const std::vector<OperationCase>& operationCases() {
    static const std::vector<OperationCase> cases = {
        {CALL(c.GetProgramFolder()), R"(GetProgramFolder {})", R"("/p/")"},
        {CALL(c.GetVersionText()), R"(GetVersionText {})", R"("Tectaro +2026")"},
        {op([](HostConnection& c) {
             QImage bitmap(2, 1, QImage::Format_RGB32);
             bitmap.fill(QColor(255, 0, 0));
             return c.AddMacroButton(SocketHostConnection::pictureFromBitmap(bitmap), 0x01030204,
                                     "Fallrohr", 4733);
         }),
         R"(AddMacroButton {"picture":"2x1 ffff0000","flags":16974340,"tooltip":"Fallrohr",
             "code":4733})",
         "3"},
        {CALL(c.RequestOneClick("", HostPicture{}, 1)),
         R"(RequestOneClick {"text":"","cursor":"no picture","count":1})", "null"},
        {CALL(c.GetLevelAt(1.5F, -0.25F)), R"(GetLevelAt {"x":1.5,"y":-0.25})", "-0.125"},
        {CALL(c.LoadMacroData(548199592, "/d")),
         R"(LoadMacroData {"dataId":548199592,"path":"/d"})", "true"},
        {CALL(c.SetMacroButtonState(3, 1, 0, true, false)),
         R"(SetMacroButtonState {"buttonId":3,"a":1,"b":0,"shown":true,"enabled":false})", "0"},
        {CALL(c.ShowPrompt("Bitte klicken Sie außen an die Wand!")),
         R"(ShowPrompt {"text":"Bitte klicken Sie außen an die Wand!"})", "null"},
        {CALL(c.ShowProgress("1.tob", 50)), R"(ShowProgress {"text":"1.tob","percentage":50})",
         "null"},
        {CALL(c.EndProgress()), R"(EndProgress {})", "null"},
        {CALL(c.SaveMacroData(548199592, "/d")),
         R"(SaveMacroData {"dataId":548199592,"path":"/d"})", "false"},
        {CALL(c.ConnectMacro(4711, "", "{G}")),
         R"(ConnectMacro {"windowHandle":4711,"text":"","macroGuid":"{G}"})", "true"},
        {CALL(roof(c) == nullptr),
         R"(FindRoofAt@6 {"flag":true,"x":1.5,"y":-0.25,"six":[1,1,1,1,1,1]})",
         R"({"roof":null,"ignored":0,"six":[1,1,1,1,1,1],"ignoredFlag":false})", "true"},
        {op([](HostConnection& c) {
             float height = 0;
             std::array<float, 6> six{1, 1, 1, 1, 1, 1};
             bool ignored = false;
             const std::int32_t face = roof(c)->FindRoofFaceAt(true, 2, 3, height, six, ignored);
             return std::to_string(face) + " " + Json(height).dump() + " " + Json(six[5]).dump();
         }),
         R"(FindRoofFaceAt@7 {"flag":true,"x":2,"y":3,"six":[1,1,1,1,1,1]})",
         R"({"face":2,"height":4.75,"six":[0,0,0,0,0,9],"ignored":true})", "2 4.75 9.0"},
        {CALL(roofData(c)->GetRoofingThickness()), R"(GetRoofingThickness@8 {})", "0.04"},
        {CALL(roofData(c)->GetGutterWidth()), R"(GetGutterWidth@8 {})", "0.06"},
        {CALL(roofData(c)->GetFaceOverhang(3, ignoredFlag)), R"(GetFaceOverhang@8 {"face":3})",
         R"({"value":0.6,"ignored":false})", "0.6"},
        {CALL(roofData(c)->GetFacePitch(1)), R"(GetFacePitch@8 {"face":1})", "35"},
        {CALL(roofData(c)->GetFaceDirection(1)), R"(GetFaceDirection@8 {"face":1})", "270"},
        {CALL(element(c)->PrepareElement(true)), R"(PrepareElement@10 {"flag":true})", "null"},
        {op([](HostConnection& c) {
             PlacementMatrix m;
             m.at(0, 3) = 5; // the translation's x, stored 13th
             m.at(3, 3) = 1;
             return element(c)->SetElementMatrix(m);
         }),
         R"(SetElementMatrix@10 {"matrix":[0,0,0,0,0,0,0,0,0,0,0,0,5,0,0,1]})", "0"},
        {CALL(element(c)->CommitElement(true)), R"(CommitElement@10 {"flag":true})", "1"},
    };
    return cases;
}

// The host's answers to the requests that lead to the objects; the case's own op gets `result`.
FakePeer::Respond answering(const OperationCase& c) {
    return [&c](const Json& request) -> std::vector<std::string> {
        const std::string op = request["op"];
        if (op == c.sent()["op"]) {
            return {reply(request, Json::parse(c.result))};
        }
        static const Json objects = Json::parse(R"({"GetActiveBuilding":5,"GetRoofList":6,
            "FindRoofAt":{"roof":7,"ignored":0,"six":[1,1,1,1,1,1],"ignoredFlag":false},
            "GetRoofData":8,"LoadObjectFile":9,"CreateElement":10})");
        return {reply(request, objects.at(op))};
    };
}

TEST(SocketHostConnectionTest, EveryOperationSendsItsRequestAndReadsItsReply) {
    for (const OperationCase& c : operationCases()) {
        SCOPED_TRACE(c.request);
        ConnectedMacro host(answering(c));
        EXPECT_EQ(c.call(host.connection), c.expected());
        Json sent = host.peer.received().back();
        sent.erase("id");
        for (const char* key : {"picture", "cursor"}) {
            if (sent["args"].contains(key)) {
                sent["args"][key] = picture(sent["args"][key]);
            }
        }
        EXPECT_EQ(sent, c.sent());
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
        ConnectedMacro host([&answer](const Json& request) {
            Json line = answer;
            line["id"] = request["id"];
            return std::vector<std::string>{line.dump()};
        });
        EXPECT_EQ(hostError([&] { host.connection.GetVersionText(); }), message);
    }
}

// An event with wrong arguments, or one the macro does not know, is answered with an error and
// not handled; the others reach the handlers with their arguments.
TEST(SocketHostConnectionTest, EventsReachTheHandlersWithTheirArguments) {
    ConnectedMacro host({});
    host.peer.send({
        event("exe_GotOneClick", 1, {{"valid", true}, {"x", "ten"}, {"y", 4}}),
        event("exe_Unknown", 2),
        event("exe_GotOneClick", 3, {{"valid", true}, {"x", 10.25}, {"y", 4}, {"id", 2}}),
        event("exe_ButtonChange", 4, Json::parse(R"({"btnId":3,"evnt":2,"selectedIndex":0,
              "pressed":true,"visible":true,"enabled":false})")),
        event("exe_LoadBuilding", 5, {{"building", 5}, {"saveNo", 1}}),
        event("exe_LoadBuilding", 6, {{"building", nullptr}, {"saveNo", 1}}),
        event("exe_LoadComplete", 7, {{"successfull", true}}),
        event("exe_SaveStart", 8, Json::parse(R"({"fileName":"/h/a.FCStd","numBuildings":1,
              "isAutoSave":false,"numChunksToSave":3})")),
        event("exe_SaveBuilding", 9, {{"buildingNo", 0}, {"building", 5}}),
        event("exe_ProjectClosed", 10),
        event("exe_NewCurrentProject", 11),
        event("exe_ProgramExit", 12),
    });
    ASSERT_TRUE(runUntil([&] { return host.peer.received().size() == 13; }));
    EXPECT_THAT(host.events.events,
                ElementsAre("GotOneClick 1 10.25 4 2", "ButtonChange 3 2 0 1 1 0",
                            "LoadBuilding 1 1", "LoadBuilding 0 1", "LoadComplete 1",
                            "SaveStart /h/a.FCStd 1 0", "SaveBuilding 0 1", "ProjectClosed",
                            "NewCurrentProject", "ProgramExit"));
    // Acks in order; the save's start answers one block more than it was given.
    const std::vector<std::string> acks = host.peer.traffic();
    EXPECT_EQ(
        acks[0],
        R"({"ack":1,"error":{"message":"exe_GotOneClick: the host sent \"ten\" where a number belongs"}})");
    EXPECT_EQ(acks[1], R"({"ack":2,"error":{"message":"an event the macro does not handle"}})");
    EXPECT_EQ(acks[7], R"({"ack":8,"result":{"numChunksToSave":4}})");
    EXPECT_EQ(acks[11], R"({"ack":12})");
    EXPECT_EQ(host.problems.size(), 2U);
}

// Packing inside a handler lets the event loop run: the host's next event still waits for the
// handler to return, and the handler's own calls are answered meanwhile.
TEST(SocketHostConnectionTest, AHandlerThatLetsEventsRunIsNotInterruptedByTheNextEvent) {
    ConnectedMacro host([](const Json& request) {
        return std::vector<std::string>{event("exe_ProjectClosed", 3), reply(request, true)};
    });
    host.events.duringSaveBuilding = [&] {
        host.connection.SaveMacroData(548199592, "/d");
        runUntil([] { return false; }, 100); // lets the event loop run
        host.events.events.push_back("SaveBuilding ends");
    };
    host.peer.send({event("exe_SaveBuilding", 1, {{"buildingNo", 0}, {"building", 5}}),
                    event("exe_NewCurrentProject", 2)});
    ASSERT_TRUE(runUntil([&] { return host.events.events.size() == 4; }));
    EXPECT_THAT(host.events.events, ElementsAre("SaveBuilding 0 1", "SaveBuilding ends",
                                                "NewCurrentProject", "ProjectClosed"));
}

} // namespace
} // namespace pluvarine::test
