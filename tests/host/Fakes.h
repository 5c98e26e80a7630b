#pragma once

#include "assembly/RecordingScene.h"
#include "base/RuntimeError.h"
#include "host/HostBuilding.h"
#include "host/HostConnection.h"
#include "host/HostElement.h"
#include "host/HostEvents.h"
#include "host/HostObjectTemplate.h"
#include "host/HostRoof.h"
#include "host/HostRoofData.h"
#include "host/HostRoofList.h"
#include "host/MainWindowView.h"
#include "platform/system/HelpViewer.h"
#include "platform/system/ProgramControl.h"
#include "platform/system/UserMessages.h"

#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace pluvarine::test {

// One journal for every fake, so a test sees the order of everything the macro did. Any
// operation named in `failing` is recorded, then throws RuntimeError(HostError).
struct CallLog {
    std::vector<std::string> entries;
    std::set<std::string> failing;

    template <typename... Values> static std::string join(const Values&... values) {
        std::ostringstream out;
        out.precision(9);
        [[maybe_unused]] const char* separator = "";
        ((out << separator << std::boolalpha << values, separator = ", "), ...);
        return out.str();
    }
    template <typename... Values> void call(const std::string& op, const Values&... values) {
        entries.push_back(op + "(" + join(values...) + ")");
        if (failing.contains(op)) {
            throw RuntimeError(RuntimeError::HostError, op + " failed");
        }
    }
    template <typename R, typename... Values>
    R reply(R result, const std::string& op, const Values&... values) {
        call(op, values...);
        return result;
    }
    // The entries of the given operations, in order.
    std::vector<std::string> only(const std::set<std::string>& ops) const {
        std::vector<std::string> result;
        for (const std::string& entry : entries) {
            if (ops.contains(entry.substr(0, entry.find('(')))) {
                result.push_back(entry);
            }
        }
        return result;
    }
    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const std::string& entry : entries) {
            result.push_back(entry.substr(0, entry.find('(')));
        }
        return result;
    }
    bool contains(const std::string& op) const { return !only({op}).empty(); }
};

inline std::string six(const std::array<float, 6>& s) {
    return CallLog::join(s[0], s[1], s[2], s[3], s[4], s[5]);
}

// One object plays the whole building model: one roof over x 0..10 m with two faces, x 0..5
// (height 3.1 m, overhang 0.5 m, pitch 45°, direction 180°) and x 5..10 (3.5 m, 0.3 m, 30°,
// 90°), gutter width 0.1 m, roofing thickness 0.05 m; and the object template and its element.
class FakeModel : public HostBuilding,
                  public HostRoofList,
                  public HostRoof,
                  public HostRoofData,
                  public HostObjectTemplate,
                  public HostElement,
                  public std::enable_shared_from_this<FakeModel> {
public:
    explicit FakeModel(CallLog& log) : m_log(log) {}
    bool createsNothing = false;
    int created = 0;
    std::optional<PlacementMatrix> matrix;

    std::shared_ptr<HostRoofList> GetRoofList() override {
        return m_log.reply(shared_from_this(), "GetRoofList");
    }
    std::shared_ptr<HostRoof> FindRoofAt(bool flag, float x, float y, std::int32_t&,
                                         std::array<float, 6>& s, bool&) override {
        m_log.call("FindRoofAt", flag, x, y, six(s));
        return x >= 0 && x <= 10 ? shared_from_this() : nullptr;
    }
    std::shared_ptr<HostRoofData> GetRoofData() override {
        return m_log.reply(shared_from_this(), "GetRoofData");
    }
    std::int32_t FindRoofFaceAt(bool flag, float x, float y, float& height, std::array<float, 6>& s,
                                bool&) override {
        m_log.call("FindRoofFaceAt", flag, x, y, six(s));
        if (x < 0 || x > 10) {
            throw RuntimeError(RuntimeError::HostError, "no roof face at the point");
        }
        height = x <= 5 ? 3.1F : 3.5F;
        return x <= 5 ? 0 : 1;
    }
    double GetRoofingThickness() override { return m_log.reply(0.05, "GetRoofingThickness"); }
    double GetGutterWidth() override { return m_log.reply(0.1, "GetGutterWidth"); }
    double GetFaceOverhang(std::int32_t face, bool&) override {
        return byFace("GetFaceOverhang", face, 0.5, 0.3);
    }
    double GetFacePitch(std::int32_t face) override { return byFace("GetFacePitch", face, 45, 30); }
    double GetFaceDirection(std::int32_t face) override {
        return byFace("GetFaceDirection", face, 180, 90);
    }
    std::shared_ptr<HostElement> CreateElement(void* parent, std::int32_t flags) override {
        m_log.call("CreateElement", parent == nullptr ? "none" : "parent", flags);
        created += createsNothing ? 0 : 1;
        return createsNothing ? nullptr : shared_from_this();
    }
    void PrepareElement(bool flag) override { m_log.call("PrepareElement", flag); }
    std::int32_t SetElementMatrix(const PlacementMatrix& m) override {
        m_log.call("SetElementMatrix");
        matrix = m;
        return 0;
    }
    std::int32_t CommitElement(bool flag) override { return m_log.reply(0, "CommitElement", flag); }

private:
    // Faces are numbered from 1 here.
    double byFace(const char* op, std::int32_t face, double first, double second) {
        return m_log.reply(face == 1 ? first : second, op, face);
    }
    CallLog& m_log;
};

