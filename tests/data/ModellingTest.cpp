// The modelling primitives the part files are made with.

#include "data/generator/MeshBuilder.h"
#include "data/generator/PartShapes.h"
#include "data/generator/PlanarPath.h"
#include "data/generator/ProfileSweep.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace pluvarine {
namespace {

void expectPoint(const Vec3& actual, const Vec3& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
    EXPECT_NEAR(actual.z, expected.z, 1e-9);
}

TEST(PlanarPath, LeftArcTurnsCounterClockwise) {
    PlanarPath path(0, 0, 0, 1);
    path.straight(5).arc(10, 90);
    EXPECT_NEAR(path.length(), 5 + 10 * std::numbers::pi / 2, 1e-12);
    expectPoint(path.point(path.length()), {-10, 0, 15});
    expectPoint(path.tangent(path.length()), {-1, 0, 0});
    expectPoint(path.normal(0), {-1, 0, 0});
    // Halfway round the arc.
    const double half = 5 + 10 * std::numbers::pi / 4;
    expectPoint(path.point(half), {-10 + 10 * std::cos(std::numbers::pi / 4), 0,
                                   5 + 10 * std::sin(std::numbers::pi / 4)});
}

TEST(PlanarPath, RightArcTurnsClockwise) {
    PlanarPath path(1, 2, 0, -1);
    path.arc(4, -90);
    expectPoint(path.point(path.length()), {-3, 0, -2});
    expectPoint(path.tangent(path.length()), {-1, 0, 0});
}

TEST(PlanarPath, RunsOnStraightBeyondItsEnds) {
    PlanarPath path(0, 0, 1, 0);
    path.arc(10, 90);
    expectPoint(path.point(-2), {-2, 0, 0});
    expectPoint(path.point(path.length() + 3), {10, 0, 13});
    EXPECT_EQ(path.breaks().size(), 2u);
}

TEST(PlanarPath, RingStartsOnTheNormalAndTurnsTowardsY) {
    PlanarPath path(0, 0, 0, 1);
    expectPoint(path.ring(7, 2, 0), {-2, 0, 7});
    expectPoint(path.ring(7, 2, 0.25), {0, 2, 7});
    expectPoint(path.ring(7, 2, 0.5), {2, 0, 7});
}

// A wall walked upwards faces away from the axis, walked downwards towards it.
TEST(MeshBuilder, SurfaceFacesFollowTheOrderOfTheSamples) {
    const PlanarPath axis(0, 0, 0, 1);
    for (const bool up : {true, false}) {
        MeshBuilder mesh;
        ProfileSweep sweep(mesh, axis, 8);
        sweep.wall([](double) { return 3.0; },
                   up ? std::vector<double>{0, 1} : std::vector<double>{1, 0});
        const Vec3 p = mesh.positions()[0];
        const Vec3 radial = Vec3{p.x, p.y, 0}.normalized();
        EXPECT_NEAR(mesh.normals()[0].dot(radial), up ? 1.0 : -1.0, 1e-6);
    }
}

TEST(MeshBuilder, TriangleIsWoundToItsNormalsAndSliversAreDropped) {
    MeshBuilder mesh;
    const Vec3 down{0, 0, -1};
    const auto a = mesh.addVertex({0, 0, 0}, down), b = mesh.addVertex({1, 0, 0}, down),
               c = mesh.addVertex({0, 1, 0}, down), d = mesh.addVertex({2, 0, 0}, down);
    mesh.addTriangle(a, b, c);
    ASSERT_EQ(mesh.indices().size(), 3u);
    EXPECT_EQ(mesh.indices(), (std::vector<std::uint32_t>{a, c, b}));
    mesh.addTriangle(a, b, d); // no area
    EXPECT_EQ(mesh.indices().size(), 3u);
}

TEST(MeshBuilder, ClosedTubeEnclosesItsWallVolume) {
    MeshBuilder mesh;
    const PlanarPath axis(0, 0, 0, 1);
    ProfileSweep sweep(mesh, axis, 256);
    const auto samples = ProfileSweep::steps(0, 10, 1);
    sweep.tube([](double) { return 5.0; }, samples, 4, samples);
    EXPECT_NEAR(mesh.signedVolume(), std::numbers::pi * (25 - 16) * 10, 0.1);
}

TEST(PartShapes, UnknownAnglesAreRefused) {
    EXPECT_THROW(PartShapes::bend(90, true), std::invalid_argument);
    EXPECT_THROW(PartShapes::kink(45), std::invalid_argument);
}

// The lower bend is the upper one turned half round y: its openings mirror through the origin.
TEST(PartShapes, LowerBendIsTheUpperTurnedOver) {
    for (int degrees : {72, 42}) {
        const PartModel upper = PartShapes::bend(degrees, true);
        const PartModel lower = PartShapes::bend(degrees, false);
        ASSERT_EQ(upper.openings.size(), 2u);
        for (std::size_t i = 0; i < 2; ++i) {
            const Vec3 u = upper.openings[i].centre, l = lower.openings[i].centre;
            expectPoint(l, {-u.x, u.y, -u.z});
        }
        EXPECT_EQ(upper.mesh.indices().size(), lower.mesh.indices().size());
    }
}

} // namespace
} // namespace pluvarine
