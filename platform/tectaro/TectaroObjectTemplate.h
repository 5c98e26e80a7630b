#pragma once

#include "host/HostObjectTemplate.h"
#include "platform/tectaro/ObjectFile.h"
#include "platform/tectaro/TectaroHostRef.h"

namespace pluvarine {

// An object file the host has loaded; elements are made from it.
class TectaroObjectTemplate : public HostObjectTemplate {
public:
    TectaroObjectTemplate(TectaroHost* host, ObjectFile object, std::string sourcePath);
    // A new element of the open project's building, not yet committed.
    std::shared_ptr<HostElement> CreateElement(void* parent, std::int32_t flags) override;

private:
    TectaroHostRef m_host;
    ObjectFile m_object;
    std::string m_sourcePath;
};

} // namespace pluvarine
