#include "platform/viewer/MeshPool.h"

#include <algorithm>
#include <mutex>
#include <string_view>
#include <unordered_map>

namespace pluvarine {

namespace {

template <typename T> std::string_view bytesOf(const std::vector<T>& values) {
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T)};
}

std::size_t contentHash(const MeshData& mesh) {
    const std::hash<std::string_view> hash;
    std::size_t h = hash(bytesOf(mesh.positions));
    h = h * 31 + hash(bytesOf(mesh.normals));
    return h * 31 + hash(bytesOf(mesh.indices));
}

bool sameContent(const MeshData& a, const MeshData& b) {
    return a.positions == b.positions && a.normals == b.normals && a.indices == b.indices;
}

struct Pool {
    std::mutex mutex;
    std::unordered_multimap<std::size_t, std::weak_ptr<const MeshData>> meshes;
    std::size_t sweepAt = 64; // entries before expired ones are swept out
};

Pool& pool() {
    static Pool instance;
    return instance;
}

} // namespace

std::shared_ptr<const MeshData> MeshPool::share(std::shared_ptr<const MeshData> mesh) {
    const std::size_t key = contentHash(*mesh);
    Pool& p = pool();
    const std::lock_guard lock(p.mutex);
    const auto [first, last] = p.meshes.equal_range(key);
    for (auto it = first; it != last; ++it) {
        if (auto known = it->second.lock(); known && sameContent(*known, *mesh)) {
            return known;
        }
    }
    if (p.meshes.size() >= p.sweepAt) {
        std::erase_if(p.meshes, [](const auto& entry) { return entry.second.expired(); });
        p.sweepAt = std::max<std::size_t>(64, p.meshes.size() * 2);
    }
    p.meshes.emplace(key, mesh);
    return mesh;
}

std::size_t MeshPool::size() {
    Pool& p = pool();
    const std::lock_guard lock(p.mutex);
    return static_cast<std::size_t>(
        std::count_if(p.meshes.begin(), p.meshes.end(),
                      [](const auto& entry) { return !entry.second.expired(); }));
}

} // namespace pluvarine
