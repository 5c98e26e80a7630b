#pragma once

#include "base/RuntimeError.h"

#include <functional>
#include <initializer_list>

namespace pluvarine {

using Step = std::function<void()>;
using StepFailureObserver = std::function<void(const RuntimeError&)>;

// Runs the steps in order. A step that throws a RuntimeError is abandoned on the spot and the
// next step runs: this is the one mechanism behind every procedure that "skips a failing step
// and goes on". The observer, when given, sees each failure (traces, tests, error messages).
void resumeNext(std::initializer_list<Step> steps, const StepFailureObserver& onFailure = {});

// Runs one step the same way; returns false when it failed.
bool tryStep(const Step& step, const StepFailureObserver& onFailure = {});

} // namespace pluvarine
