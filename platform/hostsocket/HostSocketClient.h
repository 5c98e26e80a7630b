#pragma once

#include <QByteArray>
#include <QLocalSocket>
#include <QObject>
#include <cstdint>
#include <deque>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace pluvarine {

// The macro's end of the host protocol (docs/host-protocol.md): one socket to a host in another
// process, JSON lines, requests that wait for their reply, events that wait for their turn.
//
// The single-thread rule: a call waits for its reply without running the event loop, so nothing
// of the program runs in between. Events are handled one at a time on the event loop, never
// inside a call and never inside another event's handler (packing the archive inside a handler
// lets the event loop run): events that arrive meanwhile are queued and handled afterwards, in
// the order they came. A closed socket is the host's exit: a call in progress fails, the queued
// events are handled, then exe_ProgramExit (unless the host sent it before it closed).
//
// What the host sends wrongly (no JSON object, a line too long, missing keys, a reply nobody
// waits for) is reported to the problem reporter and skipped; it never ends the program.
class HostSocketClient : public QObject {
    Q_OBJECT
public:
    using Json = nlohmann::json;

    static constexpr int protocolVersion = 1;
    static constexpr qint64 maxLineBytes = 4 * 1024 * 1024;
    static constexpr int defaultReplyTimeoutMs = 10000;

    // Handles one event: returns the ack's result (null: none) or throws to ack with an error.
    using EventHandler = std::function<Json(const std::string& event, const Json& args)>;
    using ProblemReporter = std::function<void(const std::string& problem)>;

    explicit HostSocketClient(int replyTimeoutMs = defaultReplyTimeoutMs);
    ~HostSocketClient() override;

    // Where a running host named `hostName` listens unless told otherwise.
    static std::string defaultSocketPath(const std::string& hostName);

    // Connects to the host listening at `path` and says hello with `helloArgs` (the protocol
    // version is added). Throws RuntimeError (HostError) when that fails.
    void open(const std::string& path, Json helloArgs);
    bool isOpen() const { return m_open && !m_lost; }
    // What the host answered to hello.
    const Json& hostInfo() const { return m_hostInfo; }

    // One request; `target` 0 for the connection itself. Returns the reply's result; throws
    // RuntimeError (HostError) for an error reply, no reply in time or a connection lost.
    Json call(const std::string& op, Json args = Json::object(), std::int64_t target = 0);

    void setEventHandler(EventHandler handler) { m_handler = std::move(handler); }
    void setProblemReporter(ProblemReporter reporter) { m_report = std::move(reporter); }

    // No event waiting or being handled.
    bool idle() const { return m_events.empty() && !m_delivering; }

private:
    void readAvailable();
    void handleLine(const QByteArray& line);
    void handleReply(std::int64_t id, const Json& message);
    void send(const Json& message);
    void scheduleDelivery();
    void deliverNext();
    void connectionLost();
    void problem(const std::string& what, const QByteArray& line = {});

    QLocalSocket m_socket;
    int m_timeoutMs;
    bool m_open = false;
    bool m_lost = false;
    bool m_exitAnnounced = false; // the host sent exe_ProgramExit before it closed
    Json m_hostInfo;

    std::int64_t m_nextId = 1;
    std::int64_t m_waitingFor = 0; // the id of the call in progress, 0 when none
    std::optional<Json> m_reply;

    QByteArray m_buffer;
    bool m_skippingLine = false; // the rest of a line that was too long

    std::deque<Json> m_events;
    bool m_delivering = false;
    bool m_deliveryScheduled = false;
    EventHandler m_handler;
    ProblemReporter m_report;
};

} // namespace pluvarine
