#pragma once

#include "platform/tectaro/SpooledBytes.h"
#include "platform/viewer/GlbContent.h"

#include <QVector3D>
#include <memory>
#include <string>

namespace pluvarine {

// An object file as the host holds it: the file's bytes (a GLB as the viewer's export writes
// it; set aside until the project is saved, see SpooledBytes) and what the host reads from
// them. The bounding box covers the drawn geometry in the object file's frame; auxiliary
// objects (helpers the file marks as not drawn) are left out.
struct ObjectFile {
    std::string name;                            // the file name it was loaded from
    std::shared_ptr<const SpooledBytes> spooled; // the file's content, kept byte for byte
    std::shared_ptr<const GlbContent> content;
    QVector3D boundsMin;
    QVector3D boundsMax;

    // The file's content. Throws RuntimeError (HostError) when it cannot be read back.
    std::string bytes() const { return spooled ? spooled->read() : std::string(); }

    // Throw RuntimeError (HostError) when the file is missing or is not an object file.
    static ObjectFile read(const std::string& path);
    static ObjectFile fromBytes(std::string bytes, const std::string& name);
};

} // namespace pluvarine
