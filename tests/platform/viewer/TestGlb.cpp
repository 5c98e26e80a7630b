#include "TestGlb.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <tiny_gltf.h>

namespace pluvarine::test {

MeshData boxMesh(double sx, double sy, double sz) {
    MeshData mesh;
    const double h[3] = {sx / 2, sy / 2, sz / 2};
    for (int face = 0; face < 6; ++face) {
        const int axis = face / 2, sign = face % 2 ? 1 : -1, u = (axis + 1) % 3, v = (axis + 2) % 3;
        const auto base = static_cast<std::uint32_t>(mesh.vertexCount());
        for (int corner = 0; corner < 4; ++corner) {
            float p[3], n[3] = {0, 0, 0};
            p[axis] = float(sign * h[axis]);
            p[u] = float((corner == 1 || corner == 2 ? 1 : -1) * h[u]);
            p[v] = float((corner >= 2 ? 1 : -1) * h[v]);
            n[axis] = float(sign);
            mesh.positions.insert(mesh.positions.end(), p, p + 3);
            mesh.normals.insert(mesh.normals.end(), n, n + 3);
        }
        constexpr std::uint32_t ccw[2][6] = {{0, 2, 1, 0, 3, 2}, {0, 1, 2, 0, 2, 3}};
        for (std::uint32_t k : ccw[sign > 0]) { // counter-clockwise seen from outside
            mesh.indices.push_back(base + k);
        }
    }
    return mesh;
}

void writeBoxPart(const std::string& path, double sx, double sy, double sz, const SurfaceLook& look,
                  bool auxiliary) {
    const MeshData mesh = boxMesh(sx, sy, sz);
    tinygltf::Model model;
    model.asset.version = "2.0";
    auto& buffer = model.buffers.emplace_back().data;
    auto accessor = [&](const auto& data, std::size_t count, int componentType, int type) {
        auto& view = model.bufferViews.emplace_back();
        // Floats and 32-bit indices: always aligned.
        std::tie(view.buffer, view.byteOffset, view.byteLength) =
            std::tuple(0, buffer.size(), data.size() * 4);
        const auto* bytes = reinterpret_cast<const unsigned char*>(data.data());
        buffer.insert(buffer.end(), bytes, bytes + view.byteLength);
        auto& a = model.accessors.emplace_back();
        a.bufferView = int(model.bufferViews.size() - 1);
        std::tie(a.count, a.componentType, a.type) = std::tuple(count, componentType, type);
        return int(model.accessors.size() - 1);
    };
    auto& primitive = model.meshes.emplace_back().primitives.emplace_back();
    const auto n = mesh.vertexCount();
    primitive.attributes["POSITION"] =
        accessor(mesh.positions, n, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3);
    primitive.attributes["NORMAL"] =
        accessor(mesh.normals, n, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3);
    primitive.indices = accessor(mesh.indices, mesh.indices.size(),
                                 TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT, TINYGLTF_TYPE_SCALAR);
    primitive.material = 0;
    auto& material = model.materials.emplace_back();
    material.name = look.name;
    const auto& c = look.baseColor;
    material.pbrMetallicRoughness.baseColorFactor = {c[0], c[1], c[2], 1.0};
    material.pbrMetallicRoughness.metallicFactor = look.metallic;
    material.pbrMetallicRoughness.roughnessFactor = look.roughness;
    auto& node = model.nodes.emplace_back();
    node.mesh = 0;
    if (auxiliary) {
        using Value = tinygltf::Value;
        node.extras =
            Value(Value::Object{{"pluvarine", Value(Value::Object{{"auxiliary", Value(true)}})}});
    }
    model.scenes.emplace_back().nodes = {0};
    model.defaultScene = 0;
    std::ofstream out(path, std::ios::binary);
    if (!out || !tinygltf::TinyGLTF().WriteGltfSceneToStream(&model, out, false, true)) {
        throw std::runtime_error("cannot write test GLB " + path);
    }
}

void writeText(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    // A test that writes its own input must not go on without it.
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path);
    }
}

std::string readBytes(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

} // namespace pluvarine::test
