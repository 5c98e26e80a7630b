#include "ui/text/LanguageM.h"

#include "base/RuntimeError.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace pluvarine {
namespace {

struct LanguageCase {
    const char* locale;
    const char* code;
};

// The system default locale comes from LC_ALL, then LANG; each case sets LC_ALL and restores it.
class SystemLanguage : public ::testing::TestWithParam<LanguageCase> {
protected:
    void SetUp() override {
        if (const char* value = std::getenv("LC_ALL")) {
            m_saved = value;
        }
    }
    void TearDown() override {
        if (m_saved) {
            setenv("LC_ALL", m_saved->c_str(), 1);
        } else {
            unsetenv("LC_ALL");
        }
    }

private:
    std::optional<std::string> m_saved;
};

TEST_P(SystemLanguage, IsTheDefaultLanguageIdentifierInLowercaseHex) {
    setenv("LC_ALL", GetParam().locale, 1);
    EXPECT_EQ(GetLocaleValue(9), GetParam().code);
    ReadSystemLanguage();
    EXPECT_EQ(systemLanguageCode(), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(
    Table, SystemLanguage,
    ::testing::Values(LanguageCase{"de_DE.UTF-8", "0407"}, LanguageCase{"en_US.UTF-8", "0409"},
                      LanguageCase{"en_GB.UTF-8", "0809"}, LanguageCase{"fr_FR.UTF-8", "040c"},
                      LanguageCase{"pl_PL.UTF-8", "0415"}, LanguageCase{"ru_RU.UTF-8", "0419"},
                      LanguageCase{"ru_MD.UTF-8", "0819"}, LanguageCase{"hr_HR.UTF-8", "041a"},
                      LanguageCase{"hr_BA.UTF-8", "101a"}, LanguageCase{"de_AT.UTF-8", "0c07"},
                      LanguageCase{"C", "0409"}));

TEST(GetLocaleValue, UnknownValueTypeIsAnInvalidProcedureCall) {
    try {
        GetLocaleValue(2);
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), RuntimeError::InvalidProcedureCall);
    }
}

} // namespace
} // namespace pluvarine
