#pragma once

#include <cstdint>
#include <string>

namespace pluvarine {

// The viewer's member numbers: the identity of each scene operation.
enum class SceneMember : int {
    LoadScene = 9,
    CurrentObject = 58,
    UpdateView = 108,
    ApplyMaterial = 120,
    AddPart = 128,
    ScaleObject = 131,
    CommitObject = 132,
    SaveScene = 134,
    RotateObject = 192,
    MoveObject = 193,
};

// The only way the program talks to the 3D viewer. Lengths are metres in the scene frame
// (z up, x perpendicular to the wall with the assembly on the negative side, y along the wall),
// angles degrees. Every number arrives as single precision. An operation the viewer cannot
// carry out throws RuntimeError (number ViewerError), which ends the calling construction.
class SceneOperations {
public:
    virtual ~SceneOperations() = default;

    // 9: replaces the whole scene by the content of the scene file.
    virtual void LoadScene(const std::string& sceneFile) = 0;
    // 128: adds the part file as a new object; ids are consecutive across the whole run.
    virtual std::int32_t AddPart(const std::string& partFile) = 0;
    // 58: the target of the following transform, commit and material operations.
    virtual void CurrentObject(std::int32_t id) = 0;
    // 131: scale about the reference point (the part's centre).
    virtual bool ScaleObject(float sx, float sy, float sz) = 0;
    // 193: places the reference point at (x, y, z).
    virtual bool MoveObject(float x, float y, float z) = 0;
    // 192: rotation through `angle` degrees about the axis through the reference point, by the
    // right-hand rule: axis (0, -1, 0) with a positive angle tilts the top of a vertical piece
    // towards -x.
    virtual bool RotateObject(float ax, float ay, float az, float angle) = 0;
    // 132: completes the current object at its final placement.
    virtual bool CommitObject(bool flag) = 0;
    // 108: brings the preview up to date; afterwards the whole assembly is visible.
    virtual void UpdateView() = 0;
    // 120: gives the current object the material of the material file (slot always 0). An
    // empty or missing path leaves the part's own look; an id no longer in the scene is skipped.
    virtual bool ApplyMaterial(std::int32_t slot, const std::string& materialFile) = 0;
    // 134: writes the scene as a host object file; an empty path lets the viewer ask the user.
    virtual bool SaveScene(const std::string& path, const std::string& objectName,
                           const std::string& third) = 0;
};

} // namespace pluvarine
