#include "ui/WindowPlacement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace pluvarine {

void applyStayOnTop(QWidget& window, bool on) {
    if (window.windowFlags().testFlag(Qt::WindowStaysOnTopHint) == on)
        return;
    const bool wasVisible = window.isVisible();
    const QPoint position = window.pos();
    const QSize size = window.size();
    // Changing the flag re-creates the native window and hides it; show it again where it was,
    // without taking the focus from the window the user works in.
    window.setWindowFlag(Qt::WindowStaysOnTopHint, on);
    window.move(position);
    window.resize(size);
    if (wasVisible) {
        const bool withoutActivating = window.testAttribute(Qt::WA_ShowWithoutActivating);
        window.setAttribute(Qt::WA_ShowWithoutActivating, true);
        window.show();
        window.setAttribute(Qt::WA_ShowWithoutActivating, withoutActivating);
    }
}

void centreOnScreen(QWidget& window) {
    QScreen* screen = window.screen();
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return;
    const QRect area = screen->availableGeometry();
    window.move(area.x() + (area.width() - window.width()) / 2,
                area.y() + (area.height() - window.height()) / 2);
}

} // namespace pluvarine
