#include "platform/tectaro/util/Tectutil.h"

namespace pluvarine {

HostPicture TectaroPictureFromBitmap(const QImage& bitmap) {
    // The host keeps pictures as 32-bit ARGB; converting here gives it one format to handle.
    return HostPicture{bitmap.convertToFormat(QImage::Format_ARGB32)};
}

} // namespace pluvarine
