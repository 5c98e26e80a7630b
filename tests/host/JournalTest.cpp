// The journal of a session: every host operation the macro calls and every event the host
// raises, as JSON lines in order, while the macro works exactly as without it.

#include "MacroFixture.h"
#include "host/JournalingHostConnection.h"

namespace pluvarine::test {
namespace {

using Json = nlohmann::ordered_json;

class JournalTest : public MacroFixture {
protected:
    std::unique_ptr<HostConnection> connect() override {
        return std::make_unique<JournalingHostConnection>(MacroFixture::connect(), journal);
    }
    void TearDown() override { macro.reset(); } // before the journal's stream

    std::ostringstream text;
    HostJournal journal{text};
};

TEST_F(JournalTest, WritesCallsResultsErrorsAndEventsAsJsonLinesInOrder) {
    macro->Form_Load();
    ASSERT_NE(host->sink, macro.get()); // the host talks to the journaling forwarder
    text.str("");
    log.failing = {"GetGutterWidth"};
    host->sink->exe_GotOneClick(true, 2, 3, 0);
    std::vector<Json> all;
    std::vector<std::string> order;
    std::istringstream in(text.str());
    for (std::string line; std::getline(in, line);) {
        const Json& j = all.emplace_back(Json::parse(line));
        order.push_back(j.value("event", j.value("object", "") + "." + j.value("op", "")));
    }
    EXPECT_THAT(order,
                ElementsAre("exe_GotOneClick", "exe.GetActiveBuilding", "building.GetRoofList",
                            "roofList.FindRoofAt", "roof.GetRoofData", "exe.GetLevelAt",
                            "roofData.GetGutterWidth", "roofData.GetRoofingThickness",
                            "roof.FindRoofFaceAt", "roofData.GetFacePitch",
                            "roofData.GetFaceDirection", "roofData.GetFaceOverhang"));
    EXPECT_EQ(all[0]["args"], Json::parse("[true, 2.0, 3.0, 0]"));
    EXPECT_EQ(all[1]["type"], "call");
    EXPECT_FLOAT_EQ(all[5]["result"].get<float>(), 0.2F); // passed on unchanged
    EXPECT_EQ(all[6]["error"]["number"], RuntimeError::HostError);
    EXPECT_FALSE(all[6].contains("result"));
    EXPECT_FLOAT_EQ(all[8]["outs"]["height"].get<float>(), 3.1F);
}

} // namespace
} // namespace pluvarine::test
