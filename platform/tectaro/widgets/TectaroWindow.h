#pragma once

#include <QMainWindow>
#include <QPointF>
#include <string>

class QAction;
class QLabel;
class QProgressBar;

namespace pluvarine {

class BuildingView3D;
class PartsListDialog;
class PlanView;
class TectaroHost;
class UserMessages;
class UserQuestions;

// The stand-in host's main window: a toolbar with new, open, save and close project, the parts
// list and the macro's button (its image, tooltip, shown and enabled state as the macro sets them),
// the plan view beside the 3D view of the building, and a status bar with the prompt line and a
// progress bar. Closing the window raises exe_ProgramExit.
//
// The entry points below are what a script or a test uses; each does what the toolbar or a
// click in the plan does, without file dialogs.
//
// Like any desktop program it tells the user when a save of the project failed (the file on the
// disk is then unchanged), and after a failed save it asks before anything closes the project
// (close, new, open, exit): the answer No keeps the project open, and the entry point returns
// false.
class TectaroWindow : public QMainWindow {
    Q_OBJECT
public:
    // The 3D view needs OpenGL: leave it out (with3D false) where there is none, as on the
    // offscreen platform, which is also the default there.
    TectaroWindow(TectaroHost& host, UserMessages& messages, UserQuestions& questions,
                  QWidget* parent = nullptr);
    TectaroWindow(TectaroHost& host, UserMessages& messages, UserQuestions& questions, bool with3D,
                  QWidget* parent = nullptr);

    TectaroHost& host() { return m_host; }
    PlanView& planView() { return *m_plan; }
    BuildingView3D* view3D() { return m_view3D; }

    // A left click in the plan at a plan point (metres); false when no click was requested.
    bool clickAt(QPointF plan);
    // The macro's toolbar button; false when it is hidden, disabled or missing.
    bool pressMacroButton();
    bool newProject();
    bool openProject(const std::string& path, std::string* error = nullptr);
    // Empty path: the project's own file.
    bool saveProject(const std::string& path = {}, std::string* error = nullptr);
    bool closeProject();
    // The parts list of every downpipe of the project and the totals: shows its window, or
    // writes it as CSV (false with the reason when the file cannot be written).
    PartsListDialog& showPartsList();
    bool exportPartsList(const std::string& path, std::string* error = nullptr);
    // Writes the window as it shows now to a PNG file.
    bool screenshot(const std::string& path);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildToolbar();
    void updateMacroButton();
    void updateTitle();
    void askOpen();
    void askSave();
    // True when the open project may go: its last save did not fail, or the user agrees.
    bool mayDiscardProject();

    TectaroHost& m_host;
    UserMessages& m_messages;
    UserQuestions& m_questions;
    PlanView* m_plan = nullptr;
    BuildingView3D* m_view3D = nullptr;
    QAction* m_macroAction = nullptr;
    PartsListDialog* m_partsList = nullptr;
    QLabel* m_prompt = nullptr;
    QProgressBar* m_progress = nullptr;
};

} // namespace pluvarine
