#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace pluvarine {

// The program's texts in every language it speaks, read from a JSON document:
//   {"languages": [{"lcid": 1033, "language": "en", "region": "GB"?, "textsOf": 1033?}, ...],
//    "texts": [{"id": 112, "use": "...", "1033": "downpipes", "1031": "Pluvarine", ...}, ...]}
// A language with "textsOf" shares the texts of that language. The built-in table is a resource
// compiled into the program (store/text/strings.json).
class StringTable {
public:
    // Throws std::runtime_error when the document is not such a table.
    explicit StringTable(std::string_view json);

    static const StringTable& builtIn();

    // The text, or nullptr when the language or the id has none.
    const std::string* find(int lcid, int id) const;
    bool hasLanguage(int lcid) const;
    // Every language (LCID) in the order of the document.
    std::vector<int> languages() const;
    // Every id that any language has, ascending.
    std::vector<int> ids() const;

    // The language for a list of interface languages in order of preference ("de-AT", "en_GB",
    // "hr-Latn-BA"): the first entry whose language and region have a table of their own, or
    // whose base language has one; English (United States) when no entry has.
    int languageFor(const std::vector<std::string>& uiLanguages) const;

private:
    struct Language {
        int lcid;
        std::string language;
        std::string region;
    };

    std::vector<Language> m_languages;
    std::map<int, std::map<int, std::string>> m_texts; // LCID -> id -> text
};

} // namespace pluvarine
