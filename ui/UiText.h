#pragma once

#include "store/text/LoadText.h"

#include <QFont>
#include <QString>

namespace pluvarine {

// The string-table text with this id in the active language, for a widget.
inline QString uiText(int id) {
    return QString::fromStdString(LoadText(id));
}

// The font of every window: a compact sans serif at a fixed pixel size, so the fixed pixel
// layout of the windows holds on every screen.
QFont windowFont();

} // namespace pluvarine
