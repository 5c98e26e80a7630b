#include "store/SettingsStore.h"

#include "base/RuntimeError.h"
#include "platform/system/CodePage.h"
#include "platform/system/ProfileFile.h"

#include <array>
#include <optional>

namespace pluvarine {

namespace {

constexpr std::uint32_t kReadBufferSize = 255;

std::string inCodePage(const std::string& text, const char* what) {
    std::optional<std::string> bytes = toCodePage(text);
    if (!bytes) {
        throw RuntimeError(RuntimeError::InvalidProcedureCall,
                           std::string("The settings ") + what + " \"" + text +
                               "\" cannot be written in the code page Windows-1252");
    }
    return std::move(*bytes);
}

} // namespace

std::string ReadIni(const std::string& file, const std::string& section, const std::string& key) {
    std::array<char, kReadBufferSize> buffer{};
    const std::uint32_t count =
        GetPrivateProfileStringA(inCodePage(section, "section"), inCodePage(key, "key"), "",
                                 buffer.data(), kReadBufferSize, file);
    return fromCodePage(std::string_view(buffer.data(), count));
}

std::int32_t WriteIni(const std::string& file, const std::string& section, const std::string& key,
                      const std::string& value) {
    return WritePrivateProfileStringA(inCodePage(section, "section"), inCodePage(key, "key"),
                                      inCodePage(value, "value"), file);
}

} // namespace pluvarine
