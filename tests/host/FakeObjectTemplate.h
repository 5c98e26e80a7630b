#pragma once

#include "CallLog.h"
#include "FakeElement.h"
#include "host/HostObjectTemplate.h"

#include <memory>
#include <vector>

namespace pluvarine::test {

// An object file loaded by the fake host; the elements it creates are collected by the host.
class FakeObjectTemplate : public HostObjectTemplate {
public:
    FakeObjectTemplate(CallLog& log, std::string path,
                       std::vector<std::shared_ptr<FakeElement>>& elements, bool createsNothing)
        : m_log(log), m_path(std::move(path)), m_elements(elements),
          m_createsNothing(createsNothing) {}

    std::shared_ptr<HostElement> CreateElement(void* parent, std::int32_t flags) override {
        m_log.call("CreateElement", args(parent == nullptr ? "none" : "parent", flags));
        if (m_createsNothing) {
            return nullptr;
        }
        m_elements.push_back(std::make_shared<FakeElement>(m_log, m_path));
        return m_elements.back();
    }

private:
    CallLog& m_log;
    std::string m_path;
    std::vector<std::shared_ptr<FakeElement>>& m_elements;
    bool m_createsNothing;
};

} // namespace pluvarine::test
