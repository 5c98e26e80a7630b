#pragma once

#include <QPointF>
#include <QTransform>
#include <QWidget>

namespace pluvarine {

class TectaroHost;

// The host's plan view: a metre grid, the walls with their thickness, the roofs' faces (the
// outline with the overhang dashed, the eaves edge bold), and the inserted elements as circles
// at their reference points with their footprints. Wheel zooms about the cursor; right or
// middle drag pans (left drag too, while no click is requested); a double click fits the
// building, which the view also keeps fitted while it is resized until the user pans or zooms.
// While the macro has asked for a click the view shows the macro's cursor, and a left click goes to
// the host as the answer.
class PlanView : public QWidget {
    Q_OBJECT
public:
    explicit PlanView(TectaroHost& host, QWidget* parent = nullptr);

    // Plan metres to widget pixels and back.
    QPointF toWidget(QPointF plan) const;
    QPointF toPlan(QPointF widget) const;
    // Shows the whole building (or a default area when it is empty).
    void fitToBuilding();
    // A click at a plan point, as a left click there would: false when none was requested.
    bool clickAt(QPointF plan);

    QSize sizeHint() const override { return {640, 520}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QTransform planToWidget() const;
    void updateCursor();

    TectaroHost& m_host;
    QPointF m_centre{5, 4};  // plan point at the widget's centre
    double m_scale = 50;     // pixels per metre
    bool m_followFit = true; // refit on resize until the user pans or zooms
    bool m_dragging = false;
    QPoint m_lastMouse;
    QPoint m_pressAt;
};

} // namespace pluvarine
