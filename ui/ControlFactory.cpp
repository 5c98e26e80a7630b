#include "ui/ControlFactory.h"

#include "ui/CaptionButton.h"
#include "ui/NumericKeyFilter.h"
#include "ui/OptionButton.h"
#include "ui/UiAssets.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

namespace pluvarine {

namespace {
template <typename W> W* place(W* widget, const QString& name, const QRect& geometry) {
    widget->setObjectName(name);
    widget->setGeometry(geometry);
    return widget;
}
} // namespace

QGroupBox* addGroup(QWidget* parent, const QString& name, const QRect& geometry) {
    return place(new QGroupBox(parent), name, geometry);
}

QLabel* addLabel(QWidget* parent, const QString& name, const QString& text, const QRect& geometry,
                 bool wrap) {
    auto* label = place(new QLabel(text, parent), name, geometry);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    label->setWordWrap(wrap);
    return label;
}

QLineEdit* addNumericField(QWidget* parent, const QString& name, const QString& text,
                           const QRect& geometry) {
    auto* field = place(new QLineEdit(parent), name, geometry);
    field->setTextMargins(0, 0, 0, 0);
    setFieldText(field, text);
    NumericKeyFilter::install(field);
    return field;
}

void setFieldText(QLineEdit* field, const QString& text) {
    field->setText(text);
    field->setCursorPosition(0);
}

CaptionButton* addButton(QWidget* parent, const QString& name, const QString& text,
                         const QRect& geometry, const QString& picture, QSize pictureSize) {
    auto* button = place(new CaptionButton(parent), name, geometry);
    button->setText(text);
    if (!picture.isEmpty()) {
        button->setIcon(QIcon(assetPixmap(picture, pictureSize)));
        button->setIconSize(pictureSize);
    }
    return button;
}

QRadioButton* addOption(QWidget* parent, const QString& name, const QString& text,
                        const QRect& geometry) {
    return place(new OptionButton(text, parent), name, geometry);
}

} // namespace pluvarine
