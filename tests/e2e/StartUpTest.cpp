// Start-up of the program against hosts of other versions and on a Russian system.

#include "ScriptedSession.h"

namespace pluvarine::e2e {
namespace {

TEST_F(E2e, AnOldHostGetsTheMessageAndTheProgramEnds) {
    snapshot("never"); // the script does not start: the program has ended
    EXPECT_EQ(run("--version-text 'Tectaro Architektur +2004.9'"), 0);
    EXPECT_THAT(read("stderr.txt"), ::testing::HasSubstr("message: Incompatible Tectaro version!"));
    EXPECT_FALSE(std::filesystem::exists(path("never.json")));
}

TEST_F(E2e, ARussianSystemTakesAnyHostAndWorksInTheMakrosFolder) {
    snapshot("started");
    EXPECT_EQ(run("--language ru_RU --version-text Tectaro"), 0) << read("stderr.txt");
    const Json started = state("started");
    EXPECT_TRUE(started["macro"]["hostCompatible"]);
    EXPECT_NE(started["macro"]["workFolder"].get<std::string>().find("/Standard/Makros/Pluvarine"),
              std::string::npos);
    EXPECT_EQ(started["macro"]["objectCounter"], 1);
}

} // namespace
} // namespace pluvarine::e2e
