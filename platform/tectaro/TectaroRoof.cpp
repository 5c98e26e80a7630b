#include "platform/tectaro/TectaroRoof.h"

#include "base/RuntimeError.h"
#include "platform/tectaro/TectaroRoofData.h"

namespace pluvarine {

TectaroRoof::TectaroRoof(TectaroHost* host, std::shared_ptr<const Building> building, int roof)
    : m_host(host), m_building(std::move(building)), m_roof(roof) {}

std::shared_ptr<HostRoofData> TectaroRoof::GetRoofData() {
    return std::make_shared<TectaroRoofData>(&m_host.host(), m_building, m_roof);
}

std::int32_t TectaroRoof::FindRoofFaceAt(bool, float x, float y, float& height,
                                         std::array<float, 6>& /*six*/, bool& ignored) {
    m_host.host(); // a roof of a host that has gone answers nothing
    const Roof& roof = m_building->roofs.at(static_cast<std::size_t>(m_roof));
    const QPointF at(x, y);
    const int face = roof.faceAt(at);
    if (face < 0) {
        throw RuntimeError(RuntimeError::HostError, "no roof face at this point");
    }
    height = static_cast<float>(roof.faces[static_cast<std::size_t>(face)].heightAt(at));
    ignored = true;
    return face;
}

} // namespace pluvarine
