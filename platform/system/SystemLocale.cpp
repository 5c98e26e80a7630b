#include "platform/system/SystemLocale.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace pluvarine {

namespace {

struct LocaleEntry {
    const char* name; // language_REGION, "@latin" for a Latin-script variant
    Lcid lcid;
};

// The first entry of a language is the region its bare name stands for.
constexpr std::array kLocales = {
    LocaleEntry{"af_ZA", 0x0436},       LocaleEntry{"ar_SA", 0x0401},
    LocaleEntry{"ar_AE", 0x3801},       LocaleEntry{"ar_BH", 0x3C01},
    LocaleEntry{"ar_DZ", 0x1401},       LocaleEntry{"ar_EG", 0x0C01},
    LocaleEntry{"ar_IQ", 0x0801},       LocaleEntry{"ar_JO", 0x2C01},
    LocaleEntry{"ar_KW", 0x3401},       LocaleEntry{"ar_LB", 0x3001},
    LocaleEntry{"ar_LY", 0x1001},       LocaleEntry{"ar_MA", 0x1801},
    LocaleEntry{"ar_OM", 0x2001},       LocaleEntry{"ar_QA", 0x4001},
    LocaleEntry{"ar_SY", 0x2801},       LocaleEntry{"ar_TN", 0x1C01},
    LocaleEntry{"ar_YE", 0x2401},       LocaleEntry{"az_AZ", 0x042C},
    LocaleEntry{"be_BY", 0x0423},       LocaleEntry{"bg_BG", 0x0402},
    LocaleEntry{"bn_IN", 0x0445},       LocaleEntry{"bs_BA", 0x141A},
    LocaleEntry{"ca_ES", 0x0403},       LocaleEntry{"cs_CZ", 0x0405},
    LocaleEntry{"cy_GB", 0x0452},       LocaleEntry{"da_DK", 0x0406},
    LocaleEntry{"de_DE", 0x0407},       LocaleEntry{"de_CH", 0x0807},
    LocaleEntry{"de_AT", 0x0C07},       LocaleEntry{"de_LU", 0x1007},
    LocaleEntry{"de_LI", 0x1407},       LocaleEntry{"el_GR", 0x0408},
    LocaleEntry{"en_US", 0x0409},       LocaleEntry{"en_GB", 0x0809},
    LocaleEntry{"en_AU", 0x0C09},       LocaleEntry{"en_CA", 0x1009},
    LocaleEntry{"en_NZ", 0x1409},       LocaleEntry{"en_IE", 0x1809},
    LocaleEntry{"en_ZA", 0x1C09},       LocaleEntry{"en_JM", 0x2009},
    LocaleEntry{"en_BZ", 0x2809},       LocaleEntry{"en_TT", 0x2C09},
    LocaleEntry{"en_ZW", 0x3009},       LocaleEntry{"en_PH", 0x3409},
    LocaleEntry{"en_IN", 0x4009},       LocaleEntry{"en_MY", 0x4409},
    LocaleEntry{"en_SG", 0x4809},       LocaleEntry{"es_ES", 0x0C0A},
    LocaleEntry{"es_MX", 0x080A},       LocaleEntry{"es_GT", 0x100A},
    LocaleEntry{"es_CR", 0x140A},       LocaleEntry{"es_PA", 0x180A},
    LocaleEntry{"es_DO", 0x1C0A},       LocaleEntry{"es_VE", 0x200A},
    LocaleEntry{"es_CO", 0x240A},       LocaleEntry{"es_PE", 0x280A},
    LocaleEntry{"es_AR", 0x2C0A},       LocaleEntry{"es_EC", 0x300A},
    LocaleEntry{"es_CL", 0x340A},       LocaleEntry{"es_UY", 0x380A},
    LocaleEntry{"es_PY", 0x3C0A},       LocaleEntry{"es_BO", 0x400A},
    LocaleEntry{"es_SV", 0x440A},       LocaleEntry{"es_HN", 0x480A},
    LocaleEntry{"es_NI", 0x4C0A},       LocaleEntry{"es_PR", 0x500A},
    LocaleEntry{"es_US", 0x540A},       LocaleEntry{"et_EE", 0x0425},
    LocaleEntry{"eu_ES", 0x042D},       LocaleEntry{"fa_IR", 0x0429},
    LocaleEntry{"fi_FI", 0x040B},       LocaleEntry{"fr_FR", 0x040C},
    LocaleEntry{"fr_BE", 0x080C},       LocaleEntry{"fr_CA", 0x0C0C},
    LocaleEntry{"fr_CH", 0x100C},       LocaleEntry{"fr_LU", 0x140C},
    LocaleEntry{"fr_MC", 0x180C},       LocaleEntry{"ga_IE", 0x083C},
    LocaleEntry{"gl_ES", 0x0456},       LocaleEntry{"he_IL", 0x040D},
    LocaleEntry{"hi_IN", 0x0439},       LocaleEntry{"hr_HR", 0x041A},
    LocaleEntry{"hr_BA", 0x101A},       LocaleEntry{"hu_HU", 0x040E},
    LocaleEntry{"hy_AM", 0x042B},       LocaleEntry{"id_ID", 0x0421},
    LocaleEntry{"is_IS", 0x040F},       LocaleEntry{"it_IT", 0x0410},
    LocaleEntry{"it_CH", 0x0810},       LocaleEntry{"ja_JP", 0x0411},
    LocaleEntry{"ka_GE", 0x0437},       LocaleEntry{"kk_KZ", 0x043F},
    LocaleEntry{"ko_KR", 0x0412},       LocaleEntry{"lt_LT", 0x0427},
    LocaleEntry{"lv_LV", 0x0426},       LocaleEntry{"mk_MK", 0x042F},
    LocaleEntry{"ms_MY", 0x043E},       LocaleEntry{"mt_MT", 0x043A},
    LocaleEntry{"nb_NO", 0x0414},       LocaleEntry{"no_NO", 0x0414},
    LocaleEntry{"nn_NO", 0x0814},       LocaleEntry{"nl_NL", 0x0413},
    LocaleEntry{"nl_BE", 0x0813},       LocaleEntry{"pl_PL", 0x0415},
    LocaleEntry{"pt_BR", 0x0416},       LocaleEntry{"pt_PT", 0x0816},
    LocaleEntry{"ro_RO", 0x0418},       LocaleEntry{"ro_MD", 0x0818},
    LocaleEntry{"ru_RU", 0x0419},       LocaleEntry{"ru_MD", 0x0819},
    LocaleEntry{"sk_SK", 0x041B},       LocaleEntry{"sl_SI", 0x0424},
    LocaleEntry{"sq_AL", 0x041C},       LocaleEntry{"sr_RS", 0x281A},
    LocaleEntry{"sr_RS@latin", 0x241A}, LocaleEntry{"sr_ME", 0x301A},
    LocaleEntry{"sr_ME@latin", 0x2C1A}, LocaleEntry{"sv_SE", 0x041D},
    LocaleEntry{"sv_FI", 0x081D},       LocaleEntry{"th_TH", 0x041E},
    LocaleEntry{"tr_TR", 0x041F},       LocaleEntry{"uk_UA", 0x0422},
    LocaleEntry{"ur_PK", 0x0420},       LocaleEntry{"uz_UZ", 0x0443},
    LocaleEntry{"vi_VN", 0x042A},       LocaleEntry{"zh_CN", 0x0804},
    LocaleEntry{"zh_TW", 0x0404},       LocaleEntry{"zh_HK", 0x0C04},
    LocaleEntry{"zh_SG", 0x1004},       LocaleEntry{"zh_MO", 0x1404},
};

bool isAlpha(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

std::string lower(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return result;
}

std::string upper(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return result;
}

// Splits "lang[_REGION][.codeset][@modifier]" or "lang[-Script][-REGION]".
} // namespace

std::optional<LocaleName> parseLocaleName(std::string_view name) {
    LocaleName out;
    std::string_view rest = name;
    if (const auto at = rest.find('@'); at != std::string_view::npos) {
        out.latin = lower(rest.substr(at + 1)) == "latin";
        rest = rest.substr(0, at);
    }
    if (const auto dot = rest.find('.'); dot != std::string_view::npos) {
        rest = rest.substr(0, dot);
    }
    std::size_t part = 0;
    while (!rest.empty()) {
        const auto cut = rest.find_first_of("_-");
        const std::string_view piece = rest.substr(0, cut);
        rest = cut == std::string_view::npos ? std::string_view() : rest.substr(cut + 1);
        for (const char c : piece) {
            if (!isAlpha(c) && !(part > 0 && std::isdigit(static_cast<unsigned char>(c)))) {
                return std::nullopt;
            }
        }
        if (part == 0) {
            if (piece.size() < 2 || piece.size() > 3) {
                return std::nullopt;
            }
            out.language = lower(piece);
        } else if (piece.size() == 4) {
            out.latin = out.latin || lower(piece) == "latn";
        } else {
            out.region = upper(piece);
        }
        ++part;
    }
    if (out.language.empty()) {
        return std::nullopt;
    }
    return out;
}

namespace {

const LocaleEntry* find(std::string_view key) {
    for (const LocaleEntry& entry : kLocales) {
        if (key == entry.name) {
            return &entry;
        }
    }
    return nullptr;
}

const LocaleEntry* firstOfLanguage(std::string_view language) {
    for (const LocaleEntry& entry : kLocales) {
        const std::string_view entryName(entry.name);
        if (entryName.substr(0, entryName.find('_')) == language) {
            return &entry;
        }
    }
    return nullptr;
}

// LC_ALL, then LANG; an empty variable counts as unset.
std::string environmentLocale() {
    for (const char* variable : {"LC_ALL", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return {};
}

} // namespace

Lcid lcidForLocaleName(std::string_view name) {
    const std::optional<LocaleName> parsed = parseLocaleName(name);
    if (!parsed) {
        return 0;
    }
    const LocaleName& parts = *parsed;
    const LocaleEntry* language = firstOfLanguage(parts.language);
    if (language == nullptr) {
        return 0;
    }
    if (parts.region.empty()) {
        return language->lcid;
    }
    const std::string key = parts.language + "_" + parts.region;
    if (parts.latin) {
        if (const LocaleEntry* entry = find(key + "@latin")) {
            return entry->lcid;
        }
    }
    if (const LocaleEntry* entry = find(key)) {
        return entry->lcid;
    }
    return LOCALE_CUSTOM_UNSPECIFIED;
}

std::string localeNameForLcid(Lcid lcid) {
    for (const LocaleEntry& entry : kLocales) {
        if (entry.lcid == lcid) {
            return entry.name;
        }
    }
    return {};
}

Lcid GetSystemDefaultLCID() {
    const Lcid lcid = lcidForLocaleName(environmentLocale());
    return lcid == 0 ? LOCALE_EN_US : lcid;
}

int GetLocaleInfoA(Lcid locale, std::uint32_t lcType, char* data, int cchData) {
    if (lcType != LOCALE_IDEFAULTLANGUAGE || cchData < 0 || (cchData > 0 && data == nullptr)) {
        return 0;
    }
    if (locale == LOCALE_USER_DEFAULT || locale == LOCALE_SYSTEM_DEFAULT) {
        locale = GetSystemDefaultLCID();
    }
    char value[16];
    const int length = std::snprintf(value, sizeof value, "%04x", locale & 0xFFFFU) + 1;
    if (cchData == 0) {
        return length;
    }
    if (cchData < length) {
        return 0;
    }
    std::memcpy(data, value, static_cast<std::size_t>(length));
    return length;
}

} // namespace pluvarine
