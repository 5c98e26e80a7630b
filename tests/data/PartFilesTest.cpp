// Every part file of the catalogue: a GLB the viewer can read, with the effective sizes the
// constructions place it by, sound triangles, and openings where the neighbouring parts join.

#include "tests/data/GlbPart.h"

#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>

namespace pluvarine {
namespace {

// Expected extent along one axis: exact to single precision when `slack` is 0, else each end
// within `slack` of the value given.
struct Axis {
    double lo;
    double hi;
    double slack = 0;
};

struct PartSpec {
    const char* stem;
    Axis x, y, z;
    std::size_t minTriangles;
    std::size_t maxTriangles;
    std::set<std::string> openings;
};

std::ostream& operator<<(std::ostream& out, const PartSpec& spec) {
    return out << spec.stem;
}

const PartSpec kParts[] = {
    // The gutter outlet: top 186.5 mm of H; plate 218 along the gutter.
    {"Reinhangestutzen_100_218",
     {-0.09, 0.09},
     {-0.109, 0.109},
     {-0.09325, 0.09325},
     2000,
     20000,
     {"bottom"}},
    {"Fallrohr_100_500", {-0.05, 0.05}, {-0.05, 0.05}, {-0.25, 0.25}, 200, 5000, {"bottom", "top"}},
    {"Standrohr_125_500",
     {-0.0625, 0.0625},
     {-0.0625, 0.0625},
     {-0.25, 0.25},
     200,
     5000,
     {"bottom", "top"}},
    {"Abdeckkappe_100_125",
     {-0.0645, 0.0645, 0.002},
     {-0.0645, 0.0645, 0.002},
     {-0.0147, 0.0147},
     500,
     10000,
     {"bore"}},
    // The clamp: 233.4 deep, ring round the pipe axis at x = -62.7 mm, rod into the wall.
    {"Rohrschelle_100",
     {-0.1167, 0.1167},
     {-0.06, 0.064, 0.006},
     {-0.0125, 0.0125, 0.005},
     1000,
     20000,
     {"ring", "rod"}},
    {"Bogen_100_72_L",
     {-0.1152, 0.1152},
     {-0.05, 0.05, 0.002},
     {-0.1373, 0.1373},
     2000,
     20000,
     {"top", "inclined"}},
    {"Bogen_100_72_R",
     {-0.1152, 0.1152},
     {-0.05, 0.05, 0.002},
     {-0.1373, 0.1373},
     2000,
     20000,
     {"bottom", "inclined"}},
    {"Bogen_100_42_L",
     {-0.09615, 0.09615},
     {-0.05, 0.05, 0.002},
     {-0.15365, 0.15365},
     2000,
     20000,
     {"top", "inclined"}},
    {"Bogen_100_42_R",
     {-0.09615, 0.09615},
     {-0.05, 0.05, 0.002},
     {-0.15365, 0.15365},
     2000,
     20000,
     {"bottom", "inclined"}},
    // Kinks: effective height k along z; sideways about the vertical pipe's axis.
    {"Knick_100_72",
     {-0.05, 0.05, 0.003},
     {-0.05, 0.05, 0.001},
     {-0.0481, 0.0481},
     1000,
     20000,
     {"bottom", "inclined"}},
    {"Knick_100_42",
     {-0.05, 0.05, 0.003},
     {-0.05, 0.05, 0.001},
     {-0.0337, 0.0337},
     1000,
     20000,
     {"bottom", "inclined"}},
    {"dummy", {-0.5, 0.5}, {-0.5, 0.5}, {-0.5, 0.5}, 12, 12, {}},
};

class PartFile : public ::testing::TestWithParam<PartSpec> {
protected:
    static const GlbPart& part() { return GlbPart::catalogued(GetParam().stem); }
};

void expectAxis(const char* axis, double lo, double hi, const Axis& expected) {
    SCOPED_TRACE(axis);
    if (expected.slack == 0) {
        EXPECT_FLOAT_EQ(static_cast<float>(lo), static_cast<float>(expected.lo));
        EXPECT_FLOAT_EQ(static_cast<float>(hi), static_cast<float>(expected.hi));
    } else {
        EXPECT_NEAR(lo, expected.lo, expected.slack);
        EXPECT_NEAR(hi, expected.hi, expected.slack);
    }
}

TEST_P(PartFile, IsOneSceneWithOneRootNodeAndOneTriangleMesh) {
    const auto& model = part().model();
    ASSERT_EQ(model.scenes.size(), 1u);
    EXPECT_EQ(model.defaultScene, 0);
    ASSERT_EQ(model.scenes[0].nodes.size(), 1u);
    const auto& root = model.nodes.at(model.scenes[0].nodes[0]);
    EXPECT_EQ(root.name, GetParam().stem);
    EXPECT_TRUE(root.matrix.empty() && root.translation.empty() && root.rotation.empty() &&
                root.scale.empty())
        << "the reference point is the file's origin, untransformed";
    ASSERT_EQ(model.meshes.size(), 1u);
    ASSERT_EQ(root.mesh, 0);
    ASSERT_EQ(model.meshes[0].primitives.size(), 1u);
    const auto& primitive = model.meshes[0].primitives[0];
    EXPECT_EQ(primitive.mode, TINYGLTF_MODE_TRIANGLES);
    EXPECT_EQ(primitive.attributes.size(), 2u);
    EXPECT_EQ(primitive.attributes.count("POSITION"), 1u);
    EXPECT_EQ(primitive.attributes.count("NORMAL"), 1u);
}

TEST_P(PartFile, HasTheEffectiveSizes) {
    const Vec3 lo = part().lowest(), hi = part().highest();
    expectAxis("x", lo.x, hi.x, GetParam().x);
    expectAxis("y", lo.y, hi.y, GetParam().y);
    expectAxis("z", lo.z, hi.z, GetParam().z);
}

TEST_P(PartFile, PositionBoundsMatchTheData) {
    const auto& model = part().model();
    const auto& accessor =
        model.accessors.at(model.meshes[0].primitives[0].attributes.at("POSITION"));
    const Vec3 lo = part().lowest(), hi = part().highest();
    EXPECT_EQ(accessor.minValues, (std::vector<double>{lo.x, lo.y, lo.z}));
    EXPECT_EQ(accessor.maxValues, (std::vector<double>{hi.x, hi.y, hi.z}));
}

TEST_P(PartFile, TriangleCountIsSane) {
    EXPECT_EQ(part().indices().size() % 3, 0u);
    EXPECT_GE(part().triangleCount(), GetParam().minTriangles);
    EXPECT_LE(part().triangleCount(), GetParam().maxTriangles);
}

TEST_P(PartFile, IndicesAreInRange) {
    const std::size_t count = part().positions().size();
    ASSERT_EQ(part().normals().size(), count);
    for (std::uint32_t index : part().indices()) {
        ASSERT_LT(index, count);
    }
}

TEST_P(PartFile, NormalsAreUnitLength) {
    for (const Vec3& n : part().normals()) {
        ASSERT_NEAR(n.length(), 1.0, 1e-6);
    }
}

TEST_P(PartFile, TrianglesFaceTheirVertexNormals) {
    const auto& p = part().positions();
    const auto& n = part().normals();
    const auto& idx = part().indices();
    std::size_t disagreeing = 0;
    for (std::size_t i = 0; i < idx.size(); i += 3) {
        const Vec3 face = (p[idx[i + 1]] - p[idx[i]]).cross(p[idx[i + 2]] - p[idx[i]]);
        const Vec3 smooth = n[idx[i]] + n[idx[i + 1]] + n[idx[i + 2]];
        if (face.dot(smooth) <= 0) {
            ++disagreeing;
        }
    }
    EXPECT_EQ(disagreeing, 0u);
}

// Just in front of a triangle lies outside the solid, just behind it inside: the surface is
// closed and faces outwards (overlapping pieces, as on the clamp, add up).
TEST_P(PartFile, SurfaceIsClosedAndFacesOutwards) {
    const auto& p = part().positions();
    const auto& idx = part().indices();
    const std::size_t triangles = part().triangleCount();
    const std::size_t step = std::max<std::size_t>(1, triangles / 60);
    for (std::size_t t = 0; t < triangles; t += step) {
        const Vec3 a = p[idx[3 * t]], b = p[idx[3 * t + 1]], c = p[idx[3 * t + 2]];
        const Vec3 face = (b - a).cross(c - a);
        if (face.length() < 1e-10) {
            continue;
        }
        const Vec3 centre = (a + b + c) * (1.0 / 3);
        const Vec3 off = face.normalized() * 1e-6;
        const double inside = part().windingNumber(centre - off);
        const double outside = part().windingNumber(centre + off);
        EXPECT_NEAR(inside - outside, 1.0, 0.02) << "triangle " << t;
        EXPECT_NEAR(outside, std::round(outside), 0.02) << "triangle " << t;
    }
}

TEST_P(PartFile, HasOneGreyPlasticMaterial) {
    const auto& model = part().model();
    ASSERT_EQ(model.materials.size(), 1u);
    EXPECT_EQ(model.meshes[0].primitives[0].material, 0);
    const auto& pbr = model.materials[0].pbrMetallicRoughness;
    ASSERT_EQ(pbr.baseColorFactor.size(), 4u);
    EXPECT_DOUBLE_EQ(pbr.baseColorFactor[0], pbr.baseColorFactor[1]);
    EXPECT_DOUBLE_EQ(pbr.baseColorFactor[1], pbr.baseColorFactor[2]);
    // sRGB 144 is linear 0.279.
    EXPECT_NEAR(pbr.baseColorFactor[0], 0.279, 0.001);
    EXPECT_EQ(pbr.baseColorFactor[3], 1.0);
    EXPECT_EQ(pbr.metallicFactor, 0.0);
    EXPECT_GT(pbr.roughnessFactor, 0.2);
}

TEST_P(PartFile, DeclaresItsFrameAndWhetherItIsDrawn) {
    const auto& extras = part().assetExtras();
    ASSERT_TRUE(extras.IsObject());
    EXPECT_EQ(extras.Get("part").Get<std::string>(), GetParam().stem);
    EXPECT_NE(extras.Get("frame").Get<std::string>().find("z up"), std::string::npos);
    const bool auxiliary = std::string(GetParam().stem) == "dummy";
    EXPECT_EQ(extras.Get("auxiliary").Get<bool>(), auxiliary);
    const auto& node = part().nodeExtras();
    EXPECT_EQ(node.Has("auxiliary") && node.Get("auxiliary").Get<bool>(), auxiliary);
}

// Every declared opening is a real rim of the mesh: vertices on its circle.
TEST_P(PartFile, OpeningsAreRimsOfTheMesh) {
    std::set<std::string> names;
    for (const Opening& o : part().openings()) {
        names.insert(o.name);
        EXPECT_NEAR(o.direction.length(), 1.0, 1e-12) << o.name;
        int onRim = 0;
        for (const Vec3& p : part().positions()) {
            const Vec3 d = p - o.centre;
            const double along = d.dot(o.direction);
            const double radial = (d - o.direction * along).length();
            if (std::abs(along) < 1e-6 && std::abs(radial - o.radius) < 1e-6) {
                ++onRim;
            }
        }
        EXPECT_GE(onRim, 16) << o.name;
    }
    EXPECT_EQ(names, GetParam().openings);
}

INSTANTIATE_TEST_SUITE_P(Catalogue, PartFile, ::testing::ValuesIn(kParts),
                         [](const auto& entry) { return std::string(entry.param.stem); });

TEST(PartFolder, HoldsExactlyTheCatalogue) {
    std::set<std::string> expected;
    for (const PartSpec& spec : kParts) {
        expected.insert(std::string(spec.stem) + ".v3o");
    }
    std::set<std::string> present;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::string(PLUVARINE_WORKFOLDER) + "/res")) {
        present.insert(entry.path().filename().string());
    }
    EXPECT_EQ(present, expected);
}

