// A session whose project save meets a folder that cannot be written: the project goes without
// the downpipes' files, never with an older archive, the user is told, and no file changes.

#include "../support/FaultyFolder.h"
#include "../support/FileBytes.h"
#include "ScriptedSession.h"

namespace pluvarine::e2e {
namespace {

TEST_F(E2e, ASaveThatCannotPackTheFilesGoesWithoutThemAndSaysSo) {
    const auto destination = m_dir / "programfolder/Standard/Macros/Pluvarine/destination";
    const std::string older = "an older save's archive";
    test::writeFile(destination / "pluvarine.dat", older);
    test::FaultyFolder faulty(destination);
    if (!faulty.makeReadOnly()) {
        GTEST_SKIP() << "no read-only folder here";
    }
    add({{"do", "macroButton"}});
    click(5, -0.1);
    button("Command4");
    add({{"do", "saveProject"}, {"path", path("p.tproj")}});
    snapshot("saved");
    ASSERT_EQ(run(), 0) << read("stderr.txt");

    const Json saved = state("saved");
    ASSERT_EQ(saved["messages"].size(), 1u);
    EXPECT_THAT(saved["messages"][0].get<std::string>(),
                ::testing::StartsWith("The project was saved without the downpipes' files"));
    EXPECT_EQ(saved["obj"].size(), 2u);                    // " 1.tob" and Data.ini stay
    const Json project = Json::from_cbor(read("p.tproj")); // .tproj files are CBOR
    EXPECT_EQ(project["elements"].size(), 1u);
    EXPECT_TRUE(project["macroData"].empty());
    EXPECT_EQ(test::readFile(destination / "pluvarine.dat"), older);
}

} // namespace
} // namespace pluvarine::e2e
