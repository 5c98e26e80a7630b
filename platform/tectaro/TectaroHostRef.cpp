#include "platform/tectaro/TectaroHostRef.h"

#include "platform/tectaro/TectaroHost.h"

namespace pluvarine {

TectaroHostRef::TectaroHostRef(TectaroHost* host) : m_host(host) {}

TectaroHost& TectaroHostRef::host() const {
    if (!m_host) {
        throw RuntimeError(RuntimeError::HostError, "the host has ended");
    }
    return *m_host;
}

TectaroHost* TectaroHostRef::get() const {
    return m_host.data();
}

} // namespace pluvarine
