#include "base/ResumeNext.h"

namespace pluvarine {

bool tryStep(const Step& step, const StepFailureObserver& onFailure) {
    try {
        step();
        return true;
    } catch (const RuntimeError& error) {
        if (onFailure) {
            onFailure(error);
        }
        return false;
    }
}

void resumeNext(std::initializer_list<Step> steps, const StepFailureObserver& onFailure) {
    for (const Step& step : steps) {
        tryStep(step, onFailure);
    }
}

} // namespace pluvarine
