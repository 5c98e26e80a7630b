#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace pluvarine::e2e {

using Json = nlohmann::json;

// The command's exit code, or -1 when it did not exit.
inline int shell(const std::string& command) {
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// One run of the program on the sample building, driven by a script, in a folder of its own:
// the host's program folder, the script, the journal, the states the script writes and the
// saved projects all live below it. The program needs a display (xvfb-run in the test run).
class E2e : public ::testing::Test {
protected:
    void SetUp() override {
        if (std::getenv("DISPLAY") == nullptr) {
            GTEST_SKIP() << "needs a display: run under xvfb-run";
        }
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        m_dir = std::filesystem::path(PLUVARINE_BINARY_DIR) / "e2e-sessions" / info->name();
        std::filesystem::remove_all(m_dir);
        std::filesystem::create_directories(m_dir);
    }

    void add(Json step) { m_steps.push_back(std::move(step)); }
    void button(const char* name) { add({{"do", "button"}, {"name", name}}); }
    void click(double x, double y) { add({{"do", "click"}, {"x", x}, {"y", y}}); }
    // A state snapshot under this name (see state()).
    void snapshot(const std::string& name) {
        add({{"do", "state"}, {"file", path(name + ".json")}});
    }
    std::string path(const std::string& name) const { return (m_dir / name).string(); }

    // Runs the program to its end in the session folder, the script ending with the exit;
    // `options` are further command-line options, quoted for the shell. Without a system
    // locale the program runs in English on the sample building; with one (e.g.
    // "de_DE.UTF-8") it runs under that locale with its own defaults, as a user starts it.
    int run(const std::string& options = "") {
        add({{"do", "exit"}});
        std::ofstream(m_dir / "script.json") << Json{{"steps", m_steps}}.dump(1);
        const std::string defaults =
            m_systemLocale.empty() ? " --building '" PLUVARINE_SOURCE_DIR "/data/sample/house.json'"
                                     " --help-folder '" PLUVARINE_SOURCE_DIR
                                     "/data/help' --language en_US "
                                   : " ";
        return shell("cd '" + m_dir.string() +
                     "' && env LANGUAGE= LC_ALL= LC_MESSAGES= LC_NUMERIC= LANG='" + m_systemLocale +
                     "' timeout 120 '" PLUVARINE_GUI "' --script script.json --journal "
                     "journal.jsonl --program-folder \"$PWD/programfolder\"" +
                     defaults + options + " >stdout.txt 2>stderr.txt");
    }

    Json state(const std::string& name) const {
        std::ifstream in(m_dir / (name + ".json"));
        EXPECT_TRUE(in) << "no state " << name << "; stderr: " << read("stderr.txt");
        return in ? Json::parse(in) : Json::object();
    }

    std::string read(const std::string& name) const {
        std::ifstream in(m_dir / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    std::filesystem::path m_dir;
    std::string m_systemLocale;
    Json m_steps = Json::array();
};

} // namespace pluvarine::e2e
