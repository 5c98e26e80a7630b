#pragma once

#include <string>

namespace pluvarine {

// Questions answered with Yes or No. The GUI asks with a modal box whose default is No, so a
// hasty Enter keeps what is there; scripted sessions and tests answer as they are told.
class UserQuestions {
public:
    virtual ~UserQuestions() = default;
    // True for Yes.
    virtual bool askYesNo(const std::string& text) = 0;
};

} // namespace pluvarine
