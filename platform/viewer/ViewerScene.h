#pragma once

#include "assembly/SceneOperations.h"
#include "platform/viewer/Box3.h"
#include "platform/viewer/MaterialCache.h"
#include "platform/viewer/PartCache.h"
#include "platform/viewer/SceneChange.h"
#include "platform/viewer/ViewerObject.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace pluvarine {

// The preview's scene and the ten scene operations on it.
//
// Placement semantics: each transform operation acts on the object as it stands in the scene,
// in the order called, about the object's reference point (the origin of the part's frame):
//   ScaleObject(s)      M := T(c) * S * T(-c) * M   (scale along the scene's x, y, z)
//   MoveObject(p)       M := T(p - c) * M           (the reference point goes to p)
//   RotateObject(a, g)  M := T(c) * R(a, g) * T(-c) * M
// where c is the reference point's present position. The constructions' order scale, move,
// rotate therefore gives M = T(p) * R * S: scaled about the centre, centre at p, turned about
// the centre. R follows the right-hand rule: axis (0, -1, 0) with a positive angle turns +z
// towards -x.
//
// Ids count up from 1 across the whole run, also across LoadScene. Failures throw
// RuntimeError (ViewerError): a part or scene file that cannot be read, a transform of an
// object that is not in the scene, a file that cannot be written.
class ViewerScene : public SceneOperations {
public:
    using Observer = std::function<void(SceneChange)>;
    // Asks the user for a file to save the scene to; returns the path, or empty for cancel.
    using SaveDialog = std::function<std::string(const std::string& objectName)>;

    explicit ViewerScene(std::shared_ptr<PartCache> cache = nullptr);

    // Replaces the scene: everything is removed first, then the base scene's content (no id)
    // is added. A missing or unreadable file leaves the scene empty and throws.
    void LoadScene(const std::string& sceneFile) override;
    std::int32_t AddPart(const std::string& partFile) override;
    // Any id is accepted; operations on an id that is not in the scene fail (transforms,
    // commit) or are skipped (materials).
    void CurrentObject(std::int32_t id) override;
    bool ScaleObject(float sx, float sy, float sz) override;
    bool MoveObject(float x, float y, float z) override;
    bool RotateObject(float ax, float ay, float az, float angle) override;
    bool CommitObject(bool flag) override;
    // Tells the observers to fit the view to the assembly.
    void UpdateView() override;
    // Empty path: the part's own look (true). A file that is missing or not a material file:
    // the part's own look (false). A current id no longer in the scene: nothing (false).
    bool ApplyMaterial(std::int32_t slot, const std::string& materialFile) override;
    // Writes the scene as an object file (see ObjectFileWriter); the object name becomes the
    // scene's name (the file's base name when empty); the third string is not used. An empty
    // path asks the save dialog; cancel (or no dialog) writes nothing and returns false.
    bool SaveScene(const std::string& path, const std::string& objectName,
                   const std::string& third) override;

    // General use (the stand-in host's 3D view): objects that do not come from part files.
    std::int32_t addMesh(std::shared_ptr<const MeshData> mesh, const Matrix4d& transform,
                         const SurfaceLook& look, const std::string& name = {});
    // Adds a GLB file (for instance an object file) as one object; `look` replaces its own.
    // The file is read every time (object files change). Throws like AddPart.
    std::int32_t addFile(const std::string& glbPath, const Matrix4d& transform,
                         const std::optional<SurfaceLook>& look = std::nullopt);
    // Removes every object; ids keep counting.
    void clear();

    const std::vector<ViewerObject>& objects() const { return m_objects; }
    const ViewerObject* object(std::int32_t id) const;
    // The drawn objects' extent in the scene frame (auxiliary objects left out).
    Box3 bounds() const;

    int addObserver(Observer observer);
    void removeObserver(int handle);
    void setSaveDialog(SaveDialog dialog) { m_saveDialog = std::move(dialog); }
    bool hasSaveDialog() const { return static_cast<bool>(m_saveDialog); }

    PartCache& partCache() { return *m_cache; }

private:
    ViewerObject* find(std::int32_t id);
    ViewerObject& current(const char* operation);
    std::int32_t append(std::shared_ptr<const PartModel> part, const Matrix4d& transform);
    void notify(SceneChange change);

    std::shared_ptr<PartCache> m_cache;
    MaterialCache m_materials;
    std::vector<ViewerObject> m_objects; // sorted by id; base-scene content (id 0) first
    std::int32_t m_nextId = 1;
    std::int32_t m_current = 0;
    std::map<int, Observer> m_observers;
    int m_nextObserver = 1;
    SaveDialog m_saveDialog;
};

} // namespace pluvarine
