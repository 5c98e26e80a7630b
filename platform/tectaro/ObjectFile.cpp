#include "platform/tectaro/ObjectFile.h"

#include "base/RuntimeError.h"
#include "platform/viewer/Box3.h"
#include "platform/viewer/GlbReader.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace pluvarine {

ObjectFile ObjectFile::read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw RuntimeError(RuntimeError::HostError, "cannot open the object file " + path);
    }
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return fromBytes(bytes.str(), std::filesystem::path(path).filename().string());
}

ObjectFile ObjectFile::fromBytes(std::string bytes, const std::string& name) {
    ObjectFile file;
    file.name = name;
    try {
        file.content = std::make_shared<const GlbContent>(GlbReader::readMemory(bytes, name));
    } catch (const RuntimeError& error) {
        // The reader speaks for the viewer; to the macro this is the host refusing the file.
        throw RuntimeError(RuntimeError::HostError, error.description());
    }
    file.spooled = std::make_shared<const SpooledBytes>(std::move(bytes));
    Box3 box;
    for (const GlbItem& item : file.content->items) {
        if (item.auxiliary || file.content->auxiliary || !item.mesh) {
            continue;
        }
        const std::vector<float>& p = item.mesh->positions;
        for (std::size_t i = 0; i + 2 < p.size(); i += 3) {
            box.add(item.transform.map({p[i], p[i + 1], p[i + 2]}));
        }
    }
    if (!box.isEmpty()) {
        file.boundsMin = QVector3D(box.min()[0], box.min()[1], box.min()[2]);
        file.boundsMax = QVector3D(box.max()[0], box.max()[1], box.max()[2]);
    }
    return file;
}

} // namespace pluvarine
