#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

namespace {

struct CliRun {
    int exitCode = -1;
    std::string out, err;
};

CliRun compose(const QStringList& args) {
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("LC_ALL", "C.UTF-8");
    process.setProcessEnvironment(env);
    process.start(PLUVARINE_CLI, QStringList{"compose"} + args);
    EXPECT_TRUE(process.waitForFinished(30000));
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

nlohmann::json report(const QStringList& args) {
    const CliRun run = compose(args);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return nlohmann::json::parse(run.out);
}

std::vector<std::string> roles(const nlohmann::json& doc) {
    std::vector<std::string> result;
    for (const auto& part : doc["parts"])
        result.push_back(part["role"]);
    return result;
}

// A printed number must read back to exactly the float the construction computed.
float asFloat(const nlohmann::json& number) {
    return static_cast<float>(number.get<double>());
}

TEST(ComposeCli, DefaultHeight3000GivesTheContinuousPipeWithTwoClamps) {
    const CliRun run = compose({"--height", "3000"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const auto doc = nlohmann::json::parse(run.out);
    EXPECT_EQ(doc["construction"], "continuous");
    EXPECT_EQ(doc["questionAsked"], false);
    EXPECT_EQ(doc["clampCount"], 2);
    EXPECT_FALSE(doc.contains("calls"));
    EXPECT_EQ(roles(doc), (std::vector<std::string>{"outlet", "pipe", "dummy", "standpipe", "cap",
                                                    "clamp", "clamp"}));
    // No material picked yet: the empty text.
    EXPECT_EQ(doc["parts"][0], nlohmann::json::parse(R"({"role": "outlet", "id": 1,
        "file": "Reinhangestutzen_100_218.v3o", "scale": [1, 1, 1], "position": [0.01, 0, 1.40675],
        "rotation": null, "material": ""})"));
    EXPECT_TRUE(doc["parts"][5]["scale"].is_null()); // clamps are not scaled
    // Shortest texts: 0.01 as the single it is, not its double expansion.
    EXPECT_NE(run.out.find("\"position\": [0.01, 0, 1.40675]"), std::string::npos) << run.out;
    // Clamp centres at 2545.8 and 745.8 mm above the ground (scene z from half the height).
    EXPECT_EQ(asFloat(doc["parts"][5]["position"][2]),
              static_cast<float>(((3000 - 549.2) + 95) / 1000 - 1.5));
    EXPECT_EQ(asFloat(doc["parts"][6]["position"][2]),
              static_cast<float>(((3000 - 549.2) + 95) / 1000 - 1800.0 / 1000 - 1.5));
}

TEST(ComposeCli, OverhangOf600With72DegreesGivesTheBendsWithThreeClamps) {
    const auto doc =
        report({"--height", "5000", "--overhang", "600", "--gutter-width", "60", "--angle", "72"});
    EXPECT_EQ(doc["construction"], "bend72");
    EXPECT_EQ(doc["clampCount"], 3);
    EXPECT_EQ(roles(doc),
              (std::vector<std::string>{"firstBend", "secondBend", "offsetPipe", "pipe",
                                        "standpipe", "outlet", "cap", "clamp", "clamp", "clamp"}));
    EXPECT_EQ(doc["parts"][0]["file"], "Bogen_100_72_L.v3o");
    EXPECT_EQ(doc["parts"][2]["rotation"], nlohmann::json::parse("[0, -1, 0, 72]"));
    const double mm[] = {4304.27, 2504.27, 704.27}; // the clamp centres above the ground
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR((doc["parts"][7 + i]["position"][2].get<double>() + 2.5) * 1000, mm[i], 0.006);
}

// The question and its answers, and field texts that are no number, as the fields treat them.
TEST(ComposeCli, WhatIsBuiltAndAsked) {
    struct Case {
        QStringList args;
        const char* construction;
        bool asked;
        std::size_t parts;
    };
    const Case cases[] = {
        {{"--overhang", "150"}, "none", true, 0},
        {{"--overhang", "150", "--answer", "bend"}, "kink42", true, 9},
        {{"--overhang", "150", "--answer", "continuous"}, "continuous", true, 7},
        // An answer without a question changes nothing.
        {{"--answer", "bend"}, "continuous", false, 7},
        // Nothing built, nothing to colour: the choice is not taken.
        {{"--overhang", "150", "--material", "zinc"}, "none", true, 0},
        // txths empty: the standpipe height keeps its start value 0.
        {{"--standpipe", ""}, "continuous", false, 7},
        // txtdR "1+2": the spacing keeps 0, the construction stops at the clamp count.
        {{"--clamp-spacing", "1+2"}, "continuous", false, 5},
        // txtÜd not a number: nothing built, nothing asked.
        {{"--overhang", "abc"}, "none", false, 0}};
    std::vector<nlohmann::json> docs;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args.join(' ').toStdString());
        docs.push_back(report(QStringList{"--height", "3000"} + c.args));
        EXPECT_EQ(docs.back()["construction"], c.construction);
        EXPECT_EQ(docs.back()["questionAsked"], c.asked);
        EXPECT_EQ(docs.back()["parts"].size(), c.parts);
    }
    EXPECT_EQ(docs[1]["parts"][0]["role"], "outlet"); // the 42-degree kink places it first
    EXPECT_EQ(docs[5]["clampCount"], 2);              // (3000 - 454.2) / 1800 = 1.41
    EXPECT_EQ(docs[5]["parts"][3]["scale"][2], 0);
}

// The material is chosen after the first build; the trace lists every operation of the run.
TEST(ComposeCli, MaterialAndTrace) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::string folder = dir.path().toStdString();
    const nlohmann::json material = folder + "/mat/Kupfer.ini";
    const auto doc = report(
        {"--height", "3000", "--work-folder", dir.path() + "/", "--trace", "--material", "copper"});
    for (const auto& part : doc["parts"]) // the dummy gets none
        EXPECT_EQ(part["material"], part["role"] == "dummy" ? nlohmann::json() : material);
    const auto& calls = doc["calls"];
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls[0]["member"], 9);
    EXPECT_EQ(calls[0]["op"], "LoadScene");
    EXPECT_EQ(calls[0]["args"][0], folder + "/main.v3o");
    EXPECT_EQ(calls[1]["member"], 128);
    EXPECT_EQ(calls[1]["args"][0], folder + "/res/Reinhangestutzen_100_218.v3o");
    EXPECT_EQ(calls[1]["result"], 1);
    int applied = 0;
    for (const auto& call : calls) {
        if (call["op"] == "ApplyMaterial") {
            EXPECT_EQ(call["member"], 120);
            EXPECT_EQ(call["args"][0], 0);
            ++applied;
        }
    }
    EXPECT_EQ(applied, 2 * 6); // the rebuild's material step, then the choice's
    EXPECT_EQ(calls.back()["args"][1], material);
}

