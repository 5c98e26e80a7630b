// The journal of a session: every host operation the macro calls and every event the host
// raises, as JSON lines, while the macro works exactly as without it.

#include "MacroFixture.h"

#include <sstream>

namespace pluvarine::test {
namespace {

using Json = nlohmann::ordered_json;

class JournalTest : public MacroFixture {
protected:
    void SetUp() override {
        journal = std::make_unique<HostJournal>(journalText);
        makeMacro();
    }
    // The journal's stream belongs to this fixture: the macro goes first.
    void TearDown() override { macro.reset(); }

    std::vector<Json> lines() const {
        std::vector<Json> result;
        std::istringstream in(journalText.str());
        for (std::string line; std::getline(in, line);) {
            result.push_back(Json::parse(line));
        }
        return result;
    }
    // "object.op" of every call line, in order.
    std::vector<std::string> calls() const {
        std::vector<std::string> result;
        for (const Json& line : lines()) {
            if (line["type"] == "call") {
                result.push_back(line["object"].get<std::string>() + "." +
                                 line["op"].get<std::string>());
            }
        }
        return result;
    }

    std::ostringstream journalText;
};

TEST_F(JournalTest, RecordsTheStartUpCallsWithArgumentsAndResults) {
    macro->Form_Load();
    const std::vector<Json> all = lines();
    ASSERT_GE(all.size(), 5U);
    EXPECT_EQ(all[0]["seq"], 1);
    EXPECT_EQ(all[0]["op"], "ConnectMacro");
    EXPECT_EQ(all[0]["args"],
              Json::parse(R"([4711, "", ")" + std::string(Macro::MacroGuid) + R"("])"));
    EXPECT_EQ(all[0]["result"], true);
    EXPECT_EQ(all[2]["op"], "AddMacroButton");
    EXPECT_EQ(all[2]["args"][0], Json::parse(R"({"width": 30, "height": 30})"));
    EXPECT_EQ(all[2]["args"][1], 0x01030204);
    EXPECT_EQ(all[2]["result"], 7);
    EXPECT_EQ(macro->hostButtonId(), 7); // passed through unchanged
}

TEST_F(JournalTest, RecordsTheCallsOfTheHostsObjects) {
    start();
    journalText.str("");
    host->sink->exe_GotOneClick(true, 2, 3, 0);
    EXPECT_EQ(calls(),
              (std::vector<std::string>{"exe.GetActiveBuilding", "building.GetRoofList",
                                        "roofList.FindRoofAt", "roof.GetRoofData", "exe.GetLevelAt",
                                        "roofData.GetGutterWidth", "roofData.GetRoofingThickness",
                                        "roof.FindRoofFaceAt", "roofData.GetFacePitch",
                                        "roofData.GetFaceDirection", "roofData.GetFaceOverhang"}));
    const std::vector<Json> all = lines();
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(all[0]["type"], "event");
    EXPECT_EQ(all[0]["event"], "exe_GotOneClick");
    EXPECT_EQ(all[0]["args"], Json::parse("[true, 2.0, 3.0, 0]"));
    EXPECT_EQ(daten.roof.roofOverhang, 500); // the values came through
    for (const Json& line : all) {
        if (line.value("op", "") == "FindRoofFaceAt") {
            EXPECT_EQ(line["result"], 0);
            EXPECT_FLOAT_EQ(line["outs"]["height"].get<float>(), 3.1F);
        }
    }
}

TEST_F(JournalTest, RecordsTheElementAndItsMatrix) {
    start();
    journalText.str("");
    daten.roof.roofDirection = 90;
    macro->Command4_Click();
    EXPECT_EQ(calls(),
              (std::vector<std::string>{"exe.LoadObjectFile", "template.CreateElement",
                                        "element.PrepareElement", "element.SetElementMatrix",
                                        "element.CommitElement", "exe.SetMacroButtonState"}));
    for (const Json& line : lines()) {
        if (line.value("op", "") == "SetElementMatrix") {
            ASSERT_EQ(line["args"][0].size(), 16U);
            const PlacementMatrix& m = *host->elements.front()->matrix();
            for (std::size_t i = 0; i < 16; ++i) {
                EXPECT_EQ(line["args"][0][i].get<float>(), m.values[i]);
            }
        }
    }
}

TEST_F(JournalTest, RecordsAFailedCallWithItsErrorAndTheMacroGoesOn) {
    log.fail("GetVersionText");
    macro->Form_Load();
    bool seen = false;
    for (const Json& line : lines()) {
        if (line.value("op", "") == "GetVersionText") {
            EXPECT_EQ(line["error"]["number"], RuntimeError::HostError);
            EXPECT_FALSE(line.contains("result"));
            seen = true;
        }
    }
    EXPECT_TRUE(seen);
    EXPECT_TRUE(program.hasEnded()); // as without the journal: message 5000
}

TEST_F(JournalTest, EventsReachTheMacroThroughTheJournal) {
    start();
    ASSERT_NE(host->sink, nullptr);
    ASSERT_NE(host->sink, macro.get()); // the host talks to the journaling forwarder
    journalText.str("");

    std::int32_t chunks = 3;
    host->sink->exe_SaveStart("house.tpr", 1, true, chunks);
    host->sink->exe_ProjectClosed();
    host->sink->exe_LoadBuilding(nullptr, 2);

    EXPECT_EQ(chunks, 4);
    const std::vector<Json> all = lines();
    EXPECT_EQ(all[0]["event"], "exe_SaveStart");
    EXPECT_EQ(all[0]["args"], Json::parse(R"(["house.tpr", 1, true, 3])"));
    EXPECT_EQ(all[1]["type"], "eventResult");
    EXPECT_EQ(all[1]["numChunksToSave"], 4);
    EXPECT_EQ(all[2]["event"], "exe_ProjectClosed");
    EXPECT_EQ(all[3]["op"], "SetMacroButtonState");
    EXPECT_EQ(all[3]["args"], Json::parse("[7, 1, 0, true, false]"));
    EXPECT_EQ(all[4]["event"], "exe_LoadBuilding");
    EXPECT_EQ(all[4]["args"], Json::parse("[null, 2]"));
}

} // namespace
} // namespace pluvarine::test
