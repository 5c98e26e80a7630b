#include "platform/hostsocket/HostSocketClient.h"

#include "base/RuntimeError.h"

#include <QDeadlineTimer>
#include <QMetaObject>
#include <QString>
#include <cstdlib>
#include <unistd.h>

namespace pluvarine {

namespace {

[[noreturn]] void hostError(const std::string& description) {
    throw RuntimeError(RuntimeError::HostError, description);
}

// A line as it appears in a report: the start of it, enough to recognise it, as valid UTF-8.
std::string excerpt(const QByteArray& line) {
    constexpr qsizetype shown = 200;
    std::string text = QString::fromUtf8(line.left(shown)).toStdString();
    return line.size() > shown ? text + "..." : text;
}

bool isPositiveInteger(const nlohmann::json& value) {
    return value.is_number_integer() && value.get<std::int64_t>() > 0;
}

} // namespace

HostSocketClient::HostSocketClient(int replyTimeoutMs) : m_timeoutMs(replyTimeoutMs) {
    connect(&m_socket, &QLocalSocket::readyRead, this, &HostSocketClient::readAvailable);
    connect(&m_socket, &QLocalSocket::disconnected, this, &HostSocketClient::connectionLost);
}

HostSocketClient::~HostSocketClient() {
    m_socket.disconnect(this);
    m_socket.abort();
}

std::string HostSocketClient::defaultSocketPath(const std::string& hostName) {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && *runtime != '\0') {
        return std::string(runtime) + "/pluvarine-" + hostName + ".sock";
    }
    return "/tmp/pluvarine-" + hostName + "-" + std::to_string(getuid()) + ".sock";
}

void HostSocketClient::open(const std::string& path, Json helloArgs) {
    m_socket.connectToServer(QString::fromStdString(path));
    if (!m_socket.waitForConnected(m_timeoutMs)) {
        hostError("cannot reach the host at " + path + ": " +
                  (m_socket.error() == QLocalSocket::ServerNotFoundError
                       ? std::string("no host listens there")
                       : m_socket.errorString().toStdString()));
    }
    m_open = true;
    helloArgs["protocol"] = protocolVersion;
    const Json answer = call("hello", std::move(helloArgs));
    if (!answer.is_object() || answer.value("protocol", Json()) != Json(protocolVersion)) {
        hostError("the host does not speak protocol version " + std::to_string(protocolVersion));
    }
    m_hostInfo = answer;
}

HostSocketClient::Json HostSocketClient::call(const std::string& op, Json args,
                                              std::int64_t target) {
    if (!isOpen()) {
        hostError(op + ": the host has gone");
    }
    const std::int64_t id = m_nextId++;
    Json request{{"id", id}, {"op", op}, {"args", std::move(args)}};
    if (target != 0) {
        request["target"] = target;
    }
    m_reply.reset();
    m_waitingFor = id;
    send(request);
    // Waits on the socket alone: no timer, window or host event of the program runs meanwhile.
    const QDeadlineTimer deadline(m_timeoutMs);
    while (!m_reply && !m_lost && !deadline.hasExpired()) {
        if (!m_socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())) &&
            m_socket.state() != QLocalSocket::ConnectedState) {
            connectionLost();
        }
        readAvailable();
    }
    m_waitingFor = 0;
    if (!m_reply) {
        hostError(op + (m_lost ? ": the host has gone"
                               : ": no reply from the host within " + std::to_string(m_timeoutMs) +
                                     " ms"));
    }
    Json reply = std::move(*m_reply);
    m_reply.reset();
    if (reply.contains("error")) {
        const Json& error = reply["error"];
        const Json message = error.is_object() ? error.value("message", Json()) : Json();
        hostError(op + ": " + (message.is_string() ? message.get<std::string>() : error.dump()));
    }
    return std::move(reply["result"]);
}

void HostSocketClient::send(const Json& message) {
    QByteArray line =
        QByteArray::fromStdString(message.dump(-1, ' ', false, Json::error_handler_t::replace));
    line.append('\n');
    m_socket.write(line);
    m_socket.flush();
}

