#pragma once

#include "host/HostConnection.h"
#include "host/HostJournal.h"
#include "host/JournalingHostEvents.h"

#include <memory>

namespace pluvarine {

// A connection that journals every operation the macro calls on the host, and every object and
// event that comes back, while passing everything through unchanged.
class JournalingHostConnection : public HostConnection {
public:
    JournalingHostConnection(std::unique_ptr<HostConnection> inner, HostJournal& journal)
        : m_inner(std::move(inner)), m_journal(journal) {}
    ~JournalingHostConnection() override;

    // The host's events reach the sink through a journaling forwarder.
    void setEventSink(HostEvents* sink) override;

    std::string GetProgramFolder() override;
    std::shared_ptr<HostBuilding> GetActiveBuilding() override;
    std::string GetVersionText() override;
    std::int32_t AddMacroButton(const HostPicture& picture, std::int32_t flags,
                                const std::string& tooltip, std::int32_t code) override;
    void RequestOneClick(const std::string& text, const HostPicture& cursor,
                         std::int32_t count) override;
    float GetLevelAt(float x, float y) override;
    std::shared_ptr<HostObjectTemplate> LoadObjectFile(const std::string& path,
                                                       std::int32_t flags) override;
    bool LoadMacroData(std::int32_t dataId, const std::string& path) override;
    std::int32_t SetMacroButtonState(std::int32_t buttonId, std::int32_t a, std::int32_t b,
                                     bool shown, bool enabled) override;
    void ShowPrompt(const std::string& text) override;
    void ShowProgress(const std::string& text, std::int32_t percentage) override;
    void EndProgress() override;
    bool SaveMacroData(std::int32_t dataId, const std::string& path) override;
    bool ConnectMacro(std::int32_t windowHandle, const std::string& text,
                      const std::string& macroGuid) override;

private:
    std::unique_ptr<HostConnection> m_inner;
    HostJournal& m_journal;
    std::unique_ptr<JournalingHostEvents> m_events;
};

} // namespace pluvarine
