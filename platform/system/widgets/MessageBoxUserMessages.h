#pragma once

#include "platform/system/UserMessages.h"

namespace pluvarine {

// Plain modal message boxes with one OK button, titled with the program's name and kept above
// the program's topmost windows.
class MessageBoxUserMessages : public UserMessages {
public:
    void showMessage(const std::string& text, Icon icon = Icon::None) override;
};

} // namespace pluvarine
