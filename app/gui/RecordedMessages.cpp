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

} // namespace pluvarine
