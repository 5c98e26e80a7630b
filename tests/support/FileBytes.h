#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace pluvarine::test {

inline std::string readFile(const std::filesystem::path& path) {
    return {std::istreambuf_iterator<char>(std::ifstream(path, std::ios::binary).rdbuf()), {}};
}

// Creates the folders on the way.
inline void writeFile(const std::filesystem::path& path, const std::string& bytes) {
    if (path.has_parent_path()) {
        std::filesystem::create_directories(path.parent_path());
    }
    std::ofstream(path, std::ios::binary) << bytes;
}

} // namespace pluvarine::test
