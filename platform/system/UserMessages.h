#pragma once

#include <string>

namespace pluvarine {

// Plain message boxes with one OK button. The GUI shows a modal box; tests record the texts.
class UserMessages {
public:
    enum class Icon { None, Critical };
    virtual ~UserMessages() = default;
    virtual void showMessage(const std::string& text, Icon icon = Icon::None) = 0;
};

} // namespace pluvarine
