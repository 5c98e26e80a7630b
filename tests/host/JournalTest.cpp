// The journal of a session: every host operation the macro calls and every event the host
// raises, as JSON lines, while the macro works exactly as without it.

#include "MacroFixture.h"

namespace pluvarine::test {
namespace {

using Json = nlohmann::ordered_json;

class JournalTest : public MacroFixture {
protected:
    void SetUp() override {
        journal = std::make_unique<HostJournal>(text);
        makeMacro();
    }
    void TearDown() override { macro.reset(); } // before the journal's stream

    // The lines since the last look; "object.op" of their calls go to `calls`.
    std::vector<Json> lines() {
        std::vector<Json> result;
        std::istringstream in(text.str());
        calls.clear();
        for (std::string line; std::getline(in, line);) {
            result.push_back(Json::parse(line));
            if (result.back()["type"] == "call") {
                calls.push_back(result.back()["object"].get<std::string>() + "." +
                                result.back()["op"].get<std::string>());
            }
        }
        text.str("");
        return result;
    }

    std::ostringstream text;
    std::vector<std::string> calls;
};

TEST_F(JournalTest, RecordsCallsResultsErrorsAndEventsWhileTheMacroWorks) {
    macro->Form_Load();
    std::vector<Json> all = lines();
    EXPECT_EQ(all[0]["args"],
              Json::parse("[4711, \"\", \"" + std::string(Macro::MacroGuid) + "\"]"));
    EXPECT_EQ(all[2]["args"][0], Json::parse(R"({"width": 30, "height": 30})"));
    EXPECT_EQ(all[2]["args"][1], 0x01030204);
    EXPECT_EQ(all[2]["result"], 7); // passed on unchanged, as the values read below

    ASSERT_NE(host->sink, macro.get()); // the host talks to the journaling forwarder
    log.failing = {"GetGutterWidth"};
    host->sink->exe_GotOneClick(true, 2, 3, 0);
    all = lines();
    EXPECT_THAT(calls, ElementsAre("exe.GetActiveBuilding", "building.GetRoofList",
                                   "roofList.FindRoofAt", "roof.GetRoofData", "exe.GetLevelAt",
                                   "roofData.GetGutterWidth", "roofData.GetRoofingThickness",
                                   "roof.FindRoofFaceAt", "roofData.GetFacePitch",
                                   "roofData.GetFaceDirection", "roofData.GetFaceOverhang"));
    EXPECT_EQ(all[0]["event"], "exe_GotOneClick");
    EXPECT_EQ(all[0]["args"], Json::parse("[true, 2.0, 3.0, 0]"));
    EXPECT_EQ(all[6]["error"]["number"], RuntimeError::HostError);
    EXPECT_FALSE(all[6].contains("result"));
    EXPECT_FLOAT_EQ(all[8]["outs"]["height"].get<float>(), 3.1F);

    std::int32_t chunks = 3;
    host->sink->exe_SaveStart("house.tpr", 1, true, chunks);
    macro->Command4_Click();
    all = lines();
    EXPECT_EQ(chunks, 4);
    EXPECT_EQ(all[0]["args"], Json::parse(R"(["house.tpr", 1, true, 3])"));
    EXPECT_EQ(all[1]["numChunksToSave"], 4);
    EXPECT_THAT(calls, ElementsAre("exe.LoadObjectFile", "template.CreateElement",
                                   "element.PrepareElement", "element.SetElementMatrix",
                                   "element.CommitElement", "exe.SetMacroButtonState"));
    const std::array<float, 16>& values = host->matrix->values;
    EXPECT_EQ(all[5]["args"][0].get<std::vector<float>>(),
              std::vector(values.begin(), values.end()));
}

} // namespace
} // namespace pluvarine::test
