#pragma once

#include "assembly/FlatExtras.h"
#include "platform/viewer/ViewerObject.h"

#include <string>
#include <vector>

namespace pluvarine {

// The host object file: a glTF 2.0 binary (GLB) of the whole scene in metres, +Y up as glTF
// has it (GltfAxes.h). One node per object, named after its part and id, carrying the object's
// transform turned to +Y up as a matrix and flat extras {"id": n} ({"auxiliary": true} as well
// for auxiliary objects). Meshes are shared by the objects of one part file with the same look;
// materials are metallic-roughness factors. The scene's name is the object name.
class ObjectFileWriter {
public:
    // `sceneExtras` become the scene's extras as flat values.
    static std::string toGlb(const std::vector<ViewerObject>& objects, const std::string& name,
                             const FlatExtras& sceneExtras = {});

    // Writes the bytes through AtomicFile, so the target is either the old file or the complete
    // new one, and an interrupted write leaves only a hidden temporary file that no listing of
    // ordinary files (the project archive's) sees. Throws RuntimeError (ViewerError) on failure.
    static void writeFile(const std::string& path, const std::string& bytes);
};

} // namespace pluvarine
