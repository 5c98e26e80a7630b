#include "platform/tectaro/Building.h"

#include "TectaroTestSupport.h"
#include "base/RuntimeError.h"
#include "platform/tectaro/PlanGeometry.h"

#include <cmath>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <numbers>

using namespace pluvarine;

namespace {

double tanDeg(double degrees) {
    return std::tan(degrees * std::numbers::pi / 180.0);
}

// A single shed roof over a 4 x 3 m plan, falling to the south, 0.5 m overhang on that side.
RoofFace southShed() {
    RoofFace face;
    face.outline = QPolygonF({{-0.5, -0.5}, {4.5, -0.5}, {4.5, 3.5}, {-0.5, 3.5}});
    face.eaves = QLineF(QPointF(-0.5, -0.5), QPointF(4.5, -0.5));
    face.eavesHeight = 2.5;
    face.pitch = 20;
    face.direction = 0;
    face.overhang = 0.5;
    return face;
}

} // namespace

TEST(RoofFace, DirectionGivesTheDownslopeVector) {
    struct Case {
        double direction;
        QPointF downslope;
    };
    for (const Case& c : {Case{0, {0, -1}}, Case{90, {1, 0}}, Case{180, {0, 1}}, Case{270, {-1, 0}},
                          Case{45, {M_SQRT1_2, -M_SQRT1_2}}}) {
        RoofFace face;
        face.direction = c.direction;
        EXPECT_NEAR(face.downslope().x(), c.downslope.x(), 1e-12) << c.direction;
        EXPECT_NEAR(face.downslope().y(), c.downslope.y(), 1e-12) << c.direction;
    }
}

TEST(RoofFace, HeightRisesInwardsFromTheEavesByTheTangentOfThePitch) {
    const RoofFace face = southShed();
    EXPECT_DOUBLE_EQ(face.heightAt({2, -0.5}), 2.5);
    EXPECT_NEAR(face.heightAt({2, 0.0}), 2.5 + 0.5 * tanDeg(20), 1e-12);
    EXPECT_NEAR(face.heightAt({0, 3.0}), 2.5 + 3.5 * tanDeg(20), 1e-12);
    // The eaves edge may run either way: the direction decides which side is up.
    RoofFace reversed = face;
    reversed.eaves = QLineF(face.eaves.p2(), face.eaves.p1());
    EXPECT_NEAR(reversed.heightAt({0, 3.0}), face.heightAt({0, 3.0}), 1e-12);
}

TEST(Roof, FoundAtAPointIncludingTheOverhangAndNotBeyond) {
    Building building;
    Roof roof;
    roof.faces.push_back(southShed());
    building.roofs.push_back(roof);
    EXPECT_EQ(building.roofAt({2, 1}), 0);     // over the house
    EXPECT_EQ(building.roofAt({2, -0.4}), 0);  // under the overhang
    EXPECT_EQ(building.roofAt({2, -0.5}), 0);  // on the eaves edge
    EXPECT_EQ(building.roofAt({2, -0.6}), -1); // beyond it
    EXPECT_EQ(building.roofAt({5, 1}), -1);
}

