#include "TestGlb.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <tiny_gltf.h>

namespace pluvarine::test {

MeshData boxMesh(double sx, double sy, double sz) {
    MeshData mesh;
    const float h[3] = {static_cast<float>(sx / 2), static_cast<float>(sy / 2),
                        static_cast<float>(sz / 2)};
    for (int axis = 0; axis < 3; ++axis) {
        for (int sign : {-1, 1}) {
            const int u = (axis + 1) % 3, v = (axis + 2) % 3;
            const auto base = static_cast<std::uint32_t>(mesh.vertexCount());
            const int corners[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
            for (const auto& c : corners) {
                float p[3], n[3] = {0, 0, 0};
                p[axis] = sign * h[axis];
                p[u] = c[0] * h[u];
                p[v] = c[1] * h[v];
                n[axis] = static_cast<float>(sign);
                mesh.positions.insert(mesh.positions.end(), p, p + 3);
                mesh.normals.insert(mesh.normals.end(), n, n + 3);
            }
            // Counter-clockwise seen from outside.
            if (sign > 0) {
                mesh.indices.insert(mesh.indices.end(),
                                    {base, base + 1, base + 2, base, base + 2, base + 3});
            } else {
                mesh.indices.insert(mesh.indices.end(),
                                    {base, base + 2, base + 1, base, base + 3, base + 2});
            }
        }
    }
    return mesh;
}

namespace {

int addAccessor(tinygltf::Model& model, const void* data, std::size_t bytes, std::size_t count,
                int componentType, int type, std::vector<double> lo = {},
                std::vector<double> hi = {}) {
    auto& buffer = model.buffers[0].data;
    buffer.resize((buffer.size() + 3) / 4 * 4, 0);
    tinygltf::BufferView view;
    view.buffer = 0;
    view.byteOffset = buffer.size();
    view.byteLength = bytes;
    const auto* begin = static_cast<const unsigned char*>(data);
    buffer.insert(buffer.end(), begin, begin + bytes);
    model.bufferViews.push_back(view);
    tinygltf::Accessor accessor;
    accessor.bufferView = static_cast<int>(model.bufferViews.size() - 1);
    accessor.componentType = componentType;
    accessor.count = count;
    accessor.type = type;
    accessor.minValues = std::move(lo);
    accessor.maxValues = std::move(hi);
    model.accessors.push_back(accessor);
    return static_cast<int>(model.accessors.size() - 1);
}

tinygltf::Value auxiliaryExtras() {
    return tinygltf::Value(tinygltf::Value::Object{
        {"pluvarine",
         tinygltf::Value(tinygltf::Value::Object{{"auxiliary", tinygltf::Value(true)}})}});
}

} // namespace

void writeTestGlb(const std::string& path, const std::vector<TestNode>& nodes, bool assetAuxiliary,
                  const std::string& sceneName) {
    tinygltf::Model model;
    model.asset.version = "2.0";
    if (assetAuxiliary) {
        model.asset.extras = auxiliaryExtras();
    }
    model.buffers.emplace_back();
    tinygltf::Scene scene;
    scene.name = sceneName;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const auto& in = nodes[i];
        tinygltf::Node node;
        node.name = "node" + std::to_string(i);
        node.matrix = in.matrix;
        node.translation = in.translation;
        node.rotation = in.rotation;
        node.scale = in.scale;
        node.children = in.children;
        if (in.auxiliary) {
            node.extras = auxiliaryExtras();
        }
        if (!in.mesh.indices.empty()) {
            std::vector<double> lo{1e30, 1e30, 1e30}, hi{-1e30, -1e30, -1e30};
            for (std::size_t v = 0; v < in.mesh.vertexCount(); ++v) {
                for (int k = 0; k < 3; ++k) {
                    lo[k] = std::min<double>(lo[k], in.mesh.positions[v * 3 + k]);
                    hi[k] = std::max<double>(hi[k], in.mesh.positions[v * 3 + k]);
                }
            }
            tinygltf::Primitive primitive;
            primitive.attributes["POSITION"] = addAccessor(
                model, in.mesh.positions.data(), in.mesh.positions.size() * 4,
                in.mesh.vertexCount(), TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3, lo, hi);
            if (in.withNormals) {
                primitive.attributes["NORMAL"] = addAccessor(
                    model, in.mesh.normals.data(), in.mesh.normals.size() * 4,
                    in.mesh.vertexCount(), TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3);
            }
            primitive.indices = addAccessor(
                model, in.mesh.indices.data(), in.mesh.indices.size() * 4, in.mesh.indices.size(),
                TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT, TINYGLTF_TYPE_SCALAR);
            primitive.mode = TINYGLTF_MODE_TRIANGLES;
            tinygltf::Material material;
            material.name = in.look.name;
            material.pbrMetallicRoughness.baseColorFactor = {
                in.look.baseColor[0], in.look.baseColor[1], in.look.baseColor[2], 1.0};
            material.pbrMetallicRoughness.metallicFactor = in.look.metallic;
            material.pbrMetallicRoughness.roughnessFactor = in.look.roughness;
            primitive.material = static_cast<int>(model.materials.size());
            model.materials.push_back(material);
            tinygltf::Mesh mesh;
            mesh.primitives.push_back(primitive);
            node.mesh = static_cast<int>(model.meshes.size());
            model.meshes.push_back(mesh);
        }
        if (in.root) {
            scene.nodes.push_back(static_cast<int>(i));
        }
        model.nodes.push_back(node);
    }
    model.scenes.push_back(scene);
    model.defaultScene = 0;
    if (model.buffers[0].data.empty()) {
        model.buffers.clear();
    }
    std::ofstream out(path, std::ios::binary);
    tinygltf::TinyGLTF gltf;
    if (!out || !gltf.WriteGltfSceneToStream(&model, out, false, true)) {
        throw std::runtime_error("cannot write test GLB " + path);
    }
}

void writeBoxPart(const std::string& path, double sx, double sy, double sz, const SurfaceLook& look,
                  bool auxiliary) {
    TestNode node;
    node.mesh = boxMesh(sx, sy, sz);
    node.look = look;
    node.auxiliary = auxiliary;
    writeTestGlb(path, {node});
}

void writeText(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary);
    out << text;
}

std::string readBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

} // namespace pluvarine::test
