#pragma once

#include "host/HostPicture.h"

#include <QImage>

namespace pluvarine {

// The host maker's utility: turns a bitmap into a picture value the host accepts.
HostPicture TectaroPictureFromBitmap(const QImage& bitmap);

} // namespace pluvarine
