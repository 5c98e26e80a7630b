#include "ui/text/LoadText.h"

#include <QLocale>
#include <QStringList>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace pluvarine {
namespace {

struct Choice {
    std::vector<std::string> uiLanguages;
    int expected;
};

class TextLanguageFor : public ::testing::TestWithParam<Choice> {};

TEST_P(TextLanguageFor, PicksTheFirstLanguageWithATable) {
    EXPECT_EQ(textLanguageFor(GetParam().uiLanguages), GetParam().expected);
}

// The lists as QLocale::system().uiLanguages() gives them for LANGUAGE / LC_MESSAGES / LANG.
INSTANTIATE_TEST_SUITE_P(
    Table, TextLanguageFor,
    ::testing::Values(Choice{{"de-AT", "de-Latn-AT"}, TextLanguage::German},
                      Choice{{"de-CH", "de-Latn-CH"}, TextLanguage::German},
                      Choice{{"de", "de-Latn-DE", "de-DE"}, TextLanguage::German},
                      Choice{{"en-GB", "en-Latn-GB"}, TextLanguage::EnglishUnitedKingdom},
                      Choice{{"en-US", "en-Latn-US", "en"}, TextLanguage::EnglishUnitedStates},
                      Choice{{"en-AU"}, TextLanguage::EnglishUnitedStates},
                      Choice{{"ja", "ja-Jpan-JP", "ja-JP"}, TextLanguage::EnglishUnitedStates},
                      Choice{{"ja", "ja-Jpan-JP", "ja-JP", "de", "de-Latn-DE"},
                             TextLanguage::German},
                      Choice{{"hr", "hr-Latn-HR", "hr-HR"}, TextLanguage::Croatian},
                      Choice{{"hr-BA", "hr-Latn-BA"}, TextLanguage::Croatian},
                      Choice{{"fr-CA", "fr-Latn-CA"}, TextLanguage::French},
                      Choice{{"fr_BE.UTF-8"}, TextLanguage::French},
                      Choice{{"pl-PL", "pl-Latn-PL", "pl"}, TextLanguage::Polish},
                      Choice{{"ru", "ru-Cyrl-RU", "ru-RU"}, TextLanguage::Russian},
                      Choice{{"ru-UA"}, TextLanguage::Russian},
                      Choice{{"sr-Latn-RS", "sr-Latn"}, TextLanguage::EnglishUnitedStates},
                      Choice{{"C"}, TextLanguage::EnglishUnitedStates},
                      Choice{{"", "x"}, TextLanguage::EnglishUnitedStates},
                      Choice{{}, TextLanguage::EnglishUnitedStates}));

// Every test leaves the active language as it found it.
class ActiveLanguage : public ::testing::Test {
protected:
    void SetUp() override { m_saved = activeTextLanguage(); }
    void TearDown() override { setActiveTextLanguage(m_saved); }

private:
    int m_saved = 0;
};

struct ByLcid {
    int lcid;
    int expected;
    const char* title;
};

class SetByLcid : public ActiveLanguage, public ::testing::WithParamInterface<ByLcid> {};

TEST_P(SetByLcid, UsesTheTableOfTheLanguage) {
    EXPECT_EQ(setActiveTextLanguage(GetParam().lcid), GetParam().expected);
    EXPECT_EQ(activeTextLanguage(), GetParam().expected);
    EXPECT_EQ(LoadText(112), GetParam().title);
}

INSTANTIATE_TEST_SUITE_P(
    Table, SetByLcid,
    ::testing::Values(ByLcid{1031, 1031, "Pluvarine"}, ByLcid{0x0C07, 1031, "Pluvarine"},
                      ByLcid{0x0807, 1031, "Pluvarine"}, ByLcid{1033, 1033, "downpipes"},
                      ByLcid{2057, 2057, "downpipes"}, ByLcid{0x0C09, 1033, "downpipes"},
                      ByLcid{0x0411, 1033, "downpipes"}, ByLcid{0x0C0C, 1036, "Tuyaux de descente"},
                      ByLcid{1045, 1045, "Rury spustowe"},
                      ByLcid{0x0819, 1049, "Водосточная труба"},
                      ByLcid{0x101A, 1050, "Olučne cijevi"}, ByLcid{0x241A, 1033, "downpipes"},
                      ByLcid{0, 1033, "downpipes"}, ByLcid{-5, 1033, "downpipes"},
                      ByLcid{99999, 1033, "downpipes"}));

TEST_F(ActiveLanguage, SetByTag) {
    EXPECT_EQ(setActiveTextLanguage("de_AT"), TextLanguage::German);
    EXPECT_EQ(LoadText(112), "Pluvarine");
    EXPECT_EQ(LoadText(8002), "Makros");
    EXPECT_EQ(setActiveTextLanguage("en_GB"), TextLanguage::EnglishUnitedKingdom);
    EXPECT_EQ(LoadText(112), "downpipes");
    EXPECT_EQ(setActiveTextLanguage("ja"), TextLanguage::EnglishUnitedStates);
    EXPECT_EQ(setActiveTextLanguage("ru"), TextLanguage::Russian);
    EXPECT_EQ(LoadText(8002), "Makros");
    EXPECT_EQ(LoadText(8001), "Справка");
    EXPECT_EQ(setActiveTextLanguage("hr"), TextLanguage::Croatian);
    EXPECT_EQ(LoadText(8002), "Macros");
}

TEST_F(ActiveLanguage, UnknownIdGivesTheEmptyTextAndGoesOn) {
    setActiveTextLanguage(TextLanguage::German);
    EXPECT_EQ(LoadText(-1), "");
    EXPECT_EQ(LoadText(65535), "");
    EXPECT_EQ(LoadText(112), "Pluvarine");
}

// Unless set, the language follows the user's interface languages. The ctest cases of this
// folder run this test under chosen LANGUAGE / LC_MESSAGES / LANG values and name the language
// they expect in PLUVARINE_EXPECTED_TEXT_LANGUAGE; without it the test checks the rule only.
TEST(SystemTextLanguage, FollowsTheInterfaceLanguages) {
    std::vector<std::string> uiLanguages;
    for (const QString& language : QLocale::system().uiLanguages()) {
        uiLanguages.push_back(language.toStdString());
    }
    EXPECT_EQ(activeTextLanguage(), textLanguageFor(uiLanguages));
    if (const char* expected = std::getenv("PLUVARINE_EXPECTED_TEXT_LANGUAGE")) {
        EXPECT_EQ(activeTextLanguage(), std::atoi(expected));
        if (const char* title = std::getenv("PLUVARINE_EXPECTED_TITLE")) {
            EXPECT_EQ(LoadText(112), title);
        }
    }
}

} // namespace
} // namespace pluvarine
