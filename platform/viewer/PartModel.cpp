#include "platform/viewer/PartModel.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace pluvarine {

namespace {

std::shared_ptr<const MeshData> transformed(const std::shared_ptr<const MeshData>& mesh,
                                            const Matrix4d& m) {
    if (m.isIdentity()) {
        return mesh;
    }
    auto result = std::make_shared<MeshData>(*mesh);
    // Normals go through the inverse transpose, taken as the cofactor matrix times the sign of
    // the determinant (the length is normalised anyway); right for mirrored and non-uniform
    // transforms.
    const double a = m(0, 0), b = m(0, 1), c = m(0, 2), d = m(1, 0), e = m(1, 1), f = m(1, 2),
                 g = m(2, 0), h = m(2, 1), i = m(2, 2);
    const double cof[3][3] = {{e * i - f * h, f * g - d * i, d * h - e * g},
                              {c * h - b * i, a * i - c * g, b * g - a * h},
                              {b * f - c * e, c * d - a * f, a * e - b * d}};
    const double det = a * cof[0][0] + b * cof[0][1] + c * cof[0][2];
    const double sign = det < 0 ? -1.0 : 1.0;
    for (std::size_t v = 0; v < result->vertexCount(); ++v) {
        float* p = &result->positions[v * 3];
        const auto q = m.map({p[0], p[1], p[2]});
        float* n = &result->normals[v * 3];
        double out[3];
        for (int r = 0; r < 3; ++r) {
            out[r] = sign * (cof[r][0] * n[0] + cof[r][1] * n[1] + cof[r][2] * n[2]);
        }
        const double length = std::sqrt(out[0] * out[0] + out[1] * out[1] + out[2] * out[2]);
        for (int k = 0; k < 3; ++k) {
            p[k] = static_cast<float>(q[k]);
            n[k] = length > 0 ? static_cast<float>(out[k] / length) : (k == 2 ? 1.0f : 0.0f);
        }
    }
    return result;
}

} // namespace

std::shared_ptr<const PartModel> PartModel::fromContent(const std::string& path,
                                                        const GlbContent& content) {
    auto part = std::make_shared<PartModel>();
    part->path = path;
    part->name = !content.sceneName.empty() ? content.sceneName
                                            : std::filesystem::path(path).stem().string();
    const bool allAuxiliary =
        content.auxiliary || std::all_of(content.items.begin(), content.items.end(),
                                         [](const GlbItem& item) { return item.auxiliary; });
    part->auxiliary = allAuxiliary && !content.items.empty();
    for (const auto& item : content.items) {
        if (item.auxiliary && !allAuxiliary) {
            continue;
        }
        PartPiece piece{transformed(item.mesh, item.transform), item.look};
        for (std::size_t v = 0; v < piece.mesh->vertexCount(); ++v) {
            const float* p = &piece.mesh->positions[v * 3];
            part->bounds.add({p[0], p[1], p[2]});
        }
        part->pieces.push_back(std::move(piece));
    }
    return part;
}

} // namespace pluvarine
