#include "platform/tectaro/TectaroElement.h"

#include "platform/tectaro/TectaroHost.h"

namespace pluvarine {

TectaroElement::TectaroElement(TectaroHost* host, std::shared_ptr<PlacedElement> element)
    : m_host(host), m_element(std::move(element)) {}

void TectaroElement::PrepareElement(bool flag) {
    m_element->prepared = flag;
}

std::int32_t TectaroElement::SetElementMatrix(const PlacementMatrix& matrix) {
    m_element->matrix = matrix;
    m_host.host().elementMoved(m_element);
    return 0;
}

std::int32_t TectaroElement::CommitElement(bool) {
    m_host.host().commitElement(m_element);
    return 0;
}

} // namespace pluvarine
