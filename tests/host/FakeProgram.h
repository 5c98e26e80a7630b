#pragma once

#include "CallLog.h"
#include "platform/system/ProgramControl.h"

namespace pluvarine::test {

// The end of the program, recorded in the shared log.
class FakeProgram : public ProgramControl {
public:
    explicit FakeProgram(CallLog& log) : m_log(log) {}
    void endProgram() override {
        m_log.call("endProgram");
        m_ended = true;
    }
    bool hasEnded() const override { return m_ended; }

private:
    CallLog& m_log;
    bool m_ended = false;
};

} // namespace pluvarine::test
