#pragma once

#include "CallLog.h"
#include "FakeRoof.h"
#include "host/HostRoofList.h"

#include <memory>
#include <vector>

namespace pluvarine::test {

// The roofs of a fake building, each covering a band of x values (overhang included); a point
// outside every band has no roof.
class FakeRoofList : public HostRoofList {
public:
    struct RoofArea {
        float xMin = 0;
        float xMax = 0;
        std::shared_ptr<FakeRoof> roof;
    };

    FakeRoofList(CallLog& log, std::vector<RoofArea> roofs)
        : m_log(log), m_roofs(std::move(roofs)) {}

    std::shared_ptr<HostRoof> FindRoofAt(bool flag, float x, float y, std::int32_t& ignored,
                                         std::array<float, 6>& six, bool& ignoredFlag) override {
        m_log.call("FindRoofAt", args(flag, x, y, FakeRoof::sixText(six)));
        ignored = 99;
        ignoredFlag = true;
        for (const RoofArea& area : m_roofs) {
            if (x >= area.xMin && x <= area.xMax) {
                return area.roof;
            }
        }
        return nullptr;
    }

private:
    CallLog& m_log;
    std::vector<RoofArea> m_roofs;
};

} // namespace pluvarine::test
