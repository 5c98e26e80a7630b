#pragma once

class QWidget;

namespace pluvarine {

// Topmost placement of one of the program's windows: above every window that is not topmost
// (on) or back among them (off), without moving, resizing or activating it.
void applyStayOnTop(QWidget& window, bool on);

// Puts the window's client area in the middle of the screen it is on (or of the primary one).
void centreOnScreen(QWidget& window);

} // namespace pluvarine
