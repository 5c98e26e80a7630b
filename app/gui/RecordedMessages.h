#pragma once

#include "host/HostJournal.h"
#include "platform/system/UserMessages.h"
#include "platform/system/UserQuestions.h"

#include <string>
#include <vector>

namespace pluvarine {

// Message boxes of a scripted session: nothing waits for a button, so the script goes on. Each
// message and question is kept, printed on standard error and written to the journal when there
// is one. A question gets the answer the script's step gave (setAnswer), else No.
class RecordedMessages : public UserMessages, public UserQuestions {
public:
    explicit RecordedMessages(HostJournal* journal) : m_journal(journal) {}

    void showMessage(const std::string& text, Icon icon = Icon::None) override;
    bool askYesNo(const std::string& text) override;
    void setAnswer(bool yes) { m_answer = yes; }

    // The texts of the messages and questions, in order.
    const std::vector<std::string>& messages() const { return m_messages; }

private:
    HostJournal* m_journal;
    std::vector<std::string> m_messages;
    bool m_answer = false;
};

} // namespace pluvarine