// A host connection that records every call; macro data blocks are kept in memory by id.
class FakeHost : public HostConnection {
public:
    explicit FakeHost(CallLog& log) : m_log(log) {}
    std::string programFolder;
    std::string versionText = "Tectaro +2010 Pro";
    bool connectResult = true;
    std::shared_ptr<HostBuilding> building;
    std::shared_ptr<HostObjectTemplate> objectTemplate;
    std::map<std::int32_t, std::string> macroData;
    HostEvents* sink = nullptr;
    HostPicture buttonPicture;
    HostPicture cursor;

    void setEventSink(HostEvents* eventSink) override { sink = eventSink; }
    std::string GetProgramFolder() override {
        return m_log.reply(programFolder, "GetProgramFolder");
    }
    std::shared_ptr<HostBuilding> GetActiveBuilding() override {
        return m_log.reply(building, "GetActiveBuilding");
    }
    std::string GetVersionText() override { return m_log.reply(versionText, "GetVersionText"); }
    std::int32_t AddMacroButton(const HostPicture& picture, std::int32_t flags,
                                const std::string& tooltip, std::int32_t code) override {
        m_log.call("AddMacroButton", size(picture), flags, tooltip, code);
        buttonPicture = picture;
        return 7;
    }
    void RequestOneClick(const std::string& text, const HostPicture& picture,
                         std::int32_t count) override {
        m_log.call("RequestOneClick", "'" + text + "'", size(picture), count);
        cursor = picture;
    }
    float GetLevelAt(float x, float y) override { return m_log.reply(0.2F, "GetLevelAt", x, y); }
    std::shared_ptr<HostObjectTemplate> LoadObjectFile(const std::string& path,
                                                       std::int32_t flags) override {
        return m_log.reply(objectTemplate, "LoadObjectFile", path, flags);
    }
    bool LoadMacroData(std::int32_t dataId, const std::string& path) override {
        m_log.call("LoadMacroData", dataId, path);
        const auto block = macroData.find(dataId);
        if (block != macroData.end()) {
            std::ofstream(path, std::ios::binary) << block->second;
        }
        return block != macroData.end();
    }
    std::int32_t SetMacroButtonState(std::int32_t id, std::int32_t a, std::int32_t b, bool shown,
                                     bool enabled) override {
        return m_log.reply(1, "SetMacroButtonState", id, a, b, shown, enabled);
    }
    void ShowPrompt(const std::string& text) override { m_log.call("ShowPrompt", text); }
    void ShowProgress(const std::string& text, std::int32_t percentage) override {
        m_log.call("ShowProgress", text, percentage);
    }
    void EndProgress() override { m_log.call("EndProgress"); }
    bool SaveMacroData(std::int32_t dataId, const std::string& path) override {
        m_log.call("SaveMacroData", dataId, path);
        std::ifstream in(path, std::ios::binary);
        macroData[dataId].assign(std::istreambuf_iterator<char>(in), {});
        return bool(in);
    }
    bool ConnectMacro(std::int32_t handle, const std::string& text,
                      const std::string& guid) override {
        return m_log.reply(connectResult, "ConnectMacro", handle, "'" + text + "'", guid);
    }

private:
    static std::string size(const HostPicture& picture) {
        return CallLog::join(picture.image.width()) + "x" + CallLog::join(picture.image.height());
    }
    CallLog& m_log;
};

