// The viewer's speed for the default assembly (continuous pipe, H = 3000, the main window's
// default fields): a rebuild into the real scene with a warm part cache, SaveScene, and the
// preview's frame time at 692 x 464: multisampled as when the view rests, with and without the
// resolve into the widget's framebuffer, and plain as while the view moves.
#include "BenchSupport.h"
#include "platform/viewer/OrbitCamera.h"
#include "platform/viewer/widget/SceneRenderer.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QOpenGLFramebufferObject>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace pluvarine {
namespace {

void BM_RebuildWarmCache(benchmark::State& state) {
    DefaultAssembly assembly; // reads every part file once
    for (auto _ : state)
        assembly.build();
    state.counters["objects"] = double(assembly.scene.objects().size());
    state.counters["diskReads"] = assembly.scene.partCache().diskReads();
}
BENCHMARK(BM_RebuildWarmCache)->Unit(benchmark::kMicrosecond);

void BM_SaveScene(benchmark::State& state) {
    DefaultAssembly assembly;
    QTemporaryDir dir;
    const std::string path = dir.filePath(" 1.tob").toStdString();
    for (auto _ : state)
        assembly.scene.SaveScene(path, "Fallrohr", "");
    state.counters["bytes"] = double(QFileInfo(QString::fromStdString(path)).size());
}
BENCHMARK(BM_SaveScene)->Unit(benchmark::kMillisecond);

double processCpuMilliseconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return cpuMilliseconds(usage);
}

// Arguments: the number of samples per pixel (4: the view at rest; 0: while it moves), and
// whether the multisampled frame is resolved into a single-sampled one as the widget does.
// Argument 4/1 is what the user waits for when the view comes to rest.
void BM_PreviewFrame(benchmark::State& state) {
    OffscreenGl gl;
    if (!gl.current) {
        state.SkipWithError("no OpenGL context (run under xvfb-run)");
        return;
    }
    const QSize size(692, 464);
    QOpenGLFramebufferObjectFormat fboFormat;
    fboFormat.setSamples(int(state.range(0)));
    fboFormat.setAttachment(QOpenGLFramebufferObject::Depth);
    QOpenGLFramebufferObject fbo(size, fboFormat);
    QOpenGLFramebufferObject resolved(size);
    const bool resolve = state.range(1) != 0;
    fbo.bind();
    DefaultAssembly assembly;
    OrbitCamera camera;
    camera.reset(assembly.scene.bounds(), float(size.width()) / float(size.height()));
    SceneRenderer renderer;
    renderer.render(assembly.scene, camera, size); // uploads the meshes
    gl.finish();
    const double cpuBefore = processCpuMilliseconds();
    for (auto _ : state) {
        fbo.bind();
        const SceneRenderer::Detail detail = renderer.render(assembly.scene, camera, size);
        if (resolve)
            renderer.resolve(detail, fbo.handle(), resolved.handle(), size);
        gl.finish();
    }
    // llvmpipe renders on threads of its own: their CPU time per frame tells the cost of a
    // frame apart from how busy the machine is.
    state.counters["cpuAllThreadsMs"] =
        (processCpuMilliseconds() - cpuBefore) / double(state.iterations());
    state.SetLabel(gl.renderer());
    renderer.release();
}
BENCHMARK(BM_PreviewFrame)
    ->Args({4, 0})
    ->Args({4, 1})
    ->Args({0, 0})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace
} // namespace pluvarine

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
