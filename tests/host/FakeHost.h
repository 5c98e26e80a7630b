#pragma once

#include "CallLog.h"
#include "FakeElement.h"
#include "FakeObjectTemplate.h"
#include "host/HostConnection.h"
#include "host/HostEvents.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvarine::test {

// A host that records every operation the macro calls, with its arguments, in the shared log.
// Each operation can be made to fail (CallLog::fail) and the object-returning ones can return
// nothing. Macro data blocks are kept in memory by id, as a project would hold them.
class FakeHost : public HostConnection {
public:
    explicit FakeHost(CallLog& log) : m_log(log) {}

    // What the host answers.
    std::string programFolder = "/nowhere/";
    std::string versionText = "Tectaro +2010 Pro";
    bool connectResult = true;
    std::int32_t buttonId = 7;
    float level = 0;
    std::shared_ptr<HostBuilding> building; // nothing unless a test sets one
    bool loadObjectFileReturnsNothing = false;
    bool templateCreatesNothing = false;
    std::optional<bool> loadMacroDataResult; // overrides the answer of LoadMacroData
    std::map<std::int32_t, std::string> macroData;

    // What the macro left in the host.
    HostEvents* sink = nullptr;
    std::vector<std::shared_ptr<FakeElement>> elements;
    HostPicture buttonPicture;
    HostPicture cursor;

    void setEventSink(HostEvents* eventSink) override { sink = eventSink; }

    std::string GetProgramFolder() override {
        m_log.call("GetProgramFolder");
        return programFolder;
    }
    std::shared_ptr<HostBuilding> GetActiveBuilding() override {
        m_log.call("GetActiveBuilding");
        return building;
    }
    std::string GetVersionText() override {
        m_log.call("GetVersionText");
        return versionText;
    }
    std::int32_t AddMacroButton(const HostPicture& picture, std::int32_t flags,
                                const std::string& tooltip, std::int32_t code) override {
        m_log.call("AddMacroButton", args(size(picture), flags, tooltip, code));
        buttonPicture = picture;
        return buttonId;
    }
    void RequestOneClick(const std::string& text, const HostPicture& cursorPicture,
                         std::int32_t count) override {
        m_log.call("RequestOneClick", args("'" + text + "'", size(cursorPicture), count));
        cursor = cursorPicture;
    }
    float GetLevelAt(float x, float y) override {
        m_log.call("GetLevelAt", args(x, y));
        return level;
    }
    std::shared_ptr<HostObjectTemplate> LoadObjectFile(const std::string& path,
                                                       std::int32_t flags) override {
        m_log.call("LoadObjectFile", args(path, flags));
        if (loadObjectFileReturnsNothing) {
            return nullptr;
        }
        return std::make_shared<FakeObjectTemplate>(m_log, path, elements, templateCreatesNothing);
    }
    bool LoadMacroData(std::int32_t dataId, const std::string& path) override {
        m_log.call("LoadMacroData", args(dataId, path));
        if (loadMacroDataResult) {
            return *loadMacroDataResult;
        }
        const auto block = macroData.find(dataId);
        if (block == macroData.end()) {
            return false;
        }
        std::ofstream(path, std::ios::binary) << block->second;
        return true;
    }
    std::int32_t SetMacroButtonState(std::int32_t id, std::int32_t a, std::int32_t b, bool shown,
                                     bool enabled) override {
        m_log.call("SetMacroButtonState", args(id, a, b, shown, enabled));
        return 1;
    }
    void ShowPrompt(const std::string& text) override { m_log.call("ShowPrompt", text); }
    void ShowProgress(const std::string& text, std::int32_t percentage) override {
        m_log.call("ShowProgress", args(text, percentage));
    }
    void EndProgress() override { m_log.call("EndProgress"); }
    bool SaveMacroData(std::int32_t dataId, const std::string& path) override {
        m_log.call("SaveMacroData", args(dataId, path));
        std::ifstream in(path, std::ios::binary);
        if (!in) {
            return false;
        }
        macroData[dataId].assign(std::istreambuf_iterator<char>(in), {});
        return true;
    }
    bool ConnectMacro(std::int32_t windowHandle, const std::string& text,
                      const std::string& macroGuid) override {
        m_log.call("ConnectMacro", args(windowHandle, "'" + text + "'", macroGuid));
        return connectResult;
    }

private:
    static std::string size(const HostPicture& picture) {
        return std::to_string(picture.image.width()) + "x" + std::to_string(picture.image.height());
    }

    CallLog& m_log;
};

} // namespace pluvarine::test
