#include "platform/viewer/ObjectFileWriter.h"

#include "base/RuntimeError.h"
#include "platform/system/AtomicFile.h"
#include "platform/viewer/GltfAxes.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <tiny_gltf.h>

namespace pluvarine {

namespace {

class GlbBuilder {
public:
    GlbBuilder(const std::string& name, const FlatExtras& sceneExtras) {
        m_model.asset.version = "2.0";
        m_model.asset.generator = "Pluvarine";
        m_model.buffers.emplace_back();
        tinygltf::Scene scene;
        scene.name = name;
        if (!sceneExtras.empty()) {
            tinygltf::Value::Object extras;
            for (const auto& [key, value] : sceneExtras) {
                extras.insert_or_assign(
                    key, std::visit([](const auto& v) { return tinygltf::Value(v); }, value));
            }
            scene.extras = tinygltf::Value(std::move(extras));
        }
        m_model.scenes.push_back(std::move(scene));
        m_model.defaultScene = 0;
    }

    void addObject(const ViewerObject& object) {
        tinygltf::Node node;
        node.name = (object.part->name.empty() ? std::string("object") : object.part->name) + " #" +
                    std::to_string(object.id);
        const Matrix4d turned = Matrix4d::fromColumnMajor(gltfFromSceneFrame) * object.transform;
        node.matrix.assign(turned.columnMajor().begin(), turned.columnMajor().end());
        node.extras = extras(object);
        node.mesh = mesh(object);
        m_model.scenes[0].nodes.push_back(static_cast<int>(m_model.nodes.size()));
        m_model.nodes.push_back(std::move(node));
    }

    std::string bytes() {
        std::ostringstream out;
        tinygltf::TinyGLTF gltf;
        m_model.buffers[0].data = std::move(m_data);
        if (m_model.buffers[0].data.empty()) {
            m_model.buffers.clear(); // a buffer must not be empty
        }
        if (!gltf.WriteGltfSceneToStream(&m_model, out, false, true)) {
            throw RuntimeError(RuntimeError::ViewerError, "cannot encode the object file");
        }
        return out.str();
    }

private:
    // Every extra the file carries, flat (names to numbers, texts or Booleans): other glTF
    // readers take extras as metadata and some refuse nested ones.
    static tinygltf::Value extras(const ViewerObject& object) {
        tinygltf::Value::Object fields{{"id", tinygltf::Value(object.id)}};
        if (object.part->auxiliary) {
            fields.emplace("auxiliary", tinygltf::Value(true));
        }
        return tinygltf::Value(std::move(fields));
    }

    struct PieceAccessors {
        int position = -1;
        int normal = -1;
        int indices = -1;
    };

    int mesh(const ViewerObject& object) {
        // Objects of one part with the same applied material share the mesh.
        const auto key = std::make_pair(object.part.get(), material(object.material));
        if (const auto found = m_meshes.find(key); found != m_meshes.end()) {
            return found->second;
        }
        tinygltf::Mesh mesh;
        mesh.name = object.part->name;
        for (std::size_t i = 0; i < object.part->pieces.size(); ++i) {
            if (object.part->pieces[i].mesh->indices.empty()) {
                continue; // glTF has no empty accessors
            }
            const auto& accessors = pieceAccessors(*object.part->pieces[i].mesh);
            tinygltf::Primitive primitive;
            primitive.attributes["POSITION"] = accessors.position;
            primitive.attributes["NORMAL"] = accessors.normal;
            primitive.indices = accessors.indices;
            primitive.mode = TINYGLTF_MODE_TRIANGLES;
            primitive.material = material(object.look(i));
            mesh.primitives.push_back(std::move(primitive));
        }
        const int index = mesh.primitives.empty() ? -1 : static_cast<int>(m_model.meshes.size());
        if (index >= 0) {
            m_model.meshes.push_back(std::move(mesh));
        }
        m_meshes.emplace(key, index);
        return index;
    }

    // -1 for none.
    int material(const std::optional<SurfaceLook>& look) { return look ? material(*look) : -1; }

