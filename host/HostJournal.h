#pragma once

#include "base/RuntimeError.h"
#include "host/HostPicture.h"
#include "host/PlacementMatrix.h"

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string_view>
#include <type_traits>

namespace pluvarine {

// The journal of a session: one JSON object per line for every host operation the macro
// called (with its arguments, its result or its error) and every event the host raised.
//   {"seq":3,"type":"call","object":"exe","op":"GetLevelAt","args":[1.5,2.0],"result":0.2}
//   {"seq":4,"type":"event","event":"exe_GotOneClick","args":[true,1.5,2.0,0]}
// Lines are flushed as they are written, so the journal is complete up to a crash.
class HostJournal {
public:
    explicit HostJournal(std::ostream& out) : m_out(out) {}

    void record(nlohmann::ordered_json entry);

    // Runs one operation of a host object and records it; an error is recorded and passed on.
    // `outs`, when given, adds the values the operation returned through its arguments.
    template <typename Operation>
    auto call(std::string_view object, std::string_view op, nlohmann::ordered_json args,
              Operation&& operation, const std::function<nlohmann::ordered_json()>& outs = {})
        -> decltype(operation()) {
        nlohmann::ordered_json entry{
            {"type", "call"}, {"object", object}, {"op", op}, {"args", args}};
        try {
            if constexpr (std::is_void_v<decltype(operation())>) {
                operation();
                record(std::move(entry));
            } else {
                auto result = operation();
                entry["result"] = value(result);
                if (outs) {
                    entry["outs"] = outs();
                }
                record(std::move(entry));
                return result;
            }
        } catch (const RuntimeError& error) {
            // Journaled, then the caller gives up its step as it would without the journal.
            entry["error"] = {{"number", error.number()}, {"description", error.description()}};
            record(std::move(entry));
            throw;
        }
    }

    // How values appear in the journal.
    template <typename T> static nlohmann::ordered_json value(const T& v) { return v; }
    template <typename T> static nlohmann::ordered_json value(const std::shared_ptr<T>& object) {
        return object ? nlohmann::ordered_json("object") : nlohmann::ordered_json(nullptr);
    }
    static nlohmann::ordered_json value(const HostPicture& picture);
    static nlohmann::ordered_json value(const PlacementMatrix& matrix);

private:
    std::ostream& m_out;
    long m_sequence = 0;
};

} // namespace pluvarine
