#pragma once

#include "base/RuntimeError.h"

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <type_traits>

namespace pluvarine {

// Records every operation the macro calls on the host's objects and every event the host
// raises, with arguments and results, as JSON entries:
//   {"kind": "call", "object": "RoofList", "op": "FindRoofAt", "args": [...], "result": ...}
//   {"kind": "call", ..., "error": {"number": 1002, "description": "..."}}
//   {"kind": "event", "event": "exe_SaveStart", "member": 14, "args": [...]}
//   {"kind": "return", "event": "exe_SaveStart", "result": {"numChunksToSave": 1}}
// Without a sink nothing is recorded.
class TectaroJournal {
public:
    using Sink = std::function<void(const nlohmann::json& entry)>;

    void setSink(Sink sink) { m_sink = std::move(sink); }
    bool enabled() const { return static_cast<bool>(m_sink); }

    template <typename Body>
    auto call(const char* object, const char* op, nlohmann::json args, Body&& body)
        -> decltype(body()) {
        using Result = decltype(body());
        if (!enabled()) {
            return body();
        }
        nlohmann::json entry = {
            {"kind", "call"}, {"object", object}, {"op", op}, {"args", std::move(args)}};
        try {
            if constexpr (std::is_void_v<Result>) {
                body();
                m_sink(entry);
            } else {
                Result result = body();
                entry["result"] = describe(result);
                m_sink(entry);
                return result;
            }
        } catch (const RuntimeError& error) {
            entry["error"] = {{"number", error.number()}, {"description", error.description()}};
            m_sink(entry);
            throw;
        }
    }

    void event(const char* name, int member, nlohmann::json args) const {
        if (enabled()) {
            m_sink({{"kind", "event"},
                    {"event", name},
                    {"member", member},
                    {"args", std::move(args)}});
        }
    }

    // What an event handler left in a by-reference parameter.
    void returned(const char* name, nlohmann::json result) const {
        if (enabled()) {
            m_sink({{"kind", "return"}, {"event", name}, {"result", std::move(result)}});
        }
    }

private:
    template <typename T> static nlohmann::json describe(const T& value) {
        if constexpr (std::is_arithmetic_v<T> || std::is_same_v<T, std::string>) {
            return value;
        } else if constexpr (requires { value.get(); }) {
            return value ? nlohmann::json("object") : nlohmann::json(nullptr);
        } else {
            return nullptr;
        }
    }

    Sink m_sink;
};

} // namespace pluvarine
