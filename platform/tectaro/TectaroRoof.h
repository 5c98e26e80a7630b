#pragma once

#include "host/HostRoof.h"
#include "platform/tectaro/Building.h"
#include "platform/tectaro/TectaroHostRef.h"

namespace pluvarine {

// One roof of the building, as the host hands it to the macro.
class TectaroRoof : public HostRoof {
public:
    TectaroRoof(TectaroHost* host, std::shared_ptr<const Building> building, int roof);
    std::shared_ptr<HostRoofData> GetRoofData() override;
    // Zero-based face and its height at the point; throws RuntimeError (HostError) when no
    // face of this roof lies there.
    std::int32_t FindRoofFaceAt(bool flag, float x, float y, float& height,
                                std::array<float, 6>& six, bool& ignored) override;

private:
    TectaroHostRef m_host;
    std::shared_ptr<const Building> m_building;
    int m_roof;
};

} // namespace pluvarine
