#pragma once

#include "platform/viewer/SurfaceLook.h"

#include <optional>
#include <string>

namespace pluvarine {

// The viewer's material file, an INI text:
//   [Material]
//   Name=Kupfer
//   BaseColor=154,108,89     (sRGB, 0..255 each)
//   Metallic=1               (0..1)
//   Roughness=0.35           (0..1)
// Section and key names compare without regard to case; blanks around values are ignored.
class MaterialFile {
public:
    // The look the file describes, or nothing when the file is missing, unreadable, has no
    // [Material] section or no valid BaseColor. Metallic and Roughness default to 0 and 0.5
    // and are clamped to 0..1.
    static std::optional<SurfaceLook> read(const std::string& path);
    static std::optional<SurfaceLook> parse(const std::string& text);

    // The file text for a look (CRLF lines), as the data generator and the tests write it.
    static std::string format(const std::string& name, int red, int green, int blue, float metallic,
                              float roughness);
};

} // namespace pluvarine
