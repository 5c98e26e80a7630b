#pragma once

#include "assembly/Construction.h"
#include "assembly/DesignRecord.h"
#include "assembly/RecordingScene.h"

#include <string>

namespace pluvarine {

// What one compose run produced.
struct ComposeResult {
    Construction construction = Construction::None;
    bool questionAsked = false;
    const DesignRecord& design;
    const RecordingScene& scene;
};

// The JSON report: construction, questionAsked, clampCount, the parts of the final scene in
// placing order, the parts list read off them and, with `withCalls`, every scene operation of the
// run. Numbers handed to the viewer are written as the shortest text that reads back to exactly the
// same single value. One part and one call per line, so the report diffs and greps well.
std::string composeReport(const ComposeResult& result, bool withCalls);

// The shortest decimal text that reads back to exactly `value` (JSON null if not finite).
std::string shortestFloatText(float value);

} // namespace pluvarine
