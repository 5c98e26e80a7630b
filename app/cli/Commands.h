#pragma once

#include <string>
#include <vector>

namespace pluvarine {

// Sub-commands of pluvarine-cli. Each gets the arguments after its name and returns the exit
// code: 0 on success, 2 with a one-line reason on standard error for any refusal.
int runCompose(const std::vector<std::string>& args);
int runArchive(const std::vector<std::string>& args);

} // namespace pluvarine
