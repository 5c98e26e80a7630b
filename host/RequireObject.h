#pragma once

#include "base/RuntimeError.h"

namespace pluvarine {

// The object a host-object variable holds; a variable that holds none fails the step the way
// a call on an unset object variable does.
template <typename Pointer> auto& requireObject(const Pointer& object) {
    if (!object) {
        throw RuntimeError(RuntimeError::ObjectNotSet,
                           "Object variable or With block variable not set");
    }
    return *object;
}

} // namespace pluvarine
