#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pluvarine {

// Private-profile files ("[Section]" lines and "key=value" lines) with the rules of the
// platform's GetPrivateProfileStringA / WritePrivateProfileStringA. Section, key and value are
// bytes in the one-byte code page (see CodePage.h); the file name is a path as the file system
// takes it.
//
// Reading:
// - Section and key names compare without regard to ASCII case; the names asked for and the
//   names in the file are trimmed of blanks and tabs.
// - A line whose first non-blank character is ';' is a comment; ';' or '#' later on is data.
//   Blank lines and lines without '=' are not keys. "[sec]junk" is the section "sec".
// - Lines before the first section belong to no section.
// - Duplicate sections or keys: the first one wins.
// - The value is trimmed of blanks and tabs, then loses one matching pair of outer quotes
//   (' or "): k=  " v "  reads " v ", k="x' reads "x' unchanged.
// Writing:
// - A new file is "[Section]" CRLF "key=value" CRLF, 8-bit, without a byte-order mark.
// - The value is written exactly as given. An existing key is replaced in place, keeping the
//   spelling of its name in the file; a new key goes after the last non-blank line of its
//   section; a new section is appended at the end. Every other byte stays as it was.
// - The file is replaced atomically (temporary file, flush, rename): a failed write leaves the
//   old file whole.
// - Refused (result 0, nothing written): an empty section or key name, CR, LF or NUL in any
//   text, ']' in a section name, '=' in a key name or a key name starting with ';' or '[':
//   such an entry could not be read back as written.

// The value of the key in the section of a profile text; nullopt when missing.
std::optional<std::string> findProfileValue(std::string_view content, std::string_view section,
                                            std::string_view key);

// The profile text with the key set to value as the write rules above say.
// Precondition: isWritableProfileEntry(section, key, value).
std::string withProfileValue(std::string_view content, std::string_view section,
                             std::string_view key, std::string_view value);

bool isWritableProfileEntry(std::string_view section, std::string_view key, std::string_view value);

// Copies the value (or defaultValue when the file, section or key is missing) into buffer,
// at most size - 1 characters and a terminating NUL; returns the number of characters copied.
std::uint32_t GetPrivateProfileStringA(std::string_view section, std::string_view key,
                                       std::string_view defaultValue, char* buffer,
                                       std::uint32_t size, const std::string& fileName);

// Creates the file, the section or the key when missing and replaces an existing value.
// Non-zero on success, 0 when refused or when the file could not be read or written.
std::int32_t WritePrivateProfileStringA(std::string_view section, std::string_view key,
                                        std::string_view value, const std::string& fileName);

} // namespace pluvarine
