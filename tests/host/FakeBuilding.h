#pragma once

#include "CallLog.h"
#include "FakeRoofList.h"
#include "host/HostBuilding.h"

#include <memory>

namespace pluvarine::test {

class FakeBuilding : public HostBuilding {
public:
    FakeBuilding(CallLog& log, std::shared_ptr<FakeRoofList> roofs)
        : m_log(log), m_roofs(std::move(roofs)) {}

    std::shared_ptr<HostRoofList> GetRoofList() override {
        m_log.call("GetRoofList");
        return m_roofs;
    }

private:
    CallLog& m_log;
    std::shared_ptr<FakeRoofList> m_roofs;
};

} // namespace pluvarine::test
