#pragma once

#include "platform/system/UserMessages.h"

#include <string>

namespace pluvarine {

// Keeps the last message instead of showing a box: the command line reports it as its reason.
class ArchiveMessages : public UserMessages {
public:
    void showMessage(const std::string& text, Icon) override { m_last = text; }
    const std::string& last() const { return m_last; }

private:
    std::string m_last;
};

} // namespace pluvarine
