#pragma once

#include "assembly/Daten.h"
#include "assembly/PlainRebuildInputs.h"
#include "assembly/Rebuild.h"
#include "platform/viewer/ViewerScene.h"

#include <QElapsedTimer>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <sys/resource.h>

namespace pluvarine {

// The main window's default fields: continuous pipe, H = 3000, built into the real scene.
struct DefaultAssembly {
    DefaultAssembly() {
        daten.workFolder = PLUVARINE_WORKFOLDER;
        daten.oldObjectFile = daten.workFolder + "/obj/fallrohr.tob";
        daten.design.heightH = 3000;
        daten.roof.gutterWidth = 150;
        daten.design.materialFile = daten.workFolder + "/mat/Kupfer.ini";
        build();
    }
    void build() { Rebuild(daten, scene, inputs).run(); }

    Daten daten;
    PlainRebuildInputs inputs;
    ViewerScene scene;
};

// An OpenGL 3.3 core context, current on an offscreen surface while `current`.
struct OffscreenGl {
    explicit OffscreenGl(int depthBits = -1) {
        QSurfaceFormat format;
        format.setVersion(3, 3);
        format.setProfile(QSurfaceFormat::CoreProfile);
        format.setDepthBufferSize(depthBits);
        context.setFormat(format);
        surface.setFormat(format);
        surface.create();
        current = context.create() && context.makeCurrent(&surface);
    }
    void finish() { context.functions()->glFinish(); }
    const char* renderer() {
        return reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER));
    }

    QOffscreenSurface surface;
    QOpenGLContext context; // destroyed first, which releases it from the surface
    bool current = false;
};

// User and system time, all threads.
inline double cpuMilliseconds(const rusage& usage) {
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e3 +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e3;
}

inline double elapsedMs(const QElapsedTimer& clock) {
    return double(clock.nsecsElapsed()) / 1e6;
}

} // namespace pluvarine
