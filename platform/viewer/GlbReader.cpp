#include "platform/viewer/GlbReader.h"

#include "base/RuntimeError.h"
#include "platform/viewer/GltfAxes.h"
#include "platform/viewer/MeshPool.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <functional>
#include <tiny_gltf.h>

namespace pluvarine {

namespace {

// Textures are not drawn: skip decoding images.
bool ignoreImage(tinygltf::Image*, const int, std::string*, std::string*, int, int,
                 const unsigned char*, int, void*) {
    return true;
}

[[noreturn]] void fail(const std::string& name, const std::string& why) {
    throw RuntimeError(RuntimeError::ViewerError, "cannot read " + name + ": " + why);
}

bool markedAuxiliary(const tinygltf::Value& extras) {
    return extras.IsObject() && extras.Has("auxiliary") && extras.Get("auxiliary").IsBool() &&
           extras.Get("auxiliary").Get<bool>();
}

Matrix4d nodeTransform(const tinygltf::Node& node) {
    if (node.matrix.size() == 16) {
        std::array<double, 16> m{};
        std::copy(node.matrix.begin(), node.matrix.end(), m.begin());
        return Matrix4d::fromColumnMajor(m);
    }
    Matrix4d result;
    if (node.translation.size() == 3) {
        result =
            Matrix4d::translation(node.translation[0], node.translation[1], node.translation[2]);
    }
    if (node.rotation.size() == 4) {
        const double x = node.rotation[0], y = node.rotation[1], z = node.rotation[2],
                     w = node.rotation[3];
        Matrix4d r;
        r(0, 0) = 1 - 2 * (y * y + z * z);
        r(0, 1) = 2 * (x * y - z * w);
        r(0, 2) = 2 * (x * z + y * w);
        r(1, 0) = 2 * (x * y + z * w);
        r(1, 1) = 1 - 2 * (x * x + z * z);
        r(1, 2) = 2 * (y * z - x * w);
        r(2, 0) = 2 * (x * z - y * w);
        r(2, 1) = 2 * (y * z + x * w);
        r(2, 2) = 1 - 2 * (x * x + y * y);
        result = result * r;
    }
    if (node.scale.size() == 3) {
        result = result * Matrix4d::scaling(node.scale[0], node.scale[1], node.scale[2]);
    }
    return result;
}

// The whole numbers and texts among the values of an extras object; anything else is left out.
FlatExtras flatExtras(const tinygltf::Value& extras) {
    FlatExtras flat;
    if (!extras.IsObject()) {
        return flat;
    }
    for (const auto& key : extras.Keys()) {
        const tinygltf::Value& value = extras.Get(key);
        if (value.IsInt()) {
            flat.emplace_back(key, value.GetNumberAsInt());
        } else if (value.IsString()) {
            flat.emplace_back(key, value.Get<std::string>());
        }
    }
    return flat;
}

class Decoder {
public:
    Decoder(const tinygltf::Model& model, const std::string& name) : m_model(model), m_name(name) {}

    GlbContent decode() {
        GlbContent content;
        content.auxiliary = markedAuxiliary(m_model.asset.extras);
        std::vector<int> roots;
        if (!m_model.scenes.empty()) {
            const int index = m_model.defaultScene >= 0 &&
                                      m_model.defaultScene < static_cast<int>(m_model.scenes.size())
                                  ? m_model.defaultScene
                                  : 0;
            content.sceneName = m_model.scenes[index].name;
            content.sceneExtras = flatExtras(m_model.scenes[index].extras);
            roots = m_model.scenes[index].nodes;
        }
        for (int root : roots) {
            visit(root, Matrix4d::fromColumnMajor(sceneFrameFromGltf), content.auxiliary, content,
                  0);
        }
        return content;
    }

private:
    void visit(int index, const Matrix4d& parent, bool auxiliary, GlbContent& content, int depth) {
        if (index < 0 || index >= static_cast<int>(m_model.nodes.size()) || depth > 64) {
            fail(m_name, "bad node reference");
        }
        const auto& node = m_model.nodes[index];
        const Matrix4d transform = parent * nodeTransform(node);
        const bool aux = auxiliary || markedAuxiliary(node.extras);
        if (node.mesh >= 0) {
            if (node.mesh >= static_cast<int>(m_model.meshes.size())) {
                fail(m_name, "bad mesh reference");
            }
            for (const auto& primitive : m_model.meshes[node.mesh].primitives) {
                if (primitive.mode != -1 && primitive.mode != TINYGLTF_MODE_TRIANGLES) {
                    continue;
                }
                GlbItem item;
                item.nodeName = node.name;
                item.transform = transform;
                item.auxiliary = aux;
                item.mesh = MeshPool::share(mesh(primitive));
                item.look = look(primitive.material);
                content.items.push_back(std::move(item));
            }
        }
        for (int child : node.children) {
            visit(child, transform, aux, content, depth + 1);
        }
    }

