#include "ui/ProgramWindow.h"

#include "ui/UiAssets.h"
#include "ui/UiText.h"
#include "ui/WindowPlacement.h"

namespace pluvarine {

ProgramWindow::ProgramWindow(const QString& objectName, QSize clientSize, QWidget* parent)
    : QWidget(parent, Qt::Window) {
    setObjectName(objectName);
    setFont(windowFont());
    setFixedSize(clientSize);
    setWindowIcon(windowIconAsset());
}

void ProgramWindow::StayOnTop(bool on) {
    applyStayOnTop(*this, on);
}

void ProgramWindow::setVisible(bool visible) {
    if (visible && !m_placed) {
        m_placed = true;
        centreOnScreen(*this);
    }
    QWidget::setVisible(visible);
}

} // namespace pluvarine
