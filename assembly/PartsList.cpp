#include "assembly/PartsList.h"

#include "assembly/MaterialChoice.h"
#include "assembly/PartCatalogue.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <tuple>

namespace pluvarine {

namespace {

// An article of the catalogue: its key, name, nominal sizes and whether it is cut to length.
struct Article {
    const char* key;
    int textId;
    std::int32_t diameter, angle, length;
    bool cut;
};

const Article* articleOf(const std::string& file) {
    static const std::map<std::string, Article> articles{
        {parts::outlet, {"outlet", 9020, 100, 0, 218, false}},
        {parts::pipe, {"pipe", 9021, 100, 0, 500, true}},
        {parts::standpipe, {"standpipe", 9022, 125, 0, 500, true}},
        {parts::cap, {"cap", 9023, 100, 0, 0, false}},
        {parts::clamp, {"clamp", 9024, 100, 0, 0, false}},
        {parts::bend72Upper, {"bendLeft", 9025, 100, 72, 0, false}},
        {parts::bend72Lower, {"bendRight", 9026, 100, 72, 0, false}},
        {parts::bend42Upper, {"bendLeft", 9025, 100, 42, 0, false}},
        {parts::bend42Lower, {"bendRight", 9026, 100, 42, 0, false}},
        {parts::kink72, {"kink", 9027, 100, 72, 0, false}},
        {parts::kink42, {"kink", 9027, 100, 42, 0, false}},
    };
    const auto found = articles.find(file);
    return found == articles.end() ? nullptr : &found->second;
}

// The list's names of the materials in the order of the material list; text ids 9030 ...
constexpr const char* kMaterials[] = {"grey", "copper", "zinc", "alu"};
constexpr int kMaterialTextIds[] = {9030, 9031, 9032, 9033};

std::size_t materialIndex(const std::optional<std::string>& file) {
    const auto& entries = materialEntries();
    for (std::size_t i = 0; file && i < entries.size(); ++i) {
        if (file->ends_with(entries[i].file)) {
            return i;
        }
    }
    return 0; // no material applied: the parts' own look is grey plastic
}

// 500 mm stretched by the scale the scene was given, rounded half to even to whole mm. The
// scale reached the scene in single precision: first rounded to 0.01 mm, which recovers the
// length the construction computed (2813.5 stays a half, not 2813.49993).
std::int32_t cutLength(const std::optional<std::array<float, 3>>& scale) {
    const double stretched =
        scale ? std::round(static_cast<double>((*scale)[2]) * 500 * 100) / 100 : 500;
    const double mm = std::nearbyint(stretched);
    constexpr double lo = std::numeric_limits<std::int32_t>::min();
    constexpr double hi = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(mm, lo, hi));
}

const std::string kPrefix = "pluvarine.partsList.";

} // namespace

PartsList PartsList::of(const std::vector<SceneObject>& objects) {
    PartsList list;
    for (const SceneObject& object : objects) {
        const std::string file = object.partFile.substr(object.partFile.find_last_of('/') + 1);
        const Article* article = articleOf(file);
        if (!article) {
            continue;
        }
        const std::size_t material = materialIndex(object.material);
        std::optional<std::int32_t> cut;
        if (article->cut) {
            cut = cutLength(object.scale);
        }
        auto row = std::find_if(list.rows.begin(), list.rows.end(), [&](const PartsListRow& r) {
            return r.file == file && r.material == kMaterials[material] && r.cutLength == cut;
        });
        if (row == list.rows.end()) {
            row = list.rows.insert(list.rows.end(),
                                   PartsListRow{article->key, article->textId, file,
                                                article->diameter, article->angle, article->length,
                                                kMaterials[material], kMaterialTextIds[material], 0,
                                                cut, std::nullopt, cut && *cut <= 0});
        }
        ++row->count;
        if (cut) {
            row->totalLength = std::int64_t{*cut} * row->count;
        }
    }
    return list;
}

FlatExtras PartsList::toExtras() const {
    FlatExtras extras{{kPrefix + "count", static_cast<std::int32_t>(rows.size())}};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const PartsListRow& row = rows[i];
        const std::string key = kPrefix + std::to_string(i + 1) + ".";
        extras.insert(extras.end(), {{key + "article", row.article},
                                     {key + "textId", row.textId},
                                     {key + "file", row.file},
                                     {key + "diameter", row.diameter},
                                     {key + "angle", row.angle},
                                     {key + "length", row.length},
                                     {key + "material", row.material},
                                     {key + "materialTextId", row.materialTextId},
                                     {key + "count", row.count}});
        if (row.cutLength) {
            extras.emplace_back(key + "cutLength", *row.cutLength);
        }
        if (row.warning) {
            extras.emplace_back(key + "warning", std::string("cutLengthNotPositive"));
        }
    }
    return extras;
}

PartsList PartsList::fromExtras(const FlatExtras& extras) {
    const std::map<std::string, FlatValue> values(extras.begin(), extras.end());
    const auto number = [&](const std::string& key) -> std::optional<std::int32_t> {
        const auto found = values.find(key);
        if (found == values.end() || !std::holds_alternative<std::int32_t>(found->second)) {
            return std::nullopt;
        }
        return std::get<std::int32_t>(found->second);
    };
    const auto text = [&](const std::string& key) {
        const auto found = values.find(key);
        return found != values.end() && std::holds_alternative<std::string>(found->second)
                   ? std::get<std::string>(found->second)
                   : std::string();
    };
    PartsList list;
    // A count beyond the keys present cannot be right: no more rows than keys are read.
    const auto count = std::min<std::int64_t>(number(kPrefix + "count").value_or(0),
                                              static_cast<std::int64_t>(values.size()));
    for (std::int64_t i = 1; i <= count; ++i) {
        const std::string key = kPrefix + std::to_string(i) + ".";
        PartsListRow row{text(key + "article"),
                         number(key + "textId").value_or(0),
                         text(key + "file"),
                         number(key + "diameter").value_or(0),
                         number(key + "angle").value_or(0),
                         number(key + "length").value_or(0),
                         text(key + "material"),
                         number(key + "materialTextId").value_or(0),
                         number(key + "count").value_or(0),
                         number(key + "cutLength"),
                         std::nullopt,
                         !text(key + "warning").empty()};
        if (row.cutLength) {
            row.totalLength = std::int64_t{*row.cutLength} * row.count;
        }
        list.rows.push_back(std::move(row));
    }
    return list;
}

std::vector<PartsListRow> PartsList::totals(const std::vector<PartsList>& lists) {
    std::vector<PartsListRow> totals;
    for (const PartsList& list : lists) {
        for (const PartsListRow& row : list.rows) {
            auto total = std::find_if(totals.begin(), totals.end(), [&](const PartsListRow& t) {
                return t.file == row.file && t.material == row.material;
            });
            if (total == totals.end()) {
                total = totals.insert(totals.end(), row);
                total->count = 0;
                total->cutLength.reset();
                total->totalLength.reset();
                total->warning = false;
            }
            total->count += row.count;
            if (row.totalLength) {
                total->totalLength = total->totalLength.value_or(0) + *row.totalLength;
            }
            total->warning = total->warning || row.warning;
        }
    }
    return totals;
}

} // namespace pluvarine
