// The macro's objects travel with the host project: saved, closed, opened again.

#include "ScriptedSession.h"

namespace pluvarine::e2e {
namespace {

class E2eProjectTest : public ::testing::Test {
protected:
    void pickAndInsert(double x, double y) {
        session.add({{"do", "macroButton"}});
        session.add({{"do", "click"}, {"x", x}, {"y", y}});
        session.add({{"do", "button"}, {"name", "Command4"}});
    }

    ScriptedSession session;
};

TEST_F(E2eProjectTest, ThreeDownpipesSurviveSaveCloseAndOpen) {
    PLUVARINE_NEEDS_DISPLAY();
    const std::string project = session.path("house.tproj");
    pickAndInsert(5, -0.1); // south
    pickAndInsert(5, 8.1);  // north
    pickAndInsert(-0.1, 4); // west
    session.snapshot("inserted");
    session.add({{"do", "saveProject"}, {"path", project}});
    session.snapshot("saved");
    session.add({{"do", "closeProject"}});
    session.snapshot("closed");
    session.add({{"do", "openProject"}, {"path", project}});
    session.snapshot("opened");
    session.add({{"do", "screenshot"}, {"file", session.path("opened.png")}});
    session.add({{"do", "exit"}});

    ASSERT_EQ(session.run(), 0) << session.read("stderr.txt");

    const Json saved = session.state("saved");
    const Json closed = session.state("closed");
    const Json opened = session.state("opened");

    // Saved: Data.ini and the three object files, the counter at 4.
    ASSERT_EQ(saved["obj"].size(), 4U);
    EXPECT_EQ(saved["obj"][0]["name"], " 1.tob");
    EXPECT_EQ(saved["obj"][3]["name"], "Data.ini");
    EXPECT_EQ(saved["macro"]["objectCounter"], 4);
    EXPECT_EQ(saved["host"]["lastChunkCount"], 1); // the macro announced its data block

    // Closed: obj emptied, the button shown but disabled, the counter in memory kept.
    EXPECT_TRUE(closed["obj"].empty());
    EXPECT_TRUE(closed["host"]["button"]["shown"]);
    EXPECT_FALSE(closed["host"]["button"]["enabled"]);
    EXPECT_EQ(closed["macro"]["objectCounter"], 4);

    // Opened: obj restored byte for byte, the counter the stored number plus 1, the button on.
    EXPECT_EQ(opened["obj"], saved["obj"]);
    EXPECT_EQ(opened["macro"]["objectCounter"], 4);
    EXPECT_TRUE(opened["host"]["button"]["enabled"]);
    EXPECT_NE(
        session.read("programfolder/Standard/Macros/Pluvarine/obj/Data.ini").find("EINTRAG= 3\r\n"),
        std::string::npos);

    // The three downpipes still stand where they were, in the host.
    const Json inserted = session.state("inserted");
    const Json& before = inserted["host"]["elements"];
    const Json& after = opened["host"]["elements"];
    ASSERT_EQ(after.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(after[i]["matrix"], before[i]["matrix"]) << i;
        EXPECT_EQ(after[i]["worldMin"], before[i]["worldMin"]) << i;
        EXPECT_EQ(after[i]["worldMax"], before[i]["worldMax"]) << i;
    }

    // The host's events in the order the host raises them, each answered by the macro.
    std::vector<std::string> events;
    for (const Json& line : session.journal()) {
        if (line["type"] == "event" && line["event"] != "exe_GotOneClick" &&
            line["event"] != "exe_ButtonChange") {
            events.push_back(line["event"].get<std::string>() +
                             (line["event"] == "exe_LoadBuilding"
                                  ? (line["args"][0].is_null() ? "(none)" : "(building)")
                                  : ""));
        }
    }
    EXPECT_EQ(events,
              (std::vector<std::string>{"exe_SaveStart", "exe_SaveBuilding", "exe_ProjectClosed",
                                        "exe_LoadBuilding(building)", "exe_LoadBuilding(none)",
                                        "exe_LoadComplete", "exe_ProgramExit"}));
}

} // namespace
} // namespace pluvarine::e2e
