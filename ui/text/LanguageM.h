#pragma once

#include <string>

namespace pluvarine {

// The language module: the system default locale's language identifier, read once.

// Fills systemLanguageCode from GetLocaleValue(9): four lowercase hex digits, e.g. "0407".
void ReadSystemLanguage();
const std::string& systemLanguageCode();

// One value of the system default locale (9: its default language identifier as text).
std::string GetLocaleValue(int valueType);

} // namespace pluvarine
