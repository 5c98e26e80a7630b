#include "TectaroTestSupport.h"

#include <gmock/gmock.h>

using namespace pluvarine;
using testing::Property, testing::Throws;

using HostFixture = test::ConnectedHost;

// The roof data read on each side of the sample house is checked with the placement there.
TEST(TectaroHost, TheGroundLevelIsTheBuildingsTerrain) {
    Building raised = *test::sampleHouse();
    raised.terrainLevel = -0.35;
    test::SampleHost sample(std::make_shared<const Building>(raised));
    EXPECT_FLOAT_EQ(sample.connection->GetLevelAt(5, 0), -0.35f);
}

TEST_F(HostFixture, NoRoofBeyondTheOverhangAndNoFaceOrFaceNumberOutsideTheRoof) {
    EXPECT_FALSE(roofAt(-0.65f, 4));
    const auto roof = roofAt(-0.55f, 4);
    ASSERT_TRUE(roof);
    float height = 0;
    EXPECT_THROW(roof->FindRoofFaceAt(true, 30, 30, height, six, unusedFlag), RuntimeError);
    for (std::int32_t bad : {0, 5, -1}) {
        EXPECT_THROW(roof->GetRoofData()->GetFacePitch(bad), RuntimeError) << bad;
    }
}

TEST_F(HostFixture, WithoutAProjectOrAfterTheHostTheObjectsFailAsHostErrors) {
    EXPECT_EQ(connection->GetVersionText(), "Tectaro Architektur +2026.1");
    const std::shared_ptr<HostBuilding> building = connection->GetActiveBuilding();
    host->closeProject();
    run();
    EXPECT_THAT([&] { connection->GetActiveBuilding(); },
                Throws<RuntimeError>(Property(&RuntimeError::number, RuntimeError::HostError)));
    EXPECT_THROW(connection->GetLevelAt(0, 0), RuntimeError);
    host.reset();
    EXPECT_THROW(building->GetRoofList(), RuntimeError);
    EXPECT_THROW(connection->GetVersionText(), RuntimeError);
    connection.reset(); // no crash
}

// Only a macro that connected with its GUID in registry form hears the host's events; a
// connection that goes away takes its event sink with it.
TEST(TectaroHost, OnlyAMacroConnectedWithAGuidInRegistryFormHearsEvents) {
    // clang-format off
    const char* const guids[] = { // the first two accepted, the rest refused
        "{1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1B25}", "{1b0d6c3e-7a51-4f0b-9c7e-2d4a8e6f1b25}",
        "1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1B25", "{1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1B2}",
        "{1B0D6C3E7A514F0B9C7E2D4A8E6F1B25}", "{1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1BZ5}", ""};
    // clang-format on
    for (std::size_t i = 0; i < std::size(guids); ++i) {
        test::SampleHost fresh;
        fresh.connection->setEventSink(&fresh.events);
        EXPECT_EQ(fresh.connection->ConnectMacro(1, "", guids[i]), i < 2) << guids[i];
        EXPECT_EQ(fresh.host->macroConnected(), i < 2);
        fresh.host->closeProject();
        fresh.run();
        fresh.connection.reset();
        fresh.host->newProject();
        fresh.run();
        EXPECT_EQ(fresh.events.names, i < 2 ? test::Names{"ProjectClosed"} : test::Names{});
    }
}
