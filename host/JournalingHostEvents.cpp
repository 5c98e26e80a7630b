#include "host/JournalingHostEvents.h"

namespace pluvarine {

using Json = nlohmann::ordered_json;

void JournalingHostEvents::record(const char* event, Json args) {
    m_journal.record({{"type", "event"}, {"event", event}, {"args", std::move(args)}});
}

void JournalingHostEvents::exe_ProgramExit() {
    record("exe_ProgramExit", Json::array());
    m_target.exe_ProgramExit();
}

void JournalingHostEvents::exe_GotOneClick(bool valid, float x, float y, std::int32_t id) {
    record("exe_GotOneClick", Json::array({valid, x, y, id}));
    m_target.exe_GotOneClick(valid, x, y, id);
}

void JournalingHostEvents::exe_ButtonChange(std::int32_t btnId, std::int32_t evnt,
                                            std::int32_t selectedIndex, bool pressed, bool visible,
                                            bool enabled) {
    record("exe_ButtonChange",
           Json::array({btnId, evnt, selectedIndex, pressed, visible, enabled}));
    m_target.exe_ButtonChange(btnId, evnt, selectedIndex, pressed, visible, enabled);
}

void JournalingHostEvents::exe_LoadComplete(bool successfull) {
    record("exe_LoadComplete", Json::array({successfull}));
    m_target.exe_LoadComplete(successfull);
}

void JournalingHostEvents::exe_LoadBuilding(std::shared_ptr<HostBuilding> b, std::int32_t saveNo) {
    record("exe_LoadBuilding", Json::array({HostJournal::value(b), saveNo}));
    m_target.exe_LoadBuilding(std::move(b), saveNo);
}

void JournalingHostEvents::exe_SaveStart(const std::string& fileName, std::int32_t numBuildings,
                                         bool isAutoSave, std::int32_t& numChunksToSave) {
    record("exe_SaveStart", Json::array({fileName, numBuildings, isAutoSave, numChunksToSave}));
    m_target.exe_SaveStart(fileName, numBuildings, isAutoSave, numChunksToSave);
    // The one argument the macro hands back.
    m_journal.record({{"type", "eventResult"},
                      {"event", "exe_SaveStart"},
                      {"numChunksToSave", numChunksToSave}});
}

void JournalingHostEvents::exe_SaveBuilding(std::int32_t buildingNo,
                                            std::shared_ptr<HostBuilding> b) {
    record("exe_SaveBuilding", Json::array({buildingNo, HostJournal::value(b)}));
    m_target.exe_SaveBuilding(buildingNo, std::move(b));
}

void JournalingHostEvents::exe_ProjectClosed() {
    record("exe_ProjectClosed", Json::array());
    m_target.exe_ProjectClosed();
}

void JournalingHostEvents::exe_NewCurrentProject() {
    record("exe_NewCurrentProject", Json::array());
    m_target.exe_NewCurrentProject();
}

} // namespace pluvarine
