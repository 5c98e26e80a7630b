#pragma once

#include <string>
#include <vector>

namespace pluvarine {

// The files a working folder holds for a rebuild to find every part and material, relative to
// it ("main.v3o", "res/Fallrohr_100_500.v3o", "mat/Grau.ini", ...).
std::vector<std::string> workFolderFiles();

} // namespace pluvarine
