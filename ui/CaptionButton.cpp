#include "ui/CaptionButton.h"

#include "ui/FittedText.h"

#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <QStylePainter>
#include <algorithm>

namespace pluvarine {

namespace {
constexpr int iconSpacing = 4;
constexpr int textFlags = Qt::TextWordWrap | Qt::AlignCenter;
} // namespace

CaptionButton::CaptionButton(QWidget* parent) : QPushButton(parent) {}

CaptionButton::Placement CaptionButton::place() const {
    // Classic buttons use nearly their whole face for the caption.
    const QRect content = rect().adjusted(4, 2, -4, -2);
    const bool hasIcon = !icon().isNull();
    const QSize iconExtent = hasIcon ? iconSize() : QSize(0, 0);
    const int gap = hasIcon && !text().isEmpty() ? iconSpacing : 0;
    const QSize textRoom(std::max(1, content.width() - iconExtent.width() - gap),
                         std::max(1, content.height()));
    Placement p;
    p.font = fittingFont(font(), text(), textRoom, textFlags);
    p.fits = textFits(p.font, text(), textRoom, textFlags);
    const QRect needed =
        QFontMetrics(p.font).boundingRect(QRect(QPoint(0, 0), textRoom), textFlags, text());
    const int total = iconExtent.width() + gap + needed.width();
    const int left = content.x() + (content.width() - total) / 2;
    p.icon = QRect(QPoint(left, content.center().y() - iconExtent.height() / 2 + 1), iconExtent);
    p.text = QRect(left + iconExtent.width() + gap,
                   content.y() + (content.height() - needed.height()) / 2, needed.width(),
                   needed.height());
    return p;
}

QRect CaptionButton::captionRect() const {
    return place().text;
}

bool CaptionButton::captionFits() const {
    return place().fits;
}

bool CaptionButton::captionShrunk() const {
    return place().font.pixelSize() < font().pixelSize();
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
    painter.setFont(p.font);
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
