// The demo `make run` shows on a machine without a display, on a German desktop.

#include "../support/FileBytes.h"
#include "ScriptedSession.h"

namespace pluvarine::e2e {
namespace {

TEST(Demo, RunsToItsEndOnAGermanDesktopAndWritesItsScreenshots) {
    const std::filesystem::path demo = std::filesystem::path(PLUVARINE_BINARY_DIR) / "demo";
    const std::string log = (std::filesystem::path(PLUVARINE_BINARY_DIR) / "demo.log").string();
    const int code = shell("cd '" PLUVARINE_SOURCE_DIR "' && env -u DISPLAY -u WAYLAND_DISPLAY"
                           " LANGUAGE= LC_ALL= LC_MESSAGES= LC_NUMERIC= LANG=de_DE.UTF-8"
                           " bash tools/run.sh '" PLUVARINE_BINARY_DIR "' >'" +
                           log + "' 2>&1");
    const std::string output = test::readFile(log);
    ASSERT_EQ(code, 0) << output;
    for (const char* shot : {"1-north-bends.png", "2-copper-clamps-1200.png", "3-west-72.png",
                             "4-host-three-downpipes.png"}) {
        EXPECT_GT(std::filesystem::file_size(demo / shot), 0U) << shot;
    }
    EXPECT_THAT(output, ::testing::Not(::testing::HasSubstr("Inkompatible")));
}

} // namespace
} // namespace pluvarine::e2e
