#include "platform/system/widgets/MessageBoxUserMessages.h"

#include <QGuiApplication>
#include <QMessageBox>

namespace pluvarine {

void MessageBoxUserMessages::showMessage(const std::string& text, Icon icon) {
    QMessageBox box(icon == Icon::Critical ? QMessageBox::Critical : QMessageBox::NoIcon,
                    QGuiApplication::applicationDisplayName(), QString::fromStdString(text),
                    QMessageBox::Ok);
    box.setWindowFlag(Qt::WindowStaysOnTopHint, true);
    box.exec();
}

} // namespace pluvarine
