#include "platform/tectaro/widgets/PlanView.h"

#include "platform/tectaro/PlanGeometry.h"
#include "platform/tectaro/TectaroHost.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QWheelEvent>
#include <cmath>

namespace pluvarine {

namespace {
const QColor kBackground(250, 250, 247);
const QColor kGrid(228, 228, 222);
const QColor kGridMajor(205, 205, 198);
const QColor kWallFill(150, 150, 150);
const QColor kWallLine(60, 60, 60);
const QColor kRoofLine(176, 64, 40);
const QColor kElement(20, 90, 200);
} // namespace

PlanView::PlanView(TectaroHost& host, QWidget* parent) : QWidget(parent), m_host(host) {
    setObjectName(QStringLiteral("tectaroPlan"));
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    connect(&host, &TectaroHost::projectChanged, this, [this]() {
        m_followFit = true;
        fitToBuilding();
    });
    connect(&host, &TectaroHost::elementsChanged, this, qOverload<>(&QWidget::update));
    connect(&host, &TectaroHost::clickModeChanged, this, [this]() { updateCursor(); });
    updateCursor();
}

QTransform PlanView::planToWidget() const {
    // Plan y points north (up); widget y points down.
    QTransform t;
    t.translate(width() / 2.0, height() / 2.0);
    t.scale(m_scale, -m_scale);
    t.translate(-m_centre.x(), -m_centre.y());
    return t;
}

QPointF PlanView::toWidget(QPointF plan) const {
    return planToWidget().map(plan);
}

QPointF PlanView::toPlan(QPointF widget) const {
    return planToWidget().inverted().map(widget);
}

void PlanView::fitToBuilding() {
    const auto building = m_host.building();
    QPolygonF points;
    for (const Wall& wall : building->walls) {
        for (const QPointF& p : wall.exteriorFace()) {
            points << p;
        }
    }
    for (const Roof& roof : building->roofs) {
        for (const RoofFace& face : roof.faces) {
            points << face.outline;
        }
    }
    QRectF box = points.isEmpty() ? QRectF(0, 0, 10, 8) : points.boundingRect();
    box.adjust(-1.5, -1.5, 1.5, 1.5);
    m_centre = box.center();
    m_scale = std::max(1.0, std::min(width() / box.width(), height() / box.height()));
    update();
}

bool PlanView::clickAt(QPointF plan) {
    return m_host.click(plan);
}

void PlanView::updateCursor() {
    const auto& request = m_host.clickRequest();
    if (request && !request->cursor.isNull()) {
        const QPixmap pixmap = QPixmap::fromImage(request->cursor);
        setCursor(QCursor(pixmap, pixmap.width() / 2, pixmap.height() / 2));
    } else if (request) {
        setCursor(Qt::CrossCursor);
    } else {
        unsetCursor();
    }
}

void PlanView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (m_followFit) {
        fitToBuilding();
    }
}

void PlanView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), kBackground);
    const QTransform t = planToWidget();

    // Grid: every metre, every fifth stronger.
    const QPointF low = toPlan(QPointF(0, height()));
    const QPointF high = toPlan(QPointF(width(), 0));
    if (m_scale >= 4) {
        for (int x = static_cast<int>(std::floor(low.x())); x <= std::ceil(high.x()); ++x) {
            painter.setPen(QPen(x % 5 == 0 ? kGridMajor : kGrid, 0));
            painter.drawLine(t.map(QPointF(x, low.y())), t.map(QPointF(x, high.y())));
        }
        for (int y = static_cast<int>(std::floor(low.y())); y <= std::ceil(high.y()); ++y) {
            painter.setPen(QPen(y % 5 == 0 ? kGridMajor : kGrid, 0));
            painter.drawLine(t.map(QPointF(low.x(), y)), t.map(QPointF(high.x(), y)));
        }
    }

    const auto building = m_host.building();
    // Walls: every segment filled between its faces.
    for (const Wall& wall : building->walls) {
        for (const QPolygonF& outline : wall.segmentOutlines()) {
            painter.setPen(QPen(kWallLine, 1.2));
            painter.setBrush(kWallFill);
            painter.drawPolygon(t.map(outline));
        }
    }
    // Roofs: face outlines dashed, eaves edges bold.
    painter.setBrush(Qt::NoBrush);
    for (const Roof& roof : building->roofs) {
        for (const RoofFace& face : roof.faces) {
            painter.setPen(QPen(kRoofLine, 1, Qt::DashLine));
            painter.drawPolygon(t.map(face.outline));
            painter.setPen(QPen(kRoofLine, 2.5));
            painter.drawLine(t.map(face.eaves));
        }
    }
    // Elements: the footprint of the object's box and a circle at its reference point.
    if (const TectaroProject* project = m_host.project()) {
        for (const auto& element : project->elements) {
            const QMatrix4x4 world = element->worldTransform();
            const QVector3D lo = element->object.boundsMin;
            const QVector3D hi = element->object.boundsMax;
            QPolygonF footprint;
            for (QVector3D corner : {QVector3D(lo.x(), lo.y(), 0), QVector3D(hi.x(), lo.y(), 0),
                                     QVector3D(hi.x(), hi.y(), 0), QVector3D(lo.x(), hi.y(), 0)}) {
                const QVector3D w = world.map(corner);
                footprint << t.map(QPointF(w.x(), w.y()));
            }
            painter.setPen(QPen(kElement, 1));
            painter.setBrush(QColor(kElement.red(), kElement.green(), kElement.blue(), 50));
            painter.drawPolygon(footprint);
            const QPointF centre = t.map(element->planPosition());
            const double radius = std::max(4.0, 0.05 * m_scale);
            painter.setBrush(kElement);
            painter.drawEllipse(centre, radius, radius);
        }
    }
    // The prompt while a click is awaited.
    if (m_host.clickRequest()) {
        painter.setPen(QPen(kElement, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(rect().adjusted(1, 1, -2, -2));
    }
}

void PlanView::mousePressEvent(QMouseEvent* event) {
    m_lastMouse = event->position().toPoint();
    m_pressAt = m_lastMouse;
    const bool picking = m_host.clickRequest().has_value();
    if (event->button() == Qt::LeftButton && picking) {
        m_host.click(toPlan(event->position()));
        return;
    }
    m_dragging = event->button() == Qt::RightButton || event->button() == Qt::MiddleButton ||
                 event->button() == Qt::LeftButton;
}

void PlanView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint now = event->position().toPoint();
    if (m_dragging) {
        m_followFit = false;
        const QPoint delta = now - m_lastMouse;
        m_centre -= QPointF(delta.x() / m_scale, -delta.y() / m_scale);
        update();
    }
    m_lastMouse = now;
}

void PlanView::mouseReleaseEvent(QMouseEvent*) {
    m_dragging = false;
}

void PlanView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (!m_host.clickRequest()) {
        m_followFit = true;
        fitToBuilding();
    }
    event->accept();
}

void PlanView::wheelEvent(QWheelEvent* event) {
    m_followFit = false;
    const QPointF anchor = toPlan(event->position());
    const double factor = std::pow(1.0015, event->angleDelta().y());
    m_scale = std::clamp(m_scale * factor, 2.0, 2000.0);
    // Keep the plan point under the cursor where it is.
    const QPointF moved = toPlan(event->position());
    m_centre += anchor - moved;
    update();
    event->accept();
}

} // namespace pluvarine
