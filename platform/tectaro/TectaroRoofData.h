#pragma once

#include "host/HostRoofData.h"
#include "platform/tectaro/Building.h"
#include "platform/tectaro/TectaroHostRef.h"

namespace pluvarine {

// The data of one roof through the roof-data interface: metres and degrees, faces counted
// from 1. A face number out of range throws RuntimeError (HostError).
class TectaroRoofData : public HostRoofData {
public:
    TectaroRoofData(TectaroHost* host, std::shared_ptr<const Building> building, int roof);
    double GetRoofingThickness() override;
    double GetGutterWidth() override;
    double GetFaceOverhang(std::int32_t face, bool& ignored) override;
    double GetFacePitch(std::int32_t face) override;
    double GetFaceDirection(std::int32_t face) override;

private:
    const Roof& roof() const;
    const RoofFace& face(std::int32_t number) const;

    TectaroHostRef m_host;
    std::shared_ptr<const Building> m_building;
    int m_roof;
};

} // namespace pluvarine
