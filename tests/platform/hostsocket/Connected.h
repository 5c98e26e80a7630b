#pragma once

#include "FakePeer.h"
#include "base/RuntimeError.h"
#include "platform/hostsocket/HostSocketClient.h"

#include <gtest/gtest.h>
#include <memory>

namespace pluvarine::test {

// The macro's end of the protocol, connected to a scripted peer; problems are kept in order.
struct Connected {
    explicit Connected(FakePeer::Respond respond, int timeoutMs = 2000)
        : peer(std::move(respond)), client(std::make_shared<HostSocketClient>(timeoutMs)) {
        client->setProblemReporter([this](const std::string& p) { problems.push_back(p); });
        client->open(peer.path(), Json::object());
    }
    FakePeer peer;
    std::shared_ptr<HostSocketClient> client;
    std::vector<std::string> problems;
};

// The host error `work` throws, or "" when it succeeds.
inline std::string hostError(const std::function<void()>& work) {
    try {
        work();
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), RuntimeError::HostError);
        return error.description();
    }
    return "";
}

} // namespace pluvarine::test
