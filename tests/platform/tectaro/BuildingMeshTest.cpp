#include "platform/tectaro/BuildingMesh.h"

#include "TectaroTestSupport.h"
#include "platform/tectaro/PlanGeometry.h"

#include <QVector3D>
#include <gtest/gtest.h>

using namespace pluvarine;

namespace {

QVector3D at(const std::vector<float>& v, std::uint32_t i) {
    return QVector3D(v[i * 3], v[i * 3 + 1], v[i * 3 + 2]);
}

} // namespace

TEST(BuildingMesh, AWallSegmentIsAClosedOutwardFacingPrismFromItsBaseToItsTop) {
    Wall wall;
    wall.line = {{0, 0}, {4, 0}};
    wall.thickness = 0.2;
    wall.height = 2.5;
    wall.baseLevel = 0.5;
    const auto mesh = BuildingMesh::wall(wall);
    ASSERT_EQ(mesh->indices.size(), 6u * 2 * 3);
    for (std::size_t t = 0; t < mesh->indices.size(); t += 3) {
        const QVector3D a = at(mesh->positions, mesh->indices[t]);
        const QVector3D b = at(mesh->positions, mesh->indices[t + 1]);
        const QVector3D c = at(mesh->positions, mesh->indices[t + 2]);
        const QVector3D stored = at(mesh->normals, mesh->indices[t]);
        // Counter-clockwise about the stored normal (kept when back faces are culled), outwards.
        EXPECT_GT(QVector3D::dotProduct(QVector3D::crossProduct(b - a, c - a).normalized(), stored),
                  0.999f);
        EXPECT_GT(QVector3D::dotProduct(stored, (a + b + c) / 3 - QVector3D(2, 0, 1.75f)), 0.0f);
        EXPECT_TRUE(qFuzzyCompare(a.z(), 0.5f) || qFuzzyCompare(a.z(), 3.0f)) << a.z();
    }
    EXPECT_EQ(BuildingMesh::wall(test::sampleHouse()->walls[0])->indices.size(), 4u * 6 * 2 * 3);
}

TEST(BuildingMesh, ARoofFaceIsASlabUnderItsPlane) {
    const auto house = test::sampleHouse();
    const Roof& roof = house->roofs.at(0);
    for (const RoofFace& face : roof.faces) {
        const auto mesh = BuildingMesh::roofFace(face, roof.roofingThickness);
        const std::size_t n = static_cast<std::size_t>(face.outline.size());
        EXPECT_EQ(mesh->indices.size(), (2 * (n - 2) + 2 * n) * 3);
        for (std::uint32_t i = 0; i < mesh->vertexCount(); ++i) {
            const QVector3D p = at(mesh->positions, i);
            const double below = face.heightAt(QPointF(p.x(), p.y())) - p.z();
            EXPECT_TRUE(std::abs(below) < 1e-5 || std::abs(below - 0.06) < 1e-5) << below;
        }
        EXPECT_GT(at(mesh->normals, 0).z(), 0.5f);
    }
}

TEST(PlanGeometry, EarClippingCoversConcaveOutlinesCounterClockwise) {
    const QPolygonF ell({{0, 0}, {3, 0}, {3, 1}, {1, 1}, {1, 3}, {0, 3}});
    for (const QPolygonF& outline : {ell, QPolygonF(ell.rbegin(), ell.rend())}) {
        const auto triangles = plan::triangulate(outline);
        ASSERT_EQ(triangles.size(), 4u);
        double area = 0;
        for (const auto& t : triangles) {
            const double a2 =
                plan::signedArea2(QPolygonF({outline[t[0]], outline[t[1]], outline[t[2]]}));
            EXPECT_GT(a2, 0);
            area += a2 / 2;
        }
        EXPECT_NEAR(area, 5.0, 1e-12);
    }
}
