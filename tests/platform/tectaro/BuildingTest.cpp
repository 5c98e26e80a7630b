#include "platform/tectaro/Building.h"

#include "TectaroTestSupport.h"
#include "platform/tectaro/PlanGeometry.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <numbers>

using namespace pluvarine;

// The overhang and direction of each side are read through the host in PlacementTest.
TEST(SampleHouse, EachSidesEavesLieTheOverhangOutsideTheWallAndTheFacesCoverTheRoofOnce) {
    const auto house = test::sampleHouse();
    const Roof& roof = house->roofs.at(0);
    const std::pair<QPointF, int> sides[] = {{{5, 0}, 0}, {{10, 4}, 1}, {{5, 8}, 2}, {{0, 4}, 3}};
    for (const auto& [wallFace, face] : sides) {
        ASSERT_EQ(roof.faceAt(wallFace), face);
        RoofFace f = roof.faces[static_cast<std::size_t>(face)];
        const QPointF eavesPoint = wallFace + f.overhang * f.downslope();
        EXPECT_NEAR(f.heightAt(eavesPoint), f.eavesHeight, 1e-9) << face;
        EXPECT_NEAR(plan::distanceToSegment(eavesPoint, f.eaves.p1(), f.eaves.p2()), 0, 1e-9);
        f.eaves = QLineF(f.eaves.p2(), f.eaves.p1()); // the direction decides which side is up
        EXPECT_NEAR(f.heightAt(wallFace), 3.0, 1e-9) << face;
    }
    // No gaps, no overlaps; the faces meet at the hips and the ridge.
    for (double x = -0.55; x < 10.15; x += 0.37)
        for (double y = 0.05; y < 8.3; y += 0.29) {
            const auto holders = std::ranges::count_if(roof.faces, [&](const RoofFace& face) {
                return face.outline.containsPoint({x, y}, Qt::OddEvenFill);
            });
            EXPECT_LE(holders, 1) << x << "," << y;
            EXPECT_GE(roof.faceAt({x, y}), 0) << x << "," << y;
        }
    EXPECT_NEAR(roof.faces[0].heightAt({2, 2}), roof.faces[3].heightAt({2, 2}), 1e-9);
    EXPECT_NEAR(roof.faces[0].heightAt({5, 4}), roof.faces[2].heightAt({5, 4}), 1e-9);
    EXPECT_NEAR(roof.faces[0].heightAt({5, 4}), 3.0 + 4 * std::tan(std::numbers::pi / 6), 1e-9);
}

// At each point: the roof, found under the overhang up to the eaves and not beyond; and a
// click there, valid on the exterior side of the wall (then moved onto the face) and invalid on
// its inner half, inside, too far out or beyond a corner. The same walls drawn the other way
// round, with the exterior on their left, give the same clicks.
TEST(SampleHouse, TheRoofReachesTheEavesAndClicksOnTheWallsExteriorSideLandOnTheFace) {
    const auto house = test::sampleHouse();
    auto json =
        nlohmann::json::parse(std::ifstream(PLUVARINE_SOURCE_DIR "/data/sample/house.json"));
    auto& wall = json["walls"][0];
    std::reverse(wall["line"].begin(), wall["line"].end());
    wall["exterior"] = "left";
    const Building drawnLeft = Building::fromJson(json);
    const std::tuple<QPointF, int, std::optional<QPointF>> cases[] = {
        {{5, 4}, 0, {}},          {{-0.55, 4}, 0, {}},       {{-0.6, 4}, 0, {}},
        {{-0.65, 4}, -1, {}},     {{10.1, 4}, 0, {{10, 4}}}, {{10.2, 4}, -1, {{10, 4}}},
        {{5, 8.3}, 0, {}},        {{5, -0.1}, -1, {{5, 0}}}, {{20, 20}, -1, {}},
        {{5, 0}, 0, {{5, 0}}},    {{5, 0.1}, 0, {{5, 0}}},   {{5, -0.25}, -1, {{5, 0}}},
        {{3, 8.05}, 0, {{3, 8}}}, {{-0.2, 6}, 0, {{0, 6}}},  {{5, 0.2}, 0, {}},
        {{5, -0.3}, -1, {}},      {{-0.1, -0.1}, -1, {}}};
    for (const auto& [p, roof, face] : cases) {
        EXPECT_EQ(house->roofAt(p), roof) << p.x() << "," << p.y();
        for (const auto& hit : {house->exteriorWallHit(p), drawnLeft.exteriorWallHit(p)}) {
            ASSERT_EQ(hit.has_value(), face.has_value()) << p.x() << "," << p.y();
            if (hit) {
                EXPECT_NEAR(QLineF(hit->facePoint, *face).length(), 0, 1e-9);
            }
        }
    }
}
