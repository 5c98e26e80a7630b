#pragma once

#include "host/HostElement.h"
#include "platform/tectaro/PlacedElement.h"
#include "platform/tectaro/TectaroHostRef.h"

#include <memory>

namespace pluvarine {

// A building element as the host hands it to the macro. It joins the open project's building
// when it is committed; a later matrix moves it.
class TectaroElement : public HostElement {
public:
    TectaroElement(TectaroHost* host, std::shared_ptr<PlacedElement> element);
    void PrepareElement(bool flag) override;
    std::int32_t SetElementMatrix(const PlacementMatrix& matrix) override;
    // Throws RuntimeError (HostError) when no project is open.
    std::int32_t CommitElement(bool flag) override;

    const std::shared_ptr<PlacedElement>& element() const { return m_element; }

private:
    TectaroHostRef m_host;
    std::shared_ptr<PlacedElement> m_element;
};

} // namespace pluvarine
