#pragma once

#include "platform/viewer/OrbitCamera.h"
#include "platform/viewer/ViewerScene.h"
#include "platform/viewer/widget/SceneRenderer.h"

#include <QImage>
#include <QOpenGLFramebufferObject>
#include <QPoint>
#include <QTimer>
#include <QWidget>
#include <memory>

namespace pluvarine {

class ViewContext;

// The 3D preview of a ViewerScene (the main window's `Player`). Left drag orbits, right or
// middle drag pans, the wheel zooms, a double click shows the whole assembly from the default
// direction. UpdateView on the scene fits the view to the assembly. A view at rest is drawn
// with 4x multisampling; while the user drags or turns the wheel, frames are drawn without it
// (about a third of the time under llvmpipe), and one multisampled frame follows once the view
// has rested for kSettleMs. It installs its own save dialog on the scene (SaveScene with an
// empty path) and removes it again when destroyed. The scene must outlive the widget.
//
// Every paint event draws a frame, as a QOpenGLWidget's would, but into a framebuffer of the one
// OpenGL context all previews share (ViewContext), and the widget paints the frame's pixels: the
// window stays a plain raster window, so a window with a preview costs no GL context, compositor
// or buffer swap of its own, and GL work starts with the first frame a preview actually draws.
class PreviewWidget : public QWidget {
    Q_OBJECT
public:
    explicit PreviewWidget(ViewerScene& scene, QWidget* parent = nullptr);
    ~PreviewWidget() override;

    ViewerScene& scene() { return m_scene; }
    const OrbitCamera& camera() const { return m_camera; }
    void setCamera(const OrbitCamera& camera);

    // Aims the camera at the whole assembly, keeping the direction.
    void fitToView();
    // True until the user moves the view: a fit (UpdateView, a double click) turns it on again.
    bool followsFit() const { return m_followFit; }
    // Default direction, then fit.
    void resetView();

    // The wall backdrop behind the assembly (on by default); off for views of whole buildings.
    void setBackdrop(bool on) {
        m_renderer.setBackdrop(on);
        update();
    }

    // Coarser meshes for objects that cover few pixels (off by default); for views of whole
    // buildings with many objects. Set before the widget is first shown.
    void setLevelsOfDetail(bool on) { m_renderer.setLevelsOfDetail(on); }

    // Multisampled frames when the view rests (on by default); off, every frame is plain and
    // stays in the widget's framebuffer, so that objects added to the scene are drawn over
    // the last frame when nothing else changed. Set before the widget is first shown.
    void setMultisampling(bool on) {
        m_multisampling = on;
        update();
    }

    // The save dialog the widget installs: asks for a file name, adds ".tob" when the name has
    // no suffix; empty for cancel.
    std::string askSavePath(const std::string& objectName);

    QSize sizeHint() const override { return {257, 449}; }

    static constexpr int kSettleMs = 150;
    // True from a drag or wheel step until the view has rested for kSettleMs.
    bool moving() const { return m_settle.isActive(); }

    // Draws a frame, as a paint event would, and returns it.
    QImage grabFramebuffer();
    // The shared context, current (created on first use), for drawing beside the widget.
    void makeCurrent();
    void doneCurrent();

signals:
    // A frame has been drawn and handed to the window system (queued after the paint event,
    // whose flush to the screen comes first).
    void framePresented();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    // Renders into m_frame and reads it back into m_image.
    void renderFrame();
    void paintGL(const QSize& pixels);
    float aspect() const;
    void releaseGl();
    void startMoving();

    ViewerScene& m_scene;
    int m_observer = 0;
    OrbitCamera m_camera;
    SceneRenderer m_renderer;
    bool m_followFit = true; // refit on resize until the user moves the view
    bool m_multisampling = true;
    QPoint m_lastMouse;
    Qt::MouseButton m_dragButton = Qt::NoButton;
    QTimer m_settle;                                   // runs while the view moves
    std::shared_ptr<ViewContext> m_context;            // from the first frame on
    std::unique_ptr<QOpenGLFramebufferObject> m_frame; // the frame, kept for the next one
    std::unique_ptr<QOpenGLFramebufferObject> m_multisampled;
    QImage m_image; // m_frame's pixels, as painted
};

} // namespace pluvarine