// The pipe pieces are stretched along z only; their walls are the nominal sizes.
TEST(PartGeometry, PipeWallsEncloseTheNominalVolume) {
    for (const auto& [stem, outer, bore] :
         {std::tuple{"Fallrohr_100_500", 0.05, 0.0485}, {"Standrohr_125_500", 0.0625, 0.0605}}) {
        const GlbPart pipe(GlbPart::resPath(stem));
        double volume = 0;
        const auto& p = pipe.positions();
        const auto& idx = pipe.indices();
        for (std::size_t i = 0; i < idx.size(); i += 3) {
            volume += p[idx[i]].dot(p[idx[i + 1]].cross(p[idx[i + 2]])) / 6;
        }
        const double nominal = std::numbers::pi * (outer * outer - bore * bore) * 0.5;
        EXPECT_NEAR(volume, nominal, nominal * 0.01) << stem; // facets cost under 1 %
    }
}

// The cap covers the standpipe's rim and leaves room for the pipe.
TEST(PartGeometry, CapClosesTheStandpipeRoundThePipe) {
    const GlbPart cap(GlbPart::resPath("Abdeckkappe_100_125"));
    EXPECT_GT(cap.highest().x, 0.0625);
    EXPECT_GT(cap.opening("bore").radius, 0.05);
    EXPECT_LT(cap.opening("bore").radius, 0.0525);
}

// The clamp's ring: 4 mm thick round the pipe whose axis is at x = -62.7 mm.
TEST(PartGeometry, ClampRingHugsThePipe) {
    const GlbPart clamp(GlbPart::resPath("Rohrschelle_100"));
    const Opening& ring = clamp.opening("ring");
    EXPECT_NEAR(ring.centre.x, -0.0627, 1e-9);
    EXPECT_NEAR(ring.radius, 0.05, 1e-9);
    EXPECT_FLOAT_EQ(static_cast<float>(clamp.lowest().x),
                    static_cast<float>(ring.centre.x - ring.radius - 0.004));
    EXPECT_NEAR(clamp.opening("rod").centre.x, 0.1167, 1e-9);
}

} // namespace
} // namespace pluvarine
