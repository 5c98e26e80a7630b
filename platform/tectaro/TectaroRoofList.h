#pragma once

#include "host/HostRoofList.h"
#include "platform/tectaro/Building.h"
#include "platform/tectaro/TectaroHostRef.h"

namespace pluvarine {

// The roofs of a building, as the host hands them to the macro.
class TectaroRoofList : public HostRoofList {
public:
    TectaroRoofList(TectaroHost* host, std::shared_ptr<const Building> building);
    // The roof with a face (overhang included) at the point; nullptr when there is none.
    std::shared_ptr<HostRoof> FindRoofAt(bool flag, float x, float y, std::int32_t& ignored,
                                         std::array<float, 6>& six, bool& ignoredFlag) override;

private:
    TectaroHostRef m_host;
    std::shared_ptr<const Building> m_building;
};

} // namespace pluvarine
