#include "app/cli/ComposeOptions.h"

#include "base/Conversions.h"
#include "base/RuntimeError.h"

#include <QLocale>
#include <algorithm>
#include <cmath>
#include <map>

namespace pluvarine {

namespace {

// Millimetre options are script input: read with the C locale, whole text, finite.
std::optional<double> millimetres(const std::string& text) {
    try {
        const double value = textToDouble(text, QLocale::c());
        return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

template <typename T>
std::optional<T> choice(const std::map<std::string, T>& choices, const std::string& text) {
    const auto it = choices.find(text);
    return it == choices.end() ? std::nullopt : std::optional<T>(it->second);
}

} // namespace

const char* composeUsage() {
    return "usage: pluvarine-cli compose [options]\n"
           "  --height MM             height H of the downpipe (default 0)\n"
           "  --overhang TEXT         roof overhang field txtÜd (default \"0\")\n"
           "  --gutter-width MM       gutter width (default 0)\n"
           "  --standpipe TEXT        standpipe height field txths (default \"300\")\n"
           "  --clamp-spacing TEXT    clamp spacing field txtdR (default \"1800\")\n"
           "  --angle 42|72           bend angle (default 42)\n"
           "  --answer continuous|bend  answer to the construction question, if it is asked\n"
           "  --material grey|copper|zinc|alu  chosen after the first build\n"
           "  --work-folder DIR       working folder (default: the build tree's)\n"
           "  --trace                 also list every scene operation\n";
}

std::variant<ComposeOptions, std::string>
parseComposeOptions(const std::vector<std::string>& args) {
    ComposeOptions options;
    for (std::size_t i = 0; i < args.size(); ++i) {
        std::string name = args[i];
        std::optional<std::string> inlineValue;
        if (const auto eq = name.find('='); name.starts_with("--") && eq != std::string::npos) {
            inlineValue = name.substr(eq + 1);
            name.erase(eq);
        }
        if (name == "--trace" || name == "--help") {
            if (inlineValue) {
                return name + " takes no value";
            }
            (name == "--trace" ? options.trace : options.help) = true;
            continue;
        }
        static const std::vector<std::string> valued{
            "--height", "--overhang", "--gutter-width", "--standpipe",  "--clamp-spacing",
            "--angle",  "--answer",   "--material",     "--work-folder"};
        if (std::find(valued.begin(), valued.end(), name) == valued.end()) {
            return "unknown option '" + args[i] + "'";
        }
        if (!inlineValue && i + 1 >= args.size()) {
            return name + " needs a value";
        }
        const std::string value = inlineValue ? *inlineValue : args[++i];
        const std::string malformed = "malformed value for " + name + ": '" + value + "'";

        if (name == "--height" || name == "--gutter-width") {
            const auto mm = millimetres(value);
            if (!mm) {
                return malformed;
            }
            (name == "--height" ? options.heightH : options.gutterWidth) = *mm;
        } else if (name == "--overhang") {
            options.overhangText = value;
        } else if (name == "--standpipe") {
            options.standpipeText = value;
        } else if (name == "--clamp-spacing") {
            options.clampSpacingText = value;
        } else if (name == "--angle") {
            const auto angle72 = choice<bool>({{"42", false}, {"72", true}}, value);
            if (!angle72) {
                return malformed + " (42 or 72)";
            }
            options.angle72 = *angle72;
        } else if (name == "--answer") {
            options.answerBend = choice<bool>({{"continuous", false}, {"bend", true}}, value);
            if (!options.answerBend) {
                return malformed + " (continuous or bend)";
            }
        } else if (name == "--material") {
            options.materialIndex =
                choice<int>({{"grey", 0}, {"copper", 1}, {"zinc", 2}, {"alu", 3}}, value);
            if (!options.materialIndex) {
                return malformed + " (grey, copper, zinc or alu)";
            }
        } else {
            if (value.empty()) {
                return malformed;
            }
            options.workFolder = value;
        }
    }
    return options;
}

} // namespace pluvarine
