#include "base/Conversions.h"

#include "base/RuntimeError.h"

#include <QLocale>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <string>

namespace pluvarine {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// The error number a conversion fails with, or nothing when it succeeds.
template <typename F> std::optional<int> failure(F&& f) {
    try {
        f();
    } catch (const RuntimeError& error) {
        return error.number();
    }
    return std::nullopt;
}

const QLocale& english() {
    static const QLocale locale(QLocale::English, QLocale::UnitedStates);
    return locale;
}

const QLocale& german() {
    static const QLocale locale(QLocale::German, QLocale::Germany);
    return locale;
}

// --- Number to integer ---------------------------------------------------------------------

struct IntCase {
    int bits; // 16 or 32
    double value;
    std::optional<std::int64_t> expected; // nothing: Overflow
};

class ToInteger : public ::testing::TestWithParam<IntCase> {};

TEST_P(ToInteger, RoundsHalfToEvenWithinRange) {
    const IntCase& c = GetParam();
    const auto convert = [&]() -> std::int64_t {
        return c.bits == 16 ? toInt16(c.value) : toInt32(c.value);
    };
    if (c.expected) {
        EXPECT_EQ(convert(), *c.expected) << c.value;
    } else {
        EXPECT_EQ(failure(convert), RuntimeError::Overflow) << c.value;
    }
}

constexpr std::nullopt_t kOverflow = std::nullopt;

INSTANTIATE_TEST_SUITE_P(
    Int16, ToInteger,
    ::testing::Values(IntCase{16, 0.5, 0}, IntCase{16, 1.5, 2}, IntCase{16, 2.5, 2},
                      IntCase{16, 3.5, 4}, IntCase{16, -1.5, -2}, IntCase{16, -0.5, 0},
                      IntCase{16, -2.5, -2}, IntCase{16, 0.6, 1}, IntCase{16, 0.4999999, 0},
                      IntCase{16, 32767.49, 32767}, IntCase{16, 32767.5, kOverflow},
                      IntCase{16, -32768.5, -32768}, IntCase{16, -32768.51, kOverflow},
                      IntCase{16, -32769, kOverflow}, IntCase{16, 1e300, kOverflow},
                      IntCase{16, kNaN, kOverflow}, IntCase{16, kInf, kOverflow},
                      IntCase{16, -kInf, kOverflow}));

INSTANTIATE_TEST_SUITE_P(
    Int32, ToInteger,
    ::testing::Values(IntCase{32, 2.5, 2}, IntCase{32, -1.5, -2}, IntCase{32, 32767.5, 32768},
                      IntCase{32, 2147483647.49, 2147483647}, IntCase{32, 2147483647.5, kOverflow},
                      IntCase{32, -2147483648.5, -2147483648LL},
                      IntCase{32, -2147483649.0, kOverflow}, IntCase{32, kNaN, kOverflow}));

// --- Locale-aware text to number -----------------------------------------------------------

struct TextCase {
    const char* locale; // "en" or "de"
    const char* text;
    std::optional<double> expected;
    int error = RuntimeError::TypeMismatch;
};

class TextToDouble : public ::testing::TestWithParam<TextCase> {};

TEST_P(TextToDouble, ReadsOnlyWholeNumbers) {
    const TextCase& c = GetParam();
    const QLocale& locale = std::string(c.locale) == "de" ? german() : english();
    if (c.expected) {
        EXPECT_DOUBLE_EQ(textToDouble(c.text, locale), *c.expected) << '"' << c.text << '"';
    } else {
        EXPECT_EQ(failure([&] { textToDouble(c.text, locale); }), c.error) << '"' << c.text << '"';
    }
}

INSTANTIATE_TEST_SUITE_P(
    Table, TextToDouble,
    ::testing::Values(
        TextCase{"en", "", std::nullopt}, TextCase{"en", "   ", std::nullopt},
        TextCase{"en", "1+2", std::nullopt}, TextCase{"en", "1e", std::nullopt},
        TextCase{"en", "+5", 5.0}, TextCase{"en", " 12 ", 12.0}, TextCase{"en", "1e3", 1000.0},
        TextCase{"en", "1E-2", 0.01}, TextCase{"en", "2.5e+1", 25.0}, TextCase{"en", "-2.5", -2.5},
        TextCase{"en", ".5", 0.5}, TextCase{"en", "5.", 5.0}, TextCase{"en", "\t7\t", 7.0},
        TextCase{"en", "0", 0.0}, TextCase{"en", ".", std::nullopt},
        TextCase{"en", "-", std::nullopt}, TextCase{"en", "+", std::nullopt},
        TextCase{"en", "abc", std::nullopt}, TextCase{"en", "12abc", std::nullopt},
        TextCase{"en", "1 2", std::nullopt}, TextCase{"en", "- 5", std::nullopt},
        TextCase{"en", "1,5", std::nullopt}, TextCase{"en", "1,000", std::nullopt},
        TextCase{"en", "1.2.3", std::nullopt}, TextCase{"en", "&HFF", std::nullopt},
        TextCase{"en", "1e400", std::nullopt, RuntimeError::Overflow}, TextCase{"de", "1,5", 1.5},
        TextCase{"de", "-0,25", -0.25}, TextCase{"de", " 300 ", 300.0},
        TextCase{"de", "1,5e2", 150.0}, TextCase{"de", "1.5", std::nullopt},
        TextCase{"de", "1.000", std::nullopt}, TextCase{"de", "1.000,5", std::nullopt}));

TEST(TextToDoubleSystem, OneArgumentFormUsesTheSystemLocale) {
    const QLocale system = QLocale::system();
    const std::string text = "12" + system.decimalPoint().toStdString() + "5";
    EXPECT_DOUBLE_EQ(textToDouble(text), 12.5);
}

// --- Number text with a sign position ------------------------------------------------------

struct SignedCase {
    double value;
    const char* expected;
};

class NumberTextDouble : public ::testing::TestWithParam<SignedCase> {};

TEST_P(NumberTextDouble, HasASignPositionAndAFullStop) {
    EXPECT_EQ(numberText(GetParam().value), GetParam().expected) << GetParam().value;
}

INSTANTIATE_TEST_SUITE_P(Table, NumberTextDouble,
                         ::testing::Values(SignedCase{7, " 7"}, SignedCase{0, " 0"},
                                           SignedCase{-0.0, " 0"}, SignedCase{2545.8, " 2545.8"},
                                           SignedCase{0.1, " .1"}, SignedCase{-0.5, "-.5"},
                                           SignedCase{-3, "-3"},
                                           SignedCase{1.0 / 3.0, " .333333333333333"},
                                           SignedCase{123.456, " 123.456"},
                                           SignedCase{32767, " 32767"}, SignedCase{1e20, " 1E+20"},
                                           SignedCase{-1e-20, "-1E-20"}));

class NumberTextSingle : public ::testing::TestWithParam<SignedCase> {};

TEST_P(NumberTextSingle, UsesSevenDigits) {
    EXPECT_EQ(numberText(static_cast<float>(GetParam().value)), GetParam().expected)
        << GetParam().value;
}

INSTANTIATE_TEST_SUITE_P(Table, NumberTextSingle,
                         ::testing::Values(SignedCase{7, " 7"}, SignedCase{0.1, " .1"},
                                           SignedCase{-0.5, "-.5"}, SignedCase{2545.8, " 2545.8"},
                                           SignedCase{1.0 / 3.0, " .3333333"},
                                           SignedCase{12345678, " 1.234568E+07"}));

// --- Number to text as a label shows it ----------------------------------------------------

struct ShownCase {
    const char* locale;
    double value;
    const char* expected;
};

class SingleToText : public ::testing::TestWithParam<ShownCase> {};

TEST_P(SingleToText, UsesUpToSevenDigits) {
    const ShownCase& c = GetParam();
    const QLocale& locale = std::string(c.locale) == "de" ? german() : english();
    EXPECT_EQ(singleToText(static_cast<float>(c.value), locale), c.expected) << c.value;
}

INSTANTIATE_TEST_SUITE_P(
    Table, SingleToText,
    ::testing::Values(ShownCase{"en", 12.3456789, "12.34568"},
                      ShownCase{"en", 1234.56789, "1234.568"},
                      ShownCase{"en", 654322.23456, "654322.3"}, ShownCase{"en", 0.5, "0.5"},
                      ShownCase{"en", 0.00005, "0.00005"}, ShownCase{"en", 1e7, "1E+07"},
                      ShownCase{"en", 9999999, "9999999"},
                      ShownCase{"en", 12345678, "1.234568E+07"}, ShownCase{"en", 1e8, "1E+08"},
                      ShownCase{"en", 99999.998, "100000"}, ShownCase{"en", -2.5, "-2.5"},
                      ShownCase{"en", -0.0, "0"}, ShownCase{"en", 0, "0"},
                      ShownCase{"en", 0.1, "0.1"}, ShownCase{"en", 1e-7, "0.0000001"},
                      ShownCase{"en", 1e-8, "1E-08"}, ShownCase{"en", 1.5e-6, "0.0000015"},
                      ShownCase{"en", 1.25e-6, "1.25E-06"}, ShownCase{"de", 12.3456789, "12,34568"},
                      ShownCase{"de", 1e7, "1E+07"}, ShownCase{"de", 1.5e-8, "1,5E-08"}));

class DoubleToText : public ::testing::TestWithParam<ShownCase> {};

TEST_P(DoubleToText, UsesUpToFifteenDigits) {
    const ShownCase& c = GetParam();
    const QLocale& locale = std::string(c.locale) == "de" ? german() : english();
    EXPECT_EQ(doubleToText(c.value, locale), c.expected) << c.value;
}

INSTANTIATE_TEST_SUITE_P(
    Table, DoubleToText,
    ::testing::Values(
        ShownCase{"en", 999999999999999, "999999999999999"}, ShownCase{"en", 1e15, "1E+15"},
        ShownCase{"en", M_PI, "3.14159265358979"}, ShownCase{"en", 5.6789e-11, "0.000000000056789"},
        ShownCase{"en", 5.6789e-12, "5.6789E-12"}, ShownCase{"en", 2560, "2560"},
        ShownCase{"en", -0.0, "0"}, ShownCase{"en", 0.1 + 0.2, "0.3"},
        ShownCase{"en", -1234.5, "-1234.5"}, ShownCase{"en", 1e308, "1E+308"},
        ShownCase{"en", 1e-300, "1E-300"}, ShownCase{"en", 2.5e100, "2.5E+100"},
        ShownCase{"en", 9999999999999999.0, "1E+16"}, ShownCase{"en", 0.9999999999999999, "1"},
        ShownCase{"en", 999999999999999.9, "1E+15"}, ShownCase{"de", M_PI, "3,14159265358979"},
        ShownCase{"de", 2560, "2560"}, ShownCase{"de", -0.5, "-0,5"}));

TEST(NumberToTextFaults, NonFiniteValuesOverflow) {
    EXPECT_EQ(failure([] { doubleToText(kInf, english()); }), RuntimeError::Overflow);
    EXPECT_EQ(failure([] { doubleToText(kNaN, english()); }), RuntimeError::Overflow);
    EXPECT_EQ(failure([] { numberText(-kInf); }), RuntimeError::Overflow);
}

// --- Leading-number reading ----------------------------------------------------------------

struct LeadingCase {
    const char* text;
    double expected;
};

class LeadingNumber : public ::testing::TestWithParam<LeadingCase> {};

TEST_P(LeadingNumber, ReadsAsFarAsANumberGoes) {
    EXPECT_DOUBLE_EQ(leadingNumber(GetParam().text), GetParam().expected)
        << '"' << GetParam().text << '"';
}

INSTANTIATE_TEST_SUITE_P(
    Table, LeadingNumber,
    ::testing::Values(LeadingCase{" 7", 7}, LeadingCase{" 2 45 7", 2457},
                      LeadingCase{"24 and 57", 24}, LeadingCase{"1e3", 1000},
                      LeadingCase{"1.2.3", 1.2}, LeadingCase{"12,5", 12}, LeadingCase{"12abc", 12},
                      LeadingCase{"", 0}, LeadingCase{"abc", 0}, LeadingCase{"&HFF", 255},
                      LeadingCase{"&O17", 15}, LeadingCase{"&hff", 255}, LeadingCase{"&o17", 15},
                      LeadingCase{"&HFFFF", -1}, LeadingCase{"&H10000", 65536},
                      LeadingCase{"&HFFFFFFFF", -1}, LeadingCase{"&O78", 7}, LeadingCase{"&X1", 0},
                      LeadingCase{"&", 0}, LeadingCase{"-3.5", -3.5}, LeadingCase{"+4", 4},
                      LeadingCase{"\t-\r\n4", -4}, LeadingCase{"+-4", 0}, LeadingCase{"4-2", 4},
                      LeadingCase{".5", 0.5}, LeadingCase{" -.5", -0.5}, LeadingCase{"1d2", 100},
                      LeadingCase{"1D-2", 0.01}, LeadingCase{"1e", 1}, LeadingCase{"1e+", 1},
                      LeadingCase{"2E 2", 200}, LeadingCase{" 2545.8", 2545.8}, LeadingCase{"-", 0},
                      LeadingCase{".", 0}));

TEST(LeadingNumberFaults, OutOfRangeOverflows) {
    EXPECT_EQ(failure([] { leadingNumber("1e400"); }), RuntimeError::Overflow);
    EXPECT_EQ(failure([] { leadingNumber("&H100000000"); }), RuntimeError::Overflow);
}

TEST(LeadingNumberRoundTrip, ReadsBackNumberText) {
    for (const double value : {0.0, 7.0, -3.0, 0.1, -0.5, 2545.8, 1e20, 32767.0}) {
        EXPECT_EQ(leadingNumber(numberText(value)), value) << value;
    }
}

// --- Arithmetic faults ---------------------------------------------------------------------

struct DivideCase {
    double numerator;
    double denominator;
    std::optional<double> expected;
    int error = 0;
};

class Divide : public ::testing::TestWithParam<DivideCase> {};

TEST_P(Divide, FailsAsTheRuntimeDoes) {
    const DivideCase& c = GetParam();
    if (c.expected) {
        EXPECT_DOUBLE_EQ(divide(c.numerator, c.denominator), *c.expected);
    } else {
        EXPECT_EQ(failure([&] { divide(c.numerator, c.denominator); }), c.error)
            << c.numerator << " / " << c.denominator;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Table, Divide,
    ::testing::Values(DivideCase{6, 3, 2.0}, DivideCase{-1, 4, -0.25}, DivideCase{0, 5, 0.0},
                      DivideCase{1, 0, std::nullopt, RuntimeError::DivisionByZero},
                      DivideCase{-1, 0, std::nullopt, RuntimeError::DivisionByZero},
                      DivideCase{1, -0.0, std::nullopt, RuntimeError::DivisionByZero},
                      DivideCase{0, 0, std::nullopt, RuntimeError::Overflow},
                      DivideCase{1e308, 1e-10, std::nullopt, RuntimeError::Overflow},
                      DivideCase{kNaN, 1, std::nullopt, RuntimeError::Overflow},
                      DivideCase{kInf, 1, std::nullopt, RuntimeError::Overflow}));

struct SingleCase {
    double value;
    std::optional<float> expected;
};

class ToSingle : public ::testing::TestWithParam<SingleCase> {};

TEST_P(ToSingle, NarrowsOrOverflows) {
    const SingleCase& c = GetParam();
    if (c.expected) {
        EXPECT_EQ(toSingle(c.value), *c.expected) << c.value;
    } else {
        EXPECT_EQ(failure([&] { toSingle(c.value); }), RuntimeError::Overflow) << c.value;
    }
}

INSTANTIATE_TEST_SUITE_P(Table, ToSingle,
                         ::testing::Values(SingleCase{0.1, 0.1f}, SingleCase{-2545.8, -2545.8f},
                                           SingleCase{static_cast<double>(FLT_MAX), FLT_MAX},
                                           SingleCase{-static_cast<double>(FLT_MAX), -FLT_MAX},
                                           SingleCase{1e-50, 0.0f}, SingleCase{1e39, std::nullopt},
                                           SingleCase{-1e39, std::nullopt},
                                           SingleCase{kNaN, std::nullopt},
                                           SingleCase{kInf, std::nullopt}));

} // namespace
} // namespace pluvarine