    // Reads accessor `index` as `components` values per element, converted to T.
    template <typename T> std::vector<T> read(int index, int components) const {
        if (index < 0 || index >= static_cast<int>(m_model.accessors.size())) {
            fail(m_name, "bad accessor reference");
        }
        const auto& accessor = m_model.accessors[index];
        if (tinygltf::GetNumComponentsInType(accessor.type) != components) {
            fail(m_name, "unexpected accessor type");
        }
        std::vector<T> values(accessor.count * components);
        if (accessor.bufferView < 0) {
            return values; // all zero, as glTF defines
        }
        const auto& view = m_model.bufferViews.at(accessor.bufferView);
        const auto& buffer = m_model.buffers.at(view.buffer);
        const int componentSize = tinygltf::GetComponentSizeInBytes(accessor.componentType);
        if (componentSize <= 0) {
            fail(m_name, "unknown component type");
        }
        const std::size_t elementSize = static_cast<std::size_t>(componentSize) * components;
        const std::size_t stride = view.byteStride ? view.byteStride : elementSize;
        const std::size_t start = view.byteOffset + accessor.byteOffset;
        if (accessor.count > 0 &&
            (start + stride * (accessor.count - 1) + elementSize > buffer.data.size() ||
             accessor.byteOffset + stride * (accessor.count - 1) + elementSize > view.byteLength)) {
            fail(m_name, "accessor outside its buffer");
        }
        for (std::size_t i = 0; i < accessor.count; ++i) {
            const unsigned char* element = buffer.data.data() + start + i * stride;
            for (int c = 0; c < components; ++c) {
                const unsigned char* p = element + c * componentSize;
                values[i * components + c] = component<T>(p, accessor.componentType);
            }
        }
        return values;
    }

    template <typename T> T component(const unsigned char* p, int type) const {
        switch (type) {
        case TINYGLTF_COMPONENT_TYPE_FLOAT: {
            float f;
            std::memcpy(&f, p, 4);
            return static_cast<T>(f);
        }
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT: {
            std::uint32_t u;
            std::memcpy(&u, p, 4);
            return static_cast<T>(u);
        }
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT: {
            std::uint16_t u;
            std::memcpy(&u, p, 2);
            return static_cast<T>(u);
        }
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
            return static_cast<T>(*p);
        default:
            fail(m_name, "unsupported component type");
        }
    }

    std::shared_ptr<const MeshData> mesh(const tinygltf::Primitive& primitive) const {
        const auto position = primitive.attributes.find("POSITION");
        if (position == primitive.attributes.end()) {
            fail(m_name, "primitive without positions");
        }
        auto data = std::make_shared<MeshData>();
        data->positions = read<float>(position->second, 3);
        const std::size_t vertices = data->vertexCount();
        if (primitive.indices >= 0) {
            data->indices = read<std::uint32_t>(primitive.indices, 1);
        } else {
            data->indices.resize(vertices);
            for (std::size_t i = 0; i < vertices; ++i) {
                data->indices[i] = static_cast<std::uint32_t>(i);
            }
        }
        data->indices.resize(data->indices.size() / 3 * 3);
        for (auto i : data->indices) {
            if (i >= vertices) {
                fail(m_name, "index beyond the vertices");
            }
        }
        const auto normal = primitive.attributes.find("NORMAL");
        if (normal != primitive.attributes.end()) {
            data->normals = read<float>(normal->second, 3);
        }
        if (data->normals.size() != data->positions.size()) {
            computeNormals(*data);
        }
        return data;
    }

