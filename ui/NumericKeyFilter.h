#pragma once

#include <QObject>

namespace pluvarine {

// The key rule of every numeric text box: a typed character reaches the box only when it is
// the backspace character (code 8) or one of "0123456789+". Every other character, control
// characters included (so Ctrl+V, Ctrl+C and Return are swallowed like any other character),
// is discarded. Keys that type no character (arrows, Delete, Home, End) and focus movement with
// Tab pass untouched; text that arrives without typing (paste from the context menu, input
// methods, setText) is not looked at.
class NumericKeyFilter : public QObject {
    Q_OBJECT
public:
    explicit NumericKeyFilter(QObject* parent = nullptr);

    // Installs a new filter on the text box; the filter lives as long as the box.
    static NumericKeyFilter* install(QObject* target);

    static bool charPasses(char16_t character);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace pluvarine
