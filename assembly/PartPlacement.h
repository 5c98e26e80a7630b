#pragma once

#include "assembly/Daten.h"
#include "assembly/SceneOperations.h"

#include <array>
#include <cstdint>
#include <optional>

namespace pluvarine {

// Where one part goes, computed in double precision (metres, degrees). Each number is rounded
// to single precision only when it is handed to the viewer.
struct Placement {
    std::optional<std::array<double, 3>> scale;    // none for clamps and bends
    std::array<double, 3> position{};              // the part's centre
    std::optional<std::array<double, 4>> rotation; // axis x, y, z and angle; inclined pieces
};

// The record's values every construction starts from, read once at its start (mm), and h,
// half the height in metres: the scene's vertical origin.
struct DesignInputs {
    double H;  // heightH
    double h;  // H / 2000
    double D;  // wallOffset
    double hs; // standpipeHeight
    double s;  // clampSpacing
};
DesignInputs designInputs(const DesignRecord& design);

// Places one part the same way in every construction: AddPart with workFolder + "/res/" + file
// (the id goes into `id` at once), CurrentObject, ScaleObject, MoveObject, RotateObject,
// CommitObject(true). Each Boolean result lands in viewerOk. A viewer error or a number beyond
// single precision throws and leaves the part as far as it got.
void placePart(Daten& daten, SceneOperations& scene, const char* file, std::int32_t& id,
               const Placement& placement);

// The number of clamps for the stretch `span` (mm) at the spacing s (mm): span / s plus 0.5,
// rounded half to even to a 16-bit integer. Throws for s = 0 and for a count beyond 16 bits.
std::int16_t clampCountFor(double span, double spacing);

} // namespace pluvarine
