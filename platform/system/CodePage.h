#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pluvarine {

// The one-byte code page in which texts cross into profile files and archive records:
// Windows-1252 (Western European), the code page of the program's German, English and French
// systems. One character is one byte. Its five unassigned bytes (0x81, 0x8D, 0x8F, 0x90, 0x9D)
// map to the control characters of the same number, so every byte sequence decodes and decoding
// then encoding gives the same bytes back.

// UTF-8 to the code page; nullopt when the text is not valid UTF-8 or holds a character the
// code page cannot represent (such a text is refused, never mangled).
std::optional<std::string> toCodePage(std::string_view utf8);

// The code page to UTF-8; every byte sequence has a text.
std::string fromCodePage(std::string_view bytes);

} // namespace pluvarine
