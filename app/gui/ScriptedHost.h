#pragma once

#include <nlohmann/json.hpp>
#include <string>

class QWidget;

namespace pluvarine {

// What a script does in the host, as its user would: the host's side of the script steps. One
// implementation drives the stand-in host in this process, one a host over the host protocol.
// A step that cannot be done throws std::runtime_error with the reason.
class ScriptedHost {
public:
    virtual ~ScriptedHost() = default;

    // The host has something under way (events not yet handled, a project being written).
    virtual bool busy() = 0;
    // A click in the host's view at a plan point (metres).
    virtual void click(double x, double y) = 0;
    virtual void pressMacroButton() = 0;
    virtual void newProject() = 0;
    // Empty path: the project's own file.
    virtual void saveProject(const std::string& path) = 0;
    virtual void closeProject() = 0;
    // A project kept open because the user answered No to losing unsaved work is no failure;
    // `discardUnsaved` is the answer a script gives.
    virtual void openProject(const std::string& path, bool discardUnsaved) = 0;
    // A PNG of the host's window or 3D view.
    virtual void screenshot(const std::string& file) = 0;
    // The host's state as the script's state step writes it under "host".
    virtual nlohmann::json state() = 0;
    // As the user closes the host: the host raises its exit event and the program ends.
    virtual void exit() = 0;
    // The parts list of the project's downpipes as CSV, and the window that shows it.
    virtual void exportPartsList(const std::string& file) = 0;
    virtual QWidget* partsListWindow() = 0;
    // The host's window when it runs in this process (none for a host in another process).
    virtual QWidget* localWindow() = 0;
};

} // namespace pluvarine
