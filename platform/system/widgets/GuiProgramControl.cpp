#include "platform/system/widgets/GuiProgramControl.h"

#include <QCoreApplication>
#include <QMetaObject>

namespace pluvarine {

void GuiProgramControl::endProgram() {
    m_ended = true;
    QCoreApplication* app = QCoreApplication::instance();
    if (app == nullptr)
        return;
    // Queued, so a request made before exec() ends the loop as soon as it runs.
    QMetaObject::invokeMethod(
        app, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

} // namespace pluvarine
