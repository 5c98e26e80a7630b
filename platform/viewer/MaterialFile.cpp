#include "platform/viewer/MaterialFile.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <sstream>

namespace pluvarine {

namespace {

std::string trim(const std::string& s) {
    const auto first = s.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) {
        return {};
    }
    return s.substr(first, s.find_last_not_of(" \t\r\n") - first + 1);
}

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) {
        return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    });
    return s;
}

std::optional<double> number(const std::string& text) {
    const std::string t = trim(text);
    double value = 0;
    const auto [end, ec] = std::from_chars(t.data(), t.data() + t.size(), value);
    if (ec != std::errc() || end != t.data() + t.size() || t.empty()) {
        return std::nullopt;
    }
    return value;
}

} // namespace

std::optional<SurfaceLook> MaterialFile::read(const std::string& path) {
    if (path.empty()) {
        return std::nullopt;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return std::nullopt;
    }
    std::ostringstream text;
    text << in.rdbuf();
    return parse(text.str());
}

std::optional<SurfaceLook> MaterialFile::parse(const std::string& text) {
    std::istringstream lines(text);
    std::string line;
    bool inSection = false, seenSection = false, hasColour = false;
    SurfaceLook look;
    look.metallic = 0.0f;
    look.roughness = 0.5f;
    while (std::getline(lines, line)) {
        line = trim(line);
        if (line.empty() || line[0] == ';') {
            continue;
        }
        if (line[0] == '[') {
            const auto close = line.find(']');
            const bool material =
                close != std::string::npos && lower(trim(line.substr(1, close - 1))) == "material";
            // The first [Material] section counts.
            inSection = material && !seenSection;
            seenSection = seenSection || material;
            continue;
        }
        const auto equals = line.find('=');
        if (!inSection || equals == std::string::npos) {
            continue;
        }
        const std::string key = lower(trim(line.substr(0, equals)));
        const std::string value = trim(line.substr(equals + 1));
        if (key == "name") {
            look.name = value;
        } else if (key == "basecolor") {
            std::istringstream parts(value);
            std::string part;
            int channels[3] = {};
            int count = 0;
            bool valid = true;
            while (std::getline(parts, part, ',')) {
                const auto v = number(part);
                if (!v || count == 3 || *v < 0 || *v > 255) {
                    valid = false;
                    break;
                }
                channels[count++] = static_cast<int>(*v + 0.5);
            }
            if (valid && count == 3) {
                for (int i = 0; i < 3; ++i) {
                    look.baseColor[i] = srgbToLinear(channels[i]);
                }
                hasColour = true;
            }
        } else if (key == "metallic" || key == "roughness") {
            if (const auto v = number(value)) {
                const float clamped = static_cast<float>(std::clamp(*v, 0.0, 1.0));
                (key == "metallic" ? look.metallic : look.roughness) = clamped;
            }
        }
    }
    if (!hasColour) {
        return std::nullopt;
    }
    return look;
}

std::string MaterialFile::format(const std::string& name, int red, int green, int blue,
                                 float metallic, float roughness) {
    std::ostringstream out;
    out << "[Material]\r\nName=" << name << "\r\nBaseColor=" << red << ',' << green << ',' << blue
        << "\r\nMetallic=" << metallic << "\r\nRoughness=" << roughness << "\r\n";
    return out.str();
}

} // namespace pluvarine
