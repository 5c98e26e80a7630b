#include "host/Macro.h"

#include "base/Conversions.h"
#include "host/ElementPlacement.h"
#include "host/HostBuilding.h"
#include "host/HostElement.h"
#include "host/HostObjectTemplate.h"
#include "host/HostRoof.h"
#include "host/HostRoofData.h"
#include "host/HostRoofList.h"
#include "host/RequireObject.h"
#include "store/ObjectCounter.h"
#include "store/ProjectArchive.h"
#include "store/WorkFolder.h"
#include "store/text/LoadText.h"

#include <array>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <optional>

namespace pluvarine {

namespace {

// Deletes the ordinary files directly inside the folder; sub-folders stay, and a file that
// cannot be deleted is left where it is.
void deleteFolderFiles(const std::string& folder) {
    namespace fs = std::filesystem;
    std::error_code error;
    for (fs::directory_iterator it(fs::u8path(folder), error), end; !error && it != end;
         it.increment(error)) {
        const bool hidden = it->path().filename().string().starts_with('.');
        if (it->is_regular_file(error) && !hidden) {
            std::error_code ignored;
            fs::remove(it->path(), ignored);
        }
    }
}

// Six floats the host fills on request; the macro sets them to 1.0 and never reads them.
std::array<float, 6> sixFloats() {
    std::array<float, 6> six{};
    six.fill(1.0F);
    return six;
}

std::string loadBuildingMessage(const RuntimeError& error) {
    return "Fehler in Funktion Main_LoadBuilding: \r" + std::to_string(error.number()) + " - " +
           error.description() + "\rDas Programm wird fortgesetzt.";
}

} // namespace

Macro::Macro(MacroEnvironment environment)
    : m_env(std::move(environment)),
      m_skipped([this](const RuntimeError& error) { reportStepFailure(error); }) {}

Macro::~Macro() {
    // The connection must not deliver events to a macro that is going away.
    if (m_exe) {
        m_exe->setEventSink(nullptr);
    }
}

HostConnection& Macro::host() const {
    return requireObject(m_exe);
}

void Macro::reportStepFailure(const RuntimeError& error) const {
    if (m_onFailure) {
        m_onFailure(error);
    }
}

// ---- Start-up -----------------------------------------------------------------------------

void Macro::Form_Load() {
    Daten& daten = m_env.daten;

    m_skipVersionCheck = false;
    tryStep(
        [&] {
            if (m_env.view.ApplyLanguage()) {
                m_skipVersionCheck = true;
            }
        },
        m_skipped);
    Initiate();
    if (m_env.program.hasEnded()) {
        return;
    }
    WorkFolder paths;
    resumeNext({
                   [&] {
                       paths = WorkFolder::resolve(host().GetProgramFolder());
                       daten.workFolder = paths.workFolder;
                   },
                   [&] {
                       daten.design.bendPartsBuilt = false;
                       daten.design.bendChosen = false;
                       daten.design.constructionAnswered = false;
                   },
                   [&] {
                       m_settingsFile = paths.settingsFile;
                       m_objectCounter = counterAtStartUp(m_settingsFile);
                   },
                   [&] {
                       daten.design.modelBuilt = false;
                       daten.oldObjectFile = paths.oldObjectFile;
                   },
                   [&] { m_env.scene.LoadScene(daten.workFolder + "/main.v3o"); },
                   [&] { m_env.view.fillMaterialList(); },
                   [&] { m_env.view.setOverhangText("0"); },
                   [&] {
                       RoofData& roof = daten.roof;
                       roof.gutterWidth = 0;
                       roof.roofingThickness = 0;
                       roof.roofLevel = 0;
                       roof.groundLevel = 0;
                       roof.roofPitch = 0;
                       roof.roofDirection = 0;
                       roof.roofOverhang = 0;
                   },
               },
               m_skipped);
}

void Macro::Initiate() {
    bool connected = false;
    resumeNext(
        {
            [&] {
                m_exe = m_env.connect();
                requireObject(m_exe).setEventSink(this);
            },
            [&] { connected = host().ConnectMacro(m_env.view.windowHandle(), "", MacroGuid); },
        },
        m_skipped);
    if (!connected) {
        m_env.messages.showMessage(LoadText(5001));
        m_env.program.endProgram();
        return;
    }
    // The button is created before the verdict on the version is acted on.
    resumeNext({[&] { Validate(); }, [&] { CreateHostButton(); }}, m_skipped);
    if (!m_hostCompatible) {
        m_env.messages.showMessage(LoadText(5000));
        m_env.program.endProgram();
    }
}

void Macro::Validate() {
    if (m_skipVersionCheck) {
        m_hostCompatible = true;
        return;
    }
    m_hostCompatible = Versionspruefung(host().GetVersionText());
}

bool Macro::Versionspruefung(const std::string& versionText) {
    std::string number;
    bool reading = false;
    for (const char c : versionText) {
        if (c == '+') {
            reading = true;
        } else if (c == ' ') {
            reading = false;
        } else if (reading && ((c >= '0' && c <= '9') || c == '.')) {
            number += c;
        }
    }
    const bool family = versionText.find("Vorex") != std::string::npos ||
                        versionText.find("Tectaro") != std::string::npos;
    // An empty or unreadable number fails here, so the check gives no verdict at all.
    const double version = textToDouble(number);
    return family && std::floor(version) >= 2005;
}

void Macro::CreateHostButton() {
    const HostPicture picture = m_env.pictureFromBitmap(m_env.view.bildPicture());
    m_hostButtonId = host().AddMacroButton(picture, 0x01030204, LoadText(5005), 4733);
    host().SetMacroButtonState(m_hostButtonId, 1, 0, true, true);
}

// ---- Wall pick and roof data --------------------------------------------------------------

void Macro::GetClick() {
    resumeNext({
                   [&] { m_clickCursor = m_env.pictureFromBitmap(m_env.view.bild2Picture()); },
                   [&] { host().RequestOneClick("", m_clickCursor, 1); },
                   [&] { host().ShowPrompt(LoadText(8000)); },
               },
               m_skipped);
}

void Macro::exe_GotOneClick(bool valid, float x, float y, std::int32_t /*id*/) {
    RoofData& roof = m_env.daten.roof;
    if (valid) {
        roof.clickX = x;
        roof.clickY = y;
        tryStep([&] { m_env.view.setClickLabels(singleToText(x), singleToText(y)); }, m_skipped);
    } else {
        // The data are read again at the previous position.
        tryStep([&] { m_env.messages.showMessage(LoadText(5002)); }, m_skipped);
    }
    resumeNext({
                   [&] { m_env.view.stayOnTop(true); },
                   [&] { m_env.view.showWindow(); },
                   [&] { getData(); },
                   [&] { m_env.rebuild(); },
                   [&] { m_env.view.enableTimer1(); },
               },
               m_skipped);
}

void Macro::exe_ButtonChange(std::int32_t btnId, std::int32_t evnt, std::int32_t /*selectedIndex*/,
                             bool pressed, bool /*visible*/, bool /*enabled*/) {
    if (btnId != m_hostButtonId || evnt != 2 || !pressed) {
        return;
    }
    tryStep([&] { m_env.view.hideWindow(); }, m_skipped);
    GetClick();
}

void Macro::getData() {
    RoofData& roof = m_env.daten.roof;
    // Locals start afresh on every reading; the members keep the objects of the last one.
    std::shared_ptr<HostRoofList> roofList;
    std::shared_ptr<HostRoof> hostRoof;
    float h = 0;
    std::int32_t face = 0;
    float s = 0;
    resumeNext(
        {
            [&] { m_activeBuilding = host().GetActiveBuilding(); },
            [&] {
                roofList = requireObject(m_activeBuilding).GetRoofList();
                std::int32_t ignored = 0;
                auto six = sixFloats();
                bool ignoredFlag = false;
                hostRoof = requireObject(roofList).FindRoofAt(true, roof.clickX, roof.clickY,
                                                              ignored, six, ignoredFlag);
            },
            [&] { m_roofData = requireObject(hostRoof).GetRoofData(); },
            [&] { h = host().GetLevelAt(roof.clickX, roof.clickY); },
            [&] { roof.gutterWidth = requireObject(m_roofData).GetGutterWidth() * 1000; },
            [&] { roof.roofingThickness = requireObject(m_roofData).GetRoofingThickness() * 1000; },
            [&] {
                auto six = sixFloats();
                bool ignoredFlag = false;
                const std::int32_t hostFace = requireObject(hostRoof).FindRoofFaceAt(
                    true, roof.clickX, roof.clickY, s, six, ignoredFlag);
                // The host counts faces from 0, its roof data from 1.
                face = toInt32(static_cast<double>(hostFace) + 1);
            },
            [&] { roof.roofPitch = requireObject(m_roofData).GetFacePitch(face); },
            [&] { roof.roofDirection = requireObject(m_roofData).GetFaceDirection(face); },
            [&] {
                bool ignored = false;
                roof.roofOverhang = requireObject(m_roofData).GetFaceOverhang(face, ignored) * 1000;
            },
            // Single-precision arithmetic: each operation rounds to float.
            [&] { roof.roofLevel = toSingle(toSingle(static_cast<double>(s) * 1000) - 100.0); },
            [&] { roof.groundLevel = toSingle(static_cast<double>(h) * 1000); },
            [&] { Maße(); },
        },
        m_skipped);
}

void Macro::Maße() {
    const RoofData& roof = m_env.daten.roof;
    resumeNext({
                   [&] {
                       const float levels =
                           toSingle(static_cast<double>(roof.roofLevel) - roof.groundLevel);
                       m_env.daten.design.heightH =
                           levels -
                           roof.roofOverhang * std::tan(roof.roofPitch * std::numbers::pi / 180) +
                           60;
                   },
                   // The rebuild takes the overhang from this field.
                   [&] { m_env.view.setOverhangText(doubleToText(roof.roofOverhang)); },
               },
               m_skipped);
}

// ---- Commands -----------------------------------------------------------------------------

void Macro::Command4_Click() {
    Daten& daten = m_env.daten;
    // An export never replaces an object file: a number whose file exists is passed over, and
    // when none is left the insertion is refused; the design stays open.
    const std::optional<std::int16_t> number =
        unusedObjectNumber(daten.workFolder + "/obj/", m_objectCounter);
    if (!number) {
        tryStep([&] { m_env.messages.showMessage(LoadText(5004)); }, m_skipped);
        return;
    }
    m_objectCounter = *number;
    const auto objectFile = [&] {
        return daten.workFolder + "/obj/" + numberText(static_cast<double>(m_objectCounter)) +
               ".tob";
    };
    std::shared_ptr<HostObjectTemplate> objectTemplate;
    std::shared_ptr<HostElement> element;
    std::optional<PlacementMatrix> placement;
    resumeNext({
                   [&] { m_env.scene.SaveScene(objectFile(), "Fallrohr", ""); },
                   [&] { objectTemplate = host().LoadObjectFile(objectFile(), 0); },
                   [&] { element = requireObject(objectTemplate).CreateElement(nullptr, 0); },
                   [&] {
                       placement = elementPlacement(
                           {daten.roof.roofDirection, daten.roof.clickX, daten.roof.clickY,
                            daten.roof.groundLevel, daten.design.wallOffset, daten.design.heightH});
                   },
                   // Only when a case covers the direction is the element placed.
                   [&] {
                       if (placement) {
                           requireObject(element).PrepareElement(true);
                       }
                   },
                   [&] {
                       if (placement) {
                           requireObject(element).SetElementMatrix(*placement);
                       }
                   },
                   [&] {
                       if (placement) {
                           requireObject(element).CommitElement(true);
                       }
                   },
                   // The file stores the number just used; reading it back and adding one moves on.
                   [&] { m_objectCounter = counterAfterExport(m_settingsFile, m_objectCounter); },
               },
               m_skipped);
    endDesign();
}

void Macro::Command2_Click() {
    endDesign();
}

void Macro::endDesign() {
    Daten& daten = m_env.daten;
    resumeNext({
                   [&] { setButtonEnabled(true); },
                   [&] {
                       daten.design.constructionAnswered = false;
                       daten.design.bendChosen = false;
                   },
                   [&] { m_env.view.setOverhangText("0"); },
                   [&] {
                       daten.roof.roofingThickness = 0;
                       daten.roof.gutterWidth = 0;
                       daten.roof.roofPitch = 0;
                       daten.design.heightH = 0;
                   },
                   [&] { m_env.view.hideWindow(); },
               },
               m_skipped);
}

void Macro::Command5_Click() {
    GetClick();
    m_env.daten.design.constructionAnswered = false;
    m_env.daten.design.bendChosen = false;
}

void Macro::Command7_Click() {
    tryStep([&] { m_env.help.HtmlHelp(host().GetProgramFolder() + "Tectaro.chm::/Pluvarine.htm"); },
            m_skipped);
}

// ---- Project events -----------------------------------------------------------------------

void Macro::setButtonEnabled(bool enabled) {
    host().SetMacroButtonState(m_hostButtonId, 1, 0, true, enabled);
}

std::string Macro::archivePath() const {
    return m_env.daten.workFolder + "/destination/" + "pluvarine" + ".dat";
}

void Macro::exe_SaveStart(const std::string& /*fileName*/, std::int32_t /*numBuildings*/,
                          bool /*isAutoSave*/, std::int32_t& numChunksToSave) {
    // The macro announces its one data block.
    tryStep([&] { numChunksToSave = toInt32(static_cast<double>(numChunksToSave) + 1); },
            m_skipped);
}

void Macro::exe_SaveBuilding(std::int32_t /*buildingNo*/, std::shared_ptr<HostBuilding> /*b*/) {
    const std::string& workFolder = m_env.daten.workFolder;
    // Only the archive of this save is handed over: after a failed pack the file at the archive
    // path is an older one. The user learns when the project goes without some or all files.
    std::optional<PackResult> packed;
    bool handedOver = false;
    std::string reason;
    resumeNext({
                   [&] {
                       packed = PackFolder(workFolder + "/obj/",
                                           workFolder + "/destination/pluvarine.dat", "*.*",
                                           m_progress, m_env.pumpEvents);
                   },
                   [&] { handedOver = packed && host().SaveMacroData(MacroDataId, archivePath()); },
               },
               [&](const RuntimeError& error) {
                   reportStepFailure(error);
                   reason = error.description();
               });
    std::string message;
    if (!handedOver) {
        message = LoadText(5003) + (reason.empty() ? "" : "\r" + reason);
    } else if (!packed->problems.empty()) {
        message = LoadText(5006);
        for (const ArchiveProblem& problem : packed->problems) {
            message += "\r" + problem.name + ": " + problem.reason;
        }
    }
    if (!message.empty()) {
        tryStep([&] { m_env.messages.showMessage(message); }, m_skipped);
    }
}

void Macro::exe_LoadBuilding(std::shared_ptr<HostBuilding> b, std::int32_t /*saveNo*/) {
    // Every failure is shown with the fixed German text, and loading goes on.
    const auto shown = [this](const RuntimeError& error) {
        reportStepFailure(error);
        m_env.messages.showMessage(loadBuildingMessage(error));
    };
    tryStep([&] { setButtonEnabled(true); }, shown);
    if (b) {
        return;
    }
    // The same paths as the working folder gives, built anew from the host's program folder.
    const std::string below = "Standard/" + LoadText(8002) + "/Pluvarine";
    std::string archive;
    std::string folder;
    bool loaded = false;
    resumeNext(
        {
            [&] { archive = host().GetProgramFolder() + below + "/destination/pluvarine.dat"; },
            [&] { folder = host().GetProgramFolder() + below + "/obj/"; },
            [&] { loaded = host().LoadMacroData(MacroDataId, archive); },
        },
        shown);
    if (!loaded) {
        return;
    }
    resumeNext(
        {
            [&] { UnpackFolder(archive, folder, m_progress, m_env.pumpEvents, m_env.messages); },
            [&] { m_objectCounter = counterAfterLoad(m_settingsFile); },
        },
        shown);
}

void Macro::exe_LoadComplete(bool /*successfull*/) {
    resumeNext({
                   [&] { m_objectCounter = counterAtLoadComplete(m_settingsFile); },
                   [&] { setButtonEnabled(true); },
               },
               m_skipped);
}

void Macro::exe_ProjectClosed() {
    const std::string& workFolder = m_env.daten.workFolder;
    resumeNext({
                   [&] { setButtonEnabled(false); },
                   [&] { deleteFolderFiles(workFolder + "/obj/"); },
                   [&] { deleteFolderFiles(workFolder + "/destination/"); },
               },
               m_skipped);
}

void Macro::exe_NewCurrentProject() {
    tryStep([&] { setButtonEnabled(true); }, m_skipped);
}

void Macro::exe_ProgramExit() {
    m_env.program.endProgram();
}

} // namespace pluvarine
