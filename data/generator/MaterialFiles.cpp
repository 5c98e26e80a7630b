#include "data/generator/MaterialFiles.h"

namespace pluvarine {

namespace {

MaterialFiles::Entry entry(const std::string& name, const std::string& colour,
                           const std::string& metallic, const std::string& roughness) {
    return {name + ".ini", "[Material]\r\nName=" + name + "\r\nBaseColor=" + colour +
                               "\r\nMetallic=" + metallic + "\r\nRoughness=" + roughness + "\r\n"};
}

} // namespace

std::vector<MaterialFiles::Entry> MaterialFiles::all() {
    // Plastic is a dielectric; the three sheet metals are metals, rolled zinc the dullest.
    return {entry("Grau", "144,144,144", "0", "0.55"), entry("Kupfer", "154,108,89", "1", "0.35"),
            entry("Zink", "117,117,117", "0.85", "0.5"), entry("Alu", "178,178,178", "0.9", "0.3")};
}

} // namespace pluvarine
