#pragma once

#include <QImage>

namespace pluvarine {

// A picture value the host accepts (toolbar image, pick cursor), made from a bitmap by the host
// maker's conversion (TectaroPictureFromBitmap).
struct HostPicture {
    QImage image;
};

} // namespace pluvarine
