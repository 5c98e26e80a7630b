#include "platform/tectaro/Building.h"

#include "TectaroTestSupport.h"
#include "base/RuntimeError.h"
#include "platform/tectaro/PlanGeometry.h"

#include <cmath>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <numbers>

using namespace pluvarine;

TEST(SampleHouse, TheRoofIsFoundUnderTheOverhangUpToTheEavesAndNotBeyond) {
    const auto house = test::sampleHouse();
    struct Case {
        QPointF p;
        int roof;
    } const cases[] = {{{5, 4}, 0},      {{-0.55, 4}, 0}, {{-0.6, 4}, 0},
                       {{-0.65, 4}, -1}, {{10.1, 4}, 0},  {{10.2, 4}, -1},
                       {{5, 8.3}, 0},    {{5, -0.1}, -1}, {{20, 20}, -1}};
    for (const Case& c : cases) {
        EXPECT_EQ(house->roofAt(c.p), c.roof) << c.p.x() << "," << c.p.y();
    }
}

TEST(Roof, AFaceHoldingThePointWinsOverOneTouchingIt) {
    Roof roof;
    roof.faces.resize(2);
    roof.faces[0].outline = QPolygonF({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    roof.faces[1].outline = QPolygonF({{1, 0}, {2, 0}, {2, 1}, {1, 1}});
    EXPECT_EQ(roof.faceAt({1.0005, 0.5}), 1);
    EXPECT_EQ(roof.faceAt({0.9995, 0.5}), 0);
    EXPECT_EQ(roof.faceAt({2.0005, 0.5}), 1); // within the tolerance of the outline
    EXPECT_EQ(roof.faceAt({2.002, 0.5}), -1);
}

TEST(SampleHouse, EachSidesFaceHasItsOverhangAndMeetsTheWallTopAtThreeMetres) {
    const auto house = test::sampleHouse();
    const Roof& roof = house->roofs.at(0);
    struct Side {
        QPointF wallFace;
        int face;
        double overhang, direction;
    };
    for (const Side& s : {Side{{5, 0}, 0, 0.0, 0}, Side{{10, 4}, 1, 0.15, 90},
                          Side{{5, 8}, 2, 0.3, 180}, Side{{0, 4}, 3, 0.6, 270}}) {
        ASSERT_EQ(roof.faceAt(s.wallFace), s.face);
        RoofFace f = roof.faces[static_cast<std::size_t>(s.face)];
        EXPECT_DOUBLE_EQ(f.overhang, s.overhang);
        EXPECT_DOUBLE_EQ(f.direction, s.direction);
        EXPECT_NEAR(f.heightAt(s.wallFace), 3.0, 1e-9);
        // The eaves lie the overhang outside the wall face, along the downslope.
        const QPointF eavesPoint = s.wallFace + s.overhang * f.downslope();
        EXPECT_NEAR(f.heightAt(eavesPoint), f.eavesHeight, 1e-9);
        EXPECT_NEAR(plan::distanceToSegment(eavesPoint, f.eaves.p1(), f.eaves.p2()), 0, 1e-9);
        // The eaves edge may run either way: the direction decides which side is up.
        f.eaves = QLineF(f.eaves.p2(), f.eaves.p1());
        EXPECT_NEAR(f.heightAt(s.wallFace), 3.0, 1e-9);
    }
}

TEST(SampleHouse, RoofFacesCoverThePlanWithoutGapsAndMeetAtHipsAndRidge) {
    const auto house = test::sampleHouse();
    const Roof& roof = house->roofs.at(0);
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
    EXPECT_NEAR(roof.faces[0].heightAt({2, 2}), roof.faces[3].heightAt({2, 2}), 1e-9);
    EXPECT_NEAR(roof.faces[0].heightAt({5, 4}), roof.faces[2].heightAt({5, 4}), 1e-9);
    EXPECT_NEAR(roof.faces[0].heightAt({5, 4}), 3.0 + 4 * std::tan(std::numbers::pi / 6), 1e-9);
}

TEST(Wall, TheExteriorFaceLiesOnTheExteriorSideWithMitredCornersOrSquareEnds) {
    Wall wall;
    wall.line = {{0, 0}, {4, 0}, {4, 3}, {0, 3}};
    wall.closed = true;
    wall.thickness = 0.4;
    EXPECT_EQ(wall.exteriorFace().at(0), QPointF(-0.2, -0.2));
    EXPECT_EQ(wall.exteriorFace().at(2), QPointF(4.2, 3.2));
    EXPECT_EQ(wall.interiorFace().at(0), QPointF(0.2, 0.2));
    wall.exteriorOnRight = false;
    EXPECT_EQ(wall.exteriorFace().at(0), QPointF(0.2, 0.2));
    Wall open;
    open.line = {{0, 0}, {2, 0}, {2, 2}};
    open.thickness = 0.2;
    EXPECT_EQ(open.exteriorFace(), (std::vector<QPointF>{{0, -0.1}, {2.1, -0.1}, {2.1, 2}}));
    EXPECT_EQ(open.segmentOutlines().size(), 2u);
}

TEST(SampleHouse, ClicksOnTheExteriorSideAreMovedOntoTheWallFace) {
    const auto house = test::sampleHouse();
    struct Case {
        QPointF click;
        bool valid;
        QPointF face;
    } const cases[] = {
        {{5, -0.1}, true, {5, 0}},  {{5, 0}, true, {5, 0}},     {{5, 0.1}, true, {5, 0}},
        {{5, -0.25}, true, {5, 0}}, {{10.2, 4}, true, {10, 4}}, {{3, 8.05}, true, {3, 8}},
        {{-0.2, 6}, true, {0, 6}},  {{5, 0.2}, false, {}},      {{5, 0.4}, false, {}},
        {{5, 4}, false, {}},        {{5, -0.3}, false, {}},     {{-0.1, -0.1}, false, {}},
        {{20, 20}, false, {}},
    };
    for (const Case& c : cases) {
        const auto hit = house->exteriorWallHit(c.click);
        ASSERT_EQ(hit.has_value(), c.valid) << c.click.x() << "," << c.click.y();
        if (hit) {
            EXPECT_NEAR(QLineF(hit->facePoint, c.face).length(), 0, 1e-9);
            EXPECT_EQ(hit->wall, 0);
        }
    }
}

TEST(BuildingFile, RoundTripsThroughJsonAndNamesMalformedEntries) {
    const nlohmann::json good = test::sampleHouse()->toJson();
    EXPECT_EQ(Building::fromJson(good).toJson(), good);
    EXPECT_EQ(Building::fromJson(good).name, "Sample house");
    const auto pair = [](double a, double b) { return nlohmann::json::array({a, b}); };
    const struct {
        const char* pointer;
        nlohmann::json value;
        const char* mentions;
    } cases[] = {
        {"/format", "other", "format"},
        {"/version", 2, "version"},
        {"/walls/0/thickness", -1, "walls[0]"},
        {"/walls/0/closed", "yes", "closed"},
        {"/walls/0/line", nlohmann::json::array({pair(1, 2)}), "line"},
        {"/walls/0/exterior", "up", "exterior"},
        {"/roofs/0/faces/1/pitch", 95, "faces[1]"},
        {"/roofs/0/faces/1/direction", 0, "square to the eaves"},
        {"/roofs/0/faces/0/eaves", nlohmann::json::array({pair(1, 1), pair(1, 1)}), "eaves"},
        {"/roofs/0/gutterWidth", "wide", "gutterWidth"},
        {"/roofs/0/faces", nlohmann::json::array(), "faces"},
    };
    for (const auto& c : cases) {
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
    EXPECT_THROW(Building::load("/nonexistent/house.json"), RuntimeError);
    EXPECT_THROW(Building::load(std::string(PLUVARINE_SOURCE_DIR) + "/data/sample/README.md"),
                 RuntimeError);
}
