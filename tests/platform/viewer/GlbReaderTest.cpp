#include "platform/viewer/GlbReader.h"

#include "TestGlb.h"
#include "base/RuntimeError.h"
#include "platform/viewer/PartModel.h"

#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>

namespace pluvarine::test {
namespace {

class GlbRead : public ::testing::Test {
protected:
    std::string path(const std::string& name) const {
        return m_dir.filePath(QString::fromStdString(name)).toStdString();
    }
    QTemporaryDir m_dir;
};

TEST_F(GlbRead, NodeTransformsComposeDownTheHierarchy) {
    TestNode parent, child;
    parent.translation = {1, 0, 0};
    parent.rotation = {0, 0, std::sin(M_PI / 4), std::cos(M_PI / 4)}; // 90 degrees about z
    parent.children = {1};
    child.mesh = boxMesh(0.2, 0.2, 0.2);
    child.scale = {2, 2, 2};
    child.translation = {1, 0, 0};
    child.root = false;
    writeTestGlb(path("tree.glb"), {parent, child}, false, "Tree");

    const GlbContent content = GlbReader::readFile(path("tree.glb"));
    EXPECT_EQ(content.sceneName, "Tree");
    ASSERT_EQ(content.items.size(), 1u);
    const auto centre = content.items[0].transform.map({0, 0, 0});
    EXPECT_NEAR(centre[0], 1, 1e-12);
    EXPECT_NEAR(centre[1], 1, 1e-12);
    const auto corner = content.items[0].transform.map({0.1, 0, 0});
    EXPECT_NEAR(corner[1], 1.2, 1e-12); // scaled by 2, x turned onto y

    // Baked into the part's frame, the box lies where the transforms put it.
    const auto part = PartModel::fromContent(path("tree.glb"), content);
    EXPECT_NEAR(part->bounds.min()[0], 0.8, 1e-6);
    EXPECT_NEAR(part->bounds.max()[1], 1.2, 1e-6);
    EXPECT_EQ(part->name, "Tree");
}

TEST_F(GlbRead, BakedNormalsStayUnitAndFollowMirroring) {
    TestNode node;
    node.mesh = boxMesh(1, 1, 1);
    node.scale = {-3, 1, 1};
    writeTestGlb(path("mirror.glb"), {node});
    const auto part =
        PartModel::fromContent(path("mirror.glb"), GlbReader::readFile(path("mirror.glb")));
    const MeshData& mesh = *part->pieces[0].mesh;
    for (std::size_t v = 0; v < mesh.vertexCount(); ++v) {
        const float* n = &mesh.normals[v * 3];
        EXPECT_NEAR(std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]), 1.0, 1e-6);
        // Normals still point outwards: same side as the vertex.
        const float* p = &mesh.positions[v * 3];
        EXPECT_GT(n[0] * p[0] + n[1] * p[1] + n[2] * p[2], 0);
    }
}

TEST_F(GlbRead, BakedNormalsStayPerpendicularUnderShear) {
    TestNode node;
    node.mesh = boxMesh(1, 1, 1);
    node.matrix = {1, 0, 0, 0, 0, 1, 0, 0, 1, 0, 1, 0, 0, 0, 0, 1}; // x += z
    writeTestGlb(path("shear.glb"), {node});
    const auto part = PartModel::fromContent("s", GlbReader::readFile(path("shear.glb")));
    const MeshData& mesh = *part->pieces[0].mesh;
    // The +x face (vertices 4..7 of boxMesh) now leans: its normal is (1, 0, -1) / sqrt 2.
    EXPECT_NEAR(mesh.normals[4 * 3 + 0], M_SQRT1_2, 1e-6);
    EXPECT_NEAR(mesh.normals[4 * 3 + 2], -M_SQRT1_2, 1e-6);
}

TEST_F(GlbRead, MissingNormalsAreComputed) {
    TestNode node;
    node.mesh = boxMesh(1, 1, 1);
    node.withNormals = false;
    writeTestGlb(path("flat.glb"), {node});
    const auto content = GlbReader::readFile(path("flat.glb"));
    const MeshData& mesh = *content.items[0].mesh;
    ASSERT_EQ(mesh.normals.size(), mesh.positions.size());
    EXPECT_EQ(mesh.normals[0], -1.0f); // first face: -x
}

TEST_F(GlbRead, AuxiliaryMarksOnNodesAndOnTheAsset) {
    TestNode drawn, helper;
    drawn.mesh = boxMesh(1, 1, 1);
    helper.mesh = boxMesh(5, 5, 5);
    helper.auxiliary = true;
    writeTestGlb(path("mixed.glb"), {drawn, helper});
    writeTestGlb(path("aux.glb"), {drawn}, true);

    const auto mixed = PartModel::fromContent("m", GlbReader::readFile(path("mixed.glb")));
    EXPECT_FALSE(mixed->auxiliary);
    EXPECT_EQ(mixed->pieces.size(), 1u); // the helper is left out
    EXPECT_NEAR(mixed->bounds.max()[0], 0.5, 1e-7);
    const auto aux = PartModel::fromContent("a", GlbReader::readFile(path("aux.glb")));
    EXPECT_TRUE(aux->auxiliary);
    EXPECT_EQ(aux->pieces.size(), 1u);
}

TEST_F(GlbRead, MaterialFactorsAreRead) {
    TestNode node;
    node.mesh = boxMesh(1, 1, 1);
    node.look = {"Alu", {0.4f, 0.5f, 0.6f}, 1.0f, 0.25f};
    writeTestGlb(path("look.glb"), {node});
    EXPECT_EQ(GlbReader::readFile(path("look.glb")).items[0].look, node.look);
}

TEST_F(GlbRead, GarbageFailsAsAViewerError) {
    try {
        GlbReader::readMemory("glTF\x02\0\0\0garbage", "memory");
        FAIL();
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), RuntimeError::ViewerError);
        EXPECT_NE(e.description().find("memory"), std::string::npos);
    }
}

} // namespace
} // namespace pluvarine::test
