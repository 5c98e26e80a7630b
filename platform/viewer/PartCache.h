#pragma once

#include "platform/viewer/PartModel.h"

#include <map>
#include <memory>
#include <string>

namespace pluvarine {

// Part files by path: each is read from disk once per run, later requests share the result.
// A file that could not be read is not remembered, so it is tried again next time.
class PartCache {
public:
    // Throws RuntimeError (ViewerError) when the file is missing or unreadable.
    std::shared_ptr<const PartModel> part(const std::string& path);

    // How many files were read from disk so far.
    int diskReads() const { return m_diskReads; }
    void clear() { m_parts.clear(); }

private:
    std::map<std::string, std::shared_ptr<const PartModel>, std::less<>> m_parts;
    int m_diskReads = 0;
};

} // namespace pluvarine
