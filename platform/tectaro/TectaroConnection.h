#pragma once

#include "host/HostConnection.h"
#include "platform/tectaro/TectaroHostRef.h"

namespace pluvarine {

// The stand-in host's macro connection object: what the macro creates to talk to the host.
// The window handle, the text of ConnectMacro, the flags of LoadObjectFile and the two
// constants of SetMacroButtonState mean nothing to this host.
class TectaroConnection : public HostConnection {
public:
    explicit TectaroConnection(TectaroHost* host);
    ~TectaroConnection() override;

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
    TectaroHost& host() const { return m_host.host(); }

    TectaroHostRef m_host;
};

} // namespace pluvarine
