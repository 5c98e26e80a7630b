#pragma once

#include "platform/hostsocket/HostSocketClient.h"

#include <memory>
#include <string>

namespace pluvarine {

// What every proxy of a host object holds: the connection it came through and the host's handle
// for it. The connection lives as long as any of its objects.
class SocketObject {
public:
    SocketObject(std::shared_ptr<HostSocketClient> client, std::int64_t handle)
        : m_client(std::move(client)), m_handle(handle) {}

protected:
    nlohmann::json call(const std::string& op,
                        nlohmann::json args = nlohmann::json::object()) const {
        return m_client->call(op, std::move(args), m_handle);
    }
    const std::shared_ptr<HostSocketClient>& client() const { return m_client; }

private:
    std::shared_ptr<HostSocketClient> m_client;
    std::int64_t m_handle;
};

} // namespace pluvarine
