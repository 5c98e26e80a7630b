#pragma once

#include <QWidget>

namespace pluvarine {

// What the program's three windows share: a fixed client area, the window font and icon,
// the middle of the screen on the first show, and topmost placement.
class ProgramWindow : public QWidget {
public:
    ProgramWindow(const QString& objectName, QSize clientSize, QWidget* parent = nullptr);

    // Above all windows that are not topmost (on) or back among them; no move, resize or
    // activation.
    void StayOnTop(bool on);

    void setVisible(bool visible) override;

private:
    bool m_placed = false;
};

} // namespace pluvarine
