#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace pluvarine::test {

// The captions of a window (labels, buttons, options, group titles), one line "control: text"
// each: those that do not fit into their controls, and those that fit only in a smaller type
// size than the window's.
struct CaptionReport {
    QStringList clipped;
    QStringList shrunk;
};
CaptionReport checkCaptions(QWidget* window);

} // namespace pluvarine::test
