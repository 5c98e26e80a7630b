#pragma once

#include "host/HostPicture.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace pluvarine {

class HostBuilding;
class HostEvents;
class HostObjectTemplate;

// The host's macro connection object, in the order of its interface. Paths and texts are UTF-8;
// lengths in metres. A call the host cannot carry out throws RuntimeError (number HostError).
class HostConnection {
public:
    virtual ~HostConnection() = default;

    // The object that receives the connection's events (the main window's handlers).
    virtual void setEventSink(HostEvents* sink) = 0;

    // The host's program folder, ending with a path separator.
    virtual std::string GetProgramFolder() = 0;
    virtual std::shared_ptr<HostBuilding> GetActiveBuilding() = 0;
    virtual std::string GetVersionText() = 0;
    virtual std::int32_t AddMacroButton(const HostPicture& picture, std::int32_t flags,
                                        const std::string& tooltip, std::int32_t code) = 0;
    virtual void RequestOneClick(const std::string& text, const HostPicture& cursor,
                                 std::int32_t count) = 0;
    virtual float GetLevelAt(float x, float y) = 0;
    virtual std::shared_ptr<HostObjectTemplate> LoadObjectFile(const std::string& path,
                                                               std::int32_t flags) = 0;
    virtual bool LoadMacroData(std::int32_t dataId, const std::string& path) = 0;
    virtual std::int32_t SetMacroButtonState(std::int32_t buttonId, std::int32_t a, std::int32_t b,
                                             bool shown, bool enabled) = 0;
    virtual void ShowPrompt(const std::string& text) = 0;
    virtual void ShowProgress(const std::string& text, std::int32_t percentage) = 0;
    virtual void EndProgress() = 0;
    virtual bool SaveMacroData(std::int32_t dataId, const std::string& path) = 0;
    virtual bool ConnectMacro(std::int32_t windowHandle, const std::string& text,
                              const std::string& macroGuid) = 0;
};

// Creates the connection object; throws RuntimeError when it cannot be created.
using HostConnectionFactory = std::function<std::unique_ptr<HostConnection>()>;

} // namespace pluvarine
