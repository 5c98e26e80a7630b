#pragma once

#include <QPushButton>

namespace pluvarine {

// A push button whose caption breaks into lines where it is wider than the button, with the
// picture beside the caption block, both centred: long translations stay readable on buttons
// of a fixed size instead of being cut off at both ends.
class CaptionButton : public QPushButton {
    Q_OBJECT
public:
    explicit CaptionButton(QWidget* parent = nullptr);

    // The rectangle the caption needs inside the button, in button coordinates (tests use it
    // to find captions that do not fit).
    QRect captionRect() const;
    // True when the caption, broken into lines, fits into the button's content area.
    bool captionFits() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Placement {
        QRect icon;
        QRect text;
        bool fits;
    };
    Placement place() const;
};

} // namespace pluvarine
