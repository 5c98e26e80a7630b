// The viewer's speed for the default assembly (continuous pipe, H = 3000, the main window's
// default fields): a rebuild into the real scene with a warm part cache, SaveScene, and the
// preview's frame time at 692 x 464: multisampled as when the view rests, with and without the
// resolve into the widget's framebuffer, and plain as while the view moves.
#include "assembly/Daten.h"
#include "assembly/PlainRebuildInputs.h"
#include "assembly/Rebuild.h"
#include "platform/viewer/OrbitCamera.h"
#include "platform/viewer/ViewerScene.h"
#include "platform/viewer/widget/SceneRenderer.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <sys/resource.h>

namespace pluvarine {
namespace {

struct DefaultAssembly {
    DefaultAssembly() {
        daten.workFolder = PLUVARINE_WORKFOLDER;
        daten.oldObjectFile = daten.workFolder + "/obj/fallrohr.tob";
        daten.design.heightH = 3000;
        daten.roof.gutterWidth = 150;
        daten.design.materialFile = daten.workFolder + "/mat/Kupfer.ini";
    }
    void build() { Rebuild(daten, scene, inputs).run(); }

    Daten daten;
    PlainRebuildInputs inputs;
    ViewerScene scene;
};

void BM_RebuildWarmCache(benchmark::State& state) {
    DefaultAssembly assembly;
    assembly.build(); // reads every part file once
    for (auto _ : state) {
        assembly.build();
    }
    state.counters["objects"] = double(assembly.scene.objects().size());
    state.counters["diskReads"] = assembly.scene.partCache().diskReads();
}
BENCHMARK(BM_RebuildWarmCache)->Unit(benchmark::kMicrosecond);

void BM_SaveScene(benchmark::State& state) {
    DefaultAssembly assembly;
    assembly.build();
    QTemporaryDir dir;
    const std::string path = dir.filePath(" 1.tob").toStdString();
    for (auto _ : state) {
        assembly.scene.SaveScene(path, "Fallrohr", "");
    }
    state.counters["bytes"] = double(QFileInfo(QString::fromStdString(path)).size());
}
BENCHMARK(BM_SaveScene)->Unit(benchmark::kMillisecond);

double processCpuMilliseconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e3 +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e3;
}

// Arguments: the number of samples per pixel (4: the view at rest; 0: while it moves), and
// whether the multisampled frame is resolved into a single-sampled one as the widget does.
// Argument 4/1 is what the user waits for when the view comes to rest.
void BM_PreviewFrame(benchmark::State& state) {
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    QOpenGLContext context;
    context.setFormat(format);
    QOffscreenSurface surface;
    surface.setFormat(format);
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface)) {
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
    assembly.build();
    OrbitCamera camera;
    camera.reset(assembly.scene.bounds(), float(size.width()) / float(size.height()));
    SceneRenderer renderer;
    renderer.render(assembly.scene, camera, size); // uploads the meshes
    context.functions()->glFinish();
    const double cpuBefore = processCpuMilliseconds();
    for (auto _ : state) {
        fbo.bind();
        const SceneRenderer::Detail detail = renderer.render(assembly.scene, camera, size);
        if (resolve) {
            renderer.resolve(detail, fbo.handle(), resolved.handle(), size);
        }
        context.functions()->glFinish();
    }
    // llvmpipe renders on threads of its own: their CPU time per frame tells the cost of a
    // frame apart from how busy the machine is.
    state.counters["cpuAllThreadsMs"] =
        (processCpuMilliseconds() - cpuBefore) / double(state.iterations());
    state.SetLabel(reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER)));
    renderer.release();
    fbo.release();
    context.doneCurrent();
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
