// Start-up of the program against hosts of other versions, on a Russian system and under the
// system locales of European desktops.

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

// Started as a user starts it, with the host's own version text, under a system locale whose
// numbers have a decimal comma (German, French) or that skips the version test (Russian): the
// macro starts and a downpipe is designed and inserted at the north wall (42° bends).
class SystemLocale : public E2e, public ::testing::WithParamInterface<const char*> {};

TEST_P(SystemLocale, TheProgramStartsWithItsDefaultsAndADownpipeIsDesignedAndInserted) {
    m_systemLocale = GetParam();
    add({{"do", "macroButton"}});
    click(5, 8.1);
    snapshot("designed");
    button("Command4");
    snapshot("inserted");
    ASSERT_EQ(run(), 0) << read("stderr.txt");
    const Json designed = state("designed");
    EXPECT_TRUE(designed["macro"]["hostCompatible"]);
    EXPECT_EQ(designed["macro"]["construction"], 2); // 42° bends
    EXPECT_DOUBLE_EQ(designed["macro"]["roof"]["roofOverhang"].get<double>(), 300);
    const Json inserted = state("inserted");
    EXPECT_TRUE(inserted["messages"].empty()) << inserted["messages"].dump();
    ASSERT_EQ(inserted["host"]["elements"].size(), 1U);
    EXPECT_EQ(inserted["obj"][0]["name"], " 1.tob");
}

INSTANTIATE_TEST_SUITE_P(E2e, SystemLocale,
                         ::testing::Values("de_DE.UTF-8", "fr_FR.UTF-8", "ru_RU.UTF-8"));

} // namespace
} // namespace pluvarine::e2e
