#pragma once

#include "assembly/RecordingScene.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvarine {

// A recording scene whose viewer fails where a test says: a call a fault rule picks throws
// RuntimeError(ViewerError) before it takes effect. Each rule adds to the ones already set.
class FaultyScene : public RecordingScene {
public:
    // `number` is the 1-based position of the call among all calls received.
    using FaultRule = std::function<bool(std::size_t number, const SceneCall& call)>;

    void addFault(FaultRule rule) { m_faults.push_back(std::move(rule)); }
    void failCall(std::size_t number) {
        addFault([number](std::size_t n, const SceneCall&) { return n == number; });
    }
    void failOperation(SceneMember member) {
        addFault([member](std::size_t, const SceneCall& call) { return call.member == member; });
    }
    // Every AddPart of a path ending in that file name.
    void failAddPartOf(std::string_view fileName) {
        addFault([name = std::string(fileName)](std::size_t, const SceneCall& call) {
            return call.member == SceneMember::AddPart &&
                   std::get<std::string>(call.args.front()).ends_with(name);
        });
    }
    void clearFaults() { m_faults.clear(); }

protected:
    bool fails(std::size_t number, const SceneCall& call) const override {
        return std::ranges::any_of(m_faults,
                                   [&](const FaultRule& rule) { return rule(number, call); });
    }

private:
    std::vector<FaultRule> m_faults;
};

} // namespace pluvarine
