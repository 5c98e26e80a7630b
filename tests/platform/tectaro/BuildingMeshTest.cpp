#include "platform/tectaro/BuildingMesh.h"

#include "TectaroTestSupport.h"
#include "platform/tectaro/PlanGeometry.h"

#include <QVector3D>
#include <gtest/gtest.h>

using namespace pluvarine;

namespace {

QVector3D vertex(const MeshData& mesh, std::uint32_t i) {
    return QVector3D(mesh.positions[i * 3], mesh.positions[i * 3 + 1], mesh.positions[i * 3 + 2]);
}

QVector3D normal(const MeshData& mesh, std::uint32_t i) {
    return QVector3D(mesh.normals[i * 3], mesh.normals[i * 3 + 1], mesh.normals[i * 3 + 2]);
}

// Every triangle turns counter-clockwise about its stored normal (front faces are kept when
// back faces are culled), and faces away from `inside`.
void expectClosedOutwardFacing(const MeshData& mesh, const QVector3D& inside) {
    ASSERT_EQ(mesh.indices.size() % 3, 0u);
    for (std::size_t t = 0; t < mesh.indices.size(); t += 3) {
        const QVector3D a = vertex(mesh, mesh.indices[t]);
        const QVector3D b = vertex(mesh, mesh.indices[t + 1]);
        const QVector3D c = vertex(mesh, mesh.indices[t + 2]);
        const QVector3D winding = QVector3D::crossProduct(b - a, c - a).normalized();
        const QVector3D stored = normal(mesh, mesh.indices[t]);
        EXPECT_NEAR(stored.length(), 1.0f, 1e-5f);
        EXPECT_GT(QVector3D::dotProduct(winding, stored), 0.999f) << "triangle " << t / 3;
        EXPECT_GT(QVector3D::dotProduct(stored, (a + b + c) / 3 - inside), 0.0f)
            << "triangle " << t / 3;
    }
}

} // namespace

TEST(BuildingMesh, AWallSegmentIsAClosedPrismFromItsBaseToItsTop) {
    Wall wall;
    wall.line = {{0, 0}, {4, 0}};
    wall.thickness = 0.2;
    wall.height = 2.5;
    wall.baseLevel = 0.5;
    const auto mesh = BuildingMesh::wall(wall);
    EXPECT_EQ(mesh->indices.size(), 6u * 2 * 3);
    for (std::size_t i = 0; i < mesh->vertexCount(); ++i) {
        const QVector3D p = vertex(*mesh, static_cast<std::uint32_t>(i));
        EXPECT_TRUE(qFuzzyCompare(p.z(), 0.5f) || qFuzzyCompare(p.z(), 3.0f)) << p.z();
        EXPECT_NEAR(std::abs(p.y()), 0.1f, 1e-6f);
    }
    expectClosedOutwardFacing(*mesh, QVector3D(2, 0, 1.75f));
}

TEST(BuildingMesh, TheSampleWallsHaveFourPrisms) {
    const auto house = test::sampleHouse();
    const auto mesh = BuildingMesh::wall(house->walls[0]);
    EXPECT_EQ(mesh->indices.size(), 4u * 6 * 2 * 3);
}

TEST(BuildingMesh, ARoofFaceIsASlabUnderItsPlane) {
    const auto house = test::sampleHouse();
    const Roof& roof = house->roofs[0];
    for (const RoofFace& face : roof.faces) {
        const auto mesh = BuildingMesh::roofFace(face, roof.roofingThickness);
        const std::size_t n = static_cast<std::size_t>(face.outline.size());
        EXPECT_EQ(mesh->indices.size(), (2 * (n - 2) + 2 * n) * 3);
        for (std::size_t i = 0; i < mesh->vertexCount(); ++i) {
            const QVector3D p = vertex(*mesh, static_cast<std::uint32_t>(i));
            const double top = face.heightAt(QPointF(p.x(), p.y()));
            const double below = top - p.z();
            EXPECT_TRUE(std::abs(below) < 1e-5 || std::abs(below - 0.06) < 1e-5) << below;
        }
        // Seen from above the top surface faces up.
        EXPECT_GT(normal(*mesh, 0).z(), 0.5f);
    }
}

TEST(PlanGeometry, EarClippingCoversConcaveOutlines) {
    const QPolygonF ell({{0, 0}, {3, 0}, {3, 1}, {1, 1}, {1, 3}, {0, 3}});
    const auto triangles = plan::triangulate(ell);
    ASSERT_EQ(triangles.size(), 4u);
    double area = 0;
    for (const auto& t : triangles) {
        area += plan::signedArea2(QPolygonF({ell[t[0]], ell[t[1]], ell[t[2]]})) / 2;
    }
    EXPECT_NEAR(area, 5.0, 1e-12);
    // Given clockwise, the triangles still come out counter-clockwise.
    QPolygonF reversed(ell.rbegin(), ell.rend());
    for (const auto& t : plan::triangulate(reversed)) {
        EXPECT_GT(plan::signedArea2(QPolygonF({reversed[t[0]], reversed[t[1]], reversed[t[2]]})),
                  0);
    }
}
