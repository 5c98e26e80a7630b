#pragma once

#include "platform/system/ProgramControl.h"

namespace pluvarine {

// Ends the program by leaving the application's event loop, also when the request comes
// before the loop has started (start-up failures).
class GuiProgramControl : public ProgramControl {
public:
    void endProgram() override;
    bool hasEnded() const override { return m_ended; }

private:
    bool m_ended = false;
};

} // namespace pluvarine
