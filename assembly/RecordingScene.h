#pragma once

#include "assembly/SceneObject.h"
#include "assembly/SceneOperations.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace pluvarine {

// One argument or result of a scene operation, exactly as it crossed the interface.
using SceneValue = std::variant<std::int32_t, float, bool, std::string>;

// One scene operation as received: member number, name, arguments in order and the result
// handed back (none for the operations without one, and none when the call failed).
struct SceneCall {
    SceneMember member = SceneMember::LoadScene;
    std::string op;
    std::vector<SceneValue> args;
    std::optional<SceneValue> result;
    bool failed = false;
};

// A scene without a display: hands out consecutive object ids (1, 2, ... continuing across
// LoadScene, as the viewer does), keeps every call it receives in order and the objects of the
// present scene. Operations on an id that is no longer in the scene are skipped, never a
// failure. A call that fails() picks throws RuntimeError(ViewerError) before it takes effect.
class RecordingScene : public SceneOperations {
public:
    void LoadScene(const std::string& sceneFile) override;
    std::int32_t AddPart(const std::string& partFile) override;
    void CurrentObject(std::int32_t id) override;
    bool ScaleObject(float sx, float sy, float sz) override;
    bool MoveObject(float x, float y, float z) override;
    bool RotateObject(float ax, float ay, float az, float angle) override;
    bool CommitObject(bool flag) override;
    void UpdateView() override;
    bool ApplyMaterial(std::int32_t slot, const std::string& materialFile) override;
    bool SaveScene(const std::string& path, const std::string& objectName,
                   const std::string& third) override;

    const std::vector<SceneCall>& calls() const { return m_calls; }
    // Forgets the calls so far; call numbers count afresh.
    void clearCalls() {
        m_calls.clear();
        m_lastLoad = 0;
    }
    // The calls since the latest LoadScene (that call included); all calls if there was none.
    std::vector<SceneCall> callsSinceLoad() const;

    const std::string& sceneFile() const { return m_sceneFile; }
    // The objects of the present scene in the order they were added.
    const std::vector<SceneObject>& objects() const { return m_objects; }
    const SceneObject* object(std::int32_t id) const;
    std::optional<std::int32_t> currentObject() const { return m_current; }
    int viewUpdates() const { return m_viewUpdates; }

protected:
    // Whether the viewer raises an error for a call, decided before it takes effect; `number`
    // is the 1-based position of the call among all calls received. None does here.
    virtual bool fails(std::size_t /*number*/, const SceneCall& /*call*/) const { return false; }

private:
    // Records the call and throws when fails() picks it; returns the record to complete.
    SceneCall& receive(SceneMember member, std::string op, std::vector<SceneValue> args);
    SceneObject* currentTarget();
    // Records an operation on the current object and applies `change` to it when there is one;
    // the result tells whether there was.
    template <typename Change>
    bool onTarget(SceneMember member, const char* op, std::vector<SceneValue> args,
                  const Change& change) {
        SceneCall& call = receive(member, op, std::move(args));
        SceneObject* target = currentTarget();
        if (target) {
            change(*target);
        }
        call.result = target != nullptr;
        return target != nullptr;
    }

    std::vector<SceneCall> m_calls;
    std::vector<SceneObject> m_objects;
    std::string m_sceneFile;
    std::optional<std::int32_t> m_current;
    std::int32_t m_nextId = 1;
    std::size_t m_lastLoad = 0; // index of the latest LoadScene call + 1; 0 if none
    int m_viewUpdates = 0;
};

} // namespace pluvarine
