#include "platform/tectaro/TectaroConnection.h"

#include "platform/tectaro/TectaroBuilding.h"
#include "platform/tectaro/TectaroHost.h"
#include "platform/tectaro/TectaroObjectTemplate.h"

namespace pluvarine {

namespace {
using nlohmann::json;
constexpr const char* self = "Connection";

json pictureJson(const HostPicture& picture) {
    return {{"width", picture.image.width()}, {"height", picture.image.height()}};
}
} // namespace

TectaroConnection::TectaroConnection(TectaroHost* host) : m_host(host) {}

TectaroConnection::~TectaroConnection() {
    if (TectaroHost* host = m_host.get()) {
        host->dropEventSink(this);
    }
}

void TectaroConnection::setEventSink(HostEvents* sink) {
    host().setEventSink(sink, this);
}

std::string TectaroConnection::GetProgramFolder() {
    return host().journal().call(self, "GetProgramFolder", json::array(),
                                 [&]() { return host().programFolder(); });
}

std::shared_ptr<HostBuilding> TectaroConnection::GetActiveBuilding() {
    return host().journal().call(self, "GetActiveBuilding", json::array(), [&]() {
        return std::shared_ptr<HostBuilding>(
            std::make_shared<TectaroBuilding>(&host(), host().activeBuilding()));
    });
}

std::string TectaroConnection::GetVersionText() {
    return host().journal().call(self, "GetVersionText", json::array(),
                                 [&]() { return host().versionText(); });
}

std::int32_t TectaroConnection::AddMacroButton(const HostPicture& picture, std::int32_t flags,
                                               const std::string& tooltip, std::int32_t code) {
    return host().journal().call(
        self, "AddMacroButton", json::array({pictureJson(picture), flags, tooltip, code}),
        [&]() { return host().addMacroButton(picture.image, flags, tooltip, code); });
}

void TectaroConnection::RequestOneClick(const std::string& text, const HostPicture& cursor,
                                        std::int32_t count) {
    host().journal().call(self, "RequestOneClick", json::array({text, pictureJson(cursor), count}),
                          [&]() { host().requestClicks(text, cursor.image, count); });
}

float TectaroConnection::GetLevelAt(float x, float y) {
    return host().journal().call(self, "GetLevelAt", json::array({x, y}), [&]() {
        return static_cast<float>(host().activeBuilding()->terrainLevel);
    });
}

std::shared_ptr<HostObjectTemplate> TectaroConnection::LoadObjectFile(const std::string& path,
                                                                      std::int32_t flags) {
    return host().journal().call(self, "LoadObjectFile", json::array({path, flags}), [&]() {
        return std::shared_ptr<HostObjectTemplate>(
            std::make_shared<TectaroObjectTemplate>(&host(), ObjectFile::read(path), path));
    });
}

bool TectaroConnection::LoadMacroData(std::int32_t dataId, const std::string& path) {
    return host().journal().call(self, "LoadMacroData", json::array({dataId, path}),
                                 [&]() { return host().loadMacroData(dataId, path); });
}

std::int32_t TectaroConnection::SetMacroButtonState(std::int32_t buttonId, std::int32_t a,
                                                    std::int32_t b, bool shown, bool enabled) {
    return host().journal().call(
        self, "SetMacroButtonState", json::array({buttonId, a, b, shown, enabled}),
        [&]() { return host().setMacroButtonState(buttonId, shown, enabled); });
}

void TectaroConnection::ShowPrompt(const std::string& text) {
    host().journal().call(self, "ShowPrompt", json::array({text}),
                          [&]() { host().showPrompt(text); });
}

void TectaroConnection::ShowProgress(const std::string& text, std::int32_t percentage) {
    host().journal().call(self, "ShowProgress", json::array({text, percentage}),
                          [&]() { host().showProgress(text, percentage); });
}

void TectaroConnection::EndProgress() {
    host().journal().call(self, "EndProgress", json::array(), [&]() { host().endProgress(); });
}

bool TectaroConnection::SaveMacroData(std::int32_t dataId, const std::string& path) {
    return host().journal().call(self, "SaveMacroData", json::array({dataId, path}),
                                 [&]() { return host().saveMacroData(dataId, path); });
}

bool TectaroConnection::ConnectMacro(std::int32_t windowHandle, const std::string& text,
                                     const std::string& macroGuid) {
    return host().journal().call(self, "ConnectMacro", json::array({windowHandle, text, macroGuid}),
                                 [&]() { return host().connectMacro(macroGuid); });
}

} // namespace pluvarine
