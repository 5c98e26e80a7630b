#include "RecordedMessages.h"

#include <iostream>

namespace pluvarine {

void RecordedMessages::showMessage(const std::string& text, Icon icon) {
    m_messages.push_back(text);
    std::cerr << "pluvarine: message: " << text << '\n';
    if (m_journal != nullptr) {
        m_journal->record({{"type", "message"},
                           {"text", text},
                           {"icon", icon == Icon::Critical ? "critical" : "none"}});
    }
}

bool RecordedMessages::askYesNo(const std::string& text) {
    m_messages.push_back(text);
    std::cerr << "pluvarine: question: " << text << (m_answer ? " Yes" : " No") << '\n';
    if (m_journal != nullptr) {
        m_journal->record({{"type", "question"}, {"text", text}, {"answer", m_answer}});
    }
    return m_answer;
}

} // namespace pluvarine
