#include "app/cli/ArchiveProgress.h"

namespace pluvarine {

void ArchiveProgress::ShowProgress(const std::string& text, std::int32_t percentage) {
    if (m_terminal) {
        m_out << '\r' << text << ' ' << percentage << '%' << std::flush;
        m_shown = true;
    }
}

void ArchiveProgress::EndProgress() {
    if (m_shown) {
        m_out << '\n' << std::flush;
        m_shown = false;
    }
}

} // namespace pluvarine
