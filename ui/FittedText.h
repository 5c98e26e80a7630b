#pragma once

#include <QFont>
#include <QSize>
#include <QString>

class QLabel;

namespace pluvarine {

// The smallest type size a caption may shrink to when its text does not fit its control.
inline constexpr int smallestCaptionPixelSize = 8;

// The largest size of `base`, from its own pixel size down to the smallest caption size, at
// which `text` fits into `room` with the text flags (word wrap included); the smallest when
// none fits.
QFont fittingFont(const QFont& base, const QString& text, QSize room, int flags);
// True when the text fits into the room at that font.
bool textFits(const QFont& font, const QString& text, QSize room, int flags);

// Sets a caption label's text in the largest type size, up to the window's, at which it fits
// the label's fixed size: long translations keep the layout and stay whole.
void setFittedText(QLabel* label, const QString& text);

} // namespace pluvarine
