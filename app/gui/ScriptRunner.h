#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

class QWidget;

namespace pluvarine {

class PreviewWidget;
class Session;

// Drives a session from a JSON script, one step at a time, the way a user would: clicks in the
// host's plan, the macro's toolbar button, buttons and fields of the macro's windows, the
// material list, the choice dialog, the host's project commands, screenshots, the end. Before
// each step it waits until the session has settled: the host's event queue empty, the wall
// pick's second rebuild done, no archive being packed or unpacked, every shown 3D view's first
// frame on the screen. The script format is in the README ("Scripted sessions").
class ScriptRunner : public QObject {
    Q_OBJECT
public:
    // Throws nlohmann::json::exception or std::runtime_error for a script that cannot be read.
    ScriptRunner(Session& session, const std::string& scriptFile);

    // Starts with the first step once the event loop runs.
    void start();

    // 0 while running or after a script that ran to its end; 2 after a failed step.
    int exitCode() const { return m_exitCode; }

private:
    void tick();
    bool settled() const;
    void runStep(const nlohmann::json& step);
    void fail(const std::string& reason);

    // Step actions.
    void click(const nlohmann::json& step);
    void pressButton(const nlohmann::json& step);
    void typeKeys(const nlohmann::json& step);
    void chooseMaterial(const nlohmann::json& step);
    void answer(const nlohmann::json& step);
    // Questions of the step get its "discard" (default false) as the answer.
    void answerQuestions(const nlohmann::json& step);
    void project(const std::string& action, const nlohmann::json& step);
    void screenshot(const nlohmann::json& step);
    void writeState(const nlohmann::json& step);

    QWidget* window(const std::string& name) const;
    template <typename Widget> Widget* control(const nlohmann::json& step) const;

    Session& m_session;
    nlohmann::json m_steps;
    std::size_t m_next = 0;
    QTimer m_timer;
    qint64 m_waitUntil = 0; // a "wait" step: no step before this time (ms since epoch)
    qint64 m_stepStarted = 0;
    int m_exitCode = 0;
    std::vector<QPointer<PreviewWidget>> m_firstFrames; // 3D views that have not shown a frame
};

} // namespace pluvarine
