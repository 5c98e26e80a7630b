#include "platform/tectaro/TectaroConnection.h"

#include "platform/tectaro/TectaroBuilding.h"
#include "platform/tectaro/TectaroHost.h"
#include "platform/tectaro/TectaroObjectTemplate.h"

namespace pluvarine {

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
    return host().programFolder();
}

std::shared_ptr<HostBuilding> TectaroConnection::GetActiveBuilding() {
    return std::make_shared<TectaroBuilding>(&host(), host().activeBuilding());
}

std::string TectaroConnection::GetVersionText() {
    return host().versionText();
}

std::int32_t TectaroConnection::AddMacroButton(const HostPicture& picture, std::int32_t flags,
                                               const std::string& tooltip, std::int32_t code) {
    return host().addMacroButton(picture.image, flags, tooltip, code);
}

void TectaroConnection::RequestOneClick(const std::string& text, const HostPicture& cursor,
                                        std::int32_t count) {
    host().requestClicks(text, cursor.image, count);
}

float TectaroConnection::GetLevelAt(float, float) {
    return static_cast<float>(host().activeBuilding()->terrainLevel);
}

std::shared_ptr<HostObjectTemplate> TectaroConnection::LoadObjectFile(const std::string& path,
                                                                      std::int32_t) {
    return std::make_shared<TectaroObjectTemplate>(&host(), ObjectFile::read(path), path);
}

bool TectaroConnection::LoadMacroData(std::int32_t dataId, const std::string& path) {
    return host().loadMacroData(dataId, path);
}

std::int32_t TectaroConnection::SetMacroButtonState(std::int32_t buttonId, std::int32_t,
                                                    std::int32_t, bool shown, bool enabled) {
    return host().setMacroButtonState(buttonId, shown, enabled);
}

void TectaroConnection::ShowPrompt(const std::string& text) {
    host().showPrompt(text);
}

void TectaroConnection::ShowProgress(const std::string& text, std::int32_t percentage) {
    host().showProgress(text, percentage);
}

void TectaroConnection::EndProgress() {
    host().endProgress();
}

bool TectaroConnection::SaveMacroData(std::int32_t dataId, const std::string& path) {
    return host().saveMacroData(dataId, path);
}

bool TectaroConnection::ConnectMacro(std::int32_t, const std::string&,
                                     const std::string& macroGuid) {
    return host().connectMacro(macroGuid);
}

} // namespace pluvarine
