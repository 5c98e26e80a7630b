#pragma once

#include "host/PlacementMatrix.h"

#include <cstdint>

namespace pluvarine {

// A building element created from an object template; placed by its matrix.
class HostElement {
public:
    virtual ~HostElement() = default;
    virtual void PrepareElement(bool flag) = 0;
    virtual std::int32_t SetElementMatrix(const PlacementMatrix& matrix) = 0;
    virtual std::int32_t CommitElement(bool flag) = 0;
};

} // namespace pluvarine
