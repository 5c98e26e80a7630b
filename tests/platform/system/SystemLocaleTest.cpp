#include "platform/system/SystemLocale.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

using namespace pluvarine;

TEST(LocaleId, MapsTheNameAndBack) {
    // clang-format off
    const std::pair<const char*, Lcid> table[] = {
        {"de_DE", 0x0407}, {"en_US", 0x0409}, {"en_GB", 0x0809}, {"fr_FR", 0x040C}, {"pl_PL", 0x0415},
        {"ru_RU", 0x0419}, {"ru_MD", 0x0819}, {"hr_HR", 0x041A}, {"hr_BA", 0x101A}, {"de_AT", 0x0C07},
        {"de_CH", 0x0807}, {"de_LU", 0x1007}, {"fr_BE", 0x080C}, {"fr_CA", 0x0C0C}, {"fr_CH", 0x100C},
        {"en_AU", 0x0C09}, {"en_CA", 0x1009}, {"en_IE", 0x1809}, {"it_IT", 0x0410}, {"es_ES", 0x0C0A},
        {"nl_NL", 0x0413}, {"cs_CZ", 0x0405}, {"uk_UA", 0x0422}, {"ja_JP", 0x0411}, {"zh_CN", 0x0804},
        {"sr_RS", 0x281A}, {"sr_RS@latin", 0x241A}, {"sr_RS.UTF-8@latin", 0x241A},
        {"sr-Latn-RS", 0x241A}, {"bs_BA", 0x141A}, {"hr_BA.UTF-8", 0x101A}, {"de_DE@euro", 0x0407},
        {"de_DE.ISO-8859-15@euro", 0x0407}, {"de-AT", 0x0C07}, {"DE_at", 0x0C07},
        {"hr-Latn-BA", 0x101A}, {"de", 0x0407}, {"en", 0x0409}, {"hr", 0x041A}, {"ru", 0x0419},
        {"no_NO", 0x0414}, {"ru_UA", 0x1000}, {"de_BE", 0x1000}, {"C", 0}, {"POSIX", 0},
        {"C.UTF-8", 0}, {"", 0}, {"xx_YY", 0}, {"de_D?", 0}, {"_DE", 0}, {"deutsch", 0}};
    // clang-format on
    for (const auto& [name, lcid] : table) {
        EXPECT_EQ(lcidForLocaleName(name), lcid) << name;
        if (lcid != 0 && lcid != LOCALE_CUSTOM_UNSPECIFIED) { // a known identifier's name maps back
            EXPECT_EQ(lcidForLocaleName(localeNameForLcid(lcid)), lcid) << name;
        }
    }
    EXPECT_EQ(localeNameForLcid(0x0C07), "de_AT");
    EXPECT_EQ(localeNameForLcid(0x1000), "");
    EXPECT_EQ(localeNameForLcid(0), "");
}

// Sets LC_ALL and LANG (nullptr: unset) for one test; puts the previous values back (an unset
// one as empty, which the locale lookup treats alike).
struct LocaleEnvironment : ::testing::Test {
    static void set(const char* lcAll, const char* lang) {
        lcAll ? setenv("LC_ALL", lcAll, 1) : unsetenv("LC_ALL");
        lang ? setenv("LANG", lang, 1) : unsetenv("LANG");
    }
    void TearDown() override { set(m_lcAll.c_str(), m_lang.c_str()); }
    const std::string m_lcAll = std::getenv("LC_ALL") ? std::getenv("LC_ALL") : "";
    const std::string m_lang = std::getenv("LANG") ? std::getenv("LANG") : "";
};

TEST_F(LocaleEnvironment, SystemDefaultFollowsLcAllThenLang) {
    // clang-format off
    const std::tuple<const char*, const char*, Lcid> table[] = { // LC_ALL, LANG, identifier
        {nullptr, "hr_BA.UTF-8", 0x101A}, {"ru_MD.UTF-8", "de_DE.UTF-8", 0x0819},
        {"", "de_DE.UTF-8", 0x0407},      {nullptr, nullptr, 0x0409}, {"C", "de_DE.UTF-8", 0x0409},
        {"POSIX", nullptr, 0x0409},       {nullptr, "C.UTF-8", 0x0409}, {nullptr, "klingon", 0x0409},
        {nullptr, "ru_UA.UTF-8", 0x1000}};
    // clang-format on
    for (const auto& [lcAll, lang, expected] : table) {
        set(lcAll, lang);
        EXPECT_EQ(GetSystemDefaultLCID(), expected)
            << (lcAll ? lcAll : "-") << " " << (lang ? lang : "-");
    }
}

TEST_F(LocaleEnvironment, LocaleInfoFollowsTheBufferProtocol) {
    set("fr_FR.UTF-8", nullptr);
    EXPECT_EQ(GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTLANGUAGE, nullptr, 0), 5);
    char buffer[8] = "#######";
    EXPECT_EQ(GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTLANGUAGE, buffer, 5), 5);
    EXPECT_EQ(std::string(buffer, 6), std::string("040c\0#", 6));
    char small[4] = "###";
    EXPECT_EQ(GetLocaleInfoA(0x0407, LOCALE_IDEFAULTLANGUAGE, small, 4), 0);
    EXPECT_EQ(std::string(small), "###");
    EXPECT_EQ(GetLocaleInfoA(0x0407, LOCALE_IDEFAULTLANGUAGE, nullptr, 3), 0);
    EXPECT_EQ(GetLocaleInfoA(0x0407, LOCALE_IDEFAULTLANGUAGE, small, -1), 0);
    EXPECT_EQ(GetLocaleInfoA(0x0407, 2, buffer, 8), 0); // only the default language is known
    EXPECT_EQ(GetLocaleInfoA(0x101A, LOCALE_IDEFAULTLANGUAGE, buffer, 8), 5);
    EXPECT_STREQ(buffer, "101a");
    EXPECT_EQ(GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_IDEFAULTLANGUAGE, buffer, 8), 5);
    EXPECT_STREQ(buffer, "040c");
}
