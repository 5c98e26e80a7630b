#pragma once

// Number and text conversions with the semantics of the runtime the program was designed for.
// Failures throw RuntimeError (TypeMismatch, Overflow, DivisionByZero), so a caller that runs
// steps through resumeNext() gives up exactly that step.

#include <cstdint>
#include <string>
#include <string_view>

class QLocale;

namespace pluvarine {

// Number to integer: round half to even; Overflow outside the target range.
std::int16_t toInt16(double value);
std::int32_t toInt32(double value);

// Locale-aware text to number: the whole text must be a number (surrounding blanks allowed,
// optional sign, the locale's decimal separator, exponent); TypeMismatch otherwise.
// The one-argument form uses the user's locale (QLocale::system()).
double textToDouble(std::string_view text);
double textToDouble(std::string_view text, const QLocale& locale);

// Number text with a sign position: " 7", "-3", " .1", "-.5", " 2545.8"; decimal point always
// '.'; Double with up to 15 significant digits, Single with up to 7.
std::string numberText(double value);
std::string numberText(float value);

// Number to text as a label or text box shows it: Single up to 7, Double up to 15 significant
// digits, fixed notation where it fits, exponent "1E+08" otherwise; the locale's decimal
// separator. The one-argument forms use the user's locale.
std::string singleToText(float value);
std::string singleToText(float value, const QLocale& locale);
std::string doubleToText(double value);
std::string doubleToText(double value, const QLocale& locale);

// Leading-number reading: blanks, tabs, CR, LF skipped anywhere; optional sign first; digits,
// one decimal point, exponent (e/E/d/D); stops at the first other character; &H / &O prefixes;
// no number reads as 0.
double leadingNumber(std::string_view text);

// Division with the runtime's faults: x / 0 (x != 0) is DivisionByZero, 0 / 0 and a result
// outside the double range are Overflow.
double divide(double numerator, double denominator);

// Narrowing a double to single precision for the viewer or the host; Overflow when out of range.
float toSingle(double value);

} // namespace pluvarine
