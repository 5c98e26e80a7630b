// The program installed into a prefix of its own and started from there with the build and
// source trees out of sight, as on a user's machine.

#include "ScriptedSession.h"

#include <iostream>

namespace pluvarine::e2e {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

// A session folder outside the build tree, with the program installed below it.
class InstalledProgram : public E2e {
protected:
    void SetUp() override {
        E2e::SetUp();
        if (IsSkipped()) {
            return;
        }
        std::string dir = (fs::temp_directory_path() / "pluvarine-install-XXXXXX").string();
        ASSERT_NE(::mkdtemp(dir.data()), nullptr);
        m_dir = m_tempDir = dir;
        ASSERT_EQ(shell("cmake --install '" PLUVARINE_BINARY_DIR "' --prefix '" + prefix() +
                        "' >'" + path("install.log") + "' 2>&1"),
                  0)
            << read("install.log");
    }
    void TearDown() override {
        if (!m_tempDir.empty()) {
            fs::remove_all(m_tempDir);
        }
    }

    std::string prefix() const { return path("usr"); }

    // Runs the installed program on the script, with an empty file system mounted over the
    // build and source trees where the system lets a user do so (user namespaces).
    int runInstalled() {
        std::ofstream(m_dir / "script.json") << Json{{"steps", m_steps}}.dump(1);
        const std::string session = "cd '" + m_dir.string() + "' && timeout 120 '" + prefix() +
                                    "/bin/pluvarine' --script script.json --program-folder '" +
                                    path("programfolder") +
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

    fs::path m_tempDir;
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
    add({{"do", "macroButton"}});
    click(5, 8.1);
    button("Command4");
    snapshot("inserted");
    add({{"do", "exit"}});
    ASSERT_EQ(runInstalled(), 0) << read("stderr.txt");
    const Json inserted = state("inserted");
    EXPECT_EQ(inserted["host"]["elements"].size(), 1U);
    EXPECT_EQ(inserted["obj"][0]["name"], " 1.tob");
    EXPECT_TRUE(inserted["messages"].empty()) << inserted["messages"].dump();
    EXPECT_TRUE(fs::is_regular_file(m_dir / "programfolder/Tectaro.chm/Pluvarine.htm"));

    // Without a part file the installed program names it and does not start.
    fs::remove(share / "pluvarine/workfolder/res/Rohrschelle_100.v3o");
    fs::remove_all(m_dir / "programfolder");
    EXPECT_EQ(runInstalled(), 2);
    EXPECT_THAT(read("stderr.txt"),
                HasSubstr("not found:\n  " + (share / "pluvarine/workfolder/res").string() +
                          "/Rohrschelle_100.v3o"));
}

} // namespace
} // namespace pluvarine::e2e
