#pragma once

#include "assembly/SceneObject.h"
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
    // Writes the scene as an object file (see ObjectFileWriter) with the parts list of its
    // composition in the scene's extras; the object name becomes the scene's name (the file's
    // base name when empty); the third string is not used. An empty
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
    // Removes one object; an id not in the scene is ignored.
    void remove(std::int32_t id);
    // Places an object anew; an id not in the scene is ignored.
    void setTransform(std::int32_t id, const Matrix4d& transform);

    const std::vector<ViewerObject>& objects() const { return m_objects; }
    const ViewerObject* object(std::int32_t id) const;
    // The objects as the scene operations composed them (part file, scales, material), in the
    // order they were added: what the parts list is read from.
    std::vector<SceneObject> composition() const;
    // The drawn objects' extent in the scene frame (auxiliary objects left out); each object's
    // own is kept with it, so this costs one step per object.
    Box3 bounds() const;
    // Counts every change; a view can tell whether it is up to date.
    std::uint64_t revision() const { return m_revision; }
    // Counts every change but objects added at the end: while it stays, a view that has drawn
    // the scene can draw only the objects added since.
    std::uint64_t layoutRevision() const { return m_layoutRevision; }

    int addObserver(Observer observer);
    void removeObserver(int handle);
    void setSaveDialog(SaveDialog dialog) { m_saveDialog = std::move(dialog); }
    bool hasSaveDialog() const { return static_cast<bool>(m_saveDialog); }

    PartCache& partCache() { return *m_cache; }

private:
    ViewerObject* find(std::int32_t id);
    ViewerObject& current(const char* operation);
    std::int32_t append(std::shared_ptr<const PartModel> part, const Matrix4d& transform);
    // Sets the transform and the object's bounds with it.
    static void place(ViewerObject& object, const Matrix4d& transform);
    void notify(SceneChange change, bool appended = false);

    std::shared_ptr<PartCache> m_cache;
    MaterialCache m_materials;
    std::vector<ViewerObject> m_objects; // sorted by id; base-scene content (id 0) first
    std::int32_t m_nextId = 1;
    std::int32_t m_current = 0;
    std::uint64_t m_revision = 0;
    std::uint64_t m_layoutRevision = 0;
    std::map<int, Observer> m_observers;
    int m_nextObserver = 1;
    SaveDialog m_saveDialog;
};

} // namespace pluvarine
