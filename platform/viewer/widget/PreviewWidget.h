#pragma once

#include "platform/viewer/OrbitCamera.h"
#include "platform/viewer/ViewerScene.h"
#include "platform/viewer/widget/SceneRenderer.h"

#include <QOpenGLFramebufferObject>
#include <QOpenGLWidget>
#include <QPoint>
#include <QTimer>
#include <memory>

namespace pluvarine {

// The 3D preview of a ViewerScene (the main window's `Player`). Left drag orbits, right or
// middle drag pans, the wheel zooms, a double click shows the whole assembly from the default
// direction. UpdateView on the scene fits the view to the assembly. A view at rest is drawn
// with 4x multisampling; while the user drags or turns the wheel, frames are drawn without it
// (about a third of the time under llvmpipe), and one multisampled frame follows once the view
// has rested for kSettleMs. It installs its own save dialog on the scene (SaveScene with an
// empty path) and removes it again when destroyed. The scene must outlive the widget.
class PreviewWidget : public QOpenGLWidget {
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
        setUpdateBehavior(on ? NoPartialUpdate : PartialUpdate);
        update();
    }

    // The save dialog the widget installs: asks for a file name, adds ".tob" when the name has
    // no suffix; empty for cancel.
    std::string askSavePath(const std::string& objectName);

    QSize sizeHint() const override { return {257, 449}; }

    static constexpr int kSettleMs = 150;
    // True from a drag or wheel step until the view has rested for kSettleMs.
    bool moving() const { return m_settle.isActive(); }

protected:
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
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
    QTimer m_settle; // runs while the view moves
    std::unique_ptr<QOpenGLFramebufferObject> m_multisampled;
};

} // namespace pluvarine
