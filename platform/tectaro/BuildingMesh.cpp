#include "platform/tectaro/BuildingMesh.h"

#include "platform/tectaro/PlanGeometry.h"

#include <QVector3D>
#include <algorithm>

namespace pluvarine {

namespace {

// Adds a planar polygon (given counter-clockwise as seen from its normal's side) as a fan of
// triangles with its own vertices, so the shading stays flat.
void addQuad(MeshData& mesh, const QVector3D& a, const QVector3D& b, const QVector3D& c,
             const QVector3D& d) {
    const QVector3D normal = QVector3D::crossProduct(b - a, c - a).normalized();
    const auto base = static_cast<std::uint32_t>(mesh.vertexCount());
    for (const QVector3D& p : {a, b, c, d}) {
        mesh.positions.insert(mesh.positions.end(), {p.x(), p.y(), p.z()});
        mesh.normals.insert(mesh.normals.end(), {normal.x(), normal.y(), normal.z()});
    }
    mesh.indices.insert(mesh.indices.end(), {base, base + 1, base + 2, base, base + 2, base + 3});
}

void addPolygon(MeshData& mesh, const std::vector<QVector3D>& points,
                const std::vector<std::array<int, 3>>& triangles, bool flip) {
    if (points.size() < 3) {
        return;
    }
    QVector3D normal;
    for (std::size_t i = 0; i < points.size(); ++i) {
        normal += QVector3D::crossProduct(points[i], points[(i + 1) % points.size()]);
    }
    normal = (flip ? -normal : normal).normalized();
    const auto base = static_cast<std::uint32_t>(mesh.vertexCount());
    for (const QVector3D& p : points) {
        mesh.positions.insert(mesh.positions.end(), {p.x(), p.y(), p.z()});
        mesh.normals.insert(mesh.normals.end(), {normal.x(), normal.y(), normal.z()});
    }
    for (const auto& t : triangles) {
        const auto i0 = base + static_cast<std::uint32_t>(t[0]);
        const auto i1 = base + static_cast<std::uint32_t>(t[1]);
        const auto i2 = base + static_cast<std::uint32_t>(t[2]);
        if (flip) {
            mesh.indices.insert(mesh.indices.end(), {i0, i2, i1});
        } else {
            mesh.indices.insert(mesh.indices.end(), {i0, i1, i2});
        }
    }
}

QVector3D at(QPointF p, double z) {
    return QVector3D(static_cast<float>(p.x()), static_cast<float>(p.y()), static_cast<float>(z));
}

} // namespace

std::shared_ptr<MeshData> BuildingMesh::wall(const Wall& wall) {
    auto mesh = std::make_shared<MeshData>();
    const double bottom = wall.baseLevel;
    const double top = wall.baseLevel + wall.height;
    for (const QPolygonF& outline : wall.segmentOutlines()) {
        // outline: exterior start, exterior end, interior end, interior start
        QPolygonF ring = outline;
        if (plan::signedArea2(ring) < 0) {
            std::reverse(ring.begin(), ring.end());
        }
        for (int i = 0; i < 4; ++i) {
            const QPointF a = ring[i];
            const QPointF b = ring[(i + 1) % 4];
            addQuad(*mesh, at(a, bottom), at(b, bottom), at(b, top), at(a, top));
        }
        addQuad(*mesh, at(ring[0], top), at(ring[1], top), at(ring[2], top), at(ring[3], top));
        addQuad(*mesh, at(ring[3], bottom), at(ring[2], bottom), at(ring[1], bottom),
                at(ring[0], bottom));
    }
    return mesh;
}

std::shared_ptr<MeshData> BuildingMesh::roofFace(const RoofFace& face, double thickness) {
    auto mesh = std::make_shared<MeshData>();
    QPolygonF outline = face.outline;
    if (plan::signedArea2(outline) < 0) {
        std::reverse(outline.begin(), outline.end());
    }
    const double slab = std::max(thickness, 0.02);
    std::vector<QVector3D> upper, lower;
    for (const QPointF& p : outline) {
        const double z = face.heightAt(p);
        upper.push_back(at(p, z));
        lower.push_back(at(p, z - slab));
    }
    const std::vector<std::array<int, 3>> triangles = plan::triangulate(outline);
    addPolygon(*mesh, upper, triangles, false);
    addPolygon(*mesh, lower, triangles, true);
    for (std::size_t i = 0; i < upper.size(); ++i) {
        const std::size_t j = (i + 1) % upper.size();
        addQuad(*mesh, lower[i], lower[j], upper[j], upper[i]);
    }
    return mesh;
}

} // namespace pluvarine
