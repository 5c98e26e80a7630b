// Start-up of the program against hosts of other versions and on a Russian system.

#include "ScriptedSession.h"

namespace pluvarine::e2e {
namespace {

bool called(const std::vector<Json>& journal, const std::string& op) {
    for (const Json& line : journal) {
        if (line.value("op", "") == op) {
            return true;
        }
    }
    return false;
}

TEST(E2eStartUpTest, AnOldHostGetsTheButtonThenTheMessageAndTheProgramEnds) {
    PLUVARINE_NEEDS_DISPLAY();
    ScriptedSession session;
    session.snapshot("never"); // the script does not start: the program has ended

    EXPECT_EQ(session.run({"--version-text", "Tectaro Architektur +2004.9"}), 0);

    EXPECT_NE(session.read("stderr.txt").find("message: Incompatible Tectaro version!"),
              std::string::npos)
        << session.read("stderr.txt");
    const std::vector<Json> journal = session.journal();
    EXPECT_TRUE(called(journal, "AddMacroButton"));
    EXPECT_FALSE(called(journal, "GetProgramFolder"));
    EXPECT_FALSE(std::filesystem::exists(session.path("never.json")));
}

TEST(E2eStartUpTest, ARussianSystemTakesAnyHostAndWorksInTheMakrosFolder) {
    PLUVARINE_NEEDS_DISPLAY();
    ScriptedSession session;
    session.snapshot("started");
    session.add({{"do", "exit"}});

    EXPECT_EQ(session.run({"--language", "ru_RU", "--version-text", "Tectaro"}), 0)
        << session.read("stderr.txt");

    EXPECT_FALSE(called(session.journal(), "GetVersionText"));
    const Json started = session.state("started");
    EXPECT_TRUE(started["macro"]["hostCompatible"]);
    EXPECT_NE(started["macro"]["workFolder"].get<std::string>().find("/Standard/Makros/Pluvarine"),
              std::string::npos);
    EXPECT_EQ(started["macro"]["objectCounter"], 1);
}

} // namespace
} // namespace pluvarine::e2e
