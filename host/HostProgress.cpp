#include "host/HostProgress.h"

#include "host/RequireObject.h"

namespace pluvarine {

void HostProgress::ShowProgress(const std::string& text, std::int32_t percentage) {
    requireObject(m_exe).ShowProgress(text, percentage);
}

void HostProgress::EndProgress() {
    requireObject(m_exe).EndProgress();
}

} // namespace pluvarine
