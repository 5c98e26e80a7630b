#pragma once

#include "ScriptedHost.h"

#include <memory>

namespace pluvarine {

class HostSocketClient;

// The script's steps in a host over the host protocol: its control requests.
class SocketScriptedHost : public ScriptedHost {
public:
    explicit SocketScriptedHost(std::shared_ptr<HostSocketClient> client)
        : m_client(std::move(client)) {}

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
    // One control request; a host error becomes the step's failure.
    nlohmann::json control(const std::string& op, nlohmann::json args = nlohmann::json::object());

    std::shared_ptr<HostSocketClient> m_client;
};

} // namespace pluvarine
