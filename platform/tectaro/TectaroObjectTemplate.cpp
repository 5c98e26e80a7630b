#include "platform/tectaro/TectaroObjectTemplate.h"

#include "platform/tectaro/TectaroElement.h"
#include "platform/tectaro/TectaroJournal.h"

namespace pluvarine {

TectaroObjectTemplate::TectaroObjectTemplate(TectaroHost* host, ObjectFile object,
                                             std::string sourcePath)
    : m_host(host), m_object(std::move(object)), m_sourcePath(std::move(sourcePath)) {}

std::shared_ptr<HostElement> TectaroObjectTemplate::CreateElement(void* parent,
                                                                  std::int32_t flags) {
    return m_host.journal().call(
        "ObjectTemplate", "CreateElement",
        nlohmann::json::array({parent ? nlohmann::json("object") : nlohmann::json(nullptr), flags}),
        [&]() {
            auto element = std::make_shared<PlacedElement>();
            element->object = m_object;
            element->sourcePath = m_sourcePath;
            return std::shared_ptr<HostElement>(
                std::make_shared<TectaroElement>(&m_host.host(), element));
        });
}

} // namespace pluvarine
