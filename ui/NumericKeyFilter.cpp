#include "ui/NumericKeyFilter.h"

#include <QKeyEvent>

namespace pluvarine {

NumericKeyFilter::NumericKeyFilter(QObject* parent) : QObject(parent) {}

NumericKeyFilter* NumericKeyFilter::install(QObject* target) {
    auto* filter = new NumericKeyFilter(target);
    target->installEventFilter(filter);
    return filter;
}

bool NumericKeyFilter::charPasses(char16_t character) {
    if (character == u'\b')
        return true;
    return (character >= u'0' && character <= u'9') || character == u'+';
}

bool NumericKeyFilter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    // These keys type no character of their own, although X11 reports one for some of them.
    switch (key->key()) {
    case Qt::Key_Delete:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return false;
    default:
        break;
    }
    const QString text = key->text();
    for (const QChar c : text) {
        if (!charPasses(c.unicode()))
            return true; // discarded before it reaches the box
    }
    return false;
}

} // namespace pluvarine
