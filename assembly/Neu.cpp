#include "assembly/Neu.h"

#include "assembly/PartCatalogue.h"
#include "base/RuntimeError.h"

#include <filesystem>
#include <system_error>

namespace pluvarine {

void Neu(Daten& daten, SceneOperations& scene) {
    daten.design.modelBuilt = false;
    scene.LoadScene(daten.workFolder + parts::baseScene);
    if (daten.oldObjectFile.empty()) {
        return;
    }
    const std::filesystem::path oldFile(daten.oldObjectFile);
    std::error_code error;
    if (std::filesystem::exists(oldFile, error) && !std::filesystem::remove(oldFile, error)) {
        throw RuntimeError(RuntimeError::PathFileAccess,
                           "cannot delete " + daten.oldObjectFile + ": " + error.message());
    }
}

} // namespace pluvarine
