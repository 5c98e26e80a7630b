#pragma once

#include "host/HostJournal.h"
#include "platform/system/UserMessages.h"

#include <string>
#include <vector>

namespace pluvarine {

// Message boxes of a scripted session: nothing waits for a button, so the script goes on. Each
// message is kept, printed on standard error and written to the journal when there is one.
class RecordedMessages : public UserMessages {
public:
    explicit RecordedMessages(HostJournal* journal) : m_journal(journal) {}

    void showMessage(const std::string& text, Icon icon = Icon::None) override;

    const std::vector<std::string>& messages() const { return m_messages; }

private:
    HostJournal* m_journal;
    std::vector<std::string> m_messages;
};

} // namespace pluvarine
