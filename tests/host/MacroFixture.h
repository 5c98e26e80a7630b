#pragma once

#include "assembly/RecordingScene.h"
#include "host/HostBuilding.h"
#include "host/HostElement.h"
#include "host/HostObjectTemplate.h"
#include "host/HostRoof.h"
#include "host/HostRoofData.h"
#include "host/HostRoofList.h"
#include "host/Macro.h"
#include "store/text/LoadText.h"
#include "tests/support/FileBytes.h"

#include <QTemporaryDir>
#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <set>
#include <sstream>

namespace pluvarine::test {

using ::testing::ElementsAre;

// One journal for every fake, so a test sees the order of everything the macro did. Any
// operation named in `failing` is recorded, then throws RuntimeError(HostError); one named in
// `empty` returns nothing (nullptr, false, 0 or "").
struct CallLog {
    std::vector<std::string> entries;
    std::set<std::string> failing;
    std::set<std::string> empty;

    static std::string join(const auto&... values) {
        std::ostringstream out;
        out.precision(9);
        [[maybe_unused]] const char* separator = "";
        ((out << separator << std::boolalpha << values, separator = ", "), ...);
        return out.str();
    }
    template <typename R> R reply(R result, const std::string& op, const auto&... values) {
        entries.push_back(op + "(" + join(values...) + ")");
        if (failing.contains(op)) {
            throw RuntimeError(RuntimeError::HostError, op + " failed");
        }
        return empty.contains(op) ? R{} : result;
    }
    void call(const std::string& op, const auto&... values) { reply(0, op, values...); }
    // The operation names, or the entries of the given operations, in order.
    std::vector<std::string> only(const std::set<std::string>& ops = {}) const {
        std::vector<std::string> result;
        for (const std::string& entry : entries) {
            const std::string name = entry.substr(0, entry.find('('));
            if (ops.empty() || ops.contains(name)) {
                result.push_back(ops.empty() ? name : entry);
            }
        }
        return result;
    }
    bool contains(const std::string& op) const { return !only({op}).empty(); }
};

// One fake plays several of the host's or the window's objects.
template <typename... Interfaces> struct Implements : Interfaces... {};

inline std::string six(const std::array<float, 6>& s) {
    return CallLog::join(s[0], s[1], s[2], s[3], s[4], s[5]);
}
inline std::string size(const HostPicture& picture) {
    return CallLog::join(picture.image.width()) + "x" + CallLog::join(picture.image.height());
}

// A host connection that records every call under its name; macro data blocks are kept in
// memory by id. The same object plays the active building: one roof over x 0..10 m with two
// faces, x 0..5 (height 3.1 m, overhang 0.5 m, pitch 45°, direction 180°) and x 5..10 (3.5 m,
// 0.3 m, 30°, 90°), gutter width 0.1 m, roofing thickness 0.05 m; and the object template and
// its element.
class FakeHost : public Implements<HostConnection, HostBuilding, HostRoofList, HostRoof,
                                   HostRoofData, HostObjectTemplate, HostElement> {
public:
    using I = std::int32_t;
    explicit FakeHost(CallLog& callLog) : log(callLog) {}
    CallLog& log;
    // Not owning: the macro owns the connection, and the building model dies with it.
    const std::shared_ptr<FakeHost> self{this, [](FakeHost*) {}};
    std::string programFolder;
    std::string versionText = "Tectaro +2010 Pro";
    std::map<I, std::string> macroData;
    HostEvents* sink = nullptr;
    HostPicture buttonPicture;
    HostPicture cursor;
    std::optional<PlacementMatrix> matrix;

    std::shared_ptr<HostRoofList> GetRoofList() override { return log.reply(self, __func__); }
    std::shared_ptr<HostRoof> FindRoofAt(bool flag, float x, float y, I&, std::array<float, 6>& s,
                                         bool&) override {
        return log.reply(x <= 10 ? self : nullptr, __func__, flag, x, y, six(s));
    }
    std::shared_ptr<HostRoofData> GetRoofData() override { return log.reply(self, __func__); }
    I FindRoofFaceAt(bool flag, float x, float y, float& height, std::array<float, 6>& s,
                     bool&) override {
        log.call(__func__, flag, x, y, six(s));
        height = x <= 5 ? 3.1F : 3.5F;
        return x <= 10 ? (x <= 5 ? 0 : 1) : throw RuntimeError(RuntimeError::HostError, "no face");
    }
    double GetRoofingThickness() override { return log.reply(0.05, __func__); }
    double GetGutterWidth() override { return log.reply(0.1, __func__); }
    double GetFaceOverhang(I face, bool&) override {
        return log.reply(face == 1 ? 0.5 : 0.3, __func__, face);
    }
    double GetFacePitch(I face) override { return log.reply(face == 1 ? 45 : 30, __func__, face); }
    double GetFaceDirection(I face) override {
        return log.reply(face == 1 ? 180 : 90, __func__, face);
    }
    std::shared_ptr<HostElement> CreateElement(void* parent, I flags) override {
        return log.reply(self, __func__, parent == nullptr ? "none" : "parent", flags);
    }
    void PrepareElement(bool flag) override { log.call(__func__, flag); }
    I SetElementMatrix(const PlacementMatrix& m) override {
        matrix = log.reply(m, __func__);
        return 0;
    }
    I CommitElement(bool flag) override { return log.reply(0, __func__, flag); }

    void setEventSink(HostEvents* eventSink) override { sink = eventSink; }
    std::string GetProgramFolder() override { return log.reply(programFolder, __func__); }
    std::shared_ptr<HostBuilding> GetActiveBuilding() override { return log.reply(self, __func__); }
    std::string GetVersionText() override { return log.reply(versionText, __func__); }
    I AddMacroButton(const HostPicture& picture, I flags, const std::string& tooltip,
                     I code) override {
        buttonPicture = log.reply(picture, __func__, size(picture), flags, tooltip, code);
        return 7;
    }
    void RequestOneClick(const std::string& text, const HostPicture& picture, I count) override {
        cursor = log.reply(picture, __func__, "'" + text + "'", size(picture), count);
    }
    float GetLevelAt(float x, float y) override { return log.reply(0.2F, __func__, x, y); }
    std::shared_ptr<HostObjectTemplate> LoadObjectFile(const std::string& path, I flags) override {
        return log.reply(self, __func__, path, flags);
    }
    bool LoadMacroData(I dataId, const std::string& path) override {
        log.call(__func__, dataId, path);
        if (macroData.contains(dataId)) {
            writeFile(path, macroData[dataId]);
        }
        return macroData.contains(dataId);
    }
    I SetMacroButtonState(I id, I a, I b, bool shown, bool enabled) override {
        return log.reply(1, __func__, id, a, b, shown, enabled);
    }
    void ShowPrompt(const std::string& text) override { log.call(__func__, text); }
    void ShowProgress(const std::string& text, I percentage) override {
        log.call(__func__, text, percentage);
    }
    void EndProgress() override { log.call(__func__); }
    bool SaveMacroData(I dataId, const std::string& path) override {
        log.call(__func__, dataId, path);
        macroData[dataId] = readFile(path);
        return true;
    }
    bool ConnectMacro(I handle, const std::string& text, const std::string& guid) override {
        return log.reply(true, __func__, handle, "'" + text + "'", guid);
    }
};

// A macro wired to the fakes, in a fresh host program folder with the installed working-folder
// tree (obj/ and destination/, empty). The fixture itself plays the main window, the program's
// services (message boxes, the end, help) and the preview: the recording scene, whose export
// also writes a small object file as the viewer does (and fails, as the viewer's would, into a
// missing folder).
class MacroFixture : public Implements<::testing::Test, MainWindowView, UserMessages,
                                       ProgramControl, HelpViewer, RecordingScene> {
protected:
    MacroFixture() {
        std::filesystem::create_directories(work / "obj");
        std::filesystem::create_directories(work / "destination");
        bild.fill(Qt::blue);
        bild2.fill(Qt::red);
        makeMacro();
    }

    // A fresh program run: a new host connection and a new macro on the same folders, a fresh
    // log.
    void makeMacro() {
        macro.reset();
        log = {};
        ended = false;
        pendingHost = std::make_unique<FakeHost>(log);
        host = pendingHost.get();
        host->programFolder = dir.path().toStdString() + "/";
        macro = std::make_unique<Macro>(MacroEnvironment{
            [this] { return connect(); }, convertPicture, daten, *this,
            [this] { log.call("rebuild"); }, *this, *this, *this, *this, [this] { ++pumps; }});
    }
    // Creating the connection object fails like the host's when told to.
    virtual std::unique_ptr<HostConnection> connect() {
        log.call("createConnection");
        return std::move(pendingHost);
    }
    // The start-up; afterwards the log starts empty.
    void start() {
        macro->Form_Load();
        log.entries.clear();
    }

    void showWindow() override { log.call(__func__); }
    void hideWindow() override { log.call(__func__); }
    void stayOnTop(bool on) override { log.call(__func__, on); }
    void setClickLabels(const std::string& x, const std::string& y) override {
        log.call(__func__, x, y);
    }
    std::string overhangText() const override { return overhang; }
    void setOverhangText(const std::string& text) override {
        overhang = log.reply(text, __func__, text);
    }
    void enableTimer1() override { log.call(__func__); }
    bool ApplyLanguage() override { return log.reply(russianSystem, __func__); }
    void fillMaterialList() override { log.call(__func__); }
    std::int32_t windowHandle() const override { return 4711; }
    QImage bildPicture() const override { return bild; }
    QImage bild2Picture() const override { return bild2; }
    void showMessage(const std::string& text, Icon icon) override {
        log.call(icon == Icon::Critical ? "criticalMessage" : "message", text);
    }
    void endProgram() override { ended = log.reply(true, __func__); }
    bool hasEnded() const override { return ended; }
    void HtmlHelp(const std::string& fileAndTopic) override { log.call(__func__, fileAndTopic); }
    void LoadScene(const std::string& sceneFile) override {
        log.call(__func__, sceneFile);
        RecordingScene::LoadScene(sceneFile);
    }
    bool SaveScene(const std::string& path, const std::string& name,
                   const std::string& third) override {
        log.call(__func__, path, name, "'" + third + "'");
        if (!(std::ofstream(path, std::ios::binary) << "object " << name)) {
            throw RuntimeError(RuntimeError::ViewerError, "cannot write " + path);
        }
        return RecordingScene::SaveScene(path, name, third);
    }

    // Gutter width, roofing thickness, pitch, direction, overhang, roof level, ground level.
    auto roof() const {
        const RoofData& r = daten.roof;
        return std::make_tuple(r.gutterWidth, r.roofingThickness, r.roofPitch, r.roofDirection,
                               r.roofOverhang, r.roofLevel, r.groundLevel);
    }
    std::string objFile(const std::string& name) const { return (work / "obj" / name).string(); }

    QTemporaryDir dir;
    std::filesystem::path work =
        std::filesystem::path(dir.path().toStdString()) / "Standard" / LoadText(8002) / "Pluvarine";
    CallLog log;
    std::unique_ptr<FakeHost> pendingHost;
    FakeHost* host = nullptr;
    Daten daten;
    bool russianSystem = false; // ApplyLanguage asks to skip the version check
    bool ended = false;
    std::string overhang;
    QImage bild{30, 30, QImage::Format_RGB32};  // blue
    QImage bild2{30, 30, QImage::Format_RGB32}; // red
    // The host binding's conversion: a format of its own shows the picture went through it.
    PictureConversion convertPicture = [](const QImage& bitmap) {
        return HostPicture{bitmap.convertToFormat(QImage::Format_ARGB32_Premultiplied)};
    };
    int pumps = 0;
    std::unique_ptr<Macro> macro;
};

} // namespace pluvarine::test
