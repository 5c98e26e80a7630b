// The macro's end of the host protocol: waiting for replies, queued events, a host that goes
// away and lines that are not what they should be.

#include "platform/hostsocket/HostSocketClient.h"

#include "Connected.h"

#include <gmock/gmock.h>

namespace pluvarine::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

// The client with its events kept by name.
struct Client : Connected {
    explicit Client(FakePeer::Respond respond, int timeoutMs = 2000)
        : Connected(std::move(respond), timeoutMs) {
        client->setEventHandler([this](const std::string& name, const Json&) {
            events.push_back(name);
            return Json();
        });
    }
    std::string failure(const std::string& op) {
        return hostError([&] { client->call(op); });
    }
    std::vector<std::string> events;
};

// The peer answers "Echo" with its args and lets the other ops go unanswered.
std::vector<std::string> echo(const Json& request) {
    if (request.value("op", "") == "Echo") {
        return {reply(request, request["args"])};
    }
    return {};
}

TEST(HostSocketClientTest, ACallWithoutReplyFailsAfterTheTimeoutAndALateReplyIsDropped) {
    Client host(echo, 500);
    EXPECT_EQ(host.failure("Silent"), "Silent: no reply from the host within 500 ms");
    host.peer.send({R"({"id":2,"result":"late"})"});
    EXPECT_TRUE(runUntil([&] { return !host.problems.empty(); }));
    EXPECT_THAT(host.problems, ElementsAre("host protocol: a reply to no request waiting (id 2)"));
}

TEST(HostSocketClientTest, EventsArrivingDuringACallAreHandledAfterItInOrder) {
    Client host([](const Json& request) -> std::vector<std::string> {
        return {event("exe_ProjectClosed", 1), event("exe_NewCurrentProject", 2),
                reply(request, "v")};
    });
    EXPECT_EQ(host.client->call("GetVersionText"), "v");
    EXPECT_TRUE(host.events.empty());
    EXPECT_FALSE(host.client->idle());
    ASSERT_TRUE(runUntil([&] { return host.client->idle(); }));
    EXPECT_THAT(host.events, ElementsAre("exe_ProjectClosed", "exe_NewCurrentProject"));
    ASSERT_TRUE(runUntil([&] { return host.peer.received().size() == 4; }));
    EXPECT_THAT(host.peer.traffic(),
                ElementsAre("GetVersionText {}", R"({"ack":1})", R"({"ack":2})"));
}

TEST(HostSocketClientTest, AHostThatClosesIsTheHostsExit) {
    // Closing while idle: the events sent before still come first.
    Client idle(echo);
    idle.peer.send({event("exe_ProjectClosed", 1), "<close>"});
    ASSERT_TRUE(runUntil([&] { return idle.events.size() == 2; }));
    EXPECT_THAT(idle.events, ElementsAre("exe_ProjectClosed", "exe_ProgramExit"));
    EXPECT_EQ(idle.failure("Echo"), "Echo: the host has gone");

    // Closing instead of replying fails the call at once.
    Client calling([](const Json&) { return std::vector<std::string>{"<close>"}; }, 60000);
    EXPECT_EQ(calling.failure("GetVersionText"), "GetVersionText: the host has gone");
    ASSERT_TRUE(runUntil([&] { return !calling.events.empty(); }));
    EXPECT_THAT(calling.events, ElementsAre("exe_ProgramExit"));
    EXPECT_TRUE(calling.problems.empty());

    // A host that announces its exit before it closes exits once.
    Client announcing(echo);
    announcing.peer.send({event("exe_ProgramExit", 1), "<close>"});
    ASSERT_TRUE(
        runUntil([&] { return !announcing.client->isOpen() && announcing.client->idle(); }));
    EXPECT_THAT(announcing.events, ElementsAre("exe_ProgramExit"));
}

TEST(HostSocketClientTest, MalformedLinesAreReportedAndSkipped) {
    const std::pair<std::string, std::string> cases[] = {
        {"not json", "not a JSON object: not json"},
        {"[1,2]", "not a JSON object: [1,2]"},
        {"\xff{}", "not a JSON object: \xef\xbf\xbd{}"}, // shown with a replacement character
        {R"({"hello":1})", "neither a reply nor an event"},
        {R"({"id":"x","result":1})", "a reply needs a positive integer id"},
        {R"({"id":1})", "a reply needs a positive integer id and a result or an error"},
        {R"({"event":"exe_ProjectClosed"})", "an event needs a name, a positive integer seq"},
        {R"({"event":"exe_ProjectClosed","seq":1,"args":[]})", "args as an object"},
        {std::string(HostSocketClient::maxLineBytes + 10, 'x'), "a line longer than 4194304 bytes"},
        {std::string(100000, '[') + std::string(100000, ']'), "not a JSON object: [[["},
    };
    for (const auto& [line, problem] : cases) {
        SCOPED_TRACE(problem);
        Client host(echo, 30000); // megabytes to read and parse on a busy machine
        host.peer.send({line});
        // The line is skipped: the next request is answered as usual.
        EXPECT_EQ(host.client->call("Echo", {{"n", 7}}), Json({{"n", 7}}));
        ASSERT_EQ(host.problems.size(), 1U);
        EXPECT_THAT(host.problems[0], HasSubstr(problem));
        EXPECT_LT(host.problems[0].size(), 400U); // a long line is shown by its start
        EXPECT_TRUE(host.events.empty());
    }
}

TEST(HostSocketClientTest, OpeningFailsForNoHostOrAnotherProtocolVersion) {
    HostSocketClient nobody(200), client(2000);
    EXPECT_THAT(hostError([&] { nobody.open("/nonexistent/host.sock", Json::object()); }),
                HasSubstr("cannot reach the host at /nonexistent/host.sock"));
    FakePeer peer;
    peer.helloResult = {{"protocol", 2}, {"host", "a newer host"}};
    EXPECT_EQ(hostError([&] {
                  client.open(peer.path(), {{"client", "pluvarine"}});
              }),
              "the host does not speak protocol version 1");
    EXPECT_EQ(peer.received().at(0)["args"], Json({{"client", "pluvarine"}, {"protocol", 1}}));
}

} // namespace
} // namespace pluvarine::test
