// The program installed into a prefix of its own and started from there with the build and
// source trees out of sight, as on a user's machine.

#include "../support/FileBytes.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/wait.h>

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using pluvarine::test::readFile;
using ::testing::HasSubstr;

int shell(const std::string& command) {
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class InstalledProgram : public ::testing::Test {
protected:
    void SetUp() override {
        if (std::getenv("DISPLAY") == nullptr) {
            GTEST_SKIP() << "needs a display: run under xvfb-run";
        }
        std::string dir = (fs::temp_directory_path() / "pluvarine-install-XXXXXX").string();
        ASSERT_NE(::mkdtemp(dir.data()), nullptr);
        m_dir = dir;
        ASSERT_EQ(shell("cmake --install '" PLUVARINE_BINARY_DIR "' --prefix '" + prefix() +
                        "' >'" + (m_dir / "install.log").string() + "' 2>&1"),
                  0)
            << readFile(m_dir / "install.log");
    }
    void TearDown() override {
        if (!m_dir.empty()) {
            fs::remove_all(m_dir);
        }
    }

    std::string prefix() const { return (m_dir / "usr").string(); }

    // Runs the installed program in the test's folder, with an empty file system mounted over
    // the build and source trees where the system lets a user do so (user namespaces).
    int runInstalled(const Json& steps) {
        std::ofstream(m_dir / "script.json") << Json{{"steps", steps}}.dump(1);
        const std::string session = "cd '" + m_dir.string() + "' && timeout 120 '" + prefix() +
                                    "/bin/pluvarine' --script script.json --program-folder '" +
                                    (m_dir / "programfolder").string() +
                                    "' --language en_US >stdout.txt 2>stderr.txt";
        if (shell("unshare -rm true >/dev/null 2>&1") != 0) {
            std::cerr << "no user namespaces: the build tree stays in view\n";
            return shell(session);
        }
        return shell(std::string("unshare -rm sh -c \"mount -t tmpfs none '") +
                     PLUVARINE_BINARY_DIR + "' && mount -t tmpfs none '" + PLUVARINE_SOURCE_DIR +
                     "' && test ! -e '" + PLUVARINE_SOURCE_DIR + "/CMakeLists.txt' && " + session +
                     "\"");
    }

    fs::path m_dir;
};

TEST_F(InstalledProgram, FindsItsDataBelowItsPrefixAndSaysWhatIsMissing) {
    const fs::path share = fs::path(prefix()) / "share";
    EXPECT_EQ(shell("desktop-file-validate '" + (share / "applications").string() +
                    "/io.github.pluvarine.Pluvarine.desktop'"),
              0);
    EXPECT_EQ(shell("appstreamcli validate --no-net '" + (share / "metainfo").string() +
                    "/io.github.pluvarine.Pluvarine.metainfo.xml' >/dev/null"),
              0);
    for (const char* file : {"icons/hicolor/scalable/apps/io.github.pluvarine.Pluvarine.svg",
                             "doc/pluvarine/LICENSE", "pluvarine/sample/house.json",
                             "pluvarine/help/Pluvarine.htm", "pluvarine/workfolder/main.v3o"}) {
        EXPECT_TRUE(fs::is_regular_file(share / file)) << file;
    }

    // Designed and inserted at the north wall; the macro folder seeded from the prefix.
    const std::string state = (m_dir / "state.json").string();
    const Json session = {{{"do", "macroButton"}},
                          {{"do", "click"}, {"x", 5}, {"y", 8.1}},
                          {{"do", "button"}, {"name", "Command4"}},
                          {{"do", "state"}, {"file", state}},
                          {{"do", "exit"}}};
    ASSERT_EQ(runInstalled(session), 0) << readFile(m_dir / "stderr.txt");
    const Json inserted = Json::parse(readFile(state));
    EXPECT_EQ(inserted["host"]["elements"].size(), 1U);
    EXPECT_EQ(inserted["obj"][0]["name"], " 1.tob");
    EXPECT_TRUE(inserted["messages"].empty()) << inserted["messages"].dump();
    EXPECT_TRUE(fs::is_regular_file(m_dir / "programfolder/Tectaro.chm/Pluvarine.htm"));

    // Without a part file the installed program names it and does not start.
    fs::remove(share / "pluvarine/workfolder/res/Rohrschelle_100.v3o");
    fs::remove_all(m_dir / "programfolder");
    EXPECT_EQ(runInstalled(session), 2);
    EXPECT_THAT(readFile(m_dir / "stderr.txt"),
                HasSubstr("not found:\n  " + (share / "pluvarine/workfolder/res").string() +
                          "/Rohrschelle_100.v3o"));
}

} // namespace