void HostSocketClient::readAvailable() {
    if (m_socket.isOpen()) {
        m_buffer.append(m_socket.readAll());
    }
    qsizetype start = 0;
    for (qsizetype end = m_buffer.indexOf('\n'); end >= 0; end = m_buffer.indexOf('\n', start)) {
        const QByteArray line = m_buffer.mid(start, end - start);
        start = end + 1;
        if (m_skippingLine) {
            m_skippingLine = false; // the end of the line that was too long
        } else if (line.size() > maxLineBytes) {
            problem("a line longer than " + std::to_string(maxLineBytes) + " bytes", line);
        } else if (!line.trimmed().isEmpty()) {
            handleLine(line);
        }
    }
    m_buffer.remove(0, start);
    if (m_buffer.size() > maxLineBytes) {
        if (!m_skippingLine) {
            problem("a line longer than " + std::to_string(maxLineBytes) + " bytes", m_buffer);
        }
        m_skippingLine = true;
        m_buffer.clear();
    }
}

void HostSocketClient::handleLine(const QByteArray& line) {
    const Json message = Json::parse(line.constBegin(), line.constEnd(), nullptr, false);
    if (!message.is_object()) {
        problem("not a JSON object", line);
        return;
    }
    if (message.contains("id")) {
        if (!isPositiveInteger(message["id"]) ||
            (!message.contains("result") && !message.contains("error"))) {
            problem("a reply needs a positive integer id and a result or an error", line);
            return;
        }
        handleReply(message["id"].get<std::int64_t>(), message);
        return;
    }
    if (message.contains("event")) {
        const Json args = message.value("args", Json::object());
        if (!message["event"].is_string() || !isPositiveInteger(message.value("seq", Json())) ||
            !args.is_object()) {
            problem("an event needs a name, a positive integer seq and args as an object", line);
            return;
        }
        m_exitAnnounced = m_exitAnnounced || message["event"] == "exe_ProgramExit";
        m_events.push_back({{"event", message["event"]}, {"seq", message["seq"]}, {"args", args}});
        scheduleDelivery();
        return;
    }
    problem("neither a reply nor an event", line);
}

void HostSocketClient::handleReply(std::int64_t id, const Json& message) {
    if (id != m_waitingFor) {
        problem("a reply to no request waiting (id " + std::to_string(id) + ")");
        return;
    }
    m_reply = message;
}

void HostSocketClient::scheduleDelivery() {
    if (m_deliveryScheduled || m_events.empty()) {
        return;
    }
    m_deliveryScheduled = true;
    QMetaObject::invokeMethod(this, &HostSocketClient::deliverNext, Qt::QueuedConnection);
}

void HostSocketClient::deliverNext() {
    m_deliveryScheduled = false;
    if (m_delivering || m_events.empty()) {
        return; // the handler under way schedules the next event when it ends
    }
    const Json event = std::move(m_events.front());
    m_events.pop_front();
    const std::string name = event["event"].get<std::string>();
    const std::int64_t seq = event["seq"].get<std::int64_t>();
    Json ack{{"ack", seq}};
    m_delivering = true;
    try {
        Json result = m_handler ? m_handler(name, event["args"]) : Json();
        if (!result.is_null()) {
            ack["result"] = std::move(result);
        }
    } catch (const std::exception& error) {
        // The macro's side of the event boundary: a handler's failure goes back to the host.
        ack["error"] = {{"message", error.what()}};
        problem(name + ": " + error.what());
    }
    m_delivering = false;
    if (seq > 0 && isOpen()) {
        send(ack);
    }
    scheduleDelivery();
}

void HostSocketClient::connectionLost() {
    if (m_lost || !m_open) {
        return;
    }
    readAvailable(); // what the host sent before it went still counts
    m_lost = true;
    if (!m_exitAnnounced) {
        // seq 0: an event of the macro's side, acknowledged to nobody.
        m_events.push_back({{"event", "exe_ProgramExit"}, {"seq", 0}, {"args", Json::object()}});
        scheduleDelivery();
    }
}

void HostSocketClient::problem(const std::string& what, const QByteArray& line) {
    std::string report = "host protocol: " + what;
    if (!line.isEmpty()) {
        report += ": " + excerpt(line);
    }
    if (m_report) {
        m_report(report);
    } else {
        qWarning("%s", report.c_str());
    }
}

} // namespace pluvarine
