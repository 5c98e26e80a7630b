#include "platform/tectaro/TectaroBuilding.h"

#include "platform/tectaro/TectaroRoofList.h"

namespace pluvarine {

TectaroBuilding::TectaroBuilding(TectaroHost* host, std::shared_ptr<const Building> building)
    : m_host(host), m_building(std::move(building)) {}

std::shared_ptr<HostRoofList> TectaroBuilding::GetRoofList() {
    return std::make_shared<TectaroRoofList>(&m_host.host(), m_building);
}

} // namespace pluvarine
