#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace pluvarine {

class HostBuilding;

// The events of the host connection that the macro handles, by the host's member numbers.
// The host delivers them on the user-interface thread between the program's own steps, never
// from inside a call the macro is making.
class HostEvents {
public:
    virtual ~HostEvents() = default;
    virtual void exe_ProgramExit() = 0;                                              // 1
    virtual void exe_GotOneClick(bool valid, float x, float y, std::int32_t id) = 0; // 5
    virtual void exe_ButtonChange(std::int32_t btnId, std::int32_t evnt, std::int32_t selectedIndex,
                                  bool pressed, bool visible,
                                  bool enabled) = 0;                                         // 6
    virtual void exe_LoadComplete(bool successfull) = 0;                                     // 11
    virtual void exe_LoadBuilding(std::shared_ptr<HostBuilding> b, std::int32_t saveNo) = 0; // 12
    virtual void exe_SaveStart(const std::string& fileName, std::int32_t numBuildings,
                               bool isAutoSave, std::int32_t& numChunksToSave) = 0; // 14
    virtual void exe_SaveBuilding(std::int32_t buildingNo,
                                  std::shared_ptr<HostBuilding> b) = 0; // 15
    virtual void exe_ProjectClosed() = 0;                               // 18
    virtual void exe_NewCurrentProject() = 0;                           // 24
};

} // namespace pluvarine
