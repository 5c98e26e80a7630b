#include "assembly/MaterialChoice.h"

#include "base/ResumeNext.h"

namespace pluvarine {

const std::array<MaterialEntry, 4>& materialEntries() {
    static const std::array<MaterialEntry, 4> entries{{
        {117, "/mat/Grau.ini", {144, 144, 144}},
        {118, "/mat/Kupfer.ini", {154, 108, 89}},
        {119, "/mat/Zink.ini", {117, 117, 117}},
        {120, "/mat/Alu.ini", {178, 178, 178}},
    }};
    return entries;
}

std::optional<std::array<int, 3>> chooseMaterial(Daten& daten, SceneOperations& scene, int index) {
    if (!daten.design.modelBuilt || index < 0 ||
        index >= static_cast<int>(materialEntries().size())) {
        return std::nullopt;
    }
    const MaterialEntry& entry = materialEntries()[static_cast<std::size_t>(index)];
    daten.design.materialFile = daten.workFolder + entry.file;
    // The swatch follows the choice even when the viewer fails to recolour.
    tryStep([&] { materialStep(daten.design, scene); });
    return entry.swatchRgb;
}

void materialStep(DesignRecord& design, SceneOperations& scene) {
    const auto apply = [&](std::int32_t id) {
        scene.CurrentObject(id);
        design.viewerOk = scene.ApplyMaterial(0, design.materialFile);
    };
    if (design.bendPartsBuilt) {
        apply(design.firstBendId);
        apply(design.secondBendId);
        apply(design.offsetPipeId);
    }
    apply(design.outletId);
    apply(design.pipeId);
    apply(design.standpipeId);
    apply(design.capId);
    // The clamps of one construction have consecutive ids ending at lastClampId.
    for (int i = 0; i <= design.clampCount - 1; ++i) {
        apply(design.lastClampId - i);
    }
}

} // namespace pluvarine
