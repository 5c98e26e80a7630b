#include "platform/viewer/MaterialCache.h"

#include "platform/viewer/MaterialFile.h"

namespace pluvarine {

std::optional<SurfaceLook> MaterialCache::look(const std::string& path) {
    std::error_code ec;
    const auto time = std::filesystem::last_write_time(path, ec);
    if (ec) {
        m_entries.erase(path);
        return std::nullopt;
    }
    const auto size = std::filesystem::file_size(path, ec);
    if (ec) {
        m_entries.erase(path);
        return std::nullopt;
    }
    auto& entry = m_entries[path];
    if (!entry.look || entry.time != time || entry.size != size) {
        entry = {time, size, MaterialFile::read(path)};
    }
    return entry.look;
}

} // namespace pluvarine
