// The program with a host in another process: the script's host steps become the host's
// control requests, the host's events reach the macro, and the host's going away ends it.

#include "../../platform/hostsocket/FakePeer.h"
#include "../ScriptedSession.h"

#include <sstream>

namespace pluvarine::e2e {
namespace {

using test::FakePeer;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

// A host that knows just enough for a session: it connects the macro, gives it a program folder
// laid out from the working-folder tree, and answers the control requests; the roof and
// insertion operations it does not know fail as host errors, which the macro skips.
class SocketHostSession : public E2e {
protected:
    void SetUp() override {
        E2e::SetUp();
        const auto macroFolder = m_dir / "programfolder/Standard/Macros/Pluvarine";
        std::filesystem::create_directories(macroFolder);
        std::filesystem::copy(PLUVARINE_WORKFOLDER, macroFolder,
                              std::filesystem::copy_options::recursive);
    }

    std::vector<std::string> answer(const Json& request) {
        const std::string op = request["op"];
        static const Json results = Json::parse(R"({"ConnectMacro":true,
            "GetVersionText":"FreeCAD Tectaro-compatible host +2026","AddMacroButton":1,
            "SetMacroButtonState":0,"RequestOneClick":null,"ShowPrompt":null,"control.idle":true,
            "control.macroButton":null,"control.click":null,"control.exit":null,
            "control.state":{"elements":[]}})");
        // The events each control request brings about, after its reply.
        static const Json events = Json::parse(R"({"control.macroButton":["exe_ButtonChange",
            {"btnId":1,"evnt":2,"selectedIndex":0,"pressed":true,"visible":true,"enabled":true}],
            "control.click":["exe_GotOneClick",{"valid":true,"x":5,"y":-0.1,"id":1}],
            "control.exit":["exe_ProgramExit",{}]})");
        if (op == "GetProgramFolder") {
            return {test::reply(request, (m_dir / "programfolder").string() + "/")};
        }
        if (!results.contains(op)) {
            return {
                Json{{"id", request["id"]}, {"error", {{"message", "not in this host"}}}}.dump()};
        }
        std::vector<std::string> lines;
        if (op == "control.state") {
            lines.emplace_back("a line that is no JSON");
        }
        lines.push_back(test::reply(request, results[op]));
        if (events.contains(op)) {
            lines.push_back(test::event(events[op][0].get<std::string>(), ++m_seq, events[op][1]));
        }
        if (op == "control.exit" || (op == "control.click" && closeAfterClick)) {
            lines.emplace_back("<close>");
        }
        return lines;
    }

    int runWithHost() {
        FakePeer host([this](const Json& request) { return answer(request); });
        const int code = run("--host-socket '" + host.path() + "'");
        requests = host.traffic();
        return code;
    }

    bool closeAfterClick = false;
    std::vector<std::string> requests;
    int m_seq = 0;
};

// The events as the journal has them, by name.
std::vector<std::string> events(const std::string& journal) {
    std::vector<std::string> names;
    std::istringstream lines(journal);
    for (std::string line; std::getline(lines, line);) {
        const Json entry = Json::parse(line);
        if (entry["type"] == "event") {
            names.push_back(entry["event"]);
        } else if (entry["type"] == "protocol") {
            names.push_back("protocol: " + entry["error"].get<std::string>());
        }
    }
    return names;
}

TEST_F(SocketHostSession, TheScriptsHostStepsAreTheHostsControlRequests) {
    add({{"do", "macroButton"}});
    click(5, -0.1);
    snapshot("picked");
    ASSERT_EQ(runWithHost(), 0) << read("stderr.txt");
    Json picked = state("picked");
    EXPECT_EQ(picked["host"], Json({{"elements", Json::array()}})); // as the host reported it
    EXPECT_EQ(picked["macro"]["click"], Json::array({5.0F, -0.1F}));
    EXPECT_TRUE(picked["macro"]["mainWindowVisible"]);
    std::erase_if(requests, [](const std::string& request) {
        return !request.starts_with("control.") || request.starts_with("control.idle");
    });
    EXPECT_THAT(requests,
                ElementsAre("control.macroButton {}", R"(control.click {"x":5.0,"y":-0.1})",
                            "control.state {}", "control.exit {}"));
    EXPECT_THAT(events(read("journal.jsonl")),
                ElementsAre("exe_ButtonChange", "exe_GotOneClick",
                            "protocol: host protocol: not a JSON object: a line that is no JSON",
                            "exe_ProgramExit"));
}

TEST_F(SocketHostSession, AHostThatGoesAwayEndsTheProgramAsItsExit) {
    closeAfterClick = true;
    add({{"do", "macroButton"}});
    click(5, -0.1);
    add({{"do", "wait"}, {"ms", 60000}}); // the exit comes before the script's end
    ASSERT_EQ(runWithHost(), 0) << read("stderr.txt");
    EXPECT_THAT(events(read("journal.jsonl")),
                ElementsAre("exe_ButtonChange", "exe_GotOneClick", "exe_ProgramExit"));
}

} // namespace
} // namespace pluvarine::e2e
