#pragma once

#include "host/HostConnection.h"
#include "store/ProgressSink.h"

#include <memory>

namespace pluvarine {

// Shows the progress of packing and unpacking the project archive in the host, through the
// main window's connection object. Without a connection the report fails like any host call.
class HostProgress : public ProgressSink {
public:
    explicit HostProgress(const std::unique_ptr<HostConnection>& exe) : m_exe(exe) {}

    void ShowProgress(const std::string& text, std::int32_t percentage) override;
    void EndProgress() override;

private:
    const std::unique_ptr<HostConnection>& m_exe;
};

} // namespace pluvarine
