#include "app/cli/ComposeReport.h"

#include "assembly/PartsList.h"

#include <charconv>
#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

namespace pluvarine {

namespace {

const char* constructionName(Construction construction) {
    static const std::map<Construction, const char*> names{
        {Construction::None, "none"},     {Construction::Continuous, "continuous"},
        {Construction::Bend42, "bend42"}, {Construction::Bend72, "bend72"},
        {Construction::Kink42, "kink42"}, {Construction::Kink72, "kink72"}};
    return names.at(construction);
}

// The part's role, from the ids the record keeps; the dummy is kept in no field.
const char* roleOf(const DesignRecord& d, const SceneObject& object) {
    const std::pair<std::int32_t, const char*> kept[] = {{d.outletId, "outlet"},
                                                         {d.pipeId, "pipe"},
                                                         {d.offsetPipeId, "offsetPipe"},
                                                         {d.firstBendId, "firstBend"},
                                                         {d.secondBendId, "secondBend"},
                                                         {d.standpipeId, "standpipe"},
                                                         {d.capId, "cap"}};
    for (const auto& [id, role] : kept) {
        if (object.id == id) {
            return role;
        }
    }
    const bool clamp =
        d.clampCount > 0 && object.id <= d.lastClampId && object.id > d.lastClampId - d.clampCount;
    return clamp ? "clamp" : "dummy";
}

std::string quoted(const std::string& text) {
    // Replacement keeps a path with invalid UTF-8 printable instead of failing.
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

template <std::size_t N> std::string floats(const std::optional<std::array<float, N>>& values) {
    if (!values) {
        return "null";
    }
    std::string text = "[";
    for (std::size_t i = 0; i < N; ++i) {
        text += (i ? ", " : "") + shortestFloatText((*values)[i]);
    }
    return text + "]";
}

std::string valueText(const SceneValue& value) {
    return std::visit(
        [](const auto& v) -> std::string {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, float>) {
                return shortestFloatText(v);
            } else if constexpr (std::is_same_v<T, bool>) {
                return v ? "true" : "false";
            } else if constexpr (std::is_same_v<T, std::string>) {
                return quoted(v);
            } else {
                return std::to_string(v);
            }
        },
        value);
}

} // namespace

std::string shortestFloatText(float value) {
    if (!std::isfinite(value)) {
        return "null";
    }
    char buffer[32];
    const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return ec == std::errc() ? std::string(buffer, end) : "null";
}

std::string composeReport(const ComposeResult& result, bool withCalls) {
    std::ostringstream out;
    out << "{\n"
        << "  \"construction\": " << quoted(constructionName(result.construction)) << ",\n"
        << "  \"questionAsked\": " << (result.questionAsked ? "true" : "false") << ",\n"
        << "  \"clampCount\": " << result.design.clampCount << ",\n"
        << "  \"parts\": [";
    const auto& objects = result.scene.objects();
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const SceneObject& o = objects[i];
        const std::string file = o.partFile.substr(o.partFile.find_last_of('/') + 1);
        out << (i ? ",\n" : "\n") << "    {\"role\": " << quoted(roleOf(result.design, o))
            << ", \"file\": " << quoted(file) << ", \"id\": " << o.id
            << ", \"scale\": " << floats(o.scale) << ", \"position\": " << floats(o.position)
            << ", \"rotation\": " << floats(o.rotation)
            << ", \"material\": " << (o.material ? quoted(*o.material) : "null") << "}";
    }
    out << (objects.empty() ? "]" : "\n  ]");
    out << ",\n  \"partsList\": [";
    const PartsList list = PartsList::of(objects);
    for (std::size_t i = 0; i < list.rows.size(); ++i) {
        const PartsListRow& row = list.rows[i];
        out << (i ? ",\n" : "\n") << "    {\"article\": " << quoted(row.article)
            << ", \"file\": " << quoted(row.file) << ", \"diameter\": " << row.diameter
            << ", \"angle\": " << row.angle << ", \"length\": " << row.length
            << ", \"material\": " << quoted(row.material) << ", \"count\": " << row.count;
        if (row.cutLength) {
            out << ", \"cutLength\": " << *row.cutLength;
        }
        if (row.warning) {
            out << ", \"warning\": \"cutLengthNotPositive\"";
        }
        out << "}";
    }
    out << (list.rows.empty() ? "]" : "\n  ]");
    if (withCalls) {
        out << ",\n  \"calls\": [";
        const auto& calls = result.scene.calls();
        for (std::size_t i = 0; i < calls.size(); ++i) {
            const SceneCall& call = calls[i];
            out << (i ? ",\n" : "\n") << "    {\"member\": " << static_cast<int>(call.member)
                << ", \"op\": " << quoted(call.op) << ", \"args\": [";
            for (std::size_t a = 0; a < call.args.size(); ++a) {
                out << (a ? ", " : "") << valueText(call.args[a]);
            }
            out << "], \"result\": " << (call.result ? valueText(*call.result) : "null") << "}";
        }
        out << (calls.empty() ? "]" : "\n  ]");
    }
    out << "\n}\n";
    return out.str();
}

} // namespace pluvarine
