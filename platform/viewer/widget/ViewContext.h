#pragma once

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <memory>

namespace pluvarine {

// The one OpenGL context (3.3 core profile) every 3D view of the process draws with, current on
// an offscreen surface: the views draw into framebuffer objects of their own, so one context
// serves them all, and its shader cache and driver state are built once. Made on first use and
// gone with the last view that holds it; GUI thread only.
class ViewContext {
public:
    // The living context, or a new one; null when OpenGL cannot be had.
    static std::shared_ptr<ViewContext> acquire();

    ViewContext(const ViewContext&) = delete;
    ViewContext& operator=(const ViewContext&) = delete;

    bool makeCurrent();
    void doneCurrent();

private:
    ViewContext() = default;

    QOffscreenSurface m_surface;
    QOpenGLContext m_context;
};

} // namespace pluvarine
