#pragma once

#include <QImage>
#include <functional>

namespace pluvarine {

// A picture value the host accepts (toolbar image, pick cursor), made from a bitmap by the
// conversion of the host binding in use.
struct HostPicture {
    QImage image;
};

// The host binding's conversion of a bitmap into a picture value (the stand-in's is
// TectaroPictureFromBitmap); the macro does not know what the host keeps.
using PictureConversion = std::function<HostPicture(const QImage& bitmap)>;

} // namespace pluvarine
