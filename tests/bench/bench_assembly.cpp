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

void rebuildInto(benchmark::State& state, double heightMm, const std::string& spacing) {
    Daten daten;
    daten.workFolder = "/wf"; // the recording scene reads no files
    daten.design.heightH = heightMm;
    PlainRebuildInputs inputs;
    inputs.setClampSpacingText(spacing);
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
void BM_Rebuild5m(benchmark::State& state) {
    rebuildInto(state, 5000, "1800");
}
BENCHMARK(BM_Rebuild5m)->Unit(benchmark::kMicrosecond);

// H = 5 m and 100 m with 300 mm between the clamps.
void BM_Rebuild5mSpacing300(benchmark::State& state) {
    rebuildInto(state, 5000, "300");
}
BENCHMARK(BM_Rebuild5mSpacing300)->Unit(benchmark::kMicrosecond);

void BM_Rebuild100mSpacing300(benchmark::State& state) {
    rebuildInto(state, 100000, "300");
}
BENCHMARK(BM_Rebuild100mSpacing300)->Unit(benchmark::kMicrosecond);

// The height in metres as the argument, spacing 300: the fitted complexity shows the cost is
// linear in the clamp count.
void BM_RebuildByHeight(benchmark::State& state) {
    rebuildInto(state, static_cast<double>(state.range(0)) * 1000, "300");
}
BENCHMARK(BM_RebuildByHeight)
    ->Arg(5)
    ->Arg(25)
    ->Arg(50)
    ->Arg(100)
    ->Arg(200)
    ->Complexity(benchmark::oN)
    ->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
