#pragma once

#include "platform/viewer/SurfaceLook.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace pluvarine {

// Material files by path. The material step applies the same file to every part of an
// assembly; a file is parsed again only when its time stamp or size changed.
class MaterialCache {
public:
    std::optional<SurfaceLook> look(const std::string& path);

private:
    struct Entry {
        std::filesystem::file_time_type time;
        std::uintmax_t size = 0;
        std::optional<SurfaceLook> look;
    };
    std::map<std::string, Entry, std::less<>> m_entries;
};

} // namespace pluvarine
