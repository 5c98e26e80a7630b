#pragma once

#include "base/RuntimeError.h"
#include "host/HostConnection.h"
#include "platform/tectaro/TectaroOptions.h"
#include "platform/tectaro/TectaroProject.h"

#include <QImage>
#include <QObject>
#include <QPointF>
#include <QString>
#include <deque>
#include <functional>
#include <optional>

namespace pluvarine {

class HostEvents;

// The macro's toolbar button as the macro has set it up.
struct MacroButton {
    std::int32_t id = 0;
    QImage image;
    std::string tooltip;
    std::int32_t flags = 0;
    std::int32_t code = 0;
    bool shown = true;
    bool enabled = true;
};

// A pending request for clicks in the plan view.
struct ClickRequest {
    std::int32_t id = 0;
    std::string text;
    QImage cursor;
    std::int32_t remaining = 0;
};

// The stand-in host: the open project (building, elements, macro data blocks), the program
// folder and version, the macro's button, click requests, prompt and progress, and the queue
// through which it raises the macro's events.
//
// Events are never raised from inside a call the macro makes: every event, and every project
// step that raises one, is a step of a queue that runs on the user-interface thread, one step
// per turn of the event loop, and never inside another step (a handler that lets pending
// events run, as packing does, does not start the next step). The orders:
//   save:  exe_SaveStart (numChunksToSave read after the handler), exe_SaveBuilding(0, the
//          building) once, then the project file is written with the data blocks the macro
//          handed over during this save (none when it handed over none; a connected macro's
//          older blocks are dropped at exe_SaveStart). A failed write leaves the file as it
//          was, raises projectSaveFailed and marks the project (saveFailed) until it is saved,
//          closed or replaced.
//   open:  the file is read first (an unreadable file changes nothing and raises nothing);
//          exe_ProjectClosed when a project is open, then the project is installed,
//          exe_LoadBuilding(the building, saveNumber), exe_LoadBuilding(none, saveNumber),
//          exe_LoadComplete(true).
//   close: the project is removed, then exe_ProjectClosed.
//   new:   exe_ProjectClosed when a project is open, then the new project (the default
//          building) is installed and exe_NewCurrentProject raised.
//   exit:  exe_ProgramExit, then exitRequested().
//   click: exe_GotOneClick(valid, x, y, request id); macro button: exe_ButtonChange(id, 2, 0,
//          true, shown, enabled).
class TectaroHost : public QObject {
    Q_OBJECT
public:
    explicit TectaroHost(TectaroOptions options = {}, QObject* parent = nullptr);
    ~TectaroHost() override;

    // ---- program folder and version ----
    const std::string& programFolder() const { return m_programFolder; }
    void setProgramFolder(std::string folder);
    const std::string& versionText() const { return m_options.versionText; }
    // Lays out the program folder from the working-folder tree and the help pages; runs at
    // the first GetProgramFolder by itself. False (with a reason) when that fails.
    bool seedProgramFolder(std::string* error = nullptr);

    // ---- the macro ----
    // A new connection object for the macro (what creating the host's component gives).
    std::unique_ptr<HostConnection> createConnection();

    // ---- project actions of the user or a script; the events follow on the queue ----
    void newProject();
    // Reads the project now; false (with a reason) when it cannot be read, nothing changes.
    bool openProject(const std::string& path, std::string* error = nullptr);
    // Empty path: the project's own path. False when there is no project or no path.
    bool saveProject(const std::string& path = {}, std::string* error = nullptr);
    void closeProject();
    void exitProgram();

    // A click in the plan view (metres). Only while clicks are requested: reports the click,
    // valid on the exterior side of a wall with the point moved onto the wall face, otherwise
    // invalid with the clicked point. Returns false when no click was requested.
    bool click(QPointF planPoint);
    // The macro's toolbar button pressed; false when it is missing, hidden or disabled.
    bool pressMacroButton();

    // ---- state for windows and tests ----
    const TectaroProject* project() const { return m_project ? &*m_project : nullptr; }
    // The building of the open project (an empty one when none is open).
    std::shared_ptr<const Building> building() const;
    const std::optional<MacroButton>& macroButton() const { return m_button; }
    const std::optional<ClickRequest>& clickRequest() const { return m_click; }
    const std::string& prompt() const { return m_prompt; }
    const std::optional<std::pair<std::string, int>>& progress() const { return m_progress; }
    bool macroConnected() const { return m_connected; }
    // Steps waiting on the queue or running.
    bool busy() const { return !m_steps.empty() || m_running; }
    // The last save of the open project failed: its changes are on no disk.
    bool saveFailed() const { return m_saveFailed; }
    // The numChunksToSave the macro answered at the last save.
    std::int32_t lastChunkCount() const { return m_lastChunks; }

    // ---- what the connection objects call (the macro's side of the host) ----
    void setEventSink(HostEvents* sink, const void* owner);
    void dropEventSink(const void* owner);
    bool connectMacro(const std::string& guid);
    std::int32_t addMacroButton(const QImage& image, std::int32_t flags, const std::string& tip,
                                std::int32_t code);
    std::int32_t setMacroButtonState(std::int32_t id, bool shown, bool enabled);
    void requestClicks(const std::string& text, const QImage& cursor, std::int32_t count);
    void showPrompt(const std::string& text);
    void showProgress(const std::string& text, int percentage);
    void endProgress();
    bool saveMacroData(std::int32_t id, const std::string& path);
    bool loadMacroData(std::int32_t id, const std::string& path);
    // Throws RuntimeError (HostError) when no project is open.
    std::shared_ptr<const Building> activeBuilding() const;
    void commitElement(const std::shared_ptr<PlacedElement>& element);
    void elementMoved(const std::shared_ptr<PlacedElement>& element);

signals:
    void projectChanged();
    void elementsChanged();
    void macroButtonChanged();
    void clickModeChanged(bool active);
    void promptChanged(const QString& text);
    void progressChanged(const QString& text, int percentage);
    void progressEnded();
    void projectSaved(const QString& path);
    void projectSaveFailed(const QString& error);
    void projectOpened(const QString& path);
    // After exe_ProgramExit: the host's window has closed.
    void exitRequested();

private:
    void post(std::function<void()> step);
    void schedule();
    void runStep();
    // Delivers an event to the connected macro's sink, when there is one.
    void deliver(const std::function<void(HostEvents&)>& call);
    void postProjectClosed();
    void installProject(TectaroProject project);

    TectaroOptions m_options;
    std::string m_programFolder;
    bool m_seeded = false;

    std::optional<TectaroProject> m_project;
    std::optional<MacroButton> m_button;
    std::optional<ClickRequest> m_click;
    std::int32_t m_nextClickId = 1;
    std::string m_prompt;
    std::optional<std::pair<std::string, int>> m_progress;
    std::int32_t m_lastChunks = 0;
    bool m_saveFailed = false;

    HostEvents* m_sink = nullptr;
    const void* m_sinkOwner = nullptr;
    bool m_connected = false;

    std::deque<std::function<void()>> m_steps;
    bool m_running = false;
    bool m_scheduled = false;
};

} // namespace pluvarine
