#include "platform/system/SystemLocale.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace pluvarine {
namespace {

// Sets LC_ALL and LANG for one test and puts the previous values back.
class LocaleEnvironment : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"LC_ALL", "LANG"}) {
            const char* value = std::getenv(name);
            m_saved.push_back(value ? std::optional<std::string>(value) : std::nullopt);
        }
    }
    void TearDown() override {
        set("LC_ALL", m_saved[0]);
        set("LANG", m_saved[1]);
    }
    static void set(const char* name, const std::optional<std::string>& value) {
        if (value) {
            setenv(name, value->c_str(), 1);
        } else {
            unsetenv(name);
        }
    }

private:
    std::vector<std::optional<std::string>> m_saved;
};

struct NameCase {
    const char* name;
    Lcid lcid;
};

class LcidForLocaleName : public ::testing::TestWithParam<NameCase> {};

TEST_P(LcidForLocaleName, MapsTheName) {
    EXPECT_EQ(lcidForLocaleName(GetParam().name), GetParam().lcid) << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(
    Table, LcidForLocaleName,
    ::testing::Values(
        NameCase{"de_DE", 0x0407}, NameCase{"en_US", 0x0409}, NameCase{"en_GB", 0x0809},
        NameCase{"fr_FR", 0x040C}, NameCase{"pl_PL", 0x0415}, NameCase{"ru_RU", 0x0419},
        NameCase{"ru_MD", 0x0819}, NameCase{"hr_HR", 0x041A}, NameCase{"hr_BA", 0x101A},
        NameCase{"hr_BA.UTF-8", 0x101A}, NameCase{"de_AT", 0x0C07}, NameCase{"de_CH", 0x0807},
        NameCase{"de_LU", 0x1007}, NameCase{"fr_BE", 0x080C}, NameCase{"fr_CA", 0x0C0C},
        NameCase{"fr_CH", 0x100C}, NameCase{"en_AU", 0x0C09}, NameCase{"en_CA", 0x1009},
        NameCase{"en_IE", 0x1809}, NameCase{"it_IT", 0x0410}, NameCase{"es_ES", 0x0C0A},
        NameCase{"nl_NL", 0x0413}, NameCase{"cs_CZ", 0x0405}, NameCase{"uk_UA", 0x0422},
        NameCase{"ja_JP", 0x0411}, NameCase{"zh_CN", 0x0804}, NameCase{"sr_RS", 0x281A},
        NameCase{"sr_RS@latin", 0x241A}, NameCase{"sr_RS.UTF-8@latin", 0x241A},
        NameCase{"sr-Latn-RS", 0x241A}, NameCase{"bs_BA", 0x141A}, NameCase{"de_DE@euro", 0x0407},
        NameCase{"de_DE.ISO-8859-15@euro", 0x0407}, NameCase{"de-AT", 0x0C07},
        NameCase{"DE_at", 0x0C07}, NameCase{"hr-Latn-BA", 0x101A}, NameCase{"de", 0x0407},
        NameCase{"en", 0x0409}, NameCase{"hr", 0x041A}, NameCase{"ru", 0x0419},
        NameCase{"no_NO", 0x0414}, NameCase{"ru_UA", 0x1000}, NameCase{"de_BE", 0x1000},
        NameCase{"C", 0}, NameCase{"POSIX", 0}, NameCase{"C.UTF-8", 0}, NameCase{"", 0},
        NameCase{"xx_YY", 0}, NameCase{"de_D?", 0}, NameCase{"_DE", 0}, NameCase{"deutsch", 0}));

TEST(LocaleNameForLcid, IsTheInverseForKnownIdentifiers) {
    for (const Lcid lcid : {0x0407U, 0x0409U, 0x0809U, 0x040CU, 0x0415U, 0x0419U, 0x0819U, 0x041AU,
                            0x101AU, 0x241AU, 0x0C07U}) {
        const std::string name = localeNameForLcid(lcid);
        ASSERT_FALSE(name.empty()) << std::hex << lcid;
        EXPECT_EQ(lcidForLocaleName(name), lcid) << name;
    }
    EXPECT_EQ(localeNameForLcid(0x0C07), "de_AT");
    EXPECT_EQ(localeNameForLcid(0x1000), "");
    EXPECT_EQ(localeNameForLcid(0), "");
}

TEST(ParseLocaleName, SplitsTheParts) {
    const auto name = parseLocaleName("sr_RS.UTF-8@latin");
    ASSERT_TRUE(name);
    EXPECT_EQ(name->language, "sr");
    EXPECT_EQ(name->region, "RS");
    EXPECT_TRUE(name->latin);
    const auto tag = parseLocaleName("de-Latn-AT");
    ASSERT_TRUE(tag);
    EXPECT_EQ(tag->language, "de");
    EXPECT_EQ(tag->region, "AT");
    EXPECT_EQ(parseLocaleName("es-419")->region, "419");
    EXPECT_FALSE(parseLocaleName("C"));
    EXPECT_FALSE(parseLocaleName(""));
}

struct EnvironmentCase {
    const char* lcAll; // nullptr: unset
    const char* lang;
    Lcid expected;
};

class SystemDefaultLcid : public LocaleEnvironment,
                          public ::testing::WithParamInterface<EnvironmentCase> {};

TEST_P(SystemDefaultLcid, FollowsLcAllThenLang) {
    const EnvironmentCase& c = GetParam();
    set("LC_ALL", c.lcAll ? std::optional<std::string>(c.lcAll) : std::nullopt);
    set("LANG", c.lang ? std::optional<std::string>(c.lang) : std::nullopt);
    EXPECT_EQ(GetSystemDefaultLCID(), c.expected);
}

INSTANTIATE_TEST_SUITE_P(Table, SystemDefaultLcid,
                         ::testing::Values(EnvironmentCase{nullptr, "hr_BA.UTF-8", 0x101A},
                                           EnvironmentCase{"ru_MD.UTF-8", "de_DE.UTF-8", 0x0819},
                                           EnvironmentCase{"", "de_DE.UTF-8", 0x0407},
                                           EnvironmentCase{nullptr, nullptr, 0x0409},
                                           EnvironmentCase{"C", "de_DE.UTF-8", 0x0409},
                                           EnvironmentCase{"POSIX", nullptr, 0x0409},
                                           EnvironmentCase{nullptr, "C.UTF-8", 0x0409},
                                           EnvironmentCase{nullptr, "klingon", 0x0409},
                                           EnvironmentCase{nullptr, "ru_UA.UTF-8", 0x1000}));

TEST_F(LocaleEnvironment, LocaleInfoFollowsTheBufferProtocol) {
    set("LC_ALL", std::string("fr_FR.UTF-8"));
    EXPECT_EQ(GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTLANGUAGE, nullptr, 0), 5);
    char buffer[8] = "#######";
    EXPECT_EQ(GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTLANGUAGE, buffer, 5), 5);
    EXPECT_EQ(std::string(buffer, 5), std::string("040c\0", 5));
    EXPECT_EQ(buffer[5], '#');

    char small[4] = "###";
    EXPECT_EQ(GetLocaleInfoA(0x0407, LOCALE_IDEFAULTLANGUAGE, small, 4), 0);
    EXPECT_EQ(std::string(small), "###");
    EXPECT_EQ(GetLocaleInfoA(0x0407, LOCALE_IDEFAULTLANGUAGE, nullptr, 3), 0);
    EXPECT_EQ(GetLocaleInfoA(0x0407, LOCALE_IDEFAULTLANGUAGE, small, -1), 0);

    char other[8] = {};
    EXPECT_EQ(GetLocaleInfoA(0x0407, 2, other, 8), 0);
    EXPECT_EQ(GetLocaleInfoA(0x0407, 2, nullptr, 0), 0);

    EXPECT_EQ(GetLocaleInfoA(0x101A, LOCALE_IDEFAULTLANGUAGE, other, 8), 5);
    EXPECT_STREQ(other, "101a");
    EXPECT_EQ(GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_IDEFAULTLANGUAGE, other, 8), 5);
    EXPECT_STREQ(other, "040c");
}

} // namespace
} // namespace pluvarine
