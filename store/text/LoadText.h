#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pluvarine {

// The text with this id in the active language (UTF-8), exactly as the string table holds it,
// trailing blanks included. Every id the program looks up exists in every language; an id
// the table does not have gives the empty text (and a warning on the log), never a failure.
std::string LoadText(int id);

// The text with this id in the table of one language (an LCID below); empty when none.
std::string LoadText(int id, int lcid);

// The languages that have a table, by their Windows locale identifiers.
namespace TextLanguage {
constexpr int German = 1031;
constexpr int EnglishUnitedStates = 1033;
constexpr int EnglishUnitedKingdom = 2057; // the same texts as EnglishUnitedStates
constexpr int French = 1036;
constexpr int Polish = 1045;
constexpr int Russian = 1049;
constexpr int Croatian = 1050;
} // namespace TextLanguage

// The language LoadText(id) reads. Unless set explicitly, it is chosen on first use, once per
// run, from the user's interface languages (QLocale::system().uiLanguages(), which follows
// LANGUAGE, LC_MESSAGES and LANG) by textLanguageFor().
int activeTextLanguage();

// Makes a language active explicitly (tests, scripted sessions). By identifier: a language with
// a table of its own, else the table of its base language (0x0C07 German (Austria) -> German),
// else English (United States). By tag ("de", "de_AT", "en-GB", "hr-Latn-BA"): as
// textLanguageFor({tag}). Both return the identifier of the language now active.
int setActiveTextLanguage(int lcid);
int setActiveTextLanguage(std::string_view languageTag);

// The language for interface languages in order of preference: the first whose language and
// region have a table (en-GB), or whose base language has one (de-AT -> German); English
// (United States) when none has.
int textLanguageFor(const std::vector<std::string>& uiLanguages);

} // namespace pluvarine
