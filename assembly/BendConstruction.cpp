#include "assembly/BendConstruction.h"

#include "assembly/PartCatalogue.h"
#include "assembly/PartPlacement.h"

namespace pluvarine {

namespace {

// The sizes of one bend version in millimetres. kc and ks are the cosine and sine of the
// inclined pipe's slope rounded to three decimals, and are used as they stand.
struct BendVersion {
    const char* upperFile;
    const char* lowerFile;
    double A;    // horizontal size of a bend
    double B;    // vertical size of a bend
    double Blow; // vertical size used for the lower bend's centre
    double ch;   // horizontal overlap of the inclined pipe with the bends
    double cv;   // vertical overlap of the inclined pipe with the bends
    double kc;
    double ks;
    double angle; // rotation of the inclined pipe, degrees
};

constexpr BendVersion bend72{
    parts::bend72Upper, parts::bend72Lower, 230.4, 274.6, 276.4, 30, 95, 0.95, 0.309, 72};
constexpr BendVersion bend42{
    parts::bend42Upper, parts::bend42Lower, 192.3, 307.3, 307.3, 75, 65, 0.669, 0.743, 42};

} // namespace

// The expressions keep the order of the operations as written (see ContinuousConstruction).
void buildBend(Daten& daten, SceneOperations& scene, BendAngle angle) {
    const BendVersion& v = angle == BendAngle::Deg72 ? bend72 : bend42;
    DesignRecord& design = daten.design;
    const auto [H, h, D, hs, s] = designInputs(design);

    const double Lh = D - 2 * v.A + v.ch;             // horizontal run of the inclined pipe
    const double L = Lh / v.kc;                       // its length
    const double V = L * v.ks;                        // its drop
    const double Lv = H - 186.5 - 2 * v.B - V + v.cv; // vertical pipe, ground to lower bend

    placePart(daten, scene, v.upperFile, design.firstBendId,
              {{}, {-(D - v.A / 2) / 1000, 0, (H - 186.5 - v.B / 2) / 1000 - h}, {}});
    placePart(
        daten, scene, v.lowerFile, design.secondBendId,
        {{}, {-(v.A / 2) / 1000, 0, (H - 186.5 - v.B - V - v.Blow / 2 + v.cv) / 1000 - h}, {}});
    placePart(
        daten, scene, parts::pipe, design.offsetPipeId,
        {{{1, 1, L / 500}},
         {-(v.A + Lh / 2 - v.ch / 2) / 1000, 0, (H - 186.5 - v.B - (V - v.cv) / 2) / 1000 - h},
         {{0, -1, 0, v.angle}}});
    placePart(daten, scene, parts::pipe, design.pipeId,
              {{{1, 1, Lv / 500}}, {-0.05, 0, Lv / 2000 - h}, {}});
    placePart(daten, scene, parts::standpipe, design.standpipeId,
              {{{1, 1, hs / 500}}, {-0.05, 0, hs / 2000 - h}, {}});
    placePart(daten, scene, parts::outlet, design.outletId,
              {{{1, 1, 1}}, {-(D - 50) / 1000, 0, (H - 93.25) / 1000 - h}, {}});
    placePart(daten, scene, parts::cap, design.capId,
              {{{1, 1, 1}}, {-0.05, 0, (hs + 14.7) / 1000 - h}, {}});

    design.clampCount = clampCountFor(H - 2 * v.B - V + v.cv - hs, s);
    for (int i = 0; i <= design.clampCount - 1; ++i) {
        placePart(daten, scene, parts::clamp, design.lastClampId,
                  {{}, {0.0127, 0, (Lv - i * s) / 1000 - h}, {}});
    }
    scene.UpdateView();
}

} // namespace pluvarine
