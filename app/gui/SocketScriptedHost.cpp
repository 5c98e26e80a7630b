#include "SocketScriptedHost.h"

#include "base/RuntimeError.h"
#include "platform/hostsocket/HostSocketClient.h"

#include <filesystem>
#include <stdexcept>

namespace pluvarine {

namespace {

// The host runs in another folder: it is handed absolute paths.
std::string absolute(const std::string& path) {
    return path.empty() ? path : std::filesystem::absolute(std::filesystem::u8path(path)).string();
}

} // namespace

nlohmann::json SocketScriptedHost::control(const std::string& op, nlohmann::json args) {
    try {
        return m_client->call("control." + op, std::move(args));
    } catch (const RuntimeError& error) {
        throw std::runtime_error(error.description());
    }
}

bool SocketScriptedHost::busy() {
    // The macro's queue first: while it holds events, the host waits for their acks anyway.
    if (!m_client->idle()) {
        return true;
    }
    if (!m_client->isOpen()) {
        return false; // the host has gone: its exit event is all that is left
    }
    try {
        const nlohmann::json idle = m_client->call("control.idle");
        return !(idle.is_boolean() && idle.get<bool>());
    } catch (const RuntimeError&) {
        return true; // no answer: the script's settle timeout decides
    }
}

void SocketScriptedHost::click(double x, double y) {
    control("click", {{"x", x}, {"y", y}});
}

void SocketScriptedHost::pressMacroButton() {
    control("macroButton");
}

void SocketScriptedHost::newProject() {
    control("newProject");
}

void SocketScriptedHost::saveProject(const std::string& path) {
    nlohmann::json args = nlohmann::json::object();
    if (!path.empty()) {
        args["path"] = absolute(path);
    }
    control("saveProject", std::move(args));
}

void SocketScriptedHost::closeProject() {
    control("closeProject");
}

void SocketScriptedHost::openProject(const std::string& path, bool /*discardUnsaved*/) {
    control("openProject", {{"path", absolute(path)}});
}

void SocketScriptedHost::screenshot(const std::string& file) {
    control("screenshot", {{"path", absolute(file)}});
}

nlohmann::json SocketScriptedHost::state() {
    return control("state");
}

void SocketScriptedHost::exit() {
    try {
        m_client->call("control.exit");
    } catch (const RuntimeError& error) {
        if (m_client->isOpen()) {
            throw std::runtime_error(error.description());
        }
        // The host closed the socket instead of answering: that is its exit too.
    }
}

// FreeCAD keeps the parts list as a spreadsheet in its document, not as a window of its own.
void SocketScriptedHost::exportPartsList(const std::string&) {
    throw std::runtime_error("this host keeps the parts list in its document");
}

QWidget* SocketScriptedHost::partsListWindow() {
    throw std::runtime_error("this host keeps the parts list in its document");
}

QWidget* SocketScriptedHost::localWindow() {
    return nullptr;
}

} // namespace pluvarine
