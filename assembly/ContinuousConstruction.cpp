#include "assembly/ContinuousConstruction.h"

#include "assembly/PartCatalogue.h"
#include "assembly/PartPlacement.h"

namespace pluvarine {

// Every expression keeps the order of the operations as written, so the single-precision
// values handed to the viewer come out bit for bit the same wherever they are recomputed.
void buildContinuous(Daten& daten, SceneOperations& scene) {
    DesignRecord& design = daten.design;
    const auto [H, h, D, hs, s] = designInputs(design);
    const double d = D / 1000; // metres

    placePart(daten, scene, parts::outlet, design.outletId,
              {{{1, 1, 1}}, {-0.05 - d, 0, (H / 1000 - 186.5 / 2000) - h}, {}});
    placePart(daten, scene, parts::pipe, design.pipeId,
              {{{1, 1, (H - 186.5) / 500}}, {-100.0 / 2000 - d, 0, (H - 186.5) / 2000 - h}, {}});
    std::int32_t dummyId = 0; // only lives during the construction
    placePart(daten, scene, parts::dummy, dummyId, {{{D / 100000, 0.1, 0.1}}, {-d, 0, 1.0}, {}});
    placePart(daten, scene, parts::standpipe, design.standpipeId,
              {{{1, 1, hs / 500}}, {-50.0 / 1000 - d, 0, hs / 2000 - h}, {}});
    placePart(daten, scene, parts::cap, design.capId,
              {{{1, 1, 1}}, {-100.0 / 2000 - d, 0, (hs + 29.4 / 2) / 1000 - h}, {}});

    design.clampCount = clampCountFor(((H - 549.2) + 95) - hs, s);
    for (int i = 0; i <= design.clampCount - 1; ++i) {
        placePart(daten, scene, parts::clamp, design.lastClampId,
                  {{},
                   {233.4 / 2000 - 108.0 / 1000 + 4.0 / 1000 - d, 0,
                    ((H - 549.2) + 95) / 1000 - s * i / 1000 - h},
                   {}});
    }
    scene.UpdateView();
}

} // namespace pluvarine
