#include "platform/viewer/widget/PreviewWidget.h"

#include "platform/viewer/widget/ViewContext.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMouseEvent>
#include <QOpenGLFunctions>
#include <QPainter>
#include <QWheelEvent>

namespace pluvarine {

PreviewWidget::PreviewWidget(ViewerScene& scene, QWidget* parent)
    : QWidget(parent), m_scene(scene) {
    // Each frame covers the whole widget.
    setAttribute(Qt::WA_OpaquePaintEvent);
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

QImage PreviewWidget::grabFramebuffer() {
    renderFrame();
    return m_image;
}

void PreviewWidget::makeCurrent() {
    if (!m_context) {
        m_context = ViewContext::acquire();
    }
    if (m_context) {
        m_context->makeCurrent();
    }
}

void PreviewWidget::doneCurrent() {
    if (m_context) {
        m_context->doneCurrent();
    }
}

void PreviewWidget::paintEvent(QPaintEvent*) {
    renderFrame();
    QPainter painter(this);
    if (m_image.isNull()) {
        painter.fillRect(rect(), SceneRenderer::backgroundColor());
    } else {
        painter.drawImage(QPoint(), m_image);
    }
    // The window flushes what was painted before a queued call runs.
    QMetaObject::invokeMethod(this, &PreviewWidget::framePresented, Qt::QueuedConnection);
}

void PreviewWidget::resizeEvent(QResizeEvent*) {
    if (m_followFit) {
        m_camera.fit(m_scene.bounds(), aspect());
    }
}

void PreviewWidget::renderFrame() {
    const QSize pixels = size() * devicePixelRatio();
    makeCurrent();
    if (!m_context || pixels.isEmpty()) {
        m_image = QImage();
        return;
    }
    if (!m_frame || m_frame->size() != pixels) {
        // With its depth: objects added to the scene are drawn over the last frame.
        m_frame =
            std::make_unique<QOpenGLFramebufferObject>(pixels, QOpenGLFramebufferObject::Depth);
    }
    m_frame->bind();
    paintGL(pixels);
    if (m_image.size() != pixels) {
        m_image = QImage(pixels, QImage::Format_RGB32);
    }
    m_image.setDevicePixelRatio(devicePixelRatio());
    // BGRA bytes are Format_RGB32's pixels; rows come bottom up.
    static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "BGRA bytes are RGB32 pixels on little endian");
    m_frame->bind();
    QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
    gl->glPixelStorei(GL_PACK_ALIGNMENT, 4);
    gl->glReadPixels(0, 0, pixels.width(), pixels.height(), GL_BGRA, GL_UNSIGNED_BYTE,
                     m_image.bits());
    m_image.mirror();
    QOpenGLFramebufferObject::bindDefault();
    doneCurrent();
}

void PreviewWidget::paintGL(const QSize& pixels) {
    if (!m_multisampling) {
        // The frame stays in m_frame: an insertion draws only what it added.
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
    m_renderer.resolve(detail, m_multisampled->handle(), m_frame->handle(), pixels);
}

void PreviewWidget::startMoving() {
    m_followFit = false;
    m_settle.start(); // restarts: the multisampled frame waits until the view rests
    update();
}

void PreviewWidget::releaseGl() {
    if (!m_context) {
        return;
    }
    makeCurrent();
    m_renderer.release();
    m_multisampled.reset();
    m_frame.reset();
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
