// The macro's objects travel with the host project: saved, closed, opened again.

#include "ScriptedSession.h"

namespace pluvarine::e2e {
namespace {

TEST_F(E2e, ThreeDownpipesSurviveSaveCloseAndOpen) {
    for (const auto& [x, y] : {std::pair{5.0, -0.1}, {5.0, 8.1}, {-0.1, 4.0}}) { // S, N, W
        add({{"do", "macroButton"}});
        click(x, y);
        button("Command4");
    }
    snapshot("inserted");
    add({{"do", "saveProject"}, {"path", path("house.tproj")}});
    snapshot("saved");
    add({{"do", "closeProject"}});
    snapshot("closed");
    add({{"do", "openProject"}, {"path", path("house.tproj")}});
    snapshot("opened");
    add({{"do", "screenshot"}, {"file", path("opened.png")}});
    ASSERT_EQ(run(), 0) << read("stderr.txt");

    // Saved: Data.ini and the three object files, the data block announced.
    const Json saved = state("saved");
    ASSERT_EQ(saved["obj"].size(), 4U);
    EXPECT_EQ(saved["obj"][0]["name"], " 1.tob");
    EXPECT_EQ(saved["obj"][3]["name"], "Data.ini");
    EXPECT_EQ(saved["host"]["lastChunkCount"], 1);

    // Closed: obj emptied, the counter in memory kept (the button: ProjectEventsTest).
    const Json closed = state("closed");
    EXPECT_TRUE(closed["obj"].empty());
    EXPECT_EQ(closed["macro"]["objectCounter"], 4);

    // Opened: obj restored byte for byte, the counter the stored number (3) plus 1, the button
    // on, and the three downpipes still where they were.
    const Json opened = state("opened");
    EXPECT_EQ(opened["obj"], saved["obj"]);
    EXPECT_EQ(opened["macro"]["objectCounter"], 4);
    EXPECT_TRUE(opened["host"]["button"]["enabled"]);
    EXPECT_EQ(opened["host"]["elements"].size(), 3U);
    EXPECT_EQ(opened["host"]["elements"], state("inserted")["host"]["elements"]);
}

} // namespace
} // namespace pluvarine::e2e
