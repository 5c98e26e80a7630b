#pragma once

#include "CallLog.h"
#include "platform/system/HelpViewer.h"

namespace pluvarine::test {

// The help viewer, recorded in the shared log.
class FakeHelp : public HelpViewer {
public:
    explicit FakeHelp(CallLog& log) : m_log(log) {}
    void HtmlHelp(const std::string& fileAndTopic) override {
        m_log.call("HtmlHelp", fileAndTopic);
    }

private:
    CallLog& m_log;
};

} // namespace pluvarine::test
