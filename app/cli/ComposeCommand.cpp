#include "app/cli/Commands.h"

#include <iostream>

namespace pluvarine {

int runCompose(const std::vector<std::string>&) {
    std::cerr << "pluvarine-cli: compose is not available yet\n";
    return 2;
}

} // namespace pluvarine
