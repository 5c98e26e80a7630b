#include "platform/viewer/ViewerScene.h"

#include "assembly/PartsList.h"
#include "base/RuntimeError.h"
#include "platform/viewer/GlbReader.h"
#include "platform/viewer/ObjectFileWriter.h"

#include <algorithm>
#include <filesystem>
#include <limits>

namespace pluvarine {

namespace {

// The transform without its translation.
Matrix4d linearPart(const Matrix4d& m) {
    Matrix4d result = m;
    result(0, 3) = result(1, 3) = result(2, 3) = 0;
    return result;
}

Matrix4d placed(const std::array<double, 3>& at, const Matrix4d& linear) {
    Matrix4d result = linear;
    result(0, 3) = at[0];
    result(1, 3) = at[1];
    result(2, 3) = at[2];
    return result;
}

} // namespace

ViewerScene::ViewerScene(std::shared_ptr<PartCache> cache)
    : m_cache(cache ? std::move(cache) : std::make_shared<PartCache>()) {}

void ViewerScene::LoadScene(const std::string& sceneFile) {
    m_objects.clear();
    m_current = 0;
    notify(SceneChange::Content);
    auto base = m_cache->part(sceneFile);
    // A base scene of nothing but auxiliary helpers (the working folder's marker) adds no object.
    if (!base->pieces.empty() && !base->auxiliary) {
        ViewerObject object;
        object.part = std::move(base);
        object.committed = true;
        place(object, Matrix4d());
        m_objects.push_back(std::move(object));
        notify(SceneChange::Content);
    }
}

std::int32_t ViewerScene::AddPart(const std::string& partFile) {
    return append(m_cache->part(partFile), Matrix4d());
}

void ViewerScene::CurrentObject(std::int32_t id) {
    m_current = id;
}

bool ViewerScene::ScaleObject(float sx, float sy, float sz) {
    ViewerObject& object = current("ScaleObject");
    const auto before = object.scaled.value_or(std::array<float, 3>{1, 1, 1});
    object.scaled = {before[0] * sx, before[1] * sy, before[2] * sz};
    place(object, placed(object.transform.translationPart(),
                         Matrix4d::scaling(sx, sy, sz) * linearPart(object.transform)));
    notify(SceneChange::Placement);
    return true;
}

bool ViewerScene::MoveObject(float x, float y, float z) {
    ViewerObject& object = current("MoveObject");
    place(object, placed({x, y, z}, linearPart(object.transform)));
    notify(SceneChange::Placement);
    return true;
}

bool ViewerScene::RotateObject(float ax, float ay, float az, float angle) {
    ViewerObject& object = current("RotateObject");
    place(object, placed(object.transform.translationPart(),
                         Matrix4d::rotation(ax, ay, az, angle) * linearPart(object.transform)));
    notify(SceneChange::Placement);
    return true;
}

bool ViewerScene::CommitObject(bool flag) {
    current("CommitObject").committed = flag;
    notify(SceneChange::Placement);
    return true;
}

void ViewerScene::UpdateView() {
    notify(SceneChange::FitView);
}

bool ViewerScene::ApplyMaterial(std::int32_t /*slot*/, const std::string& materialFile) {
    ViewerObject* object = find(m_current);
    if (!object) {
        return false; // an id of a scene since replaced: skipped
    }
    object->materialFile = materialFile;
    bool ok = true;
    if (materialFile.empty()) {
        object->material.reset();
    } else {
        object->material = m_materials.look(materialFile);
        ok = object->material.has_value();
    }
    notify(SceneChange::Look);
    return ok;
}

bool ViewerScene::SaveScene(const std::string& path, const std::string& objectName,
                            const std::string& /*third*/) {
    std::string target = path;
    if (target.empty()) {
        if (!m_saveDialog) {
            return false;
        }
        target = m_saveDialog(objectName);
        if (target.empty()) {
            return false;
        }
    }
    const std::string name =
        objectName.empty() ? std::filesystem::path(target).stem().string() : objectName;
    ObjectFileWriter::writeFile(
        target, ObjectFileWriter::toGlb(m_objects, name, PartsList::of(composition()).toExtras()));
    return true;
}

std::int32_t ViewerScene::addMesh(std::shared_ptr<const MeshData> mesh, const Matrix4d& transform,
                                  const SurfaceLook& look, const std::string& name) {
    auto part = std::make_shared<PartModel>();
    part->name = name;
    for (std::size_t v = 0; v < mesh->vertexCount(); ++v) {
        const float* p = &mesh->positions[v * 3];
        part->bounds.add({p[0], p[1], p[2]});
    }
    part->pieces.push_back({std::move(mesh), look});
    return append(std::move(part), transform);
}

std::int32_t ViewerScene::addFile(const std::string& glbPath, const Matrix4d& transform,
                                  const std::optional<SurfaceLook>& look) {
    const std::int32_t id =
        append(PartModel::fromContent(glbPath, GlbReader::readFile(glbPath)), transform);
    if (look) {
        find(id)->material = look;
        notify(SceneChange::Look);
    }
    return id;
}

void ViewerScene::clear() {
    m_objects.clear();
    notify(SceneChange::Content);
}

void ViewerScene::remove(std::int32_t id) {
    if (ViewerObject* object = find(id)) {
        m_objects.erase(m_objects.begin() + (object - m_objects.data()));
        notify(SceneChange::Content);
    }
}

void ViewerScene::setTransform(std::int32_t id, const Matrix4d& transform) {
    if (ViewerObject* object = find(id)) {
        place(*object, transform);
        notify(SceneChange::Placement);
    }
}

std::vector<SceneObject> ViewerScene::composition() const {
    std::vector<SceneObject> composed;
    for (const ViewerObject& object : m_objects) {
        if (object.id > 0) {
            composed.push_back({object.id, object.part->path, object.scaled, std::nullopt,
                                std::nullopt, object.materialFile, object.committed});
        }
    }
    return composed;
}

const ViewerObject* ViewerScene::object(std::int32_t id) const {
    return const_cast<ViewerScene*>(this)->find(id);
}

Box3 ViewerScene::bounds() const {
    Box3 box;
    for (const auto& object : m_objects) {
        if (object.drawn()) {
            box.add(object.bounds);
        }
    }
    return box;
}

int ViewerScene::addObserver(Observer observer) {
    const int handle = m_nextObserver++;
    m_observers.emplace(handle, std::move(observer));
    return handle;
}

void ViewerScene::removeObserver(int handle) {
    m_observers.erase(handle);
}

ViewerObject* ViewerScene::find(std::int32_t id) {
    if (id <= 0) {
        return nullptr;
    }
    const auto it = std::lower_bound(
        m_objects.begin(), m_objects.end(), id,
        [](const ViewerObject& object, std::int32_t wanted) { return object.id < wanted; });
    return it != m_objects.end() && it->id == id ? &*it : nullptr;
}

ViewerObject& ViewerScene::current(const char* operation) {
    ViewerObject* object = find(m_current);
    if (!object) {
        throw RuntimeError(RuntimeError::ViewerError, std::string(operation) + ": object " +
                                                          std::to_string(m_current) +
                                                          " is not in the scene");
    }
    return *object;
}

std::int32_t ViewerScene::append(std::shared_ptr<const PartModel> part, const Matrix4d& transform) {
    if (m_nextId == std::numeric_limits<std::int32_t>::max()) {
        throw RuntimeError(RuntimeError::Overflow, "no object id left");
    }
    ViewerObject object;
    object.id = m_nextId++;
    object.part = std::move(part);
    place(object, transform);
    m_objects.push_back(std::move(object));
    notify(SceneChange::Content, true);
    return m_objects.back().id;
}

void ViewerScene::place(ViewerObject& object, const Matrix4d& transform) {
    object.transform = transform;
    object.bounds = Box3();
    if (!object.part) {
        return;
    }
    for (const auto& piece : object.part->pieces) {
        const auto& p = piece.mesh->positions;
        for (std::size_t i = 0; i + 2 < p.size(); i += 3) {
            object.bounds.add(transform.map({p[i], p[i + 1], p[i + 2]}));
        }
    }
}

void ViewerScene::notify(SceneChange change, bool appended) {
    ++m_revision;
    if (!appended) {
        ++m_layoutRevision;
    }
    const auto observers = m_observers; // an observer may add or remove observers
    for (const auto& [handle, observer] : observers) {
        observer(change);
    }
}

} // namespace pluvarine
