#include "store/WorkFolder.h"

#include "StoreTestSupport.h"
#include "ui/text/LoadText.h"

namespace pluvarine::testing {
namespace {

TEST(WorkFolder, NamesTheMacroFolderInTheInterfaceLanguage) {
    const int previous = activeTextLanguage();
    const std::pair<int, const char*> table[] = {{TextLanguage::German, "Makros"},
                                                 {TextLanguage::Russian, "Makros"},
                                                 {TextLanguage::EnglishUnitedStates, "Macros"},
                                                 {TextLanguage::EnglishUnitedKingdom, "Macros"},
                                                 {TextLanguage::French, "Macros"},
                                                 {TextLanguage::Polish, "Macros"},
                                                 {TextLanguage::Croatian, "Macros"}};
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
}

TEST(WorkFolder, CreatesNoFolder) {
    QTemporaryDir dir;
    EXPECT_FALSE(WorkFolder::resolve(dir.path().toStdString() + "/").workFolder.empty());
    EXPECT_TRUE(fs::is_empty(dir.path().toStdString()));
}

} // namespace
} // namespace pluvarine::testing
