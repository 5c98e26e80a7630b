#pragma once

#include "data/generator/Opening.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <numbers>
#include <stdexcept>
#include <tiny_gltf.h>
#include <vector>

namespace pluvarine {

// A part file of the working folder as a test sees it: its one triangle mesh in metres, its
// bounds and the openings its node declares.
struct GlbPart {
    tinygltf::Model model;
    std::vector<Vec3> positions, normals;
    std::vector<std::uint32_t> indices;
    std::vector<Opening> openings;
    Vec3 lo, hi;

    // The part file of that stem in res/, read once per test program.
    static const GlbPart& catalogued(const std::string& stem) {
        static std::map<std::string, GlbPart> cache;
        const std::string path = std::string(PLUVARINE_WORKFOLDER) + "/res/" + stem + ".v3o";
        return cache.try_emplace(stem, path).first->second;
    }

    // The values of a tightly packed accessor of T, as Out; throws on another layout or outside
    // the buffer.
    template <typename T, typename Out = T> std::vector<Out> raw(int index) const {
        const auto& a = model.accessors.at(index);
        const auto& view = model.bufferViews.at(a.bufferView);
        const auto& data = model.buffers.at(view.buffer).data;
        const std::size_t n = a.count * tinygltf::GetNumComponentsInType(a.type);
        const std::size_t start = view.byteOffset + a.byteOffset;
        if (a.ByteStride(view) != int(n / a.count * sizeof(T)) ||
            start + n * sizeof(T) > data.size()) {
            throw std::runtime_error("unexpected accessor layout");
        }
        std::vector<T> packed(n);
        std::memcpy(packed.data(), data.data() + start, n * sizeof(T));
        return {packed.begin(), packed.end()};
    }

    explicit GlbPart(const std::string& path) {
        tinygltf::TinyGLTF loader;
        std::string error, warning;
        if (!loader.LoadBinaryFromFile(&model, &error, &warning, path)) {
            throw std::runtime_error("cannot load " + path + ": " + error);
        }
        const auto& primitive = model.meshes.at(0).primitives.at(0);
        for (auto [name, out] : {std::pair{"POSITION", &positions}, {"NORMAL", &normals}}) {
            const auto f = raw<float>(primitive.attributes.at(name));
            for (std::size_t i = 0; i + 2 < f.size(); i += 3) {
                out->push_back({f[i], f[i + 1], f[i + 2]});
            }
        }
        const bool wide = model.accessors.at(primitive.indices).componentType ==
                          TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT;
        indices = wide ? raw<std::uint32_t>(primitive.indices)
                       : raw<std::uint16_t, std::uint32_t>(primitive.indices);
        lo = hi = positions.at(0);
        for (const Vec3& v : positions) {
            lo = {std::min(lo.x, v.x), std::min(lo.y, v.y), std::min(lo.z, v.z)};
            hi = {std::max(hi.x, v.x), std::max(hi.y, v.y), std::max(hi.z, v.z)};
        }
        // Openings are flat node extras "opening.<name>.<field>".
        const auto& extras = model.nodes.at(0).extras;
        std::map<std::string, Opening> byName;
        for (const std::string& key : extras.Keys()) {
            if (key.rfind("opening.", 0) != 0) {
                continue;
            }
            const std::size_t dot = key.rfind('.');
            const std::string name = key.substr(8, dot - 8), field = key.substr(dot + 1);
            Opening& o = byName[name];
            o.name = name;
            const double v = extras.Get(key).GetNumberAsDouble();
            const std::map<std::string, double*> fields{
                {"x", &o.centre.x},     {"y", &o.centre.y},     {"z", &o.centre.z},
                {"dx", &o.direction.x}, {"dy", &o.direction.y}, {"dz", &o.direction.z},
                {"radius", &o.radius}};
            *fields.at(field) = v;
        }
        for (auto& [name, o] : byName) {
            openings.push_back(o);
        }
    }

    const Opening& opening(const std::string& name) const {
        const auto it = std::ranges::find(openings, name, &Opening::name);
        return it != openings.end() ? *it : throw std::runtime_error("no opening " + name);
    }

    // Winding number of the closed surface about p (1 inside one solid, 0 outside): the sum of
    // the triangles' signed solid angles (Van Oosterom and Strackee).
    double windingNumber(const Vec3& p) const {
        double total = 0;
        for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
            const Vec3 a = positions[indices[i]] - p, b = positions[indices[i + 1]] - p,
                       c = positions[indices[i + 2]] - p;
            const double la = a.length(), lb = b.length(), lc = c.length();
            total += 2 * std::atan2(a.dot(b.cross(c)),
                                    la * lb * lc + a.dot(b) * lc + a.dot(c) * lb + b.dot(c) * la);
        }
        return total / (4 * std::numbers::pi);
    }
};

} // namespace pluvarine
