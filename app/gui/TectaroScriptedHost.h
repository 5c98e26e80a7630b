#pragma once

#include "ScriptedHost.h"

namespace pluvarine {

class TectaroHost;
class TectaroWindow;

// The script's steps in the stand-in host: through its window, as the toolbar and the plan do.
class TectaroScriptedHost : public ScriptedHost {
public:
    TectaroScriptedHost(TectaroHost& host, TectaroWindow& window)
        : m_host(host), m_window(window) {}

    bool busy() override;
    void click(double x, double y) override;
    void pressMacroButton() override;
    void newProject() override;
    void saveProject(const std::string& path) override;
    void closeProject() override;
    void openProject(const std::string& path, bool discardUnsaved) override;
    void screenshot(const std::string& file) override;
    nlohmann::json state() override;
    void exit() override;
    void exportPartsList(const std::string& file) override;
    QWidget* partsListWindow() override;
    QWidget* localWindow() override;

private:
    TectaroHost& m_host;
    TectaroWindow& m_window;
};

} // namespace pluvarine
