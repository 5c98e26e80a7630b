#pragma once

#include "assembly/Daten.h"
#include "assembly/SceneOperations.h"

#include <array>
#include <optional>

namespace pluvarine {

// The four materials of the list cbmaterial, by index: 0 grey plastic, 1 copper, 2 zinc,
// 3 aluminium.
struct MaterialEntry {
    int stringId;                 // list text in the string table (117 ... 120)
    const char* file;             // below the working folder, e.g. "/mat/Grau.ini"
    std::array<int, 3> swatchRgb; // the colour shown in Pmat
};

const std::array<MaterialEntry, 4>& materialEntries();

// The list's click: while a model is shown, stores the material file of the index, applies it
// to every part and returns the swatch colour to show; otherwise (or for an index outside
// 0..3) does nothing and returns nothing.
std::optional<std::array<int, 3>> chooseMaterial(Daten& daten, SceneOperations& scene, int index);

// Applies materialFile to every part of the assembly: bend parts while bendPartsBuilt, then
// outlet, pipe, standpipe, cap, then the clamps counting down from lastClampId. Ids no longer
// in the scene are skipped by the viewer.
void materialStep(DesignRecord& design, SceneOperations& scene);

} // namespace pluvarine
