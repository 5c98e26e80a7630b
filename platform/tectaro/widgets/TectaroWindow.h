#pragma once

#include <QMainWindow>
#include <QPointF>
#include <string>

class QAction;
class QLabel;
class QProgressBar;

namespace pluvarine {

class BuildingView3D;
class PlanView;
class TectaroHost;

// The stand-in host's main window: a toolbar with new, open, save and close project and the
// macro's button (its image, tooltip, shown and enabled state as the macro sets them), the plan
// view beside the 3D view of the building, and a status bar with the prompt line and a
// progress bar. Closing the window raises exe_ProgramExit.
//
// The entry points below are what a script or a test uses; each does what the toolbar or a
// click in the plan does, without dialogs.
class TectaroWindow : public QMainWindow {
    Q_OBJECT
public:
    // The 3D view needs OpenGL: leave it out (with3D false) where there is none, as on the
    // offscreen platform, which is also the default there.
    explicit TectaroWindow(TectaroHost& host, QWidget* parent = nullptr);
    TectaroWindow(TectaroHost& host, bool with3D, QWidget* parent = nullptr);

    TectaroHost& host() { return m_host; }
    PlanView& planView() { return *m_plan; }
    BuildingView3D* view3D() { return m_view3D; }

    // A left click in the plan at a plan point (metres); false when no click was requested.
    bool clickAt(QPointF plan);
    // The macro's toolbar button; false when it is hidden, disabled or missing.
    bool pressMacroButton();
    void newProject();
    bool openProject(const std::string& path, std::string* error = nullptr);
    // Empty path: the project's own file.
    bool saveProject(const std::string& path = {}, std::string* error = nullptr);
    void closeProject();
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

    TectaroHost& m_host;
    PlanView* m_plan = nullptr;
    BuildingView3D* m_view3D = nullptr;
    QAction* m_macroAction = nullptr;
    QLabel* m_prompt = nullptr;
    QProgressBar* m_progress = nullptr;
};

} // namespace pluvarine
