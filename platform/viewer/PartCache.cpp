#include "platform/viewer/PartCache.h"

#include "platform/viewer/GlbReader.h"

namespace pluvarine {

std::shared_ptr<const PartModel> PartCache::part(const std::string& path) {
    if (const auto found = m_parts.find(path); found != m_parts.end()) {
        return found->second;
    }
    ++m_diskReads;
    auto model = PartModel::fromContent(path, GlbReader::readFile(path));
    m_parts.emplace(path, model);
    return model;
}

} // namespace pluvarine
