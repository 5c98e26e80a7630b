#include "platform/system/CodePage.h"

#include <gtest/gtest.h>

using namespace pluvarine;

// Text outside the code page, or not UTF-8 at all, is refused, never replaced by '?'.
TEST(CodePage, MapsWindows1252OrRefuses) {
    // clang-format off
    const std::pair<const char*, std::optional<std::string>> table[] = {
        {"Data.ini", "Data.ini"}, {"Größe", "Gr\xF6\xDF\x65"}, {"€ … Š œ Ÿ", "\x80 \x85 \x8A \x9C \x9F"},
        {"\u00A0ÿ", "\xA0\xFF"}, {"\u0081\u009D", "\x81\x9D"}, {"Łódź", {}}, {"Фасад", {}},
        {"\u0080", {}}, {"😀", {}}, {"\xC3", {}}, {"\xC0\xAF", {}}, {"\xED\xA0\x80", {}},
        {"\xF8\x88\x80\x80\x80", {}}, {"a\x80", {}}};
    // clang-format on
    for (const auto& [utf8, bytes] : table)
        EXPECT_EQ(toCodePage(utf8), bytes) << utf8;
}

TEST(CodePage, EveryByteDecodesAndEncodesBack) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    EXPECT_EQ(toCodePage(fromCodePage(all)), all);
    EXPECT_EQ(fromCodePage("\x80\x8A\xC4\xE9"), "€ŠÄé");
}