    int material(const SurfaceLook& look) {
        for (std::size_t i = 0; i < m_looks.size(); ++i) {
            if (m_looks[i] == look) {
                return static_cast<int>(i);
            }
        }
        tinygltf::Material material;
        material.name = look.name;
        material.pbrMetallicRoughness.baseColorFactor = {look.baseColor[0], look.baseColor[1],
                                                         look.baseColor[2], 1.0};
        material.pbrMetallicRoughness.metallicFactor = look.metallic;
        material.pbrMetallicRoughness.roughnessFactor = look.roughness;
        m_model.materials.push_back(std::move(material));
        m_looks.push_back(look);
        return static_cast<int>(m_looks.size() - 1);
    }

    const PieceAccessors& pieceAccessors(const MeshData& mesh) {
        auto& accessors = m_pieces[&mesh];
        if (accessors.position >= 0) {
            return accessors;
        }
        const std::size_t count = mesh.vertexCount();
        std::vector<double> lo(3, 0), hi(3, 0);
        for (std::size_t v = 0; v < count; ++v) {
            for (int k = 0; k < 3; ++k) {
                const double p = mesh.positions[v * 3 + k];
                lo[k] = v == 0 ? p : std::min(lo[k], p);
                hi[k] = v == 0 ? p : std::max(hi[k], p);
            }
        }
        accessors.position = accessor(mesh.positions.data(), mesh.positions.size() * 4, count,
                                      TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3,
                                      TINYGLTF_TARGET_ARRAY_BUFFER, lo, hi);
        accessors.normal = accessor(mesh.normals.data(), mesh.normals.size() * 4, count,
                                    TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3,
                                    TINYGLTF_TARGET_ARRAY_BUFFER, {}, {});
        if (count <= 65535) {
            std::vector<std::uint16_t> shorts(mesh.indices.begin(), mesh.indices.end());
            accessors.indices =
                accessor(shorts.data(), shorts.size() * 2, shorts.size(),
                         TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT, TINYGLTF_TYPE_SCALAR,
                         TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER, {}, {});
        } else {
            accessors.indices =
                accessor(mesh.indices.data(), mesh.indices.size() * 4, mesh.indices.size(),
                         TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT, TINYGLTF_TYPE_SCALAR,
                         TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER, {}, {});
        }
        return accessors;
    }

    int accessor(const void* data, std::size_t bytes, std::size_t count, int componentType,
                 int type, int target, std::vector<double> lo, std::vector<double> hi) {
        m_data.resize((m_data.size() + 3) / 4 * 4, 0); // every view starts 4-byte aligned
        tinygltf::BufferView view;
        view.buffer = 0;
        view.byteOffset = m_data.size();
        view.byteLength = bytes;
        view.target = target;
        const auto* begin = static_cast<const unsigned char*>(data);
        m_data.insert(m_data.end(), begin, begin + bytes);
        tinygltf::Accessor accessor;
        accessor.bufferView = static_cast<int>(m_model.bufferViews.size());
        accessor.componentType = componentType;
        accessor.count = count;
        accessor.type = type;
        accessor.minValues = std::move(lo);
        accessor.maxValues = std::move(hi);
        m_model.bufferViews.push_back(view);
        m_model.accessors.push_back(std::move(accessor));
        return static_cast<int>(m_model.accessors.size() - 1);
    }

    tinygltf::Model m_model;
    std::vector<unsigned char> m_data;
    std::vector<SurfaceLook> m_looks;
    std::map<std::pair<const PartModel*, int>, int> m_meshes;
    std::map<const MeshData*, PieceAccessors> m_pieces;
};

} // namespace

std::string ObjectFileWriter::toGlb(const std::vector<ViewerObject>& objects,
                                    const std::string& name, const FlatExtras& sceneExtras) {
    GlbBuilder builder(name, sceneExtras);
    for (const auto& object : objects) {
        if (object.part) {
            builder.addObject(object);
        }
    }
    return builder.bytes();
}

void ObjectFileWriter::writeFile(const std::string& path, const std::string& bytes) {
    // No flush to the disk: the rename alone keeps a failed or interrupted program from leaving
    // half a file, which is what is needed here, at a fraction of the cost.
    AtomicFile file(path);
    if (!file.create() || !file.writeAll(bytes.data(), bytes.size()) ||
        !file.commit(AtomicFile::Sync::None)) {
        throw RuntimeError(RuntimeError::ViewerError,
                           "cannot write " + path + ": " + file.errorText());
    }
}

} // namespace pluvarine
