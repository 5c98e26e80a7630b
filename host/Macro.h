#pragma once

#include "base/ResumeNext.h"
#include "host/HostConnection.h"
#include "host/HostEvents.h"
#include "host/HostPicture.h"
#include "host/HostProgress.h"
#include "host/MacroCommands.h"
#include "host/MacroEnvironment.h"

#include <cstdint>
#include <memory>
#include <string>

namespace pluvarine {

class HostBuilding;
class HostRoofData;

// The main window's procedures of the host link: start-up, the wall pick, the roof data, the
// insertion into the building and the host's project events. It holds the connection object
// `exe` and the window members that go with it; the window forwards its load handler and the
// buttons of MacroCommands here, and the host delivers its events to it.
//
// Failure behaviour: the procedures run their steps through resumeNext(), so a step that fails
// is given up and the next one runs. Only the start-up ends the program (messages 5001, 5000);
// a rejected click shows 5002; exe_LoadBuilding shows a fixed German text for each failure.
// Nothing is lost on the way: an insertion never replaces an object file and is refused with
// 5004 when the object numbers are used up; a save whose archive could not be made or handed
// over hands over nothing older and says so (5003), one that left files out names them (5006).
class Macro : public HostEvents, public MacroCommands {
public:
    // The identifier of the macro's data block in a host project.
    static constexpr std::int32_t MacroDataId = 0x20ACDCA8;
    // The macro's identification towards the host, in registry form.
    static constexpr const char* MacroGuid = "{6C1F3A52-94D7-4E0B-B8A1-2F5D7C9E0A43}";

    explicit Macro(MacroEnvironment environment);
    ~Macro() override;

    Macro(const Macro&) = delete;
    Macro& operator=(const Macro&) = delete;

    // The main window's load handler: the whole start-up sequence. When it ends the program
    // (ProgramControl::hasEnded()), the window must not be shown.
    void Form_Load();

    // Start-up procedures. Initiate runs its steps with failures skipped; Validate and
    // CreateHostButton throw RuntimeError when a host call fails (Initiate absorbs it).
    void Initiate();
    void Validate();
    void CreateHostButton();
    // True for a host of the family ("Vorex" or "Tectaro") in version 2005 or later. The number
    // is what follows "+" signs up to a blank; throws RuntimeError when it is no number.
    static bool Versionspruefung(const std::string& versionText);

    // Wall pick and roof data.
    void GetClick();
    void getData();
    void Maße();

    // MacroCommands.
    void Command2_Click() override; // cancel
    void Command4_Click() override; // insert into the building
    void Command5_Click() override; // pick a new point on a wall
    void Command7_Click() override; // help

    // HostEvents.
    void exe_ProgramExit() override;
    void exe_GotOneClick(bool valid, float x, float y, std::int32_t id) override;
    void exe_ButtonChange(std::int32_t btnId, std::int32_t evnt, std::int32_t selectedIndex,
                          bool pressed, bool visible, bool enabled) override;
    void exe_LoadComplete(bool successfull) override;
    void exe_LoadBuilding(std::shared_ptr<HostBuilding> b, std::int32_t saveNo) override;
    void exe_SaveStart(const std::string& fileName, std::int32_t numBuildings, bool isAutoSave,
                       std::int32_t& numChunksToSave) override;
    void exe_SaveBuilding(std::int32_t buildingNo, std::shared_ptr<HostBuilding> b) override;
    void exe_ProjectClosed() override;
    void exe_NewCurrentProject() override;

    // Window members.
    HostConnection* exe() const { return m_exe.get(); }
    std::int32_t hostButtonId() const { return m_hostButtonId; }
    bool hostCompatible() const { return m_hostCompatible; }
    bool skipVersionCheck() const { return m_skipVersionCheck; }
    std::int16_t objectCounter() const { return m_objectCounter; }
    const std::string& settingsFile() const { return m_settingsFile; }
    const std::shared_ptr<HostBuilding>& activeBuilding() const { return m_activeBuilding; }
    const std::shared_ptr<HostRoofData>& roofData() const { return m_roofData; }

    // Sees every step that failed and was skipped (traces, the journal, tests).
    void setFailureObserver(StepFailureObserver observer) { m_onFailure = std::move(observer); }

private:
    HostConnection& host() const;
    void setButtonEnabled(bool enabled);
    void endDesign();
    std::string archivePath() const;
    void reportStepFailure(const RuntimeError& error) const;

    MacroEnvironment m_env;
    std::unique_ptr<HostConnection> m_exe;
    HostProgress m_progress{m_exe};
    std::int32_t m_hostButtonId = 0;
    bool m_hostCompatible = false;
    bool m_skipVersionCheck = false;
    std::int16_t m_objectCounter = 0;
    std::string m_settingsFile;
    HostPicture m_clickCursor;
    std::shared_ptr<HostBuilding> m_activeBuilding;
    std::shared_ptr<HostRoofData> m_roofData;
    StepFailureObserver m_onFailure;
    StepFailureObserver m_skipped; // a skipped step: only reported to m_onFailure
};

} // namespace pluvarine