TEST(Roof, AFaceHoldingThePointWinsOverOneTouchingIt) {
    Roof roof;
    RoofFace left = southShed();
    left.outline = QPolygonF({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    RoofFace right = left;
    right.outline = QPolygonF({{1, 0}, {2, 0}, {2, 1}, {1, 1}});
    roof.faces = {left, right};
    EXPECT_EQ(roof.faceAt({1.0005, 0.5}), 1);
    EXPECT_EQ(roof.faceAt({0.9995, 0.5}), 0);
    EXPECT_EQ(roof.faceAt({2.0005, 0.5}), 1); // within the tolerance of the outline
    EXPECT_EQ(roof.faceAt({2.002, 0.5}), -1);
}

TEST(Wall, ExteriorFaceLiesHalfTheThicknessToTheRightOfACounterClockwiseLine) {
    Wall wall;
    wall.line = {{0, 0}, {4, 0}, {4, 3}, {0, 3}};
    wall.closed = true;
    wall.thickness = 0.4;
    const std::vector<QPointF> outer = wall.exteriorFace();
    ASSERT_EQ(outer.size(), 4u);
    EXPECT_NEAR(outer[0].x(), -0.2, 1e-12);
    EXPECT_NEAR(outer[0].y(), -0.2, 1e-12);
    EXPECT_NEAR(outer[2].x(), 4.2, 1e-12);
    EXPECT_NEAR(outer[2].y(), 3.2, 1e-12);
    const std::vector<QPointF> inner = wall.interiorFace();
    EXPECT_NEAR(inner[0].x(), 0.2, 1e-12);
    EXPECT_NEAR(inner[0].y(), 0.2, 1e-12);
    wall.exteriorOnRight = false;
    EXPECT_NEAR(wall.exteriorFace()[0].x(), 0.2, 1e-12);
}

TEST(Wall, AnOpenLineKeepsSquareEnds) {
    Wall wall;
    wall.line = {{0, 0}, {2, 0}, {2, 2}};
    wall.thickness = 0.2;
    const std::vector<QPointF> outer = wall.exteriorFace();
    ASSERT_EQ(outer.size(), 3u);
    EXPECT_NEAR(outer[0].x(), 0.0, 1e-12);
    EXPECT_NEAR(outer[0].y(), -0.1, 1e-12);
    EXPECT_NEAR(outer[1].x(), 2.1, 1e-12);
    EXPECT_NEAR(outer[1].y(), -0.1, 1e-12);
    EXPECT_NEAR(outer[2].x(), 2.1, 1e-12);
    EXPECT_NEAR(outer[2].y(), 2.0, 1e-12);
    EXPECT_EQ(wall.segmentOutlines().size(), 2u);
}

TEST(SampleHouse, ClicksOnTheExteriorSideAreMovedOntoTheWallFace) {
    const auto house = test::sampleHouse();
    struct Case {
        QPointF click;
        bool valid;
        QPointF face;
    };
    const Case cases[] = {
        {{5, -0.1}, true, {5, 0}},     // south, just outside
        {{5, 0}, true, {5, 0}},        // on the face
        {{5, 0.1}, true, {5, 0}},      // on the outer half of the wall
        {{5, -0.25}, true, {5, 0}},    // at the tolerance
        {{10.2, 4}, true, {10, 4}},    // east
        {{3, 8.05}, true, {3, 8}},     // north
        {{-0.2, 6}, true, {0, 6}},     // west
        {{5, 0.2}, false, {5, 0.2}},   // inner half of the wall
        {{5, 0.4}, false, {5, 0.4}},   // inside the house
        {{5, 4}, false, {5, 4}},       // middle of the house
        {{5, -0.3}, false, {5, -0.3}}, // too far out
        {{-0.1, -0.1}, false, {}},     // beyond the corner, past both faces' ends
        {{20, 20}, false, {}},
    };
    for (const Case& c : cases) {
        const auto hit = house->exteriorWallHit(c.click);
        ASSERT_EQ(hit.has_value(), c.valid) << c.click.x() << "," << c.click.y();
        if (hit) {
            EXPECT_NEAR(hit->facePoint.x(), c.face.x(), 1e-9);
            EXPECT_NEAR(hit->facePoint.y(), c.face.y(), 1e-9);
            EXPECT_EQ(hit->wall, 0);
        }
    }
}

TEST(SampleHouse, EachSidesFaceHasItsOverhangAndMeetsTheWallTopAtThreeMetres) {
    const auto house = test::sampleHouse();
    ASSERT_EQ(house->roofs.size(), 1u);
    const Roof& roof = house->roofs[0];
    struct Side {
        QPointF wallFace;
        int face;
        double overhang;
        double direction;
    };
    for (const Side& s : {Side{{5, 0}, 0, 0.0, 0}, Side{{10, 4}, 1, 0.15, 90},
                          Side{{5, 8}, 2, 0.3, 180}, Side{{0, 4}, 3, 0.6, 270}}) {
        const int face = roof.faceAt(s.wallFace);
        ASSERT_EQ(face, s.face);
        const RoofFace& f = roof.faces[static_cast<std::size_t>(face)];
        EXPECT_DOUBLE_EQ(f.overhang, s.overhang);
        EXPECT_DOUBLE_EQ(f.direction, s.direction);
        EXPECT_NEAR(f.heightAt(s.wallFace), 3.0, 1e-9);
        // The eaves edge lies the overhang outside the wall face, along the downslope.
        const QPointF eavesPoint = s.wallFace + s.overhang * f.downslope();
        EXPECT_NEAR(f.heightAt(eavesPoint), f.eavesHeight, 1e-9);
        EXPECT_NEAR(plan::distanceToSegment(eavesPoint, f.eaves.p1(), f.eaves.p2()), 0, 1e-9);
    }
}

TEST(SampleHouse, RoofFacesCoverThePlanWithoutGapsAndTheHipsAreConsistent) {
    const auto house = test::sampleHouse();
    const Roof& roof = house->roofs[0];
    // Sample a grid: every point under the eaves rectangle has exactly one face (away from the
    // shared edges), and the heights of neighbouring faces agree along their shared hips.
    for (double x = -0.55; x < 10.15; x += 0.37) {
        for (double y = 0.05; y < 8.3; y += 0.29) {
            int holders = 0;
            for (const RoofFace& face : roof.faces) {
                holders += face.outline.containsPoint({x, y}, Qt::OddEvenFill) ? 1 : 0;
            }
            EXPECT_LE(holders, 1) << x << "," << y;
            EXPECT_GE(roof.faceAt({x, y}), 0) << x << "," << y;
        }
    }
    // On the south-west hip (x = y) the south and west faces have the same height.
    EXPECT_NEAR(roof.faces[0].heightAt({2, 2}), roof.faces[3].heightAt({2, 2}), 1e-9);
    // The ridge: south and north meet at y = 4.
    EXPECT_NEAR(roof.faces[0].heightAt({5, 4}), roof.faces[2].heightAt({5, 4}), 1e-9);
    EXPECT_NEAR(roof.faces[0].heightAt({5, 4}), 3.0 + 4 * tanDeg(30), 1e-9);
}

TEST(BuildingFile, RoundTripsThroughJson) {
    const auto house = test::sampleHouse();
    const Building again = Building::fromJson(house->toJson());
    EXPECT_EQ(again.toJson(), house->toJson());
    EXPECT_EQ(again.name, "Sample house");
    EXPECT_EQ(again.terrainLevel, 0.0);
}

TEST(BuildingFile, MalformedEntriesAreNamedInTheError) {
    const nlohmann::json good = test::sampleHouse()->toJson();
    struct Case {
        const char* pointer;
        nlohmann::json value;
        const char* mentions;
    };
    const Case cases[] = {
        {"/format", "other", "format"},
        {"/version", 2, "version"},
        {"/walls/0/thickness", -1, "walls[0]"},
        {"/walls/0/closed", "yes", "closed"},
        {"/walls/0/line", nlohmann::json::array({nlohmann::json::array({1, 2})}), "line"},
        {"/walls/0/exterior", "up", "exterior"},
        {"/roofs/0/faces/1/pitch", 95, "faces[1]"},
        {"/roofs/0/faces/1/direction", 0, "square to the eaves"},
        {"/roofs/0/faces/0/eaves",
         nlohmann::json::array({nlohmann::json::array({1, 1}), nlohmann::json::array({1, 1})}),
         "eaves"},
        {"/roofs/0/gutterWidth", "wide", "gutterWidth"},
        {"/roofs/0/faces", nlohmann::json::array(), "faces"},
    };
    for (const Case& c : cases) {
        nlohmann::json broken = good;
        broken[nlohmann::json::json_pointer(c.pointer)] = c.value;
        try {
            Building::fromJson(broken);
            ADD_FAILURE() << c.pointer << " was accepted";
        } catch (const RuntimeError& error) {
            EXPECT_NE(error.description().find(c.mentions), std::string::npos)
                << c.pointer << ": " << error.description();
        }
    }
}

TEST(BuildingFile, MissingAndNonJsonFilesGiveClearErrors) {
    EXPECT_THROW(Building::load("/nonexistent/house.json"), RuntimeError);
    EXPECT_THROW(Building::load(std::string(PLUVARINE_SOURCE_DIR) + "/data/sample/README.md"),
                 RuntimeError);
}
