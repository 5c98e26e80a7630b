#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace pluvarine {

// Progress of a long operation (packing and unpacking the project archive). The host link
// forwards it to the host's progress display; the command line prints it.
class ProgressSink {
public:
    virtual ~ProgressSink() = default;
    virtual void ShowProgress(const std::string& text, std::int32_t percentage) = 0;
    virtual void EndProgress() = 0;
};

// Lets pending user-interface and host events run (called after every file of an archive).
using EventPump = std::function<void()>;

} // namespace pluvarine
