#include "platform/viewer/widget/PreviewWidget.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QSurfaceFormat>
#include <QWheelEvent>

namespace pluvarine {

PreviewWidget::PreviewWidget(ViewerScene& scene, QWidget* parent)
    : QOpenGLWidget(parent), m_scene(scene) {
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setDepthBufferSize(24);
    format.setSamples(4);
    setFormat(format);
    setMinimumSize(64, 64);
    setFocusPolicy(Qt::StrongFocus);
    m_observer = m_scene.addObserver([this](SceneChange change) {
        if (change == SceneChange::FitView) {
            fitToView();
        }
        update();
    });
    m_scene.setSaveDialog([this](const std::string& name) { return askSavePath(name); });
    m_camera.reset(m_scene.bounds(), aspect());
}

PreviewWidget::~PreviewWidget() {
    m_scene.removeObserver(m_observer);
    m_scene.setSaveDialog({});
    if (context()) {
        // The base class destroys the context after this destructor: no slot of ours then.
        disconnect(context(), nullptr, this, nullptr);
    }
    releaseGl();
}

void PreviewWidget::setCamera(const OrbitCamera& camera) {
    m_camera = camera;
    m_followFit = false;
    update();
}

void PreviewWidget::fitToView() {
    m_camera.fit(m_scene.bounds(), aspect());
    m_followFit = true;
    update();
}

void PreviewWidget::resetView() {
    m_camera.reset(m_scene.bounds(), aspect());
    m_followFit = true;
    update();
}

std::string PreviewWidget::askSavePath(const std::string& objectName) {
    QString path = QFileDialog::getSaveFileName(this, QString(), QString::fromStdString(objectName),
                                                QStringLiteral("*.tob;;*.glb"));
    if (!path.isEmpty() && QFileInfo(path).suffix().isEmpty()) {
        path += QStringLiteral(".tob");
    }
    return path.toStdString();
}

void PreviewWidget::initializeGL() {
    m_renderer.initialize();
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &PreviewWidget::releaseGl,
            Qt::DirectConnection);
}

void PreviewWidget::resizeGL(int, int) {
    if (m_followFit) {
        m_camera.fit(m_scene.bounds(), aspect());
    }
}

void PreviewWidget::paintGL() {
    m_renderer.render(m_scene, m_camera, size() * devicePixelRatio());
}

void PreviewWidget::releaseGl() {
    if (!context()) {
        return;
    }
    makeCurrent();
    m_renderer.release();
    doneCurrent();
}

float PreviewWidget::aspect() const {
    return height() > 0 ? float(width()) / float(height()) : 1.0f;
}

void PreviewWidget::mousePressEvent(QMouseEvent* event) {
    m_lastMouse = event->position().toPoint();
    m_dragButton = event->button();
}

void PreviewWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    const QPoint delta = at - m_lastMouse;
    m_lastMouse = at;
    if (m_dragButton == Qt::LeftButton) {
        m_camera.orbit(float(delta.x()), float(delta.y()));
    } else if (m_dragButton == Qt::RightButton || m_dragButton == Qt::MiddleButton) {
        m_camera.pan(float(delta.x()), float(delta.y()), height());
    } else {
        return;
    }
    m_followFit = false;
    update();
}

void PreviewWidget::mouseReleaseEvent(QMouseEvent*) {
    m_dragButton = Qt::NoButton;
}

void PreviewWidget::mouseDoubleClickEvent(QMouseEvent*) {
    resetView();
}

void PreviewWidget::wheelEvent(QWheelEvent* event) {
    m_camera.zoom(float(event->angleDelta().y()) / 120.0f);
    m_followFit = false;
    update();
}

} // namespace pluvarine
