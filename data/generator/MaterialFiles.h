#pragma once

#include <string>
#include <vector>

namespace pluvarine {

// The viewer's material files: a [Material] section with the name, the base colour (the swatch
// colour, 0..255 sRGB), the metalness and the roughness, CRLF line ends.
class MaterialFiles {
public:
    struct Entry {
        std::string fileName; // in mat/
        std::string content;
    };
    static std::vector<Entry> all();
};

} // namespace pluvarine
