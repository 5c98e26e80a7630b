#pragma once

#include "host/HostEvents.h"
#include "host/HostJournal.h"

namespace pluvarine {

// Journals every event the host raises, then hands it on to the macro's handlers.
class JournalingHostEvents : public HostEvents {
public:
    JournalingHostEvents(HostEvents& target, HostJournal& journal)
        : m_target(target), m_journal(journal) {}

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

private:
    void record(const char* event, nlohmann::ordered_json args);

    HostEvents& m_target;
    HostJournal& m_journal;
};

} // namespace pluvarine
