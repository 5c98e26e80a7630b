#pragma once

#include <cstdint>
#include <string>

namespace pluvarine {

// The private-profile helpers of the settings store. Section, key and value are UTF-8 here and
// cross into the file in the one-byte code page Windows-1252 (CodePage.h); a section, key or
// value that code page cannot represent is refused with a RuntimeError (InvalidProcedureCall)
// rather than written or looked up mangled. The file name is a path as the file system takes it.

// The value with the empty text as default, read into a buffer of 255 characters: a value of 255
// or more characters comes back cut to its first 254. A missing file, section or key gives "".
std::string ReadIni(const std::string& file, const std::string& section, const std::string& key);

// Creates the file, the section or the key when missing and replaces an existing value; the file
// is replaced atomically. Non-zero on success, 0 when the file could not be written (an entry the
// file format cannot hold, such as a value with a line break, is a failed write too).
std::int32_t WriteIni(const std::string& file, const std::string& section, const std::string& key,
                      const std::string& value);

} // namespace pluvarine
