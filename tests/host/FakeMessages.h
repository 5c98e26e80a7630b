#pragma once

#include "CallLog.h"
#include "platform/system/UserMessages.h"

namespace pluvarine::test {

// Message boxes, recorded in the shared log.
class FakeMessages : public UserMessages {
public:
    explicit FakeMessages(CallLog& log) : m_log(log) {}
    void showMessage(const std::string& text, Icon icon) override {
        m_log.call(icon == Icon::Critical ? "criticalMessage" : "message", text);
    }

private:
    CallLog& m_log;
};

} // namespace pluvarine::test
