#pragma once

#include <cstdint>
#include <memory>

namespace pluvarine {

class HostElement;

// An object file loaded by the host, from which elements are created.
class HostObjectTemplate {
public:
    virtual ~HostObjectTemplate() = default;
    // parent: none (nullptr) in every use.
    virtual std::shared_ptr<HostElement> CreateElement(void* parent, std::int32_t flags) = 0;
};

} // namespace pluvarine
