#include "platform/tectaro/TectaroRoofList.h"

#include "platform/tectaro/TectaroRoof.h"

namespace pluvarine {

TectaroRoofList::TectaroRoofList(TectaroHost* host, std::shared_ptr<const Building> building)
    : m_host(host), m_building(std::move(building)) {}

std::shared_ptr<HostRoof> TectaroRoofList::FindRoofAt(bool, float x, float y, std::int32_t& ignored,
                                                      std::array<float, 6>& /*six*/,
                                                      bool& ignoredFlag) {
    const int roof = m_building->roofAt(QPointF(x, y));
    ignored = roof;
    ignoredFlag = roof >= 0;
    if (roof < 0) {
        return nullptr;
    }
    return std::make_shared<TectaroRoof>(&m_host.host(), m_building, roof);
}

} // namespace pluvarine
