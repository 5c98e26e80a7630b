#include "store/ObjectCounter.h"

#include "StoreTestSupport.h"

#include <gtest/gtest.h>
#include <optional>

namespace pluvarine {
namespace {

using namespace testing; // the store test fakes and file helpers

struct CounterCase {
    std::optional<std::string> stored; // the value after "EINTRAG=", nullopt: no file
    int atStartUp;
    int afterLoad;
    int atLoadComplete;
};

class ObjectCounterFromStore : public ::testing::TestWithParam<CounterCase> {
protected:
    QTemporaryDir m_dir;
    std::string file() const { return m_dir.path().toStdString() + "/Data.ini"; }
};

TEST_P(ObjectCounterFromStore, DerivesTheCounter) {
    const CounterCase& c = GetParam();
    if (c.stored) {
        writeFile(file(), "[SEKTION]\r\nEINTRAG=" + *c.stored + "\r\n");
    }
    EXPECT_EQ(counterAtStartUp(file()), c.atStartUp);
    EXPECT_EQ(counterAfterLoad(file()), c.afterLoad);
    EXPECT_EQ(counterAtLoadComplete(file()), c.atLoadComplete);
}

INSTANTIATE_TEST_SUITE_P(
    Table, ObjectCounterFromStore,
    ::testing::Values(
        CounterCase{std::nullopt, 1, 0, 1}, CounterCase{std::string(""), 1, 0, 1},
        CounterCase{std::string(" 7"), 8, 7, 8}, CounterCase{std::string("12abc"), 13, 12, 13},
        CounterCase{std::string("abc"), 1, 0, 1}, CounterCase{std::string(" 2 45"), 246, 245, 246},
        // Start-up rounds after adding 1, the load completion before: 3.5 -> 4, 2.5 -> 2 + 1.
        CounterCase{std::string(" 2.5"), 4, 2, 3}, CounterCase{std::string(" 1.5"), 2, 2, 3},
        CounterCase{std::string("&H10"), 17, 16, 17}, CounterCase{std::string("-5"), -4, -5, -4},
        CounterCase{std::string(" 32766"), 32767, 32766, 32767},
        // Beyond the 16-bit range the counter saturates instead of failing.
        CounterCase{std::string(" 32767"), 32767, 32767, 32767},
        CounterCase{std::string(" 32766.5"), 32767, 32766, 32767},
        CounterCase{std::string(" 40000"), 32767, 32767, 32767},
        CounterCase{std::string("1e300"), 32767, 32767, 32767},
        CounterCase{std::string("-32768"), -32767, -32768, -32767},
        CounterCase{std::string("-32769"), -32768, -32768, -32767},
        CounterCase{std::string("-1e9"), -32768, -32768, -32767}));

struct NumberCase {
    double number;
    int counter;
};

class CounterFromNumber : public ::testing::TestWithParam<NumberCase> {};

TEST_P(CounterFromNumber, RoundsHalfToEvenAndSaturates) {
    EXPECT_EQ(counterFromNumber(GetParam().number), GetParam().counter);
}

INSTANTIATE_TEST_SUITE_P(Table, CounterFromNumber,
                         ::testing::Values(NumberCase{0.5, 0}, NumberCase{1.5, 2},
                                           NumberCase{2.5, 2}, NumberCase{-1.5, -2},
                                           NumberCase{32767.49, 32767}, NumberCase{32767.5, 32767},
                                           NumberCase{1e12, 32767}, NumberCase{-32768.5, -32768},
                                           NumberCase{-32768.51, -32768},
                                           NumberCase{-1e12, -32768}));

class ObjectCounterExport : public ::testing::Test {
protected:
    QTemporaryDir m_dir;
    std::string file() const { return m_dir.path().toStdString() + "/Data.ini"; }
};

TEST_F(ObjectCounterExport, StoresTheNumberUsedAndMovesOn) {
    EXPECT_EQ(counterAfterExport(file(), 1), 2);
    EXPECT_EQ(readFile(file()), "[SEKTION]\r\nEINTRAG= 1\r\n");
    EXPECT_EQ(counterAtStartUp(file()), 2);
}

TEST_F(ObjectCounterExport, ReplacesTheEntryInPlace) {
    writeFile(file(), "[Sektion]\r\nEintrag= 3\r\n");
    EXPECT_EQ(counterAfterExport(file(), 7), 8);
    EXPECT_EQ(readFile(file()), "[Sektion]\r\nEintrag= 7\r\n");
}

TEST_F(ObjectCounterExport, StaysAt32767) {
    EXPECT_EQ(counterAfterExport(file(), 32767), 32767);
    EXPECT_EQ(counterAfterExport(file(), -3), -2);
    EXPECT_EQ(readFile(file()), "[SEKTION]\r\nEINTRAG=-3\r\n");
}

TEST_F(ObjectCounterExport, WithoutTheFolderReadsZeroAndContinuesAtOne) {
    EXPECT_EQ(counterAfterExport(m_dir.path().toStdString() + "/obj/Data.ini", 9), 1);
}

} // namespace
} // namespace pluvarine
