#include "platform/system/CodePage.h"

#include <gtest/gtest.h>

namespace pluvarine {
namespace {

struct EncodeCase {
    const char* utf8;
    std::optional<std::string> bytes;
};

class CodePageEncode : public ::testing::TestWithParam<EncodeCase> {};

TEST_P(CodePageEncode, MapsOrRefuses) {
    EXPECT_EQ(toCodePage(GetParam().utf8), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Windows1252, CodePageEncode,
    ::testing::Values(EncodeCase{"Data.ini", std::string("Data.ini")},
                      EncodeCase{" 7.tob", std::string(" 7.tob")},
                      EncodeCase{"Größe", std::string("Gr\xF6\xDF"
                                                      "e")},
                      EncodeCase{"€ … Š œ Ÿ", std::string("\x80 \x85 \x8A \x9C \x9F")},
                      EncodeCase{"\u00A0ÿ", std::string("\xA0\xFF")},
                      EncodeCase{"\u0081\u009D", std::string("\x81\x9D")},
                      // Not in the code page: refused, never replaced by '?'.
                      EncodeCase{"Łódź", std::nullopt}, EncodeCase{"Фасад", std::nullopt},
                      EncodeCase{"\u0080", std::nullopt}, EncodeCase{"😀", std::nullopt},
                      // Not UTF-8 at all.
                      EncodeCase{"\xC3", std::nullopt}, EncodeCase{"\xC0\xAF", std::nullopt},
                      EncodeCase{"\xED\xA0\x80", std::nullopt},
                      EncodeCase{"\xF8\x88\x80\x80\x80", std::nullopt},
                      EncodeCase{"a\x80", std::nullopt}));

TEST(CodePage, EveryByteDecodesAndEncodesBack) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    const std::string text = fromCodePage(all);
    EXPECT_EQ(toCodePage(text), all);
}

TEST(CodePage, DecodesTheWindowsCharacters) {
    EXPECT_EQ(fromCodePage("\x80\x8A\xC4\xE9"), "€ŠÄé");
}

} // namespace
} // namespace pluvarine
