#include "platform/system/widgets/MessageBoxUserMessages.h"

#include <QGuiApplication>
#include <QMessageBox>

namespace pluvarine {

void MessageBoxUserMessages::showMessage(const std::string& text, Icon icon) {
    // Message texts break lines with a lone carriage return, as the platform's message boxes
    // accept; a Qt label breaks only on line feeds.
    QString shown = QString::fromStdString(text);
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    shown.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    QMessageBox box(icon == Icon::Critical ? QMessageBox::Critical : QMessageBox::NoIcon,
                    QGuiApplication::applicationDisplayName(), shown, QMessageBox::Ok);
    box.setWindowFlag(Qt::WindowStaysOnTopHint, true);
    box.exec();
}

} // namespace pluvarine
