#include "app/cli/Commands.h"

#include <iostream>

namespace pluvarine {

int runArchive(const std::vector<std::string>&) {
    std::cerr << "pluvarine-cli: archive is not available yet\n";
    return 2;
}

} // namespace pluvarine
