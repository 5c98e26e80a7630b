#include "ui/FittedText.h"

#include <QFontMetrics>
#include <QLabel>

namespace pluvarine {

bool textFits(const QFont& font, const QString& text, QSize room, int flags) {
    const QRect needed = QFontMetrics(font).boundingRect(QRect(QPoint(0, 0), room), flags, text);
    return needed.width() <= room.width() && needed.height() <= room.height();
}

QFont fittingFont(const QFont& base, const QString& text, QSize room, int flags) {
    QFont font = base;
    const int largest = base.pixelSize() > 0 ? base.pixelSize() : QFontMetrics(base).height();
    for (int size = largest; size >= smallestCaptionPixelSize; --size) {
        font.setPixelSize(size);
        if (textFits(font, text, room, flags))
            return font;
    }
    return font;
}

void setFittedText(QLabel* label, const QString& text) {
    label->setText(text);
    const QFont base =
        label->parentWidget() != nullptr ? label->parentWidget()->font() : label->font();
    const int flags = int(label->alignment()) | (label->wordWrap() ? Qt::TextWordWrap : 0);
    label->setFont(fittingFont(base, text, label->contentsRect().size(), flags));
}

} // namespace pluvarine
