#include "ui/CaptionButton.h"

#include <algorithm>

#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace pluvarine {

namespace {
constexpr int iconSpacing = 4;
constexpr int textFlags = Qt::TextWordWrap | Qt::AlignCenter;
} // namespace

CaptionButton::CaptionButton(QWidget* parent) : QPushButton(parent) {}

CaptionButton::Placement CaptionButton::place() const {
    QStyleOptionButton option;
    initStyleOption(&option);
    const QRect content = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
    const bool hasIcon = !icon().isNull();
    const QSize iconExtent = hasIcon ? iconSize() : QSize(0, 0);
    const int gap = hasIcon && !text().isEmpty() ? iconSpacing : 0;
    const int textWidth = std::max(1, content.width() - iconExtent.width() - gap);
    const QRect needed = fontMetrics().boundingRect(QRect(0, 0, textWidth, 10000), textFlags, text());
    const int total = iconExtent.width() + gap + needed.width();
    const int left = content.x() + (content.width() - total) / 2;
    Placement p;
    p.icon = QRect(QPoint(left, content.center().y() - iconExtent.height() / 2 + 1), iconExtent);
    p.text = QRect(left + iconExtent.width() + gap,
                   content.y() + (content.height() - needed.height()) / 2, needed.width(),
                   needed.height());
    // A word longer than the line stays whole and sticks out: the measured extent tells.
    p.fits = needed.width() <= textWidth && needed.height() <= content.height();
    return p;
}

QRect CaptionButton::captionRect() const {
    return place().text;
}

bool CaptionButton::captionFits() const {
    return place().fits;
}

void CaptionButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    option.icon = QIcon();
    painter.drawControl(QStyle::CE_PushButtonBevel, option);

    Placement p = place();
    if (option.state & (QStyle::State_Sunken | QStyle::State_On)) {
        const int dx = style()->pixelMetric(QStyle::PM_ButtonShiftHorizontal, &option, this);
        const int dy = style()->pixelMetric(QStyle::PM_ButtonShiftVertical, &option, this);
        p.icon.translate(dx, dy);
        p.text.translate(dx, dy);
    }
    if (!icon().isNull()) {
        const QIcon::Mode mode = isEnabled() ? QIcon::Normal : QIcon::Disabled;
        painter.drawPixmap(p.icon.topLeft(), icon().pixmap(iconSize(), devicePixelRatio(), mode));
    }
    style()->drawItemText(&painter, p.text, textFlags, palette(), isEnabled(), text(),
                          QPalette::ButtonText);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = style()->subElementRect(QStyle::SE_PushButtonFocusRect, &option, this);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}

} // namespace pluvarine
