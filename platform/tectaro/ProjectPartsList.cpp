#include "platform/tectaro/ProjectPartsList.h"

#include "platform/system/AtomicFile.h"
#include "store/text/LoadText.h"

namespace pluvarine {

namespace {

constexpr int kHeaderIds[] = {9001, 9002, 9003, 9004, 9005, 9006, 9007, 9008, 9009, 9010, 9011};
constexpr int kTotalText = 9012;
constexpr int kWarningText = 9013;

template <typename Number> std::string optionalNumber(const std::optional<Number>& value) {
    return value ? std::to_string(*value) : std::string();
}

std::string positive(std::int32_t value) {
    return value > 0 ? std::to_string(value) : std::string();
}

std::vector<std::string> rowCells(const std::string& downpipe, const PartsListRow& row) {
    return {downpipe,
            LoadText(row.textId),
            row.file,
            positive(row.diameter),
            positive(row.angle),
            positive(row.length),
            LoadText(row.materialTextId),
            std::to_string(row.count),
            optionalNumber(row.cutLength),
            optionalNumber(row.totalLength),
            row.warning ? LoadText(kWarningText) : std::string()};
}

std::string csvField(const std::string& cell) {
    if (cell.find_first_of(",\"\r\n") == std::string::npos) {
        return cell;
    }
    std::string quoted = "\"";
    for (const char c : cell) {
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    }
    return quoted + "\"";
}

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

ProjectPartsList ProjectPartsList::of(const TectaroProject& project) {
    ProjectPartsList result;
    std::vector<PartsList> lists;
    for (const auto& element : project.elements) {
        const auto& content = element->object.content;
        PartsList list = content ? PartsList::fromExtras(content->sceneExtras) : PartsList{};
        lists.push_back(list);
        result.downpipes.push_back({trimmed(element->object.name), std::move(list)});
    }
    result.totals = PartsList::totals(lists);
    return result;
}

std::vector<std::vector<std::string>> ProjectPartsList::cells() const {
    std::vector<std::vector<std::string>> table(1);
    for (const int id : kHeaderIds) {
        table.front().push_back(LoadText(id));
    }
    for (const Downpipe& downpipe : downpipes) {
        for (const PartsListRow& row : downpipe.list.rows) {
            table.push_back(rowCells(downpipe.element, row));
        }
    }
    for (const PartsListRow& total : totals) {
        table.push_back(rowCells(LoadText(kTotalText), total));
    }
    return table;
}

std::string ProjectPartsList::toCsv() const {
    std::string csv;
    for (const auto& row : cells()) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            csv += (i ? "," : "") + csvField(row[i]);
        }
        csv += "\r\n";
    }
    return csv;
}

bool ProjectPartsList::writeCsv(const std::string& path, std::string* error) const {
    const std::string csv = toCsv();
    AtomicFile file(path);
    if (file.create() && file.writeAll(csv.data(), csv.size()) &&
        file.commit(AtomicFile::Sync::None)) {
        return true;
    }
    if (error) {
        *error = "cannot write " + path + ": " + file.errorText();
    }
    return false;
}

} // namespace pluvarine
