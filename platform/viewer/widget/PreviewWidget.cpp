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
    setFormat(format); // single-sampled: the multisampled frames go through m_multisampled
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
    m_settle.setSingleShot(true);
    m_settle.setInterval(kSettleMs);
    connect(&m_settle, &QTimer::timeout, this, qOverload<>(&QWidget::update));
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
    const QSize pixels = size() * devicePixelRatio();
    if (!m_multisampling) {
        // The frame stays in the widget's framebuffer: an insertion draws only what it added.
        if (!m_renderer.renderAdditions(m_scene, m_camera, pixels)) {
            m_renderer.render(m_scene, m_camera, pixels);
        }
        return;
    }
    if (moving()) {
        m_renderer.render(m_scene, m_camera, pixels);
        return;
    }
    if (!m_multisampled || m_multisampled->size() != pixels) {
        QOpenGLFramebufferObjectFormat format;
        format.setSamples(4);
        format.setAttachment(QOpenGLFramebufferObject::Depth);
        m_multisampled = std::make_unique<QOpenGLFramebufferObject>(pixels, format);
    }
    m_multisampled->bind();
    const SceneRenderer::Detail detail = m_renderer.render(m_scene, m_camera, pixels);
    m_renderer.resolve(detail, m_multisampled->handle(), defaultFramebufferObject(), pixels);
}

void PreviewWidget::startMoving() {
    m_followFit = false;
    m_settle.start(); // restarts: the multisampled frame waits until the view rests
    update();
}

void PreviewWidget::releaseGl() {
    if (!context()) {
        return;
    }
    makeCurrent();
    m_renderer.release();
    m_multisampled.reset();
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
    startMoving();
}

void PreviewWidget::mouseReleaseEvent(QMouseEvent*) {
    m_dragButton = Qt::NoButton;
}

void PreviewWidget::mouseDoubleClickEvent(QMouseEvent*) {
    resetView();
}

void PreviewWidget::wheelEvent(QWheelEvent* event) {
    m_camera.zoom(float(event->angleDelta().y()) / 120.0f);
    startMoving();
}

} // namespace pluvarine
