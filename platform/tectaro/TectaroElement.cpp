#include "platform/tectaro/TectaroElement.h"

#include "platform/tectaro/TectaroHost.h"

namespace pluvarine {

TectaroElement::TectaroElement(TectaroHost* host, std::shared_ptr<PlacedElement> element)
    : m_host(host), m_element(std::move(element)) {}

void TectaroElement::PrepareElement(bool flag) {
    m_host.journal().call("Element", "PrepareElement", nlohmann::json::array({flag}),
                          [&]() { m_element->prepared = flag; });
}

std::int32_t TectaroElement::SetElementMatrix(const PlacementMatrix& matrix) {
    nlohmann::json values = nlohmann::json::array();
    for (float value : matrix.values) {
        values.push_back(value);
    }
    return m_host.journal().call("Element", "SetElementMatrix", nlohmann::json::array({values}),
                                 [&]() {
                                     m_element->matrix = matrix;
                                     m_host.host().elementMoved(m_element);
                                     return std::int32_t{0};
                                 });
}

std::int32_t TectaroElement::CommitElement(bool flag) {
    return m_host.journal().call("Element", "CommitElement", nlohmann::json::array({flag}), [&]() {
        m_host.host().commitElement(m_element);
        return std::int32_t{0};
    });
}

} // namespace pluvarine
