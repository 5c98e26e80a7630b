#include "store/text/LoadText.h"

#include "base/RuntimeError.h"
#include "store/text/LanguageM.h"
#include "store/text/StringTable.h"

#include <QLocale>
#include <cstdlib>
#include <gmock/gmock.h>
#include <set>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace pluvarine {
namespace {

using namespace TextLanguage;

// The lists as QLocale::system().uiLanguages() gives them for LANGUAGE / LC_MESSAGES / LANG.
TEST(TextLanguageFor, PicksTheFirstLanguageWithATable) {
    // clang-format off
    const std::pair<std::vector<std::string>, int> choices[] = {
        {{"de-AT", "de-Latn-AT"}, German}, {{"de-CH", "de-Latn-CH"}, German},
        {{"de", "de-Latn-DE", "de-DE"}, German}, {{"en-GB", "en-Latn-GB"}, EnglishUnitedKingdom},
        {{"en-US", "en-Latn-US", "en"}, EnglishUnitedStates}, {{"en-AU"}, EnglishUnitedStates},
        {{"ja", "ja-Jpan-JP", "ja-JP"}, EnglishUnitedStates},
        {{"ja", "ja-Jpan-JP", "ja-JP", "de", "de-Latn-DE"}, German},
        {{"hr", "hr-Latn-HR", "hr-HR"}, Croatian}, {{"hr-BA", "hr-Latn-BA"}, Croatian},
        {{"fr-CA", "fr-Latn-CA"}, French}, {{"fr_BE.UTF-8"}, French},
        {{"pl-PL", "pl-Latn-PL", "pl"}, Polish}, {{"ru", "ru-Cyrl-RU", "ru-RU"}, Russian},
        {{"ru-UA"}, Russian}, {{"sr-Latn-RS", "sr-Latn"}, EnglishUnitedStates},
        {{"C"}, EnglishUnitedStates}, {{"", "x"}, EnglishUnitedStates}, {{}, EnglishUnitedStates}};
    // clang-format on
    for (const auto& [uiLanguages, expected] : choices)
        EXPECT_EQ(textLanguageFor(uiLanguages), expected) << ::testing::PrintToString(uiLanguages);
}

// By identifier: the language's own table, else its base language's, else American English; by
// tag: as the first choice of a list. Then the language's texts; the language is put back.
TEST(ActiveLanguage, SetByIdentifierOrTag) {
    const int saved = activeTextLanguage();
    // clang-format off
    const std::tuple<int, int, const char*> byIdentifier[] = {
        {1031, German, "Pluvarine"}, {0x0C07, German, "Pluvarine"}, {0x0807, German, "Pluvarine"},
        {1033, EnglishUnitedStates, "downpipes"}, {2057, EnglishUnitedKingdom, "downpipes"},
        {0x0C09, EnglishUnitedStates, "downpipes"}, {0x0411, EnglishUnitedStates, "downpipes"},
        {0x0C0C, French, "Tuyaux de descente"}, {1045, Polish, "Rury spustowe"},
        {0x0819, Russian, "Водосточная труба"}, {0x101A, Croatian, "Olučne cijevi"},
        {0x241A, EnglishUnitedStates, "downpipes"}, {0, EnglishUnitedStates, "downpipes"},
        {-5, EnglishUnitedStates, "downpipes"}, {99999, EnglishUnitedStates, "downpipes"}};
    const std::tuple<const char*, int, int, const char*> byTag[] = {
        {"de_AT", German, 8002, "Makros"}, {"en_GB", EnglishUnitedKingdom, 112, "downpipes"},
        {"ja", EnglishUnitedStates, 8002, "Macros"}, {"ru", Russian, 8001, "Справка"},
        {"hr", Croatian, 8002, "Macros"}};
    // clang-format on
    for (const auto& [lcid, expected, title] : byIdentifier) {
        EXPECT_EQ(setActiveTextLanguage(lcid), expected) << lcid;
        EXPECT_EQ(activeTextLanguage(), expected) << lcid;
        EXPECT_EQ(LoadText(112), title) << lcid;
    }
    for (const auto& [tag, expected, id, text] : byTag) {
        EXPECT_EQ(setActiveTextLanguage(tag), expected) << tag;
        EXPECT_EQ(LoadText(id), text) << tag;
    }
    setActiveTextLanguage(saved);
}

// Unless set, the language follows the user's interface languages. The ctest cases of this
// folder run this test under chosen LANGUAGE / LC_MESSAGES / LANG values and name the language
// they expect in PLUVARINE_EXPECTED_TEXT_LANGUAGE; without it the test checks the rule only.
TEST(SystemTextLanguage, FollowsTheInterfaceLanguages) {
    std::vector<std::string> uiLanguages;
    for (const QString& language : QLocale::system().uiLanguages())
        uiLanguages.push_back(language.toStdString());
    EXPECT_EQ(activeTextLanguage(), textLanguageFor(uiLanguages));
    if (const char* expected = std::getenv("PLUVARINE_EXPECTED_TEXT_LANGUAGE")) {
        EXPECT_EQ(activeTextLanguage(), std::atoi(expected));
    }
}

// The system default locale comes from LC_ALL, then LANG; each row sets LC_ALL, which is
// restored at the end. GetLocaleValue(9) gives the same code. (The identifiers: LocaleId.)
TEST(SystemLanguage, IsTheDefaultLanguageIdentifierInLowercaseHex) {
    // An empty LC_ALL counts as unset.
    const std::string saved = std::getenv("LC_ALL") ? std::getenv("LC_ALL") : "";
    // clang-format off
    const std::pair<const char*, const char*> rows[] = {
        {"de_DE.UTF-8", "0407"}, {"hr_BA.UTF-8", "101a"}, {"de_AT.UTF-8", "0c07"}, {"C", "0409"}};
    // clang-format on
    for (const auto& [locale, code] : rows) {
        setenv("LC_ALL", locale, 1);
        EXPECT_EQ(GetLocaleValue(9), code) << locale;
        ReadSystemLanguage();
        EXPECT_EQ(systemLanguageCode(), code) << locale;
    }
    setenv("LC_ALL", saved.c_str(), 1);
    // Any other value type is an invalid procedure call.
    EXPECT_THAT([] { GetLocaleValue(2); },
                ::testing::Throws<RuntimeError>(::testing::Property(
                    &RuntimeError::number, RuntimeError::InvalidProcedureCall)));
}

const std::vector<int> kIds = {
    112,  113,  114,  115,  116,  117,  118,  119,  120,  121,  122,  123,  124,  125,  126,  127,
    128,  129,  130,  131,  132,  133,  1000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 2002,
    2003, 2004, 4000, 4001, 5000, 5001, 5002, 5003, 5004, 5005, 5006, 6000, 6001, 8000, 8001, 8002,
    9000, 9001, 9002, 9003, 9004, 9005, 9006, 9007, 9008, 9009, 9010, 9011, 9012, 9013, 9014, 9015,
    9020, 9021, 9022, 9023, 9024, 9025, 9026, 9027, 9030, 9031, 9032, 9033};

const std::vector<int> kLanguages = {1033, 2057, 1031, 1036, 1045, 1049, 1050};

// Every text non-empty; British English the American texts; blanks at either end belong to the
// text: exactly these texts have one, a single trailing blank (Polish 1002 repeats 114).
TEST(StringTable, EveryLanguageHasExactlyEveryId) {
    const StringTable& table = StringTable::builtIn();
    EXPECT_THAT(table.languages(), ::testing::UnorderedElementsAreArray(kLanguages));
    EXPECT_EQ(table.ids(), kIds);
    std::set<std::pair<int, int>> blanks;
    for (const int lcid : kLanguages)
        for (const int id : kIds) {
            SCOPED_TRACE("language " + std::to_string(lcid) + ", id " + std::to_string(id));
            const std::string text = LoadText(id, lcid);
            ASSERT_TRUE(table.find(lcid, id) && !text.empty());
            if (text.front() == ' ' || text.back() == ' ') {
                blanks.insert({lcid, id});
                EXPECT_TRUE(text.back() == ' ' && text[text.size() - 2] != ' ');
            }
            EXPECT_EQ(text, lcid == 2057 ? LoadText(id, 1033) : text);
        }
    // clang-format off
    EXPECT_EQ(blanks, (std::set<std::pair<int, int>>{
        {1045, 114}, {1045, 125}, {1045, 1002}, {1045, 1004}, {1045, 2004}, {1049, 8000}}));
    // clang-format on
}

// The last two: an unknown id and an unknown language have no text, nor has an unknown id in
// the active language's table, and the next lookup goes on.
TEST(StringTable, TextsAreExact) {
    // clang-format off
    const std::tuple<int, int, const char*> samples[] = {
        {1049, 8002, "Makros"}, {1033, 8002, "Macros"}, {1036, 8002, "Macros"},
        {1045, 8002, "Macros"}, {1050, 8002, "Macros"}, {1033, 117, "plastic-grey"},
        {1031, 117, "Kunstoff-Grau"}, {1033, 118, "cooper"}, {1033, 2003, "continous downpipe"},
        {1033, 2002, "Do you like to choose a continous or a bended downpipe construction?"},
        {1031, 8001, "Hilfe"}, {1033, 8001, "Help"}, {1036, 8001, "Aide"}, {1045, 8001, "Help"},
        {1045, 114, "Nawis dachowy "}, {1045, 2004, "Konstrukcja zakrzywiona "},
        {1049, 8000, "Кликните по внешней стороне стены "}, {1036, 4000, "Créer l'archive..."},
        {1045, 4000, "Tworzenie archiwum…"}, {1031, 4001, "Entpacke Archiv..."},
        {1031, 1008, "Schließen"}, {1031, 1007, "Änderungen Übernehmen"}, {1050, 121, "Žlijeb"},
        {1036, 2002, "Voulez-vous une construction droite ou coudée ?"},
        {1045, 1001, "Szczegóły z Tectaroa"}, {1049, 5001, "Tectaro не запускается!"},
        {1033, 5005, "Downpipe macro"}, {1031, 6001, "Höhe Fallrohr H"},
        {1033, 9999, ""}, {0, 112, ""}};
    // clang-format on
    for (const auto& [lcid, id, text] : samples)
        EXPECT_EQ(LoadText(id, lcid), text) << lcid << "/" << id;
    EXPECT_EQ(LoadText(-1) + LoadText(65535), "");
    EXPECT_EQ(LoadText(112), LoadText(112, activeTextLanguage()));
}

TEST(StringTable, ReadsADocumentWithSharedTextsAndRefusesMalformedOnes) {
    const StringTable table(R"({"languages": [{"lcid": 1033, "language": "en"},
                                              {"lcid": 2057, "language": "en", "region": "gb",
                                               "textsOf": 1033},
                                              {"lcid": 1031, "language": "DE"}],
                               "texts": [{"id": 7, "use": "x", "1033": "a ", "1031": "b"}]})");
    EXPECT_THAT(table.find(2057, 7), ::testing::Pointee(std::string("a ")));
    EXPECT_THAT(table.find(1031, 7), ::testing::Pointee(std::string("b")));
    EXPECT_EQ(table.languageFor({"en-GB"}), 2057);
    EXPECT_EQ(table.languageFor({"de-CH"}), 1031);
    for (const char* json :
         {"", "[]", "{", R"({"languages": []})",
          R"({"languages": [{"lcid": 0, "language": "en"}]})", R"({"languages": [{"lcid": 1033}]})",
          R"({"languages": [{"lcid": 1033, "language": "en"}], "texts": [{"1033": "no id"}]})",
          R"({"languages": [{"lcid": 1033, "language": "en"}], "texts": [{"id": 70000}]})",
          R"({"languages": [{"lcid": 1033, "language": "en"}], "texts": [{"id": 1, "1031": "x"}]})",
          R"({"languages": [{"lcid": 1033, "language": "en"}], "texts": [{"id": 1, "1033": 5}]})",
          R"({"languages": [{"lcid": 1033, "language": "en", "textsOf": 1}]})"})
        EXPECT_THROW(StringTable{json}, std::runtime_error) << json;
}

} // namespace
} // namespace pluvarine
