#include "platform/system/CodePage.h"

#include <array>
#include <cstdint>

namespace pluvarine {

namespace {

// Bytes 0x80..0x9F; every other byte is the character with the same number (ISO 8859-1).
constexpr std::array<char32_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t characterOf(unsigned char byte) {
    if (byte >= 0x80 && byte <= 0x9F) {
        return kHighControls[byte - 0x80];
    }
    return byte;
}

std::optional<unsigned char> byteOf(char32_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
        return static_cast<unsigned char>(c);
    }
    for (std::size_t i = 0; i < kHighControls.size(); ++i) {
        if (kHighControls[i] == c) {
            return static_cast<unsigned char>(0x80 + i);
        }
    }
    return std::nullopt;
}

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Decodes one UTF-8 character at pos (advancing it); nullopt for a malformed sequence,
// an overlong form or a surrogate.
std::optional<char32_t> nextCharacter(std::string_view text, std::size_t& pos) {
    const auto lead = static_cast<unsigned char>(text[pos]);
    int extra = 0;
    char32_t c = 0;
    char32_t minimum = 0;
    if (lead < 0x80) {
        ++pos;
        return lead;
    } else if ((lead & 0xE0) == 0xC0) {
        extra = 1;
        c = lead & 0x1F;
        minimum = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        extra = 2;
        c = lead & 0x0F;
        minimum = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        extra = 3;
        c = lead & 0x07;
        minimum = 0x10000;
    } else {
        return std::nullopt;
    }
    if (text.size() - pos <= static_cast<std::size_t>(extra)) {
        return std::nullopt;
    }
    for (int i = 1; i <= extra; ++i) {
        const auto next = static_cast<unsigned char>(text[pos + i]);
        if ((next & 0xC0) != 0x80) {
            return std::nullopt;
        }
        c = (c << 6) | (next & 0x3F);
    }
    if (c < minimum || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
        return std::nullopt;
    }
    pos += extra + 1;
    return c;
}

} // namespace

std::optional<std::string> toCodePage(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    std::size_t pos = 0;
    while (pos < utf8.size()) {
        const std::optional<char32_t> c = nextCharacter(utf8, pos);
        if (!c) {
            return std::nullopt;
        }
        const std::optional<unsigned char> byte = byteOf(*c);
        if (!byte) {
            return std::nullopt;
        }
        out += static_cast<char>(*byte);
    }
    return out;
}

std::string fromCodePage(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (const char byte : bytes) {
        appendUtf8(out, characterOf(static_cast<unsigned char>(byte)));
    }
    return out;
}

} // namespace pluvarine
