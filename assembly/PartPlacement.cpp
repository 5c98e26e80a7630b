#include "assembly/PartPlacement.h"

#include "assembly/PartCatalogue.h"
#include "base/Conversions.h"

namespace pluvarine {

DesignInputs designInputs(const DesignRecord& design) {
    return {design.heightH, design.heightH / 2000, design.wallOffset, design.standpipeHeight,
            design.clampSpacing};
}

void placePart(Daten& daten, SceneOperations& scene, const char* file, std::int32_t& id,
               const Placement& placement) {
    DesignRecord& design = daten.design;
    id = scene.AddPart(daten.workFolder + parts::resFolder + file);
    scene.CurrentObject(id);
    if (const auto& s = placement.scale) {
        design.viewerOk =
            scene.ScaleObject(toSingle((*s)[0]), toSingle((*s)[1]), toSingle((*s)[2]));
    }
    const auto& p = placement.position;
    design.viewerOk = scene.MoveObject(toSingle(p[0]), toSingle(p[1]), toSingle(p[2]));
    if (const auto& r = placement.rotation) {
        design.viewerOk = scene.RotateObject(toSingle((*r)[0]), toSingle((*r)[1]),
                                             toSingle((*r)[2]), toSingle((*r)[3]));
    }
    design.viewerOk = scene.CommitObject(true);
}

std::int16_t clampCountFor(double span, double spacing) {
    return toInt16(divide(span, spacing) + 0.5);
}

} // namespace pluvarine
