#include "assembly/RecordingScene.h"

#include "base/RuntimeError.h"

#include <algorithm>

namespace pluvarine {

SceneCall& RecordingScene::receive(SceneMember member, std::string op,
                                   std::vector<SceneValue> args) {
    SceneCall& call = m_calls.emplace_back();
    call.member = member;
    call.op = std::move(op);
    call.args = std::move(args);
    const std::size_t number = m_calls.size();
    if (fails(number, call)) {
        call.failed = true;
        throw RuntimeError(RuntimeError::ViewerError,
                           "viewer error in " + call.op + " (call " + std::to_string(number) + ")");
    }
    return call;
}

SceneObject* RecordingScene::currentTarget() {
    if (!m_current) {
        return nullptr;
    }
    // Ids only grow, so the objects stay sorted by id.
    auto it = std::lower_bound(m_objects.begin(), m_objects.end(), *m_current,
                               [](const SceneObject& o, std::int32_t id) { return o.id < id; });
    return it != m_objects.end() && it->id == *m_current ? &*it : nullptr;
}

const SceneObject* RecordingScene::object(std::int32_t id) const {
    auto it = std::lower_bound(m_objects.begin(), m_objects.end(), id,
                               [](const SceneObject& o, std::int32_t key) { return o.id < key; });
    return it != m_objects.end() && it->id == id ? &*it : nullptr;
}

void RecordingScene::LoadScene(const std::string& sceneFile) {
    receive(SceneMember::LoadScene, "LoadScene", {sceneFile});
    m_lastLoad = m_calls.size();
    m_sceneFile = sceneFile;
    m_objects.clear();
    m_current.reset();
}

std::int32_t RecordingScene::AddPart(const std::string& partFile) {
    SceneCall& call = receive(SceneMember::AddPart, "AddPart", {partFile});
    const std::int32_t id = m_nextId++;
    SceneObject& added = m_objects.emplace_back();
    added.id = id;
    added.partFile = partFile;
    call.result = id;
    return id;
}

void RecordingScene::CurrentObject(std::int32_t id) {
    receive(SceneMember::CurrentObject, "CurrentObject", {id});
    // An id of an earlier scene denotes nothing: later operations then have no target.
    m_current = object(id) ? std::optional<std::int32_t>(id) : std::nullopt;
}

bool RecordingScene::ScaleObject(float sx, float sy, float sz) {
    return onTarget(SceneMember::ScaleObject, "ScaleObject", {sx, sy, sz}, [&](SceneObject& o) {
        o.scale = {sx, sy, sz};
    });
}

bool RecordingScene::MoveObject(float x, float y, float z) {
    return onTarget(SceneMember::MoveObject, "MoveObject", {x, y, z}, [&](SceneObject& o) {
        o.position = {x, y, z};
    });
}

bool RecordingScene::RotateObject(float ax, float ay, float az, float angle) {
    return onTarget(SceneMember::RotateObject, "RotateObject", {ax, ay, az, angle},
                    [&](SceneObject& o) {
                        o.rotation = {ax, ay, az, angle};
                    });
}

bool RecordingScene::CommitObject(bool flag) {
    return onTarget(SceneMember::CommitObject, "CommitObject", {flag},
                    [](SceneObject& o) { o.committed = true; });
}

void RecordingScene::UpdateView() {
    receive(SceneMember::UpdateView, "UpdateView", {});
    ++m_viewUpdates;
}

bool RecordingScene::ApplyMaterial(std::int32_t slot, const std::string& materialFile) {
    return onTarget(SceneMember::ApplyMaterial, "ApplyMaterial", {slot, materialFile},
                    [&](SceneObject& o) { o.material = materialFile; });
}

bool RecordingScene::SaveScene(const std::string& path, const std::string& objectName,
                               const std::string& third) {
    SceneCall& call = receive(SceneMember::SaveScene, "SaveScene", {path, objectName, third});
    call.result = true;
    return true;
}

std::vector<SceneCall> RecordingScene::callsSinceLoad() const {
    const std::size_t first = m_lastLoad == 0 ? 0 : m_lastLoad - 1;
    return {m_calls.begin() + static_cast<std::ptrdiff_t>(first), m_calls.end()};
}

} // namespace pluvarine
