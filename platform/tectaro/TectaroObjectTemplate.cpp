#include "platform/tectaro/TectaroObjectTemplate.h"

#include "platform/tectaro/TectaroElement.h"

namespace pluvarine {

TectaroObjectTemplate::TectaroObjectTemplate(TectaroHost* host, ObjectFile object,
                                             std::string sourcePath)
    : m_host(host), m_object(std::move(object)), m_sourcePath(std::move(sourcePath)) {}

std::shared_ptr<HostElement> TectaroObjectTemplate::CreateElement(void*, std::int32_t) {
    auto element = std::make_shared<PlacedElement>();
    element->object = m_object;
    element->sourcePath = m_sourcePath;
    return std::make_shared<TectaroElement>(&m_host.host(), element);
}

} // namespace pluvarine
