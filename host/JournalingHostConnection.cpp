#include "host/JournalingHostConnection.h"

#include "host/JournalingObjects.h"

namespace pluvarine {

using Json = nlohmann::ordered_json;

JournalingHostConnection::~JournalingHostConnection() {
    m_inner->setEventSink(nullptr);
}

void JournalingHostConnection::setEventSink(HostEvents* sink) {
    m_events = sink ? std::make_unique<JournalingHostEvents>(*sink, m_journal) : nullptr;
    m_inner->setEventSink(m_events.get());
}

std::string JournalingHostConnection::GetProgramFolder() {
    return m_journal.call("exe", "GetProgramFolder", Json::array(),
                          [&] { return m_inner->GetProgramFolder(); });
}

std::shared_ptr<HostBuilding> JournalingHostConnection::GetActiveBuilding() {
    return m_journal.call("exe", "GetActiveBuilding", Json::array(),
                          [&] { return journaled(m_inner->GetActiveBuilding(), m_journal); });
}

std::string JournalingHostConnection::GetVersionText() {
    return m_journal.call("exe", "GetVersionText", Json::array(),
                          [&] { return m_inner->GetVersionText(); });
}

std::int32_t JournalingHostConnection::AddMacroButton(const HostPicture& picture,
                                                      std::int32_t flags,
                                                      const std::string& tooltip,
                                                      std::int32_t code) {
    return m_journal.call("exe", "AddMacroButton",
                          Json::array({HostJournal::value(picture), flags, tooltip, code}),
                          [&] { return m_inner->AddMacroButton(picture, flags, tooltip, code); });
}

void JournalingHostConnection::RequestOneClick(const std::string& text, const HostPicture& cursor,
                                               std::int32_t count) {
    m_journal.call("exe", "RequestOneClick", Json::array({text, HostJournal::value(cursor), count}),
                   [&] { m_inner->RequestOneClick(text, cursor, count); });
}

float JournalingHostConnection::GetLevelAt(float x, float y) {
    return m_journal.call("exe", "GetLevelAt", Json::array({x, y}),
                          [&] { return m_inner->GetLevelAt(x, y); });
}

std::shared_ptr<HostObjectTemplate>
JournalingHostConnection::LoadObjectFile(const std::string& path, std::int32_t flags) {
    return m_journal.call("exe", "LoadObjectFile", Json::array({path, flags}), [&] {
        return journaled(m_inner->LoadObjectFile(path, flags), m_journal);
    });
}

bool JournalingHostConnection::LoadMacroData(std::int32_t dataId, const std::string& path) {
    return m_journal.call("exe", "LoadMacroData", Json::array({dataId, path}),
                          [&] { return m_inner->LoadMacroData(dataId, path); });
}

std::int32_t JournalingHostConnection::SetMacroButtonState(std::int32_t buttonId, std::int32_t a,
                                                           std::int32_t b, bool shown,
                                                           bool enabled) {
    return m_journal.call(
        "exe", "SetMacroButtonState", Json::array({buttonId, a, b, shown, enabled}),
        [&] { return m_inner->SetMacroButtonState(buttonId, a, b, shown, enabled); });
}

void JournalingHostConnection::ShowPrompt(const std::string& text) {
    m_journal.call("exe", "ShowPrompt", Json::array({text}), [&] { m_inner->ShowPrompt(text); });
}

void JournalingHostConnection::ShowProgress(const std::string& text, std::int32_t percentage) {
    m_journal.call("exe", "ShowProgress", Json::array({text, percentage}),
                   [&] { m_inner->ShowProgress(text, percentage); });
}

void JournalingHostConnection::EndProgress() {
    m_journal.call("exe", "EndProgress", Json::array(), [&] { m_inner->EndProgress(); });
}

bool JournalingHostConnection::SaveMacroData(std::int32_t dataId, const std::string& path) {
    return m_journal.call("exe", "SaveMacroData", Json::array({dataId, path}),
                          [&] { return m_inner->SaveMacroData(dataId, path); });
}

bool JournalingHostConnection::ConnectMacro(std::int32_t windowHandle, const std::string& text,
                                            const std::string& macroGuid) {
    return m_journal.call("exe", "ConnectMacro", Json::array({windowHandle, text, macroGuid}),
                          [&] { return m_inner->ConnectMacro(windowHandle, text, macroGuid); });
}

} // namespace pluvarine
