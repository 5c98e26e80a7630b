#pragma once

#include <QRect>
#include <QSize>
#include <QString>

class QGroupBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QWidget;

namespace pluvarine {

class CaptionButton;

// Controls placed at fixed pixel positions inside their window or group, each with its object
// name, as the windows' layouts list them.
QGroupBox* addGroup(QWidget* parent, const QString& name, const QRect& geometry);
// A caption label; `wrap` lets a long caption break into the lines its height allows.
QLabel* addLabel(QWidget* parent, const QString& name, const QString& text, const QRect& geometry,
                 bool wrap = false);
// A numeric text box with the numeric key filter.
QLineEdit* addNumericField(QWidget* parent, const QString& name, const QString& text,
                           const QRect& geometry);
// Sets a text box's text with the cursor at its start: a text wider than the box shows its
// beginning ("2873,39745962" of a long height), not its end.
void setFieldText(QLineEdit* field, const QString& text);
// A button with an optional picture beside its caption.
CaptionButton* addButton(QWidget* parent, const QString& name, const QString& text,
                         const QRect& geometry, const QString& picture = {},
                         QSize pictureSize = {});
QRadioButton* addOption(QWidget* parent, const QString& name, const QString& text,
                        const QRect& geometry);

} // namespace pluvarine
