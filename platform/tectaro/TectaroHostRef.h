#pragma once

#include <QPointer>

namespace pluvarine {

class TectaroHost;

// What every object the host hands to the macro keeps of the host: a guarded pointer, so a
// call after the host has gone fails as a host error instead of touching freed memory.
class TectaroHostRef {
public:
    explicit TectaroHostRef(TectaroHost* host);
    // Throws RuntimeError (HostError) when the host has gone.
    TectaroHost& host() const;
    // The host, or nullptr when it has gone.
    TectaroHost* get() const;

private:
    QPointer<TectaroHost> m_host;
};

} // namespace pluvarine
