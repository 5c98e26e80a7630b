#pragma once

// Stand-ins for the platform's default-locale queries. The system default locale comes from
// the environment: LC_ALL, then LANG (POSIX order for the locale as a whole). A name the table
// does not know (including "C", "POSIX" and an unset environment) counts as English (United
// States), 0x0409; a known language with a region that has no identifier of its own (ru_UA,
// de_BE) is a custom locale, 0x1000, as on the platform itself.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pluvarine {

using Lcid = std::uint32_t;

constexpr Lcid LOCALE_USER_DEFAULT = 0x0400;
constexpr Lcid LOCALE_SYSTEM_DEFAULT = 0x0800;
constexpr Lcid LOCALE_CUSTOM_UNSPECIFIED = 0x1000;
constexpr Lcid LOCALE_EN_US = 0x0409;
// The value type of a locale's default language identifier (four lowercase hex digits).
constexpr std::uint32_t LOCALE_IDEFAULTLANGUAGE = 9;

// The parts of a locale name: language lowercase, region uppercase (may be empty), and whether
// it names the Latin script ("@latin" modifier, "Latn" script subtag). The codeset and other
// modifiers are dropped. Nothing for "C", "POSIX" or a malformed name.
struct LocaleName {
    std::string language;
    std::string region;
    bool latin = false;
};
std::optional<LocaleName> parseLocaleName(std::string_view name);

// The identifier of a locale name as the environment or a language tag writes it: "hr_BA.UTF-8",
// "de_AT@euro", "sr_RS@latin", "en-GB", "de". A bare language takes its main region. Returns
// LOCALE_CUSTOM_UNSPECIFIED for a known language in an unknown region, 0 for anything else.
Lcid lcidForLocaleName(std::string_view name);

// The locale name of an identifier ("de_AT", "sr_RS@latin"); empty when unknown.
std::string localeNameForLcid(Lcid lcid);

// The system default locale, read from the environment at each call.
Lcid GetSystemDefaultLCID();

// One value of a locale, with the platform's buffer protocol: with cchData 0 it returns the
// length the value needs including the terminating zero; otherwise it copies the value and the
// terminator into data and returns that count, or returns 0 (copying nothing) when cchData is
// too small. Only LOCALE_IDEFAULTLANGUAGE is known; any other type returns 0.
// LOCALE_USER_DEFAULT and LOCALE_SYSTEM_DEFAULT stand for the system default locale.
int GetLocaleInfoA(Lcid locale, std::uint32_t lcType, char* data, int cchData);

} // namespace pluvarine
