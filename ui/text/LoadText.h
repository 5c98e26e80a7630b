#pragma once

#include <string>

namespace pluvarine {

// The text with this id in the active language (UTF-8), exactly as the string table holds it,
// trailing blanks included. Every id the program looks up exists in every language.
std::string LoadText(int id);

} // namespace pluvarine