// The list counts, article for article, the parts the trace shows added since the last reset.
TEST(ComposeCli, PartsListIsWhatTheTracePlaced) {
    const auto doc = report({"--height", "3000", "--overhang", "150", "--gutter-width", "210",
                             "--answer", "bend", "--material", "copper", "--trace"});
    EXPECT_EQ(doc["partsList"][2], nlohmann::json::parse(R"({"article": "pipe", "count": 1,
        "file": "Fallrohr_100_500.v3o", "diameter": 100, "angle": 0, "length": 500,
        "material": "copper", "cutLength": 275})"));
    std::map<std::string, int> added, listed;
    for (const auto& call : doc["calls"]) {
        if (call["op"] == "LoadScene")
            added.clear();
        if (call["op"] == "AddPart") {
            const std::string path = call["args"][0];
            ++added[path.substr(path.find_last_of('/') + 1)];
        }
    }
    added.erase("dummy.v3o");
    for (const auto& row : doc["partsList"])
        listed[row["file"]] += row["count"].get<int>();
    EXPECT_EQ(listed, added);
    EXPECT_EQ(listed["Knick_100_42.v3o"], 2);
}

struct Refusal {
    const char* name;
    QStringList args;
    // readable test listings
    friend void PrintTo(const Refusal& c, std::ostream* os) { *os << c.name; }
};

class ComposeCliRefuses : public ::testing::TestWithParam<Refusal> {};

TEST_P(ComposeCliRefuses, WithOneLineOnStandardErrorAndExitCode2) {
    const CliRun run = compose(GetParam().args);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    ASSERT_FALSE(run.err.empty());
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
}

INSTANTIATE_TEST_SUITE_P(
    Errors, ComposeCliRefuses,
    ::testing::Values(Refusal{"UnknownOption", {"--colour", "red"}},
                      Refusal{"MalformedHeight", {"--height", "3 m"}},
                      Refusal{"HeightWithPlusInside", {"--height", "1+2"}},
                      Refusal{"MalformedGutterWidth", {"--gutter-width", "wide"}},
                      Refusal{"MissingValue", {"--height"}},
                      Refusal{"UnknownAngle", {"--angle", "45"}},
                      Refusal{"UnknownMaterial", {"--material", "gold"}}),
    [](const ::testing::TestParamInfo<Refusal>& param) { return std::string(param.param.name); });

} // namespace
