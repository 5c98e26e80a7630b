#include "ui/text/StringTable.h"

#include "ui/text/LoadText.h"

#include <gtest/gtest.h>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace pluvarine {
namespace {

const std::vector<int> kIds = {
    112,  113,  114,  115,  116,  117,  118,  119,  120,  121,  122,  123,  124,  125,  126,
    127,  128,  129,  130,  131,  132,  133,  1000, 1001, 1002, 1003, 1004, 1005, 1006, 1007,
    1008, 2002, 2003, 2004, 4000, 4001, 5000, 5001, 5002, 5005, 6000, 6001, 8000, 8001, 8002};

const std::vector<int> kLanguages = {1033, 2057, 1031, 1036, 1045, 1049, 1050};

TEST(StringTable, HasTheSevenLanguages) {
    const std::vector<int> languages = StringTable::builtIn().languages();
    EXPECT_EQ(std::set<int>(languages.begin(), languages.end()),
              std::set<int>(kLanguages.begin(), kLanguages.end()));
}

TEST(StringTable, EveryLanguageHasExactlyEveryId) {
    const StringTable& table = StringTable::builtIn();
    EXPECT_EQ(table.ids(), kIds);
    for (const int lcid : kLanguages) {
        for (const int id : kIds) {
            const std::string* text = table.find(lcid, id);
            ASSERT_NE(text, nullptr) << "language " << lcid << ", id " << id;
            EXPECT_FALSE(text->empty()) << "language " << lcid << ", id " << id;
        }
    }
}

TEST(StringTable, BritishEnglishHasTheAmericanTexts) {
    for (const int id : kIds) {
        EXPECT_EQ(LoadText(id, 2057), LoadText(id, 1033)) << id;
    }
}

// Blanks at either end belong to the text; exactly these texts have one (Polish 1002 repeats
// the text of 114).
TEST(StringTable, BlanksAtTheEndsAreKeptExactly) {
    const std::set<std::pair<int, int>> expected = {{1045, 114},  {1045, 125},  {1045, 1002},
                                                    {1045, 1004}, {1045, 2004}, {1049, 8000}};
    std::set<std::pair<int, int>> found;
    for (const int lcid : kLanguages) {
        for (const int id : kIds) {
            const std::string text = LoadText(id, lcid);
            if (!text.empty() && (text.front() == ' ' || text.back() == ' ')) {
                found.insert({lcid, id});
                EXPECT_EQ(text.back(), ' ');
                EXPECT_NE(text[text.size() - 2], ' ') << "one blank only: " << lcid << "/" << id;
            }
        }
    }
    EXPECT_EQ(found, expected);
}

struct Sample {
    int lcid;
    int id;
    const char* text;
};

class StringTableSample : public ::testing::TestWithParam<Sample> {};

TEST_P(StringTableSample, IsExact) {
    EXPECT_EQ(LoadText(GetParam().id, GetParam().lcid), GetParam().text)
        << GetParam().lcid << "/" << GetParam().id;
}

INSTANTIATE_TEST_SUITE_P(
    Table, StringTableSample,
    ::testing::Values(
        Sample{1031, 112, "Pluvarine"}, Sample{1033, 112, "downpipes"},
        Sample{2057, 112, "downpipes"}, Sample{1031, 8002, "Makros"}, Sample{1049, 8002, "Makros"},
        Sample{1033, 8002, "Macros"}, Sample{2057, 8002, "Macros"}, Sample{1036, 8002, "Macros"},
        Sample{1045, 8002, "Macros"}, Sample{1050, 8002, "Macros"},
        Sample{1033, 117, "plastic-grey"}, Sample{1031, 117, "Kunstoff-Grau"},
        Sample{1033, 118, "cooper"}, Sample{1033, 2003, "continous downpipe"},
        Sample{1033, 2002, "Do you like to choose a continous or a bended downpipe construction?"},
        Sample{1031, 8001, "Hilfe"}, Sample{1033, 8001, "Help"}, Sample{1036, 8001, "Aide"},
        Sample{1045, 8001, "Help"}, Sample{1049, 8001, "Справка"}, Sample{1050, 8001, "Help"},
        Sample{1045, 114, "Nawis dachowy "}, Sample{1045, 2004, "Konstrukcja zakrzywiona "},
        Sample{1049, 8000, "Кликните по внешней стороне стены "},
        Sample{1036, 4000, "Créer l'archive..."}, Sample{1045, 4000, "Tworzenie archiwum…"},
        Sample{1031, 4001, "Entpacke Archiv..."}, Sample{1031, 1008, "Schließen"},
        Sample{1031, 1007, "Änderungen Übernehmen"}, Sample{1050, 121, "Žlijeb"},
        Sample{1036, 2002, "Voulez-vous une construction droite ou coudée ?"},
        Sample{1045, 1001, "Szczegóły z Tectaroa"}, Sample{1049, 5001, "Tectaro не запускается!"},
        Sample{1033, 5005, "Downpipe macro"}, Sample{1031, 6001, "Höhe Fallrohr H"}));

TEST(StringTable, UnknownLanguageOrIdHasNoText) {
    EXPECT_EQ(StringTable::builtIn().find(1033, 9999), nullptr);
    EXPECT_EQ(StringTable::builtIn().find(1041, 112), nullptr);
    EXPECT_EQ(LoadText(9999, 1033), "");
    EXPECT_EQ(LoadText(112, 0), "");
}

TEST(StringTable, ReadsADocumentWithSharedTexts) {
    const StringTable table(R"({"languages": [{"lcid": 1033, "language": "en"},
                                              {"lcid": 2057, "language": "en", "region": "gb",
                                               "textsOf": 1033},
                                              {"lcid": 1031, "language": "DE"}],
                               "texts": [{"id": 7, "use": "x", "1033": "a ", "1031": "b"}]})");
    ASSERT_NE(table.find(2057, 7), nullptr);
    EXPECT_EQ(*table.find(2057, 7), "a ");
    EXPECT_EQ(*table.find(1031, 7), "b");
    EXPECT_EQ(table.languageFor({"en-GB"}), 2057);
    EXPECT_EQ(table.languageFor({"de-CH"}), 1031);
}

TEST(StringTable, RefusesMalformedDocuments) {
    for (const char* json :
         {"", "[]", "{", R"({"languages": []})",
          R"({"languages": [{"lcid": 0, "language": "en"}]})", R"({"languages": [{"lcid": 1033}]})",
          R"({"languages": [{"lcid": 1033, "language": "en"}], "texts": [{"1033": "no id"}]})",
          R"({"languages": [{"lcid": 1033, "language": "en"}], "texts": [{"id": 70000}]})",
          R"({"languages": [{"lcid": 1033, "language": "en"}], "texts": [{"id": 1, "1031": "x"}]})",
          R"({"languages": [{"lcid": 1033, "language": "en"}], "texts": [{"id": 1, "1033": 5}]})",
          R"({"languages": [{"lcid": 1033, "language": "en", "textsOf": 1}]})"}) {
        EXPECT_THROW(StringTable{json}, std::runtime_error) << json;
    }
}

} // namespace
} // namespace pluvarine
