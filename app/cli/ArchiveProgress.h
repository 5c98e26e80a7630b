#pragma once

#include "store/ProgressSink.h"

#include <ostream>

namespace pluvarine {

// Shows the archive progress on one line of a terminal ("Creating archive... 38%"); silent when
// the stream is not a terminal, so redirected output stays clean.
class ArchiveProgress : public ProgressSink {
public:
    ArchiveProgress(std::ostream& out, bool isTerminal) : m_out(out), m_terminal(isTerminal) {}

    void ShowProgress(const std::string& text, std::int32_t percentage) override;
    void EndProgress() override;

private:
    std::ostream& m_out;
    bool m_terminal;
    bool m_shown = false;
};

} // namespace pluvarine
