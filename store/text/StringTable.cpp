#include "store/text/StringTable.h"

#include "platform/system/SystemLocale.h"

#include <QByteArray>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <set>
#include <stdexcept>

// The resource lives in a static library: nothing references it, so the linker would drop it
// unless it is registered explicitly (outside any namespace, as the macro requires).
static void initTextResource() {
    Q_INIT_RESOURCE(pluvarine_text);
}

namespace pluvarine {

namespace {

constexpr int kEnglishUnitedStates = 1033;

[[noreturn]] void malformed(const std::string& why) {
    throw std::runtime_error("string table: " + why);
}

} // namespace

StringTable::StringTable(std::string_view json) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(
        QByteArray(json.data(), static_cast<qsizetype>(json.size())), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        malformed(error.errorString().toStdString());
    }
    const QJsonObject root = document.object();

    std::map<int, int> sharing; // LCID -> LCID whose texts it has
    for (const QJsonValue value : root.value("languages").toArray()) {
        const QJsonObject language = value.toObject();
        const int lcid = language.value("lcid").toInt();
        if (lcid <= 0 || language.value("language").toString().isEmpty()) {
            malformed("a language without lcid or language code");
        }
        m_languages.push_back({lcid, language.value("language").toString().toLower().toStdString(),
                               language.value("region").toString().toUpper().toStdString()});
        m_texts[lcid];
        if (language.contains("textsOf")) {
            sharing[lcid] = language.value("textsOf").toInt();
        }
    }
    if (m_languages.empty()) {
        malformed("no languages");
    }

    for (const QJsonValue value : root.value("texts").toArray()) {
        const QJsonObject entry = value.toObject();
        const int id = entry.value("id").toInt(-1);
        if (id < 0 || id > 0xFFFF) {
            malformed("an entry without a 16-bit id");
        }
        for (auto field = entry.begin(); field != entry.end(); ++field) {
            bool isLcid = false;
            const int lcid = field.key().toInt(&isLcid);
            if (!isLcid) {
                continue; // "id", "use"
            }
            if (!hasLanguage(lcid) || !field.value().isString()) {
                malformed("text " + std::to_string(id) + " for an unknown language");
            }
            m_texts[lcid][id] = field.value().toString().toStdString();
        }
    }
    for (const auto& [lcid, source] : sharing) {
        if (!hasLanguage(source)) {
            malformed("language " + std::to_string(lcid) + " shares an unknown language");
        }
        m_texts[lcid] = m_texts[source];
    }
}

const StringTable& StringTable::builtIn() {
    static const StringTable table = [] {
        initTextResource();
        QFile file(":/pluvarine/text/strings.json");
        if (!file.open(QIODevice::ReadOnly)) {
            malformed("the built-in table is missing");
        }
        const QByteArray data = file.readAll();
        return StringTable(std::string_view(data.constData(), static_cast<size_t>(data.size())));
    }();
    return table;
}

const std::string* StringTable::find(int lcid, int id) const {
    const auto language = m_texts.find(lcid);
    if (language == m_texts.end()) {
        return nullptr;
    }
    const auto text = language->second.find(id);
    return text == language->second.end() ? nullptr : &text->second;
}

bool StringTable::hasLanguage(int lcid) const {
    return m_texts.count(lcid) != 0;
}

std::vector<int> StringTable::languages() const {
    std::vector<int> result;
    for (const Language& language : m_languages) {
        result.push_back(language.lcid);
    }
    return result;
}

std::vector<int> StringTable::ids() const {
    std::set<int> all;
    for (const auto& [lcid, texts] : m_texts) {
        for (const auto& [id, text] : texts) {
            all.insert(id);
        }
    }
    return {all.begin(), all.end()};
}

int StringTable::languageFor(const std::vector<std::string>& uiLanguages) const {
    for (const std::string& tag : uiLanguages) {
        const std::optional<LocaleName> name = parseLocaleName(tag);
        if (!name) {
            continue;
        }
        const Language* baseMatch = nullptr;
        for (const Language& language : m_languages) {
            if (language.language != name->language) {
                continue;
            }
            if (!language.region.empty() && language.region == name->region) {
                return language.lcid;
            }
            if (language.region.empty() && baseMatch == nullptr) {
                baseMatch = &language;
            }
        }
        if (baseMatch != nullptr) {
            return baseMatch->lcid;
        }
    }
    return kEnglishUnitedStates;
}

} // namespace pluvarine
