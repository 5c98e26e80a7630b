#pragma once

#include "platform/system/UserMessages.h"
#include "platform/system/UserQuestions.h"

namespace pluvarine {

// Plain modal message boxes with one OK button, and questions with Yes and No (No the default),
// titled with the program's name and kept above the program's topmost windows.
class MessageBoxUserMessages : public UserMessages, public UserQuestions {
public:
    void showMessage(const std::string& text, Icon icon = Icon::None) override;
    bool askYesNo(const std::string& text) override;
};

} // namespace pluvarine
