#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace pluvarine::e2e {

using Json = nlohmann::json;

// One run of the program on the sample building, driven by a script, in a folder of its own:
// the host's program folder, the script, the journal, the states the script writes and the
// saved projects all live below it.
class ScriptedSession {
public:
    ScriptedSession() {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        dir = std::filesystem::path(PLUVARINE_BINARY_DIR) / "e2e-sessions" /
              (std::string(info->test_suite_name()) + "." + info->name());
        std::filesystem::remove_all(dir);
        std::filesystem::create_directories(dir);
    }

    void add(Json step) { steps.push_back(std::move(step)); }
    // A state snapshot under this name (see state()).
    void snapshot(const std::string& name) {
        add({{"do", "state"}, {"file", (dir / (name + ".json")).string()}});
    }
    std::string path(const std::string& name) const { return (dir / name).string(); }

    // Runs the program to its end; `extra` are further command-line arguments.
    int run(const std::vector<std::string>& extra = {}) {
        std::ofstream(dir / "script.json") << Json{{"steps", steps}}.dump(1);
        std::string command = "timeout 120 '" + std::string(PLUVARINE_GUI) + "'";
        const std::vector<std::string> arguments{
            "--script",         path("script.json"),
            "--journal",        path("journal.jsonl"),
            "--program-folder", path("programfolder"),
            "--building",       std::string(PLUVARINE_SOURCE_DIR) + "/data/sample/house.json",
            "--help-folder",    std::string(PLUVARINE_SOURCE_DIR) + "/data/help",
            "--language",       "en_US"};
        for (const std::string& argument : arguments) {
            command += " '" + argument + "'";
        }
        for (const std::string& argument : extra) {
            command += " '" + argument + "'";
        }
        command += " >'" + path("stdout.txt") + "' 2>'" + path("stderr.txt") + "'";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    Json state(const std::string& name) const {
        std::ifstream in(dir / (name + ".json"));
        if (!in) {
            ADD_FAILURE() << "no state " << name << "; stderr: " << read("stderr.txt");
            return Json::object();
        }
        return Json::parse(in);
    }

    std::vector<Json> journal() const {
        std::vector<Json> lines;
        std::ifstream in(dir / "journal.jsonl");
        for (std::string line; std::getline(in, line);) {
            lines.push_back(Json::parse(line));
        }
        return lines;
    }

    std::string read(const std::string& name) const {
        std::ifstream in(dir / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    std::filesystem::path dir;
    Json steps = Json::array();
};

// The program needs a display (xvfb-run in the test run).
#define PLUVARINE_NEEDS_DISPLAY()                                                                  \
    if (std::getenv("DISPLAY") == nullptr) {                                                       \
        GTEST_SKIP() << "needs a display: run under xvfb-run";                                     \
    }

} // namespace pluvarine::e2e
