#pragma once

#include <string>

namespace pluvarine {

// The language module: the system default locale's language identifier, read once.

// Fills systemLanguageCode from GetLocaleValue(9): four lowercase hex digits, e.g. "0407".
// The program calls it once at start-up; a later call reads the environment again.
void ReadSystemLanguage();
const std::string& systemLanguageCode();

// One value of the system default locale (9: its default language identifier as text).
// A value type the platform does not know fails with InvalidProcedureCall (RuntimeError), as
// taking the first -1 characters of the empty answer does.
std::string GetLocaleValue(int valueType);

} // namespace pluvarine