// The main window and the program's services (message boxes, the end, help) in one.
class FakeWindow : public MainWindowView,
                   public UserMessages,
                   public ProgramControl,
                   public HelpViewer {
public:
    explicit FakeWindow(CallLog& log) : m_log(log) {}
    bool russianSystem = false; // ApplyLanguage asks to skip the version check
    bool visible = false;
    bool topmost = false;
    bool ended = false;
    std::string overhang;
    std::string labelX = ".....";
    std::string labelY = ".....";

    void showWindow() override { visible = (m_log.call("showWindow"), true); }
    void hideWindow() override { visible = (m_log.call("hideWindow"), false); }
    void stayOnTop(bool on) override { topmost = m_log.reply(on, "stayOnTop", on); }
    void setClickLabels(const std::string& x, const std::string& y) override {
        m_log.call("setClickLabels", x, y);
        labelX = x;
        labelY = y;
    }
    std::string overhangText() const override { return overhang; }
    void setOverhangText(const std::string& text) override {
        overhang = m_log.reply(text, "setOverhangText", text);
    }
    void enableTimer1() override { m_log.call("enableTimer1"); }
    bool ApplyLanguage() override { return m_log.reply(russianSystem, "ApplyLanguage"); }
    void fillMaterialList() override { m_log.call("fillMaterialList"); }
    std::int32_t windowHandle() const override { return 4711; }
    QImage bildPicture() const override { return picture(Qt::blue); }
    QImage bild2Picture() const override { return picture(Qt::red); }
    void showMessage(const std::string& text, Icon icon) override {
        m_log.call(icon == Icon::Critical ? "criticalMessage" : "message", text);
    }
    void endProgram() override { ended = (m_log.call("endProgram"), true); }
    bool hasEnded() const override { return ended; }
    void HtmlHelp(const std::string& fileAndTopic) override {
        m_log.call("HtmlHelp", fileAndTopic);
    }

private:
    static QImage picture(Qt::GlobalColor colour) {
        QImage image(30, 30, QImage::Format_RGB32);
        image.fill(colour);
        return image;
    }
    CallLog& m_log;
};

// The recording scene, whose export also writes a small object file as the viewer does (and
// fails, as the viewer's would, into a missing folder).
class ObjectFileScene : public RecordingScene {
public:
    explicit ObjectFileScene(CallLog& log) : m_log(log) {}
    void LoadScene(const std::string& sceneFile) override {
        m_log.call("LoadScene", sceneFile);
        RecordingScene::LoadScene(sceneFile);
    }
    bool SaveScene(const std::string& path, const std::string& name,
                   const std::string& third) override {
        m_log.call("SaveScene", path, name, "'" + third + "'");
        const bool result = RecordingScene::SaveScene(path, name, third);
        std::ofstream file(path, std::ios::binary);
        if (!file) {
            throw RuntimeError(RuntimeError::ViewerError, "cannot write " + path);
        }
        file << "object " << name;
        return result;
    }

private:
    CallLog& m_log;
};

} // namespace pluvarine::test
