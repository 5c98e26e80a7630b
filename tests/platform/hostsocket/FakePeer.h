#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QThread>
#include <functional>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace pluvarine::test {

using Json = nlohmann::json;

// A host as the test scripts it, in a thread of its own (the macro's calls block their thread).
// It listens on a socket in a temporary folder, answers hello, and answers every other request
// with the lines `respond` gives: replies, events, anything, and "<close>" to close the
// connection there. Everything received, acks included, is kept in order.
class FakePeer {
public:
    using Respond = std::function<std::vector<std::string>(const Json& received)>;

    explicit FakePeer(Respond respond = {}) : m_respond(std::move(respond)) {
        m_thread.start();
        m_context.moveToThread(&m_thread);
        inPeer([this] {
            m_server = new QLocalServer(&m_context);
            m_server->listen(QString::fromStdString(path()));
            QObject::connect(m_server, &QLocalServer::newConnection, &m_context, [this] {
                m_socket = m_server->nextPendingConnection();
                QObject::connect(m_socket, &QLocalSocket::readyRead, &m_context,
                                 [this] { readLines(); });
            });
        });
    }
    ~FakePeer() {
        inPeer([this] { delete m_server; });
        m_thread.quit();
        m_thread.wait();
    }

    // What the peer answers to hello; set before the macro connects.
    Json helloResult{{"protocol", 1}};

    std::string path() const { return m_dir.filePath(QStringLiteral("host.sock")).toStdString(); }

    // Lines sent by the host of its own accord.
    void send(const std::vector<std::string>& lines) {
        inPeer([&] { write(lines); });
    }

    std::vector<Json> received() {
        const std::lock_guard lock(m_mutex);
        return m_received;
    }
    // What the peer received apart from hello, as op or ack lines.
    std::vector<std::string> traffic() {
        std::vector<std::string> lines;
        for (const Json& line : received()) {
            if (line.value("op", "") != "hello") {
                lines.push_back(line.contains("op") ? line["op"].get<std::string>() + " " +
                                                          line.value("args", Json()).dump()
                                                    : line.dump());
            }
        }
        return lines;
    }

private:
    void inPeer(const std::function<void()>& work) {
        QMetaObject::invokeMethod(&m_context, work, Qt::BlockingQueuedConnection);
    }

    void readLines() {
        while (m_socket != nullptr && m_socket->canReadLine()) {
            const Json line = Json::parse(m_socket->readLine().toStdString());
            {
                const std::lock_guard lock(m_mutex);
                m_received.push_back(line);
            }
            if (line.value("op", "") == "hello") {
                write({Json{{"id", line["id"]}, {"result", helloResult}}.dump()});
            } else if (m_respond && line.contains("op")) {
                write(m_respond(line));
            }
        }
    }

    void write(const std::vector<std::string>& lines) {
        if (m_socket == nullptr) {
            return;
        }
        for (const std::string& line : lines) {
            if (line == "<close>") {
                m_socket->disconnectFromServer();
                m_socket = nullptr;
                return;
            }
            m_socket->write(QByteArray::fromStdString(line + "\n"));
        }
        m_socket->flush();
    }

    QTemporaryDir m_dir;
    Respond m_respond;
    QThread m_thread;
    QObject m_context;
    QLocalServer* m_server = nullptr;
    QLocalSocket* m_socket = nullptr;
    std::mutex m_mutex;
    std::vector<Json> m_received;
};

// The reply to a request.
inline std::string reply(const Json& request, const Json& result) {
    return Json{{"id", request["id"]}, {"result", result}}.dump();
}

inline std::string event(const std::string& name, int seq, const Json& args = Json::object()) {
    return Json{{"event", name}, {"seq", seq}, {"args", args}}.dump();
}

// Lets the event loop run until `done` holds or `ms` have passed.
inline bool runUntil(const std::function<bool()>& done, int ms = 5000) {
    const QDeadlineTimer deadline(ms);
    while (!done() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return done();
}

} // namespace pluvarine::test
