#include "CaptionFit.h"

#include "ui/CaptionButton.h"

#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionGroupBox>

namespace pluvarine::test {

namespace {
QString entry(const QWidget* widget, const QString& text) {
    return widget->objectName() + QStringLiteral(": \"") + text + QLatin1Char('"');
}
} // namespace

CaptionReport checkCaptions(QWidget* window) {
    CaptionReport report;
    QStringList& clipped = report.clipped;
    const int windowSize = window->font().pixelSize();
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(window))
            continue;
        const QFontMetrics metrics = widget->fontMetrics();
        if (auto* label = qobject_cast<QLabel*>(widget)) {
            if (label->text().isEmpty())
                continue;
            const QRect room = label->contentsRect();
            const int flags = int(label->alignment()) | (label->wordWrap() ? Qt::TextWordWrap : 0);
            const QRect needed = metrics.boundingRect(room, flags, label->text());
            if (needed.width() > room.width() || needed.height() > room.height())
                clipped << entry(label, label->text());
            else if (label->font().pixelSize() < windowSize && !label->font().bold())
                report.shrunk << entry(label, label->text());
        } else if (auto* button = qobject_cast<CaptionButton*>(widget)) {
            if (!button->captionFits())
                clipped << entry(button, button->text());
            else if (button->captionShrunk())
                report.shrunk << entry(button, button->text());
        } else if (auto* option = qobject_cast<QRadioButton*>(widget)) {
            const int indicator = option->style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) +
                                  option->style()->pixelMetric(QStyle::PM_RadioButtonLabelSpacing);
            if (indicator + metrics.horizontalAdvance(option->text()) > option->width())
                clipped << entry(option, option->text());
        } else if (auto* group = qobject_cast<QGroupBox*>(widget)) {
            QStyleOptionGroupBox styleOption;
            styleOption.initFrom(group);
            styleOption.text = group->title();
            styleOption.subControls = QStyle::SC_GroupBoxLabel;
            styleOption.textAlignment = group->alignment();
            const QRect room = group->style()->subControlRect(QStyle::CC_GroupBox, &styleOption,
                                                              QStyle::SC_GroupBoxLabel, group);
            if (room.right() > group->width() - 4)
                clipped << entry(group, group->title());
        }
    }
    return report;
}

} // namespace pluvarine::test
