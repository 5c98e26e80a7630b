// One rebuild into the recording scene, as the refresh button runs it: reset, fields, the
// continuous construction and the material step. The cost grows with the clamp count only.
// Expected: both the 5 m and the 100 m rebuild well under a millisecond, linear in the clamps.

#include "assembly/Daten.h"
#include "assembly/PlainRebuildInputs.h"
#include "assembly/Rebuild.h"
#include "assembly/RecordingScene.h"

#include <benchmark/benchmark.h>
#include <string>

namespace {

using namespace pluvarine;

// Arguments: the height H in metres and the clamp spacing in millimetres.
void BM_Rebuild(benchmark::State& state) {
    Daten daten;
    daten.workFolder = "/wf"; // the recording scene reads no files
    daten.design.heightH = double(state.range(0)) * 1000;
    PlainRebuildInputs inputs;
    inputs.setClampSpacingText(std::to_string(state.range(1)));
    RecordingScene scene; // lives on, as the viewer does; each rebuild resets its scene
    Rebuild rebuild(daten, scene, inputs);
    for (auto _ : state) {
        scene.clearCalls(); // so the recorded calls do not pile up
        rebuild.run();
        benchmark::DoNotOptimize(scene.calls().data());
    }
    state.counters["clamps"] = daten.design.clampCount;
    state.SetComplexityN(daten.design.clampCount);
}

// H = 5 m with the default spacing of 1800 mm.
BENCHMARK(BM_Rebuild)->Args({5, 1800})->Unit(benchmark::kMicrosecond);

// Spacing 300 from 5 m to 200 m: the fitted complexity shows the cost is linear in the clamp
// count.
BENCHMARK(BM_Rebuild)
    ->ArgsProduct({{5, 25, 50, 100, 200}, {300}})
    ->Complexity(benchmark::oN)
    ->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
