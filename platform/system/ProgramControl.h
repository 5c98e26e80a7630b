#pragma once

namespace pluvarine {

// Ends the program at once, without saving anything. The caller returns right after the call;
// the GUI leaves its event loop, tests record the request.
class ProgramControl {
public:
    virtual ~ProgramControl() = default;
    virtual void endProgram() = 0;
    virtual bool hasEnded() const = 0;
};

} // namespace pluvarine
