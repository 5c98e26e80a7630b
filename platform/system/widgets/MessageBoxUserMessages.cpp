#include "platform/system/widgets/MessageBoxUserMessages.h"

#include <QGuiApplication>
#include <QMessageBox>

namespace pluvarine {

namespace {

// Message texts break lines with a lone carriage return, as the platform's message boxes accept;
// a Qt label breaks only on line feeds.
QString shownText(const std::string& text) {
    QString shown = QString::fromStdString(text);
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    shown.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return shown;
}

} // namespace

void MessageBoxUserMessages::showMessage(const std::string& text, Icon icon) {
    QMessageBox box(icon == Icon::Critical ? QMessageBox::Critical : QMessageBox::NoIcon,
                    QGuiApplication::applicationDisplayName(), shownText(text), QMessageBox::Ok);
    box.setWindowFlag(Qt::WindowStaysOnTopHint, true);
    box.exec();
}

bool MessageBoxUserMessages::askYesNo(const std::string& text) {
    QMessageBox box(QMessageBox::Question, QGuiApplication::applicationDisplayName(),
                    shownText(text), QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(QMessageBox::No);
    box.setWindowFlag(Qt::WindowStaysOnTopHint, true);
    return box.exec() == QMessageBox::Yes;
}

} // namespace pluvarine
