#pragma once

#include "host/HostBuilding.h"
#include "platform/tectaro/Building.h"
#include "platform/tectaro/TectaroHostRef.h"

namespace pluvarine {

// The building object the host hands to the macro.
class TectaroBuilding : public HostBuilding {
public:
    TectaroBuilding(TectaroHost* host, std::shared_ptr<const Building> building);
    std::shared_ptr<HostRoofList> GetRoofList() override;
    const std::shared_ptr<const Building>& model() const { return m_building; }

private:
    TectaroHostRef m_host;
    std::shared_ptr<const Building> m_building;
};

} // namespace pluvarine
