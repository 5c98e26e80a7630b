#include "TectaroTestSupport.h"
#include "base/RuntimeError.h"
#include "host/HostBuilding.h"
#include "host/HostRoof.h"
#include "host/HostRoofData.h"
#include "host/HostRoofList.h"

#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using namespace pluvarine;

namespace {

struct HostFixture : ::testing::Test, test::SampleHost {

    std::shared_ptr<HostRoof> roofAt(float x, float y) {
        std::int32_t ignored = 0;
        std::array<float, 6> six{1, 1, 1, 1, 1, 1};
        bool flag = false;
        return connection->GetActiveBuilding()->GetRoofList()->FindRoofAt(true, x, y, ignored, six,
                                                                          flag);
    }
};

// What the macro reads at a picked point, in its units (mm, degrees), the way it reads it.
struct MacroReading {
    double overhang, gutterWidth, roofingThickness, pitch, direction;
    float roofLevel, groundLevel;
    double heightH;
};

} // namespace

TEST_F(HostFixture, TheFourSidesOfTheSampleHouseGiveTheRoofDataOfEachConstruction) {
    struct Side {
        const char* name;
        float x, y; // the picked point on the wall face
        double overhang, direction;
    };
    const Side sides[] = {{"south", 5, 0, 0, 0},
                          {"east", 10, 4, 150, 90},
                          {"north", 5, 8, 300, 180},
                          {"west", 0, 4, 600, 270}};
    for (const Side& side : sides) {
        SCOPED_TRACE(side.name);
        std::shared_ptr<HostRoof> roof = roofAt(side.x, side.y);
        ASSERT_TRUE(roof);
        std::shared_ptr<HostRoofData> data = roof->GetRoofData();
        float s = 0;
        std::array<float, 6> six{1, 1, 1, 1, 1, 1};
        bool ignored = false;
        const std::int32_t face = roof->FindRoofFaceAt(true, side.x, side.y, s, six, ignored) + 1;
        MacroReading r{};
        r.gutterWidth = data->GetGutterWidth() * 1000;
        r.roofingThickness = data->GetRoofingThickness() * 1000;
        r.pitch = data->GetFacePitch(face);
        r.direction = data->GetFaceDirection(face);
        r.overhang = data->GetFaceOverhang(face, ignored) * 1000;
        r.roofLevel = s * 1000.0f - 100.0f;
        r.groundLevel = connection->GetLevelAt(side.x, side.y) * 1000.0f;
        r.heightH = (r.roofLevel - r.groundLevel) -
                    r.overhang * std::tan(r.pitch * std::numbers::pi / 180) + 60;

        EXPECT_NEAR(r.overhang, side.overhang, 1e-9);
        EXPECT_NEAR(r.gutterWidth, 150, 1e-9);
        EXPECT_NEAR(r.roofingThickness, 60, 1e-9);
        EXPECT_DOUBLE_EQ(r.pitch, 30);
        EXPECT_DOUBLE_EQ(r.direction, side.direction);
        EXPECT_FLOAT_EQ(r.roofLevel, 2900.0f); // the roof meets the wall top at 3 m
        EXPECT_FLOAT_EQ(r.groundLevel, 0.0f);
        // The pipe reaches from the ground to 40 mm under the eaves.
        EXPECT_NEAR(r.heightH, 2960 - side.overhang * std::tan(std::numbers::pi / 6), 1e-3);
    }
}

TEST_F(HostFixture, NoRoofOutsideTheOverhangAndNoFaceOfAnotherRoof) {
    EXPECT_FALSE(roofAt(5, -0.1f));  // the south side has no overhang
    EXPECT_TRUE(roofAt(-0.55f, 4));  // under the west overhang
    EXPECT_FALSE(roofAt(-0.65f, 4)); // beyond it
    std::shared_ptr<HostRoof> roof = roofAt(5, 4);
    ASSERT_TRUE(roof);
    float s = 0;
    std::array<float, 6> six{};
    bool ignored = false;
    EXPECT_THROW(roof->FindRoofFaceAt(true, 30, 30, s, six, ignored), RuntimeError);
}

TEST_F(HostFixture, RoofDataFacesCountFromOneAndOthersFail) {
    std::shared_ptr<HostRoofData> data = roofAt(5, 4)->GetRoofData();
    EXPECT_DOUBLE_EQ(data->GetFaceDirection(1), 0);
    EXPECT_DOUBLE_EQ(data->GetFaceDirection(4), 270);
    for (std::int32_t bad : {0, 5, -1}) {
        EXPECT_THROW(data->GetFacePitch(bad), RuntimeError) << bad;
    }
}

TEST_F(HostFixture, TheLevelIsTheTerrainLevel) {
    Building raised = *test::sampleHouse();
    raised.terrainLevel = -0.35;
    TectaroOptions options;
    options.programFolder = folder.path().toStdString();
    options.defaultBuilding = std::make_shared<const Building>(raised);
    TectaroHost other(options);
    EXPECT_FLOAT_EQ(other.createConnection()->GetLevelAt(5, 0), -0.35f);
}

TEST_F(HostFixture, WithoutAProjectTheBuildingAndLevelAreHostErrors) {
    host->closeProject();
    test::runUntilIdle(*host);
    ASSERT_FALSE(host->hasProject());
    try {
        connection->GetActiveBuilding();
        ADD_FAILURE();
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), RuntimeError::HostError);
    }
    EXPECT_THROW(connection->GetLevelAt(0, 0), RuntimeError);
}

TEST_F(HostFixture, ObjectsOutlivingTheHostFailAsHostErrors) {
    std::shared_ptr<HostBuilding> building = connection->GetActiveBuilding();
    host.reset();
    EXPECT_THROW(building->GetRoofList(), RuntimeError);
    EXPECT_THROW(connection->GetVersionText(), RuntimeError);
    connection.reset(); // no crash
}

TEST_F(HostFixture, VersionTextAndProgramFolderAreTheHostsOwn) {
    EXPECT_EQ(connection->GetVersionText(), "Tectaro Architektur +2026.1");
    EXPECT_EQ(connection->GetProgramFolder(), folder.path().toStdString() + "/");
    host->setVersionText("Tectaro +2004");
    EXPECT_EQ(connection->GetVersionText(), "Tectaro +2004");
}

TEST_F(HostFixture, ConnectMacroAcceptsAGuidInRegistryFormOnly) {
    struct Case {
        const char* guid;
        bool accepted;
    };
    for (const Case& c : {Case{"{1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1B25}", true},
                          Case{"{1b0d6c3e-7a51-4f0b-9c7e-2d4a8e6f1b25}", true},
                          Case{"1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1B25", false},
                          Case{"{1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1B2}", false},
                          Case{"{1B0D6C3E7A514F0B9C7E2D4A8E6F1B25}", false},
                          Case{"{1B0D6C3E-7A51-4F0B-9C7E-2D4A8E6F1BZ5}", false}, Case{"", false}}) {
        TectaroOptions options;
        options.programFolder = folder.path().toStdString();
        TectaroHost fresh(options);
        EXPECT_EQ(fresh.createConnection()->ConnectMacro(1, "", c.guid), c.accepted) << c.guid;
        EXPECT_EQ(fresh.macroConnected(), c.accepted);
    }
}
