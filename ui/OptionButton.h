#pragma once

#include <QRadioButton>

namespace pluvarine {

// An option button that answers a click anywhere on its area, not only on its circle and text.
class OptionButton : public QRadioButton {
public:
    using QRadioButton::QRadioButton;

protected:
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }
};

} // namespace pluvarine
