#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace pluvarine {

// The object counter: a signed 16-bit number kept in the settings store as the number of the
// object exported last (section "Sektion", key "Eintrag"; written as "SEKTION"/"EINTRAG").
// The stored text is read as its leading number ("" and "abc" read as 0).
//
// Out of range: a number that would leave -32768..32767 does not fail the step, it saturates:
// above the range the counter is 32767, below it -32768. This is the rule an insertion already
// follows (an increment beyond 32767 is abandoned and the counter stays at 32767), so a damaged
// or hand-edited Data.ini can never make the start-up or a project load lose the counter.
// Within the range the conversion rounds half to even. A counter that stays at 32767 never
// names a second file: unusedObjectNumber() below passes over numbers already used.

// A number as a counter: round half to even, saturated to the 16-bit range.
std::int16_t counterFromNumber(double number);

// Start-up: the stored number plus 1, then converted (2.5 gives 4). No entry gives 1.
std::int16_t counterAtStartUp(const std::string& settingsFile);

// After a project was restored from its archive: the stored number itself, converted.
std::int16_t counterAfterLoad(const std::string& settingsFile);

// When the host reports that loading is complete: the stored number converted, then plus 1
// (2.5 gives 3). No entry gives 1.
std::int16_t counterAtLoadComplete(const std::string& settingsFile);

// After an export with the counter value used: stores its number text (" 7") and returns the
// number read back plus 1. When the store cannot be written the read gives 0 and the result is 1.
std::int16_t counterAfterExport(const std::string& settingsFile, std::int16_t used);

// The number the next export writes into objFolder: the counter itself, or, when an object file
// (" 7.tob") of that number is already there (a counter entry that was lost, reset or not
// written), the next higher number that has none, so an export never replaces an object file.
// nullopt when every number from the counter up to 32767 has one: the counter is used up.
std::optional<std::int16_t> unusedObjectNumber(const std::string& objFolder, std::int16_t counter);

} // namespace pluvarine
