#pragma once

#include "host/HostConnection.h"
#include "platform/hostsocket/HostSocketClient.h"

#include <memory>

namespace pluvarine {

// The macro's connection object for a host in another process, over the host protocol
// (docs/host-protocol.md). Every operation is one request; the host's events reach the sink
// through the client's queue, one at a time and never inside a call.
class SocketHostConnection : public HostConnection {
public:
    // `client` is open (hello done).
    explicit SocketHostConnection(std::shared_ptr<HostSocketClient> client);
    ~SocketHostConnection() override;

    SocketHostConnection(const SocketHostConnection&) = delete;
    SocketHostConnection& operator=(const SocketHostConnection&) = delete;

    // The picture conversion of this binding: pictures travel as PNG with alpha.
    static HostPicture pictureFromBitmap(const QImage& bitmap);

    void setEventSink(HostEvents* sink) override { m_sink = sink; }
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
    // One event of the host to the sink; returns the ack's result. Throws RuntimeError
    // (HostError) for an event it does not know or whose arguments are wrong.
    nlohmann::json handleEvent(const std::string& event, const nlohmann::json& args);
    std::shared_ptr<HostBuilding> building(const nlohmann::json& handle, const std::string& what);

    std::shared_ptr<HostSocketClient> m_client;
    HostEvents* m_sink = nullptr;
};

} // namespace pluvarine
