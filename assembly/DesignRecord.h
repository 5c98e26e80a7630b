#pragma once

#include <cstdint>
#include <string>

namespace pluvarine {

// The one design being worked on and the state of the assembly last composed from it.
// Lengths in millimetres. Plain shared data: the windows, the rebuild, the constructions, the
// material step and the insertion read and write the fields directly.
struct DesignRecord {
    // Design values.
    double heightH = 0;         // height H of the downpipe, ground to the top of the outlet
    double wallOffset = 0;      // overhang + gutter width - 60, computed by the rebuild
    double standpipeHeight = 0; // from txths
    double clampSpacing = 0;    // from txtdR

    // Assembly state: object ids in the viewer's scene.
    std::int32_t outletId = 0;
    std::int32_t pipeId = 0;
    std::int32_t offsetPipeId = 0;
    std::int32_t firstBendId = 0;
    std::int32_t secondBendId = 0;
    std::int32_t standpipeId = 0;
    std::int32_t capId = 0;
    std::int32_t lastClampId = 0; // clamps have ids lastClampId, lastClampId - 1, ...
    std::int16_t clampCount = 0;

    bool viewerOk = false; // result of the latest scene operation that returns one; never tested
    bool modelBuilt = false;
    bool bendPartsBuilt = false;
    bool constructionAnswered = false;
    bool bendChosen = false;

    std::string materialFile; // full path of the chosen material file; empty until a pick
};

} // namespace pluvarine
