#include "platform/tectaro/Building.h"

#include "TectaroTestSupport.h"
#include "platform/tectaro/PlanGeometry.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using namespace pluvarine;

TEST(SampleHouse, TheRoofIsFoundUnderTheOverhangUpToTheEavesAndNotBeyond) {
    const auto house = test::sampleHouse();
    const std::pair<QPointF, int> cases[] = {{{5, 4}, 0},      {{-0.55, 4}, 0}, {{-0.6, 4}, 0},
                                             {{-0.65, 4}, -1}, {{10.1, 4}, 0},  {{10.2, 4}, -1},
                                             {{5, 8.3}, 0},    {{5, -0.1}, -1}, {{20, 20}, -1}};
    for (const auto& [p, roof] : cases) {
        EXPECT_EQ(house->roofAt(p), roof) << p.x() << "," << p.y();
    }
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
        f.eaves = QLineF(f.eaves.p2(), f.eaves.p1()); // the direction decides which side is up
        EXPECT_NEAR(f.heightAt(s.wallFace), 3.0, 1e-9);
    }
    // No gaps, no overlaps; the faces meet at the hips and the ridge.
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

TEST(SampleHouse, ClicksOnTheExteriorSideAreMovedOntoTheWallFace) {
    const auto house = test::sampleHouse();
    const std::pair<QPointF, QPointF> valid[] = {
        {{5, -0.1}, {5, 0}},  {{5, 0}, {5, 0}},    {{5, 0.1}, {5, 0}}, {{5, -0.25}, {5, 0}},
        {{10.2, 4}, {10, 4}}, {{3, 8.05}, {3, 8}}, {{-0.2, 6}, {0, 6}}};
    for (const auto& [click, face] : valid) {
        const auto hit = house->exteriorWallHit(click);
        ASSERT_TRUE(hit) << click.x() << "," << click.y();
        EXPECT_NEAR(QLineF(hit->facePoint, face).length(), 0, 1e-9);
    }
    // The inner half of the wall, inside, too far out, beyond a corner.
    for (QPointF click :
         {QPointF(5, 0.2), QPointF(5, 4), QPointF(5, -0.3), QPointF(-0.1, -0.1), QPointF(20, 20)}) {
        EXPECT_FALSE(house->exteriorWallHit(click)) << click.x() << "," << click.y();
    }
}

TEST(BuildingFile, RoundTripsThroughJsonAndNamesMalformedEntries) {
    const nlohmann::json good = test::sampleHouse()->toJson();
    EXPECT_EQ(Building::fromJson(good).toJson(), good);
    const auto pair = [](double a, double b) { return nlohmann::json::array({a, b}); };
    test::expectRefused(good,
                        {{"/format", "other", "format"},
                         {"/version", 2, "version"},
                         {"/walls/0/thickness", -1, "walls[0]"},
                         {"/walls/0/closed", "yes", "closed"},
                         {"/walls/0/line", nlohmann::json::array({pair(1, 2)}), "line"},
                         {"/walls/0/exterior", "up", "exterior"},
                         {"/roofs/0/faces/1/pitch", 95, "faces[1]"},
                         {"/roofs/0/faces/1/direction", 0, "square to the eaves"},
                         {"/roofs/0/faces/0/eaves", {pair(1, 1), pair(1, 1)}, "eaves"},
                         {"/roofs/0/gutterWidth", "wide", "gutterWidth"},
                         {"/roofs/0/faces", nlohmann::json::array(), "faces"}},
                        [](const nlohmann::json& j) { Building::fromJson(j); });
    EXPECT_THROW(Building::load("/nonexistent/house.json"), RuntimeError);
    EXPECT_THROW(Building::load(std::string(PLUVARINE_SOURCE_DIR) + "/data/sample/README.md"),
                 RuntimeError);
}
