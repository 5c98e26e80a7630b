#pragma once

#include <QPushButton>

namespace pluvarine {

// A push button whose caption breaks into lines where it is wider than the button, and takes a
// smaller type size only where even that does not fit; the picture stands beside the caption
// block, both centred. Long translations stay whole on buttons of a fixed size.
class CaptionButton : public QPushButton {
    Q_OBJECT
public:
    explicit CaptionButton(QWidget* parent = nullptr);

    // The rectangle the caption needs inside the button, in button coordinates (tests use it
    // to find captions that do not fit).
    QRect captionRect() const;
    // True when the caption fits into the button, at the smallest type size at the latest.
    bool captionFits() const;
    // True when the caption needs a smaller type size than the button's font.
    bool captionShrunk() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Placement {
        QRect icon;
        QRect text;
        QFont font;
        bool fits = false;
    };
    Placement place() const;
};

} // namespace pluvarine
