#include "assembly/KinkConstruction.h"

#include "assembly/PartCatalogue.h"
#include "assembly/PartPlacement.h"

#include <cmath>
#include <numbers>

namespace pluvarine {

namespace {

// The offset of one kink member: the inclined pipe of length L rises R over its horizontal run
// W - a - 30, at the inclination beta above the horizontal (the complement of its angle).
struct KinkOffset {
    double L;
    double R;
};

KinkOffset kinkOffset(double W, double a, double betaDegrees) {
    const double beta = betaDegrees * std::numbers::pi / 180;
    const double L = ((W - a) - 30) / std::cos(beta);
    return {L, std::sin(beta) * L};
}

// The clamps hang from H - 549.2 - R + 95 down, one spacing apart, 12.7 mm behind the wall.
void placeClampsAndUpdate(Daten& daten, SceneOperations& scene, double R) {
    DesignRecord& design = daten.design;
    const auto [H, h, W, hs, s] = designInputs(design);
    design.clampCount = clampCountFor((((H - 549.2) - R) + 95) - hs, s);
    for (int i = 0; i <= design.clampCount - 1; ++i) {
        placePart(daten, scene, parts::clamp, design.lastClampId,
                  {{},
                   {233.4 / 2000 - 108.0 / 1000 + 4.0 / 1000, 0,
                    (((H - 549.2) - R) + 95) / 1000 - s * i / 1000 - h},
                   {}});
    }
    scene.UpdateView();
}

Placement outletPlacement(double H, double W) {
    return {{{1, 1, 1}}, {-W / 1000 + 100.0 / 2000, 0, H / 1000 - 186.5 / 2000 - H / 2000}, {}};
}

Placement standpipePlacement(double H, double hs) {
    return {{{1, 1, hs / 500}}, {-50.0 / 1000, 0, hs / 2000 - H / 2000}, {}};
}

Placement capPlacement(double H, double hs) {
    return {{{1, 1, 1}}, {-100.0 / 2000, 0, (hs + 29.4 / 2) / 1000 - H / 2000}, {}};
}

void buildKink72(Daten& daten, SceneOperations& scene) {
    DesignRecord& design = daten.design;
    const auto [H, h, W, hs, s] = designInputs(design);
    const auto [L, R] = kinkOffset(W, 102.1, 18);
    const double Lv = (((H - R) - 186.5) - 96.2) + 10;

    placePart(daten, scene, parts::pipe, design.pipeId,
              {{{1, 1, Lv / 500}}, {-100.0 / 2000, 0, Lv / 2000 - h}, {}});
    placePart(daten, scene, parts::pipe, design.offsetPipeId,
              {{{1, 1, L / 500}},
               {-W / 2000, 0, H / 1000 - 186.5 / 1000 - R / 2000 - 96.2 / 2000 + 5.0 / 1000 - h},
               {{0, -1, 0, 72}}});
    placePart(daten, scene, parts::kink72, design.firstBendId,
              {{{1, 1, 1}},
               {-102.1 / 2000, 0,
                H / 1000 - R / 1000 - 186.5 / 1000 - 96.2 / 1000 + 96.2 / 2000 + 10.0 / 1000 - h},
               {}});
    placePart(daten, scene, parts::kink72, design.secondBendId,
              {{{1, 1, 1}},
               {-W / 1000 + 102.1 / 2000, 0, H / 1000 - 96.2 / 2000 - 186.5 / 1000 - h},
               {{0, -1, 0, 180}}});
    placePart(daten, scene, parts::standpipe, design.standpipeId, standpipePlacement(H, hs));
    placePart(daten, scene, parts::outlet, design.outletId, outletPlacement(H, W));
    placePart(daten, scene, parts::cap, design.capId, capPlacement(H, hs));
    placeClampsAndUpdate(daten, scene, R);
}

void buildKink42(Daten& daten, SceneOperations& scene) {
    DesignRecord& design = daten.design;
    const auto [H, h, W, hs, s] = designInputs(design);
    const auto [L, R] = kinkOffset(W, 106, 48);
    const double Lv = ((H - 186.5) - R) - 67.4;

    // This member places the outlet first.
    placePart(daten, scene, parts::outlet, design.outletId, outletPlacement(H, W));
    placePart(daten, scene, parts::pipe, design.pipeId,
              {{{1, 1, Lv / 500}}, {-100.0 / 2000, 0, Lv / 2000 - h}, {}});
    placePart(daten, scene, parts::pipe, design.offsetPipeId,
              {{{1, 1, (L + 30) / 500}},
               {-W / 2000, 0, H / 1000 - R / 2000 - 186.5 / 1000 - 30.0 / 1000 - h},
               {{0, -1, 0, 42}}});
    placePart(
        daten, scene, parts::kink42, design.firstBendId,
        {{{1, 1, 1}},
         {-103.0 / 2000, 0, H / 1000 - 186.5 / 1000 - R / 1000 - 67.4 / 1000 + 67.4 / 2000 - h},
         {}});
    placePart(
        daten, scene, parts::kink42, design.secondBendId,
        {{{1, 1, 1}},
         {-W / 1000 + 106.0 / 2000, 0, H / 1000 - 186.5 / 1000 - 67.4 / 2000 + 10.0 / 1000 - h},
         {{0, -1, 0, 180}}});
    placePart(daten, scene, parts::standpipe, design.standpipeId, standpipePlacement(H, hs));
    placePart(daten, scene, parts::cap, design.capId, capPlacement(H, hs));
    placeClampsAndUpdate(daten, scene, R);
}

} // namespace

void buildKink(Daten& daten, SceneOperations& scene, BendAngle angle) {
    if (angle == BendAngle::Deg72) {
        buildKink72(daten, scene);
    } else {
        buildKink42(daten, scene);
    }
}

} // namespace pluvarine
