#pragma once

#include "assembly/Construction.h"
#include "assembly/Daten.h"
#include "assembly/RebuildInputs.h"
#include "assembly/SceneOperations.h"
#include "base/ResumeNext.h"

#include <optional>

namespace pluvarine {

// The one procedure that turns the present inputs into an assembly in the preview: resets the
// scene, takes the numeric fields into the design record, chooses the construction by the
// roof overhang (asking the construction question when the choice is open), runs it and then
// the material step. Started by refresh, the bend-angle buttons, the wall pick and its timer,
// adopting the roof details, and the answer to the question.
class Rebuild {
public:
    Rebuild(Daten& daten, SceneOperations& scene, RebuildInputs& inputs);

    void run();

    // The answers of the choice dialog (case 1): each records the answer and rebuilds.
    void answerContinuous(); // "continous downpipe": also disables O42 and O72
    void answerBend();       // "bend construction"

    // Sees every step that failed and was skipped (traces, tests).
    void setFailureObserver(StepFailureObserver observer);

    // The construction the latest run composed (None when it built nothing).
    Construction lastConstruction() const { return m_lastConstruction; }

private:
    // The numeric value of txtÜd, read afresh for each test; none when it is not a number.
    std::optional<double> overhang() const;
    // One construction, modelBuilt := true and the material step: three steps.
    void build(Construction construction);
    void buildBendByAngle();
    void buildAnswered();
    // Records the answer to the construction question and rebuilds.
    void answer(bool bend);

    Daten& m_daten;
    SceneOperations& m_scene;
    RebuildInputs& m_inputs;
    StepFailureObserver m_onFailure;
    Construction m_lastConstruction = Construction::None;
};

} // namespace pluvarine
