#include "data/generator/GlbWriter.h"

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
    "metres; z up, x perpendicular to the wall (+x towards it), y along the wall; the scene frame "
    "itself, no y-up conversion; the origin is the part's reference point";

// The part's own look: the grey plastic swatch (144, 144, 144) as a linear base colour.
double linearFromSrgb(int channel) {
    const double c = channel / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

Value vec(const Vec3& v) {
    return Value(Value::Array{Value(v.x), Value(v.y), Value(v.z)});
}

Value ownExtras(Value::Object fields) {
    return Value(Value::Object{{"pluvarine", Value(std::move(fields))}});
}

void appendBytes(std::vector<unsigned char>& data, const void* bytes, std::size_t size) {
    const auto* p = static_cast<const unsigned char*>(bytes);
    data.insert(data.end(), p, p + size);
    while (data.size() % 4 != 0) {
        data.push_back(0);
    }
}

int addView(tinygltf::Model& model, std::size_t offset, std::size_t length, int target) {
    tinygltf::BufferView view;
    view.buffer = 0;
    view.byteOffset = offset;
    view.byteLength = length;
    view.target = target;
    model.bufferViews.push_back(view);
    return static_cast<int>(model.bufferViews.size() - 1);
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
    result.extras = ownExtras(std::move(extras));
    return result;
}

} // namespace

std::string GlbWriter::partFile(const PartModel& part) {
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
    model.asset = asset({{"part", Value(part.name)}, {"auxiliary", Value(part.auxiliary)}});
    model.buffers.emplace_back();
    auto& data = model.buffers[0].data;

    tinygltf::Accessor position;
    position.bufferView =
        addView(model, data.size(), positions.size() * 4, TINYGLTF_TARGET_ARRAY_BUFFER);
    appendBytes(data, positions.data(), positions.size() * 4);
    position.componentType = TINYGLTF_COMPONENT_TYPE_FLOAT;
    position.type = TINYGLTF_TYPE_VEC3;
    position.count = count;
    position.minValues = lo;
    position.maxValues = hi;

    tinygltf::Accessor normal;
    normal.bufferView =
        addView(model, data.size(), normals.size() * 4, TINYGLTF_TARGET_ARRAY_BUFFER);
    appendBytes(data, normals.data(), normals.size() * 4);
    normal.componentType = TINYGLTF_COMPONENT_TYPE_FLOAT;
    normal.type = TINYGLTF_TYPE_VEC3;
    normal.count = count;

    tinygltf::Accessor index;
    const auto& indices = mesh.indices();
    const std::size_t start = data.size();
    if (count <= std::numeric_limits<std::uint16_t>::max()) {
        std::vector<std::uint16_t> small(indices.begin(), indices.end());
        appendBytes(data, small.data(), small.size() * 2);
        index.componentType = TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT;
        index.bufferView =
            addView(model, start, small.size() * 2, TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
    } else {
        appendBytes(data, indices.data(), indices.size() * 4);
        index.componentType = TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT;
        index.bufferView =
            addView(model, start, indices.size() * 4, TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
    }
    index.type = TINYGLTF_TYPE_SCALAR;
    index.count = indices.size();
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

    Value::Array openings;
    for (const Opening& o : part.openings) {
        openings.push_back(Value(Value::Object{{"name", Value(o.name)},
                                               {"centre", vec(o.centre * 0.001)},
                                               {"direction", vec(o.direction)},
                                               {"radius", Value(o.radius / 1000)}}));
    }
    tinygltf::Node node;
    node.name = part.name;
    node.mesh = 0;
    Value::Object nodeExtras{{"openings", Value(std::move(openings))}};
    if (part.auxiliary) {
        nodeExtras.emplace("auxiliary", Value(true));
    }
    node.extras = ownExtras(std::move(nodeExtras));
    model.nodes.push_back(node);

    tinygltf::Scene scene;
    scene.name = part.name;
    scene.nodes = {0};
    model.scenes.push_back(scene);
    model.defaultScene = 0;
    return serialise(model);
}

std::string GlbWriter::baseScene() {
    tinygltf::Model model;
    model.asset = asset({{"baseScene", Value(true)}});
    tinygltf::Node marker;
    marker.name = "main";
    marker.extras = ownExtras({{"baseScene", Value(true)}});
    model.nodes.push_back(marker);
    tinygltf::Scene scene;
    scene.name = "main";
    scene.nodes = {0};
    model.scenes.push_back(scene);
    model.defaultScene = 0;
    return serialise(model);
}

} // namespace pluvarine
