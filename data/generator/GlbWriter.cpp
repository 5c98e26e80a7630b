#include "data/generator/GlbWriter.h"

#include "platform/viewer/GltfAxes.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <tiny_gltf.h>

namespace pluvarine {

namespace {

using tinygltf::Value;

constexpr const char* kFrame =
    "metres; the mesh in the scene frame: z up, x perpendicular to the wall (+x towards it), y "
    "along the wall, the origin the part's reference point (the centre of its box); the node "
    "turns it +Y up";

// The part's own look: the grey plastic swatch (144, 144, 144) as a linear base colour.
double linearFromSrgb(int channel) {
    const double c = channel / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

// Extras are flat (names to numbers, texts or Booleans): other glTF readers take them as
// metadata and some refuse nested ones. An opening is named "opening.<name>.<field>".
void addOpening(Value::Object& extras, const Opening& o) {
    const std::string prefix = "opening." + o.name + ".";
    const Vec3 centre = o.centre * 0.001;
    const std::pair<const char*, double> fields[] = {{"x", centre.x},
                                                     {"y", centre.y},
                                                     {"z", centre.z},
                                                     {"dx", o.direction.x},
                                                     {"dy", o.direction.y},
                                                     {"dz", o.direction.z},
                                                     {"radius", o.radius / 1000}};
    for (const auto& [name, value] : fields) {
        extras.emplace(prefix + name, Value(value));
    }
}

// Appends `size` bytes to the model's one buffer (4-byte aligned) with a view and an accessor.
tinygltf::Accessor addAccessor(tinygltf::Model& model, const void* bytes, std::size_t size,
                               std::size_t count, int componentType, int type, int target) {
    auto& data = model.buffers[0].data;
    tinygltf::BufferView view;
    view.buffer = 0;
    view.byteOffset = data.size();
    view.byteLength = size;
    view.target = target;
    model.bufferViews.push_back(view);
    const auto* p = static_cast<const unsigned char*>(bytes);
    data.insert(data.end(), p, p + size);
    while (data.size() % 4 != 0) {
        data.push_back(0);
    }
    tinygltf::Accessor accessor;
    accessor.bufferView = static_cast<int>(model.bufferViews.size() - 1);
    accessor.componentType = componentType;
    accessor.type = type;
    accessor.count = count;
    return accessor;
}

std::string serialise(const tinygltf::Model& model) {
    std::ostringstream out;
    tinygltf::TinyGLTF writer;
    if (!writer.WriteGltfSceneToStream(&model, out, false, true)) {
        throw std::runtime_error("cannot serialise the glTF model");
    }
    return out.str();
}

tinygltf::Asset asset(Value::Object extras) {
    tinygltf::Asset result;
    result.version = "2.0";
    result.generator = "pluvarine-partgen";
    extras.emplace("frame", Value(std::string(kFrame)));
    result.extras = Value(std::move(extras));
    return result;
}

// One scene of one node with the part's mesh, turned +Y up.
std::string glb(const PartModel& part, Value::Object assetExtras, Value::Object nodeExtras) {
    const MeshBuilder& mesh = part.mesh;
    const std::size_t count = mesh.positions().size();
    std::vector<float> positions, normals;
    std::vector<double> lo(3, std::numeric_limits<double>::max());
    std::vector<double> hi(3, std::numeric_limits<double>::lowest());
    for (std::size_t i = 0; i < count; ++i) {
        const Vec3& p = mesh.positions()[i];
        const Vec3& n = mesh.normals()[i];
        // Millimetres to metres, rounded once to single precision.
        const float xyz[3] = {static_cast<float>(p.x / 1000), static_cast<float>(p.y / 1000),
                              static_cast<float>(p.z / 1000)};
        for (int c = 0; c < 3; ++c) {
            positions.push_back(xyz[c]);
            lo[c] = std::min(lo[c], static_cast<double>(xyz[c]));
            hi[c] = std::max(hi[c], static_cast<double>(xyz[c]));
        }
        normals.insert(normals.end(),
                       {static_cast<float>(n.x), static_cast<float>(n.y), static_cast<float>(n.z)});
    }

    tinygltf::Model model;
    model.asset = asset(std::move(assetExtras));
    model.buffers.emplace_back();

    tinygltf::Accessor position = addAccessor(model, positions.data(), positions.size() * 4, count,
                                              TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3,
                                              TINYGLTF_TARGET_ARRAY_BUFFER);
    position.minValues = lo;
    position.maxValues = hi;
    const tinygltf::Accessor normal =
        addAccessor(model, normals.data(), normals.size() * 4, count, TINYGLTF_COMPONENT_TYPE_FLOAT,
                    TINYGLTF_TYPE_VEC3, TINYGLTF_TARGET_ARRAY_BUFFER);
    const auto& indices = mesh.indices();
    const std::vector<std::uint16_t> small(indices.begin(), indices.end());
    const bool fitsShort = count <= std::numeric_limits<std::uint16_t>::max();
    const tinygltf::Accessor index =
        fitsShort ? addAccessor(model, small.data(), small.size() * 2, small.size(),
                                TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT, TINYGLTF_TYPE_SCALAR,
                                TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER)
                  : addAccessor(model, indices.data(), indices.size() * 4, indices.size(),
                                TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT, TINYGLTF_TYPE_SCALAR,
                                TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
    model.accessors = {position, normal, index};

    tinygltf::Material material;
    material.name = "Grau";
    const double grey = linearFromSrgb(144);
    material.pbrMetallicRoughness.baseColorFactor = {grey, grey, grey, 1.0};
    material.pbrMetallicRoughness.metallicFactor = 0.0;
    material.pbrMetallicRoughness.roughnessFactor = 0.5;
    model.materials.push_back(material);

    tinygltf::Primitive primitive;
    primitive.attributes = {{"POSITION", 0}, {"NORMAL", 1}};
    primitive.indices = 2;
    primitive.material = 0;
    primitive.mode = TINYGLTF_MODE_TRIANGLES;
    tinygltf::Mesh gltfMesh;
    gltfMesh.name = part.name;
    gltfMesh.primitives.push_back(primitive);
    model.meshes.push_back(gltfMesh);

    tinygltf::Node node;
    node.name = part.name;
    node.mesh = 0;
    node.matrix.assign(gltfFromSceneFrame.begin(), gltfFromSceneFrame.end());
    if (part.auxiliary) {
        nodeExtras.emplace("auxiliary", Value(true));
    }
    node.extras = Value(std::move(nodeExtras));
    model.nodes.push_back(node);

    tinygltf::Scene scene;
    scene.name = part.name;
    scene.nodes = {0};
    model.scenes.push_back(scene);
    model.defaultScene = 0;
    return serialise(model);
}

} // namespace

std::string GlbWriter::partFile(const PartModel& part) {
    Value::Object nodeExtras;
    for (const Opening& o : part.openings) {
        addOpening(nodeExtras, o);
    }
    return glb(part, {{"part", Value(part.name)}, {"auxiliary", Value(part.auxiliary)}},
               std::move(nodeExtras));
}

std::string GlbWriter::baseScene(const PartModel& marker) {
    return glb(marker, {{"baseScene", Value(true)}}, {{"baseScene", Value(true)}});
}

} // namespace pluvarine
