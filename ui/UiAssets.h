#pragma once

#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QSize>
#include <QString>

namespace pluvarine {

// The pictures drawn for this program (vector drawings compiled into the program), rendered at
// the size the window shows them. `name` is the file name below the assets, e.g. "save.svg".
// Images are 32-bit with an alpha channel; an unknown name gives a transparent picture.
QImage assetImage(const QString& name, QSize size);
QPixmap assetPixmap(const QString& name, QSize size);

// The 48 x 48 window icon.
QIcon windowIconAsset();

} // namespace pluvarine
