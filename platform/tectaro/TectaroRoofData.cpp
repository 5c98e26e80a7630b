#include "platform/tectaro/TectaroRoofData.h"

#include "base/RuntimeError.h"

namespace pluvarine {

TectaroRoofData::TectaroRoofData(TectaroHost* host, std::shared_ptr<const Building> building,
                                 int roof)
    : m_host(host), m_building(std::move(building)), m_roof(roof) {}

const Roof& TectaroRoofData::roof() const {
    m_host.host(); // the data of a host that has gone answer nothing
    return m_building->roofs.at(static_cast<std::size_t>(m_roof));
}

const RoofFace& TectaroRoofData::face(std::int32_t number) const {
    const std::vector<RoofFace>& faces = roof().faces;
    if (number < 1 || static_cast<std::size_t>(number) > faces.size()) {
        throw RuntimeError(RuntimeError::HostError,
                           "the roof has no face " + std::to_string(number));
    }
    return faces[static_cast<std::size_t>(number - 1)];
}

double TectaroRoofData::GetRoofingThickness() {
    return roof().roofingThickness;
}

double TectaroRoofData::GetGutterWidth() {
    return roof().gutterWidth;
}

double TectaroRoofData::GetFaceOverhang(std::int32_t number, bool& ignored) {
    const double overhang = face(number).overhang;
    ignored = true;
    return overhang;
}

double TectaroRoofData::GetFacePitch(std::int32_t number) {
    return face(number).pitch;
}

double TectaroRoofData::GetFaceDirection(std::int32_t number) {
    return face(number).direction;
}

} // namespace pluvarine
