#include "store/text/LoadText.h"

#include "platform/system/SystemLocale.h"
#include "store/text/StringTable.h"

#include <QLocale>
#include <QStringList>
#include <QtGlobal>
#include <atomic>

namespace pluvarine {

namespace {

std::atomic<int> g_activeLanguage{0}; // 0: not chosen yet

int systemTextLanguage() {
    std::vector<std::string> uiLanguages;
    for (const QString& language : QLocale::system().uiLanguages()) {
        uiLanguages.push_back(language.toStdString());
    }
    return textLanguageFor(uiLanguages);
}

} // namespace

std::string LoadText(int id) {
    const int lcid = activeTextLanguage();
    if (const std::string* text = StringTable::builtIn().find(lcid, id)) {
        return *text;
    }
    qWarning("No text with id %d in language %d", id, lcid);
    return {};
}

std::string LoadText(int id, int lcid) {
    const std::string* text = StringTable::builtIn().find(lcid, id);
    return text != nullptr ? *text : std::string();
}

int activeTextLanguage() {
    int active = g_activeLanguage.load();
    if (active == 0) {
        int unset = 0;
        g_activeLanguage.compare_exchange_strong(unset, systemTextLanguage());
        active = g_activeLanguage.load();
    }
    return active;
}

int setActiveTextLanguage(int lcid) {
    const StringTable& table = StringTable::builtIn();
    int chosen = TextLanguage::EnglishUnitedStates;
    if (table.hasLanguage(lcid)) {
        chosen = lcid;
    } else if (const std::string name = localeNameForLcid(static_cast<Lcid>(lcid)); !name.empty()) {
        chosen = table.languageFor({name});
    }
    g_activeLanguage = chosen;
    return chosen;
}

int setActiveTextLanguage(std::string_view languageTag) {
    const int chosen = textLanguageFor({std::string(languageTag)});
    g_activeLanguage = chosen;
    return chosen;
}

int textLanguageFor(const std::vector<std::string>& uiLanguages) {
    return StringTable::builtIn().languageFor(uiLanguages);
}

} // namespace pluvarine
