#include "platform/hostsocket/SocketHostConnection.h"

#include "base/RuntimeError.h"
#include "host/HostEvents.h"
#include "platform/hostsocket/ProtocolValues.h"
#include "platform/hostsocket/SocketBuilding.h"
#include "platform/hostsocket/SocketObjectTemplate.h"

namespace pluvarine {

namespace {

using Json = nlohmann::json;
using V = ProtocolValues;

} // namespace

SocketHostConnection::SocketHostConnection(std::shared_ptr<HostSocketClient> client)
    : m_client(std::move(client)) {
    m_client->setEventHandler(
        [this](const std::string& event, const Json& args) { return handleEvent(event, args); });
}

SocketHostConnection::~SocketHostConnection() {
    m_client->setEventHandler(nullptr);
}

HostPicture SocketHostConnection::pictureFromBitmap(const QImage& bitmap) {
    return HostPicture{bitmap.convertToFormat(QImage::Format_ARGB32)};
}

std::shared_ptr<HostBuilding> SocketHostConnection::building(const Json& handle,
                                                             const std::string& what) {
    const std::int64_t value = V::handle(handle, what);
    return value == 0 ? nullptr : std::make_shared<SocketBuilding>(m_client, value);
}

// ---- operations ---------------------------------------------------------------------------

std::string SocketHostConnection::GetProgramFolder() {
    return V::text(m_client->call("GetProgramFolder"), "GetProgramFolder");
}

std::shared_ptr<HostBuilding> SocketHostConnection::GetActiveBuilding() {
    return building(m_client->call("GetActiveBuilding"), "GetActiveBuilding");
}

std::string SocketHostConnection::GetVersionText() {
    return V::text(m_client->call("GetVersionText"), "GetVersionText");
}

std::int32_t SocketHostConnection::AddMacroButton(const HostPicture& picture, std::int32_t flags,
                                                  const std::string& tooltip, std::int32_t code) {
    return V::integer(m_client->call("AddMacroButton", {{"picture", V::picture(picture)},
                                                        {"flags", flags},
                                                        {"tooltip", tooltip},
                                                        {"code", code}}),
                      "AddMacroButton");
}

void SocketHostConnection::RequestOneClick(const std::string& text, const HostPicture& cursor,
                                           std::int32_t count) {
    m_client->call("RequestOneClick",
                   {{"text", text}, {"cursor", V::picture(cursor)}, {"count", count}});
}

float SocketHostConnection::GetLevelAt(float x, float y) {
    return static_cast<float>(
        V::number(m_client->call("GetLevelAt", {{"x", x}, {"y", y}}), "GetLevelAt"));
}

std::shared_ptr<HostObjectTemplate> SocketHostConnection::LoadObjectFile(const std::string& path,
                                                                         std::int32_t flags) {
    const std::int64_t handle = V::handle(
        m_client->call("LoadObjectFile", {{"path", path}, {"flags", flags}}), "LoadObjectFile");
    return handle == 0 ? nullptr : std::make_shared<SocketObjectTemplate>(m_client, handle);
}

bool SocketHostConnection::LoadMacroData(std::int32_t dataId, const std::string& path) {
    return V::boolean(m_client->call("LoadMacroData", {{"dataId", dataId}, {"path", path}}),
                      "LoadMacroData");
}

std::int32_t SocketHostConnection::SetMacroButtonState(std::int32_t buttonId, std::int32_t a,
                                                       std::int32_t b, bool shown, bool enabled) {
    return V::integer(
        m_client->call(
            "SetMacroButtonState",
            {{"buttonId", buttonId}, {"a", a}, {"b", b}, {"shown", shown}, {"enabled", enabled}}),
        "SetMacroButtonState");
}

void SocketHostConnection::ShowPrompt(const std::string& text) {
    m_client->call("ShowPrompt", {{"text", text}});
}

void SocketHostConnection::ShowProgress(const std::string& text, std::int32_t percentage) {
    m_client->call("ShowProgress", {{"text", text}, {"percentage", percentage}});
}

void SocketHostConnection::EndProgress() {
    m_client->call("EndProgress");
}

bool SocketHostConnection::SaveMacroData(std::int32_t dataId, const std::string& path) {
    return V::boolean(m_client->call("SaveMacroData", {{"dataId", dataId}, {"path", path}}),
                      "SaveMacroData");
}

bool SocketHostConnection::ConnectMacro(std::int32_t windowHandle, const std::string& text,
                                        const std::string& macroGuid) {
    return V::boolean(
        m_client->call("ConnectMacro",
                       {{"windowHandle", windowHandle}, {"text", text}, {"macroGuid", macroGuid}}),
        "ConnectMacro");
}

// ---- events -------------------------------------------------------------------------------

Json SocketHostConnection::handleEvent(const std::string& event, const Json& args) {
    const auto arg = [&](const char* key) -> const Json& { return V::member(args, key); };
    const std::string& what = event;
    // The arguments are read before the sink is called, so a wrong one delivers nothing.
    if (event == "exe_ProgramExit") {
        if (m_sink) {
            m_sink->exe_ProgramExit();
        }
    } else if (event == "exe_GotOneClick") {
        const bool valid = V::boolean(arg("valid"), what);
        const auto x = static_cast<float>(V::number(arg("x"), what));
        const auto y = static_cast<float>(V::number(arg("y"), what));
        const std::int32_t id = V::integer(arg("id"), what);
        if (m_sink) {
            m_sink->exe_GotOneClick(valid, x, y, id);
        }
    } else if (event == "exe_ButtonChange") {
        const std::int32_t btnId = V::integer(arg("btnId"), what);
        const std::int32_t evnt = V::integer(arg("evnt"), what);
        const std::int32_t selectedIndex = V::integer(arg("selectedIndex"), what);
        const bool pressed = V::boolean(arg("pressed"), what);
        const bool visible = V::boolean(arg("visible"), what);
        const bool enabled = V::boolean(arg("enabled"), what);
        if (m_sink) {
            m_sink->exe_ButtonChange(btnId, evnt, selectedIndex, pressed, visible, enabled);
        }
    } else if (event == "exe_LoadComplete") {
        const bool successfull = V::boolean(arg("successfull"), what);
        if (m_sink) {
            m_sink->exe_LoadComplete(successfull);
        }
    } else if (event == "exe_LoadBuilding") {
        auto b = building(arg("building"), what);
        const std::int32_t saveNo = V::integer(arg("saveNo"), what);
        if (m_sink) {
            m_sink->exe_LoadBuilding(std::move(b), saveNo);
        }
    } else if (event == "exe_SaveStart") {
        const std::string fileName = V::text(arg("fileName"), what);
        const std::int32_t numBuildings = V::integer(arg("numBuildings"), what);
        const bool isAutoSave = V::boolean(arg("isAutoSave"), what);
        std::int32_t numChunksToSave = V::integer(arg("numChunksToSave"), what);
        if (m_sink) {
            m_sink->exe_SaveStart(fileName, numBuildings, isAutoSave, numChunksToSave);
        }
        return {{"numChunksToSave", numChunksToSave}};
    } else if (event == "exe_SaveBuilding") {
        const std::int32_t buildingNo = V::integer(arg("buildingNo"), what);
        auto b = building(arg("building"), what);
        if (m_sink) {
            m_sink->exe_SaveBuilding(buildingNo, std::move(b));
        }
    } else if (event == "exe_ProjectClosed") {
        if (m_sink) {
            m_sink->exe_ProjectClosed();
        }
    } else if (event == "exe_NewCurrentProject") {
        if (m_sink) {
            m_sink->exe_NewCurrentProject();
        }
    } else {
        throw RuntimeError(RuntimeError::HostError, "an event the macro does not handle");
    }
    return nullptr;
}

} // namespace pluvarine