    static void computeNormals(MeshData& mesh) {
        mesh.normals.assign(mesh.positions.size(), 0.0f);
        const auto& p = mesh.positions;
        for (std::size_t t = 0; t + 2 < mesh.indices.size(); t += 3) {
            const std::uint32_t a = mesh.indices[t], b = mesh.indices[t + 1],
                                c = mesh.indices[t + 2];
            const float ux = p[b * 3] - p[a * 3], uy = p[b * 3 + 1] - p[a * 3 + 1],
                        uz = p[b * 3 + 2] - p[a * 3 + 2];
            const float vx = p[c * 3] - p[a * 3], vy = p[c * 3 + 1] - p[a * 3 + 1],
                        vz = p[c * 3 + 2] - p[a * 3 + 2];
            const float n[3] = {uy * vz - uz * vy, uz * vx - ux * vz, ux * vy - uy * vx};
            for (auto v : {a, b, c}) {
                for (int k = 0; k < 3; ++k) {
                    mesh.normals[v * 3 + k] += n[k];
                }
            }
        }
        for (std::size_t v = 0; v < mesh.vertexCount(); ++v) {
            float* n = &mesh.normals[v * 3];
            const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
            if (length > 0) {
                n[0] /= length, n[1] /= length, n[2] /= length;
            } else {
                n[2] = 1.0f;
            }
        }
    }

    SurfaceLook look(int index) const {
        SurfaceLook result;
        if (index < 0 || index >= static_cast<int>(m_model.materials.size())) {
            return result;
        }
        const auto& material = m_model.materials[index];
        const auto& pbr = material.pbrMetallicRoughness;
        result.name = material.name;
        for (int i = 0; i < 3 && i < static_cast<int>(pbr.baseColorFactor.size()); ++i) {
            result.baseColor[i] = static_cast<float>(pbr.baseColorFactor[i]);
        }
        result.metallic = static_cast<float>(pbr.metallicFactor);
        result.roughness = static_cast<float>(pbr.roughnessFactor);
        return result;
    }

    const tinygltf::Model& m_model;
    const std::string& m_name;
};

GlbContent load(const std::string& name,
                const std::function<bool(tinygltf::TinyGLTF&, tinygltf::Model&, std::string&,
                                         std::string&)>& loader) {
    tinygltf::TinyGLTF gltf;
    gltf.SetImageLoader(&ignoreImage, nullptr);
    tinygltf::Model model;
    std::string error, warning;
    if (!loader(gltf, model, error, warning)) {
        fail(name, error.empty() ? "not a glTF binary file" : error);
    }
    return Decoder(model, name).decode();
}

} // namespace

GlbContent GlbReader::readFile(const std::string& path) {
    std::error_code ec;
    if (path.empty() || !std::filesystem::is_regular_file(path, ec)) {
        throw RuntimeError(RuntimeError::ViewerError, "file not found: " + path);
    }
    return load(path, [&](auto& gltf, auto& model, auto& error, auto& warning) {
        return gltf.LoadBinaryFromFile(&model, &error, &warning, path);
    });
}

GlbContent GlbReader::readMemory(const std::string& bytes, const std::string& nameForErrors) {
    return load(nameForErrors, [&](auto& gltf, auto& model, auto& error, auto& warning) {
        return gltf.LoadBinaryFromMemory(&model, &error, &warning,
                                         reinterpret_cast<const unsigned char*>(bytes.data()),
                                         static_cast<unsigned int>(bytes.size()));
    });
}

} // namespace pluvarine
