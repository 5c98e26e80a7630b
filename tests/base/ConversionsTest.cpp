#include "base/Conversions.h"

#include "base/RuntimeError.h"

#include <QLocale>
#include <cfloat>
#include <cmath>
#include <gtest/gtest.h>
#include <iomanip>
#include <limits>
#include <sstream>
#include <string>

namespace pluvarine {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
const std::string kOverflow = "error " + std::to_string(RuntimeError::Overflow);
const std::string kMismatch = "error " + std::to_string(RuntimeError::TypeMismatch);
const std::string kByZero = "error " + std::to_string(RuntimeError::DivisionByZero);
const QLocale kEnglish(QLocale::English, QLocale::UnitedStates);
const QLocale kGerman(QLocale::German, QLocale::Germany);

// What a conversion gives: its text, its number to 15 significant digits, or "error N".
template <typename F> std::string outcome(F&& convert) {
    try {
        std::ostringstream text;
        text << std::setprecision(15) << convert();
        return text.str();
    } catch (const RuntimeError& error) {
        return "error " + std::to_string(error.number());
    }
}

template <typename In> struct Row {
    In in;
    std::string out;
};
using Num = Row<double>;
using Text = Row<const char*>;

// Every row: converting `in` gives `out`.
template <typename F, typename In, typename... More>
void expectRows(F convert, const Row<In>& first, const More&... more) {
    for (const Row<In>& row : {first, more...})
        EXPECT_EQ(outcome([&] { return convert(row.in); }), row.out) << '"' << row.in << '"';
}

TEST(Conversions, ToIntegerRoundsHalfToEvenWithinRange) {
    expectRows(toInt16, Num{0.5, "0"}, Num{1.5, "2"}, Num{2.5, "2"}, Num{3.5, "4"}, Num{-1.5, "-2"},
               Num{-0.5, "0"}, Num{-2.5, "-2"}, Num{0.6, "1"}, Num{0.4999999, "0"},
               Num{32767.49, "32767"}, Num{32767.5, kOverflow}, Num{-32768.5, "-32768"},
               Num{-32768.51, kOverflow}, Num{-32769, kOverflow}, Num{1e300, kOverflow},
               Num{kNaN, kOverflow}, Num{kInf, kOverflow}, Num{-kInf, kOverflow});
    expectRows(toInt32, Num{2.5, "2"}, Num{-1.5, "-2"}, Num{32767.5, "32768"},
               Num{2147483647.49, "2147483647"}, Num{2147483647.5, kOverflow},
               Num{-2147483648.5, "-2147483648"}, Num{-2147483649.0, kOverflow},
               Num{kNaN, kOverflow});
}

TEST(Conversions, TextToDoubleReadsOnlyWholeNumbers) {
    expectRows([](const char* text) { return textToDouble(text, kEnglish); }, Text{"", kMismatch},
               Text{"   ", kMismatch}, Text{"1+2", kMismatch}, Text{"1e", kMismatch},
               Text{"+5", "5"}, Text{" 12 ", "12"}, Text{"1e3", "1000"}, Text{"1E-2", "0.01"},
               Text{"2.5e+1", "25"}, Text{"-2.5", "-2.5"}, Text{".5", "0.5"}, Text{"5.", "5"},
               Text{"\t7\t", "7"}, Text{"0", "0"}, Text{".", kMismatch}, Text{"-", kMismatch},
               Text{"+", kMismatch}, Text{"abc", kMismatch}, Text{"12abc", kMismatch},
               Text{"1 2", kMismatch}, Text{"- 5", kMismatch}, Text{"1,5", kMismatch},
               Text{"1,000", kMismatch}, Text{"1.2.3", kMismatch}, Text{"&HFF", kMismatch},
               Text{"1e400", kOverflow});
    expectRows([](const char* text) { return textToDouble(text, kGerman); }, Text{"1,5", "1.5"},
               Text{"-0,25", "-0.25"}, Text{" 300 ", "300"}, Text{"1,5e2", "150"},
               Text{"1.5", kMismatch}, Text{"1.000", kMismatch}, Text{"1.000,5", kMismatch});
    // The one-argument form reads with the system's decimal separator.
    EXPECT_EQ(textToDouble("12" + QLocale::system().decimalPoint().toStdString() + "5"), 12.5);
}

TEST(Conversions, NumberTextHasASignPositionAndAFullStop) {
    expectRows([](double value) { return numberText(value); }, Num{7, " 7"}, Num{0, " 0"},
               Num{-0.0, " 0"}, Num{2545.8, " 2545.8"}, Num{0.1, " .1"}, Num{-0.5, "-.5"},
               Num{-3, "-3"}, Num{1.0 / 3.0, " .333333333333333"}, Num{123.456, " 123.456"},
               Num{32767, " 32767"}, Num{1e20, " 1E+20"}, Num{-1e-20, "-1E-20"},
               Num{-kInf, kOverflow});
    // Single precision: seven digits.
    expectRows([](double value) { return numberText(float(value)); }, Num{7, " 7"}, Num{0.1, " .1"},
               Num{-0.5, "-.5"}, Num{2545.8, " 2545.8"}, Num{1.0 / 3.0, " .3333333"},
               Num{12345678, " 1.234568E+07"});
}

TEST(Conversions, NumberToTextUsesSevenOrFifteenDigits) {
    expectRows([](double value) { return singleToText(float(value), kEnglish); },
               Num{12.3456789, "12.34568"}, Num{1234.56789, "1234.568"},
               Num{654322.23456, "654322.3"}, Num{0.5, "0.5"}, Num{0.00005, "0.00005"},
               Num{1e7, "1E+07"}, Num{9999999, "9999999"}, Num{12345678, "1.234568E+07"},
               Num{1e8, "1E+08"}, Num{99999.998, "100000"}, Num{-2.5, "-2.5"}, Num{-0.0, "0"},
               Num{0, "0"}, Num{0.1, "0.1"}, Num{1e-7, "0.0000001"}, Num{1e-8, "1E-08"},
               Num{1.5e-6, "0.0000015"}, Num{1.25e-6, "1.25E-06"});
    expectRows([](double value) { return singleToText(float(value), kGerman); },
               Num{12.3456789, "12,34568"}, Num{1e7, "1E+07"}, Num{1.5e-8, "1,5E-08"});
    expectRows([](double value) { return doubleToText(value, kEnglish); },
               Num{999999999999999, "999999999999999"}, Num{1e15, "1E+15"},
               Num{M_PI, "3.14159265358979"}, Num{5.6789e-11, "0.000000000056789"},
               Num{5.6789e-12, "5.6789E-12"}, Num{2560, "2560"}, Num{-0.0, "0"},
               Num{0.1 + 0.2, "0.3"}, Num{-1234.5, "-1234.5"}, Num{1e308, "1E+308"},
               Num{1e-300, "1E-300"}, Num{2.5e100, "2.5E+100"}, Num{9999999999999999.0, "1E+16"},
               Num{0.9999999999999999, "1"}, Num{999999999999999.9, "1E+15"}, Num{kInf, kOverflow},
               Num{kNaN, kOverflow});
    expectRows([](double value) { return doubleToText(value, kGerman); },
               Num{M_PI, "3,14159265358979"}, Num{2560, "2560"}, Num{-0.5, "-0,5"});
}

TEST(Conversions, LeadingNumberReadsAsFarAsANumberGoes) {
    expectRows(leadingNumber, Text{" 7", "7"}, Text{" 2 45 7", "2457"}, Text{"24 and 57", "24"},
               Text{"1e3", "1000"}, Text{"1.2.3", "1.2"}, Text{"12,5", "12"}, Text{"12abc", "12"},
               Text{"", "0"}, Text{"abc", "0"}, Text{"&HFF", "255"}, Text{"&O17", "15"},
               Text{"&hff", "255"}, Text{"&o17", "15"}, Text{"&HFFFF", "-1"},
               Text{"&H10000", "65536"}, Text{"&HFFFFFFFF", "-1"}, Text{"&O78", "7"},
               Text{"&X1", "0"}, Text{"&", "0"}, Text{"-3.5", "-3.5"}, Text{"+4", "4"},
               Text{"\t-\r\n4", "-4"}, Text{"+-4", "0"}, Text{"4-2", "4"}, Text{".5", "0.5"},
               Text{" -.5", "-0.5"}, Text{"1d2", "100"}, Text{"1D-2", "0.01"}, Text{"1e", "1"},
               Text{"1e+", "1"}, Text{"2E 2", "200"}, Text{" 2545.8", "2545.8"}, Text{"-", "0"},
               Text{".", "0"}, Text{"1e400", kOverflow}, Text{"&H100000000", kOverflow});
    // It reads back what numberText writes, exactly.
    for (const double value : {0.0, 7.0, -3.0, 0.1, -0.5, 2545.8, 1e20, 32767.0})
        EXPECT_EQ(leadingNumber(numberText(value)), value) << value;
}

TEST(Conversions, DivideFailsAsTheRuntimeDoes) {
    const std::tuple<double, double, std::string> cases[] = {
        {6, 3, "2"},          {-1, 4, "-0.25"},    {0, 5, "0"},       {1, 0, kByZero},
        {-1, 0, kByZero},     {1, -0.0, kByZero},  {0, 0, kOverflow}, {1e308, 1e-10, kOverflow},
        {kNaN, 1, kOverflow}, {kInf, 1, kOverflow}};
    for (const auto& [numerator, denominator, expected] : cases)
        EXPECT_EQ(outcome([&] { return divide(numerator, denominator); }), expected)
            << numerator << " / " << denominator;
}

TEST(Conversions, ToSingleNarrowsOrOverflows) {
    const std::pair<double, float> narrowed[] = {
        {0.1, 0.1f}, {-2545.8, -2545.8f}, {FLT_MAX, FLT_MAX}, {-FLT_MAX, -FLT_MAX}, {1e-50, 0}};
    for (const auto& [value, expected] : narrowed)
        EXPECT_EQ(toSingle(value), expected) << value;
    expectRows(toSingle, Num{1e39, kOverflow}, Num{-1e39, kOverflow}, Num{kNaN, kOverflow},
               Num{kInf, kOverflow});
}

} // namespace
} // namespace pluvarine
