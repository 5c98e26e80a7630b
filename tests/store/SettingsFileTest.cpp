#include "StoreTestSupport.h"
#include "store/ObjectCounter.h"
#include "store/SettingsStore.h"
#include "store/WorkFolder.h"
#include "store/text/LoadText.h"

namespace pluvarine::testing {
namespace {

class SettingsFile : public ::testing::Test {
protected:
    std::string file() const { return m_dir.path().toStdString() + "/Data.ini"; }
    std::string withoutFolder() const { return m_dir.path().toStdString() + "/obj/Data.ini"; }
    QTemporaryDir m_dir;
};

struct CounterCase {
    const char* stored; // the value after "EINTRAG="; nullptr: no file
    int atStartUp, afterLoad, atLoadComplete;
};

// Start-up rounds after adding 1, the load completion before (3.5 -> 4, 2.5 -> 2 + 1); beyond
// the 16-bit range the counter saturates instead of failing.
TEST_F(SettingsFile, CounterIsDerivedFromTheStoredNumber) {
    // clang-format off
    const CounterCase table[] = {
        {nullptr, 1, 0, 1},       {"", 1, 0, 1},            {" 7", 8, 7, 8},
        {"12abc", 13, 12, 13},    {"abc", 1, 0, 1},         {" 2 45", 246, 245, 246},
        {"&H10", 17, 16, 17},     {"-5", -4, -5, -4},       {" 2.5", 4, 2, 3},
        {" 1.5", 2, 2, 3},        {" 32766", 32767, 32766, 32767},
        {" 32767", 32767, 32767, 32767},    {" 32766.5", 32767, 32766, 32767},
        {" 40000", 32767, 32767, 32767},    {"1e300", 32767, 32767, 32767},
        {"-32768", -32767, -32768, -32767}, {"-32769", -32768, -32768, -32767},
        {"-1e9", -32768, -32768, -32767}};
    // clang-format on
    for (const CounterCase& c : table) {
        SCOPED_TRACE(c.stored ? c.stored : "no file");
        fs::remove(file());
        if (c.stored)
            writeFile(file(), std::string("[SEKTION]\r\nEINTRAG=") + c.stored + "\r\n");
        EXPECT_EQ(counterAtStartUp(file()), c.atStartUp);
        EXPECT_EQ(counterAfterLoad(file()), c.afterLoad);
        EXPECT_EQ(counterAtLoadComplete(file()), c.atLoadComplete);
    }
}

TEST_F(SettingsFile, ExportStoresTheNumberUsedAndMovesOn) {
    EXPECT_EQ(counterAfterExport(file(), 1), 2);
    EXPECT_EQ(readFile(file()), "[SEKTION]\r\nEINTRAG= 1\r\n");
    writeFile(file(), "[Sektion]\r\nEintrag= 3\r\n");
    EXPECT_EQ(counterAfterExport(file(), 7), 8);
    EXPECT_EQ(readFile(file()), "[Sektion]\r\nEintrag= 7\r\n");
    EXPECT_EQ(counterAfterExport(file(), 32767), 32767);
    EXPECT_EQ(counterAfterExport(file(), -3), -2);
    EXPECT_EQ(readFile(file()), "[Sektion]\r\nEintrag=-3\r\n");
    EXPECT_EQ(counterAfterExport(withoutFolder(), 9), 1); // reads 0 there
}

// Texts outside the code page are refused; the files' own faults: ProfileFileTest.
TEST_F(SettingsFile, TextsCrossInWindows1252AreCutTo254CharactersOthersAreRefused) {
    EXPECT_THROW(WriteIni(file(), "Sektion", "Eintrag", "Łódź"), RuntimeError);
    EXPECT_THROW(ReadIni(file(), "Фасад", "Eintrag"), RuntimeError);
    EXPECT_FALSE(fs::exists(file()));
    EXPECT_NE(WriteIni(file(), "Maße", "Größe", "€ 5"), 0);
    EXPECT_EQ(readFile(file()), "[Ma\xDF\x65]\r\nGr\xF6\xDF\x65=\x80 5\r\n");
    EXPECT_EQ(ReadIni(file(), "MAßE", "GRößE"), "€ 5");
    const std::string umlauts = QString(300, QChar(0xE4)).toStdString();
    EXPECT_NE(WriteIni(file(), "s", "k", umlauts), 0);
    EXPECT_EQ(ReadIni(file(), "s", "k"), umlauts.substr(0, 254 * 2));
}

// Resolving creates no folder.
TEST(WorkFolder, NamesTheMacroFolderInTheInterfaceLanguageAndCreatesNone) {
    const int previous = activeTextLanguage();
    using namespace TextLanguage;
    // clang-format off
    const std::pair<int, const char*> table[] = {
        {German, "Makros"}, {Russian, "Makros"}, {EnglishUnitedStates, "Macros"}, {French, "Macros"},
        {EnglishUnitedKingdom, "Macros"}, {Polish, "Macros"}, {Croatian, "Macros"}};
    // clang-format on
    for (const auto& [lcid, macros] : table) {
        setActiveTextLanguage(lcid);
        const WorkFolder folder = WorkFolder::resolve("/opt/Tectaro/");
        const std::string expected = std::string("/opt/Tectaro/Standard/") + macros + "/Pluvarine";
        EXPECT_EQ(folder.workFolder, expected);
        EXPECT_EQ(folder.settingsFile, expected + "/obj/Data.ini");
        EXPECT_EQ(folder.oldObjectFile, expected + "/obj/fallrohr.tob");
        EXPECT_EQ(folder.objFolder(), expected + "/obj/");
        EXPECT_EQ(folder.archiveFile(), expected + "/destination/pluvarine.dat");
    }
    setActiveTextLanguage(previous);
    QTemporaryDir dir;
    EXPECT_TRUE(!WorkFolder::resolve(dir.path().toStdString() + "/").workFolder.empty() &&
                fs::is_empty(dir.path().toStdString()));
}

} // namespace
} // namespace pluvarine::testing
