// The modelling primitives the part files are made with, where the part files cannot show a
// fault.

#include "data/generator/MeshBuilder.h"
#include "data/generator/PartShapes.h"

#include <gtest/gtest.h>

namespace pluvarine {
namespace {

TEST(MeshBuilder, TriangleIsWoundToItsNormalsAndSliversAreDropped) {
    MeshBuilder mesh;
    const Vec3 down{0, 0, -1};
    const auto a = mesh.addVertex({0, 0, 0}, down), b = mesh.addVertex({1, 0, 0}, down),
               c = mesh.addVertex({0, 1, 0}, down), d = mesh.addVertex({2, 0, 0}, down);
    mesh.addTriangle(a, b, c);
    mesh.addTriangle(a, b, d); // no area
    EXPECT_EQ(mesh.indices(), (std::vector<std::uint32_t>{a, c, b}));
}

TEST(PartShapes, UnknownAnglesAreRefused) {
    EXPECT_THROW(PartShapes::bend(90, true), std::invalid_argument);
    EXPECT_THROW(PartShapes::kink(45), std::invalid_argument);
}

} // namespace
} // namespace pluvarine
