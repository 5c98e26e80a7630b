#include "tests/data/GlbPart.h"

#include <cmath>
#include <cstring>
#include <map>
#include <memory>
#include <numbers>
#include <stdexcept>

namespace pluvarine {

namespace {

const tinygltf::Value kNone;

const tinygltf::Value& own(const tinygltf::Value& extras) {
    return extras.IsObject() && extras.Has("pluvarine") ? extras.Get("pluvarine") : kNone;
}

Vec3 vec(const tinygltf::Value& v) {
    if (!v.IsArray() || v.ArrayLen() != 3) {
        throw std::runtime_error("opening vector is not three numbers");
    }
    return {v.Get(0).GetNumberAsDouble(), v.Get(1).GetNumberAsDouble(),
            v.Get(2).GetNumberAsDouble()};
}

// The bytes of accessor `index`, checked to lie within its buffer.
const unsigned char* accessorData(const tinygltf::Model& model, int index,
                                  std::size_t elementSize) {
    const auto& accessor = model.accessors.at(index);
    const auto& view = model.bufferViews.at(accessor.bufferView);
    const auto& buffer = model.buffers.at(view.buffer);
    const std::size_t stride = view.byteStride ? view.byteStride : elementSize;
    const std::size_t start = view.byteOffset + accessor.byteOffset;
    if (accessor.count > 0 &&
        start + stride * (accessor.count - 1) + elementSize > buffer.data.size()) {
        throw std::runtime_error("accessor outside its buffer");
    }
    if (stride != elementSize) {
        throw std::runtime_error("interleaved data not expected in a part file");
    }
    return buffer.data.data() + start;
}

std::vector<Vec3> readVec3(const tinygltf::Model& model, int index) {
    const auto& accessor = model.accessors.at(index);
    if (accessor.componentType != TINYGLTF_COMPONENT_TYPE_FLOAT ||
        accessor.type != TINYGLTF_TYPE_VEC3) {
        throw std::runtime_error("vertex data must be float32 VEC3");
    }
    const unsigned char* data = accessorData(model, index, 12);
    std::vector<Vec3> result(accessor.count);
    for (std::size_t i = 0; i < accessor.count; ++i) {
        float xyz[3];
        std::memcpy(xyz, data + i * 12, 12);
        result[i] = {xyz[0], xyz[1], xyz[2]};
    }
    return result;
}

} // namespace

GlbPart::GlbPart(const std::string& path) {
    tinygltf::TinyGLTF loader;
    std::string error, warning;
    if (!loader.LoadBinaryFromFile(&m_model, &error, &warning, path)) {
        throw std::runtime_error("cannot load " + path + ": " + error);
    }
    if (m_model.meshes.empty()) {
        return; // the base scene has no mesh
    }
    const auto& primitive = m_model.meshes.at(0).primitives.at(0);
    m_positions = readVec3(m_model, primitive.attributes.at("POSITION"));
    m_normals = readVec3(m_model, primitive.attributes.at("NORMAL"));
    const auto& accessor = m_model.accessors.at(primitive.indices);
    if (accessor.type != TINYGLTF_TYPE_SCALAR) {
        throw std::runtime_error("indices must be scalars");
    }
    if (accessor.componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT) {
        const unsigned char* data = accessorData(m_model, primitive.indices, 2);
        for (std::size_t i = 0; i < accessor.count; ++i) {
            std::uint16_t value;
            std::memcpy(&value, data + i * 2, 2);
            m_indices.push_back(value);
        }
    } else if (accessor.componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT) {
        const unsigned char* data = accessorData(m_model, primitive.indices, 4);
        m_indices.resize(accessor.count);
        std::memcpy(m_indices.data(), data, accessor.count * 4);
    } else {
        throw std::runtime_error("indices must be uint16 or uint32");
    }
    const auto& list = nodeExtras();
    if (list.IsObject() && list.Has("openings")) {
        const auto& openings = list.Get("openings");
        for (std::size_t i = 0; i < openings.ArrayLen(); ++i) {
            const auto& o = openings.Get(static_cast<int>(i));
            m_openings.push_back({o.Get("name").Get<std::string>(), vec(o.Get("centre")),
                                  vec(o.Get("direction")), o.Get("radius").GetNumberAsDouble()});
        }
    }
}

std::string GlbPart::resPath(const std::string& stem) {
    return std::string(PLUVARINE_WORKFOLDER) + "/res/" + stem + ".v3o";
}

const GlbPart& GlbPart::catalogued(const std::string& stem) {
    static std::map<std::string, std::unique_ptr<GlbPart>> cache;
    auto& slot = cache[stem];
    if (!slot) {
        slot = std::make_unique<GlbPart>(resPath(stem));
    }
    return *slot;
}

Vec3 GlbPart::extreme(double sign) const {
    Vec3 e = m_positions.empty() ? Vec3{} : m_positions.front() * sign;
    for (const Vec3& p : m_positions) {
        e = {std::max(e.x, sign * p.x), std::max(e.y, sign * p.y), std::max(e.z, sign * p.z)};
    }
    return e * sign;
}

Vec3 GlbPart::lowest() const {
    return extreme(-1);
}

Vec3 GlbPart::highest() const {
    return extreme(1);
}

const Opening& GlbPart::opening(const std::string& name) const {
    for (const Opening& o : m_openings) {
        if (o.name == name) {
            return o;
        }
    }
    throw std::runtime_error("no opening " + name);
}

const tinygltf::Value& GlbPart::assetExtras() const {
    return own(m_model.asset.extras);
}

const tinygltf::Value& GlbPart::nodeExtras() const {
    return m_model.nodes.empty() ? kNone : own(m_model.nodes.front().extras);
}

double GlbPart::windingNumber(const Vec3& p) const {
    // Sum of the signed solid angles of the triangles (Van Oosterom and Strackee).
    double total = 0;
    for (std::size_t i = 0; i + 2 < m_indices.size(); i += 3) {
        const Vec3 a = m_positions[m_indices[i]] - p;
        const Vec3 b = m_positions[m_indices[i + 1]] - p;
        const Vec3 c = m_positions[m_indices[i + 2]] - p;
        const double la = a.length(), lb = b.length(), lc = c.length();
        const double numerator = a.dot(b.cross(c));
        const double denominator = la * lb * lc + a.dot(b) * lc + a.dot(c) * lb + b.dot(c) * la;
        total += 2 * std::atan2(numerator, denominator);
    }
    return total / (4 * std::numbers::pi);
}

} // namespace pluvarine
