#include "store/text/LanguageM.h"

#include "base/RuntimeError.h"
#include "platform/system/SystemLocale.h"

namespace pluvarine {

namespace {

std::string g_systemLanguageCode;

} // namespace

void ReadSystemLanguage() {
    g_systemLanguageCode = GetLocaleValue(LOCALE_IDEFAULTLANGUAGE);
}

const std::string& systemLanguageCode() {
    return g_systemLanguageCode;
}

// First the length with its terminating zero, then the value into a buffer of that length.
std::string GetLocaleValue(int valueType) {
    const Lcid locale = GetSystemDefaultLCID();
    const auto type = static_cast<std::uint32_t>(valueType);
    const int length = GetLocaleInfoA(locale, type, nullptr, 0);
    if (length <= 0) {
        throw RuntimeError(RuntimeError::InvalidProcedureCall,
                           "Invalid procedure call or argument");
    }
    std::string buffer(static_cast<std::size_t>(length), '\0');
    GetLocaleInfoA(locale, type, buffer.data(), length);
    buffer.resize(static_cast<std::size_t>(length - 1));
    return buffer;
}

} // namespace pluvarine
