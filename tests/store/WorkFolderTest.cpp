#include "store/WorkFolder.h"

#include "StoreTestSupport.h"
#include "ui/text/LoadText.h"

#include <gtest/gtest.h>

namespace pluvarine {
namespace {

class WorkFolderLanguage : public ::testing::Test {
protected:
    void SetUp() override { m_previous = activeTextLanguage(); }
    void TearDown() override { setActiveTextLanguage(m_previous); }

private:
    int m_previous = 0;
};

struct LanguageCase {
    int lcid;
    const char* macroFolder;
};

class WorkFolderPerLanguage : public WorkFolderLanguage,
                              public ::testing::WithParamInterface<LanguageCase> {};

TEST_P(WorkFolderPerLanguage, NamesTheMacroFolderInTheInterfaceLanguage) {
    setActiveTextLanguage(GetParam().lcid);
    const WorkFolder folder = WorkFolder::resolve("/opt/Tectaro/");
    const std::string expected =
        std::string("/opt/Tectaro/Standard/") + GetParam().macroFolder + "/Pluvarine";
    EXPECT_EQ(folder.workFolder, expected);
    EXPECT_EQ(folder.settingsFile, expected + "/obj/Data.ini");
    EXPECT_EQ(folder.oldObjectFile, expected + "/obj/fallrohr.tob");
    EXPECT_EQ(folder.objFolder(), expected + "/obj/");
    EXPECT_EQ(folder.archiveFile(), expected + "/destination/pluvarine.dat");
}

INSTANTIATE_TEST_SUITE_P(
    Languages, WorkFolderPerLanguage,
    ::testing::Values(LanguageCase{TextLanguage::German, "Makros"},
                      LanguageCase{TextLanguage::Russian, "Makros"},
                      LanguageCase{TextLanguage::EnglishUnitedStates, "Macros"},
                      LanguageCase{TextLanguage::EnglishUnitedKingdom, "Macros"},
                      LanguageCase{TextLanguage::French, "Macros"},
                      LanguageCase{TextLanguage::Polish, "Macros"},
                      LanguageCase{TextLanguage::Croatian, "Macros"}));

TEST_F(WorkFolderLanguage, CreatesNoFolder) {
    QTemporaryDir dir;
    const WorkFolder folder = WorkFolder::resolve(dir.path().toStdString() + "/");
    EXPECT_FALSE(std::filesystem::exists(dir.path().toStdString() + "/Standard"));
    EXPECT_TRUE(std::filesystem::is_empty(dir.path().toStdString()));
    EXPECT_FALSE(folder.workFolder.empty());
}

} // namespace
} // namespace pluvarine
