#include "base/Conversions.h"

#include "base/RuntimeError.h"

#include <QLocale>
#include <QString>
#include <cfloat>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <locale.h>
#include <stdlib.h>

namespace pluvarine {

namespace {

[[noreturn]] void throwOverflow() {
    throw RuntimeError(RuntimeError::Overflow, "Overflow");
}

[[noreturn]] void throwTypeMismatch() {
    throw RuntimeError(RuntimeError::TypeMismatch, "Type mismatch");
}

// Round half to even to a whole number (independent of the floating-point rounding mode).
double roundHalfEven(double value) {
    const double lower = std::floor(value);
    const double fraction = value - lower;
    if (fraction < 0.5) {
        return lower;
    }
    if (fraction > 0.5) {
        return lower + 1.0;
    }
    return std::fmod(lower, 2.0) == 0.0 ? lower : lower + 1.0;
}

template <typename Int> Int toInteger(double value) {
    if (!std::isfinite(value)) {
        throwOverflow();
    }
    const double rounded = roundHalfEven(value);
    if (rounded < static_cast<double>(std::numeric_limits<Int>::min()) ||
        rounded > static_cast<double>(std::numeric_limits<Int>::max())) {
        throwOverflow();
    }
    return static_cast<Int>(rounded);
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// A number rounded to a count of significant digits: the digits without trailing zeros and the
// decimal exponent of the first one (value = 0.d1d2d3... * 10^(exponent + 1)).
struct Decimal {
    bool negative = false;
    std::string digits; // empty for zero
    int exponent = 0;
};

// The runtime rounds the exact binary value half away from zero. The value is printed with all
// of its decimal digits (a double has at most 767 significant ones), so no second rounding
// happens before ours.
Decimal roundToDigits(double value, int precision) {
    Decimal result;
    result.negative = std::signbit(value) && value != 0.0;
    if (value == 0.0) {
        return result;
    }
    char buffer[1100];
    std::snprintf(buffer, sizeof buffer, "%.780e", std::fabs(value));
    std::string digits;
    const char* p = buffer;
    for (; *p != 'e'; ++p) {
        if (isDigit(*p)) {
            digits.push_back(*p);
        }
    }
    int exponent = std::atoi(p + 1);
    const bool roundUp = digits[static_cast<std::size_t>(precision)] >= '5';
    digits.resize(static_cast<std::size_t>(precision));
    if (roundUp) {
        int i = precision - 1;
        while (i >= 0 && digits[static_cast<std::size_t>(i)] == '9') {
            digits[static_cast<std::size_t>(i)] = '0';
            --i;
        }
        if (i < 0) {
            digits.insert(digits.begin(), '1');
            digits.pop_back();
            ++exponent;
        } else {
            ++digits[static_cast<std::size_t>(i)];
        }
    }
    while (!digits.empty() && digits.back() == '0') {
        digits.pop_back();
    }
    result.digits = digits;
    result.exponent = exponent;
    return result;
}

// Lays out a rounded number: fixed notation when it needs at most `precision` digits, the
// exponent form ("1E+08", "5.6789E-12") otherwise. No sign; `separator` between the parts.
std::string layOut(const Decimal& number, int precision, const std::string& separator,
                   bool dropLeadingZero) {
    if (number.digits.empty()) {
        return "0";
    }
    const int count = static_cast<int>(number.digits.size());
    const int e = number.exponent;
    std::string text;
    if (e >= precision || (e < 0 && -e - 1 + count > precision)) {
        text.push_back(number.digits[0]);
        if (count > 1) {
            text += separator;
            text.append(number.digits, 1);
        }
        char exponentText[16];
        std::snprintf(exponentText, sizeof exponentText, "E%c%02d", e < 0 ? '-' : '+',
                      e < 0 ? -e : e);
        return text + exponentText;
    }
    if (e >= 0) {
        const auto whole = static_cast<std::size_t>(e + 1);
        if (number.digits.size() <= whole) {
            return number.digits + std::string(whole - number.digits.size(), '0');
        }
        return number.digits.substr(0, whole) + separator + number.digits.substr(whole);
    }
    text = dropLeadingZero ? std::string() : std::string("0");
    return text + separator + std::string(static_cast<std::size_t>(-e - 1), '0') + number.digits;
}

std::string toText(double value, int precision, const QLocale& locale) {
    if (!std::isfinite(value)) {
        throwOverflow();
    }
    const Decimal number = roundToDigits(value, precision);
    const std::string text = layOut(number, precision, locale.decimalPoint().toStdString(), false);
    return number.negative && !number.digits.empty() ? "-" + text : text;
}

std::string signedText(double value, int precision) {
    if (!std::isfinite(value)) {
        throwOverflow();
    }
    const Decimal number = roundToDigits(value, precision);
    const std::string text = layOut(number, precision, ".", true);
    return (number.negative && !number.digits.empty() ? "-" : " ") + text;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Scanning helpers: each copies what it reads at text[i] to the C-notation text and advances i.
bool copySign(std::string_view text, std::size_t& i, std::string& out) {
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        out.push_back(text[i++]);
        return true;
    }
    return false;
}

int copyDigits(std::string_view text, std::size_t& i, std::string& out) {
    int count = 0;
    for (; i < text.size() && isDigit(text[i]); ++i, ++count) {
        out.push_back(text[i]);
    }
    return count;
}

// An exponent letter at text[i] followed by an optional sign and digits; false (nothing
// copied, i unchanged) when no digit follows.
bool copyExponent(std::string_view text, std::size_t& i, std::string& out,
                  std::string_view letters) {
    if (i >= text.size() || letters.find(text[i]) == std::string_view::npos) {
        return false;
    }
    std::size_t j = i + 1;
    std::string exponent = "e";
    copySign(text, j, exponent);
    if (copyDigits(text, j, exponent) == 0) {
        return false;
    }
    out += exponent;
    i = j;
    return true;
}

bool startsWith(std::string_view text, std::size_t at, std::string_view prefix) {
    return !prefix.empty() && text.substr(at, prefix.size()) == prefix;
}

// strtod follows the C library's locale, which a Qt application sets from the environment, so
// the C notation is read with an explicit "C" locale.
double parseCNumber(const std::string& text) {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    const double value = strtod_l(text.c_str(), nullptr, cLocale);
    if (std::isinf(value)) {
        throwOverflow();
    }
    return value;
}

} // namespace

std::int16_t toInt16(double value) {
    return toInteger<std::int16_t>(value);
}

std::int32_t toInt32(double value) {
    return toInteger<std::int32_t>(value);
}

double textToDouble(std::string_view text) {
    return textToDouble(text, QLocale::system());
}

// Grammar: blanks, [sign], digits [separator digits], [e|E [sign] digits], blanks, with at least
// one mantissa digit. Group separators are refused: "1.000" in a German locale is no number,
// so a typed value is never silently multiplied by a thousand.
double textToDouble(std::string_view text, const QLocale& locale) {
    const std::string separator = locale.decimalPoint().toStdString();
    const std::string negative = locale.negativeSign().toStdString();
    const std::string positive = locale.positiveSign().toStdString();

    std::size_t begin = 0;
    std::size_t end = text.size();
    while (begin < end && isBlank(text[begin])) {
        ++begin;
    }
    while (end > begin && isBlank(text[end - 1])) {
        --end;
    }
    const std::string_view body = text.substr(begin, end - begin);

    std::string cText; // the same number in the C locale's notation
    std::size_t i = 0;
    if (!copySign(body, i, cText)) {
        if (startsWith(body, i, negative)) {
            cText.push_back('-');
            i += negative.size();
        } else if (startsWith(body, i, positive)) {
            i += positive.size();
        }
    }
    int mantissaDigits = copyDigits(body, i, cText);
    if (startsWith(body, i, separator)) {
        cText.push_back('.');
        i += separator.size();
        mantissaDigits += copyDigits(body, i, cText);
    }
    if (mantissaDigits == 0) {
        throwTypeMismatch();
    }
    copyExponent(body, i, cText, "eE");
    if (i != body.size()) {
        throwTypeMismatch();
    }
    return parseCNumber(cText);
}

std::string numberText(double value) {
    return signedText(value, 15);
}

std::string numberText(float value) {
    return signedText(static_cast<double>(value), 7);
}

std::string singleToText(float value) {
    return singleToText(value, QLocale::system());
}

std::string singleToText(float value, const QLocale& locale) {
    return toText(static_cast<double>(value), 7, locale);
}

std::string doubleToText(double value) {
    return doubleToText(value, QLocale::system());
}

std::string doubleToText(double value, const QLocale& locale) {
    return toText(value, 15, locale);
}

// Reads as far as a number goes. Hexadecimal and octal values take the width of the smallest
// integer type that holds their bits, as the runtime's literals do: "&HFFFF" is -1.
double leadingNumber(std::string_view text) {
    std::string clean; // the text without blanks
    for (const char c : text) {
        if (!isBlank(c)) {
            clean.push_back(c);
        }
    }
    if (clean.size() >= 2 && clean[0] == '&') {
        const char kind = static_cast<char>(clean[1] | 0x20);
        if (kind != 'h' && kind != 'o') {
            return 0.0;
        }
        const unsigned base = kind == 'h' ? 16U : 8U;
        std::uint64_t bits = 0;
        for (std::size_t i = 2; i < clean.size(); ++i) {
            const char c = static_cast<char>(clean[i] | 0x20);
            unsigned digit = 0;
            if (isDigit(clean[i])) {
                digit = static_cast<unsigned>(clean[i] - '0');
            } else if (c >= 'a' && c <= 'f') {
                digit = static_cast<unsigned>(c - 'a' + 10);
            } else {
                break;
            }
            if (digit >= base) {
                break;
            }
            bits = bits * base + digit;
            if (bits > 0xFFFFFFFFULL) {
                throwOverflow();
            }
        }
        if (bits <= 0xFFFFULL) {
            return static_cast<std::int16_t>(static_cast<std::uint16_t>(bits));
        }
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(bits));
    }

    std::string cText;
    std::size_t i = 0;
    copySign(clean, i, cText);
    int digits = copyDigits(clean, i, cText);
    if (i < clean.size() && clean[i] == '.') {
        cText.push_back(clean[i++]);
        digits += copyDigits(clean, i, cText);
    }
    if (digits == 0) {
        return 0.0;
    }
    copyExponent(clean, i, cText, "eEdD");
    return parseCNumber(cText);
}

double divide(double numerator, double denominator) {
    if (std::isnan(numerator) || std::isnan(denominator)) {
        throwOverflow();
    }
    if (denominator == 0.0) {
        if (numerator == 0.0) {
            throwOverflow();
        }
        throw RuntimeError(RuntimeError::DivisionByZero, "Division by zero");
    }
    const double result = numerator / denominator;
    if (!std::isfinite(result)) {
        throwOverflow();
    }
    return result;
}

float toSingle(double value) {
    if (!std::isfinite(value) || std::fabs(value) > static_cast<double>(FLT_MAX)) {
        throwOverflow();
    }
    return static_cast<float>(value);
}

} // namespace pluvarine
