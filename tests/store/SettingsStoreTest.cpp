#include "store/SettingsStore.h"

#include "StoreTestSupport.h"
#include "base/RuntimeError.h"

#include <gtest/gtest.h>

namespace pluvarine {
namespace {

using namespace testing; // the store test fakes and file helpers

class SettingsStore : public ::testing::Test {
protected:
    QTemporaryDir m_dir;
    std::string file() const { return m_dir.path().toStdString() + "/Data.ini"; }
};

TEST_F(SettingsStore, MissingFileSectionOrKeyReadsEmpty) {
    EXPECT_EQ(ReadIni(file(), "Sektion", "Eintrag"), "");
    writeFile(file(), "[Other]\r\nEintrag=1\r\n[Sektion]\r\nX=2\r\n");
    EXPECT_EQ(ReadIni(file(), "Sektion", "Eintrag"), "");
}

TEST_F(SettingsStore, WrittenInCapitalsReadInMixedCase) {
    EXPECT_NE(WriteIni(file(), "SEKTION", "EINTRAG", " 7"), 0);
    EXPECT_EQ(readFile(file()), "[SEKTION]\r\nEINTRAG= 7\r\n");
    // The reader trims the blank of the sign position; the number is the same.
    EXPECT_EQ(ReadIni(file(), "Sektion", "Eintrag"), "7");
}

TEST_F(SettingsStore, LongValueComesBackCutTo254) {
    const std::string value(300, 'x');
    EXPECT_NE(WriteIni(file(), "Sektion", "Eintrag", value), 0);
    EXPECT_EQ(ReadIni(file(), "Sektion", "Eintrag"), std::string(254, 'x'));
}

TEST_F(SettingsStore, TextsCrossInWindows1252) {
    EXPECT_NE(WriteIni(file(), "Maße", "Größe", "€ 5"), 0);
    EXPECT_EQ(readFile(file()), "[Ma\xDF"
                                "e]\r\nGr\xF6\xDF"
                                "e=\x80 5\r\n");
    EXPECT_EQ(ReadIni(file(), "MAßE", "GRößE"), "€ 5");
    // The cut counts characters of the code page, not UTF-8 bytes.
    std::string umlauts;
    for (int i = 0; i < 300; ++i) {
        umlauts += "ä";
    }
    EXPECT_NE(WriteIni(file(), "s", "k", umlauts), 0);
    EXPECT_EQ(ReadIni(file(), "s", "k"), umlauts.substr(0, 254 * 2));
}

TEST_F(SettingsStore, TextOutsideTheCodePageIsRefused) {
    EXPECT_THROW(WriteIni(file(), "Sektion", "Eintrag", "Łódź"), RuntimeError);
    EXPECT_THROW(ReadIni(file(), "Фасад", "Eintrag"), RuntimeError);
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(SettingsStore, FailedWriteReturnsZeroAndTheReadGivesWhatIsThere) {
    const std::string missing = m_dir.path().toStdString() + "/obj/Data.ini";
    EXPECT_EQ(WriteIni(missing, "SEKTION", "EINTRAG", " 3"), 0);
    EXPECT_EQ(ReadIni(missing, "Sektion", "Eintrag"), "");
    writeFile(file(), "[Sektion]\r\nEintrag= 5\r\n");
    EXPECT_EQ(WriteIni(file(), "Sektion", "Eintrag", " 6\r\n[x]"), 0);
    EXPECT_EQ(ReadIni(file(), "Sektion", "Eintrag"), "5");
}

} // namespace
} // namespace pluvarine
