#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace pluvarine {

// The options of `pluvarine-cli compose`. The three field texts are passed on as typed, so a
// text that is not a number behaves as the field would.
struct ComposeOptions {
    double heightH = 0;
    std::string overhangText = "0";
    double gutterWidth = 0;
    std::string standpipeText = "300";
    std::string clampSpacingText = "1800";
    bool angle72 = false;
    std::optional<bool> answerBend;   // the answer to the construction question, if given
    std::optional<int> materialIndex; // 0 grey, 1 copper, 2 zinc, 3 alu
    std::string workFolder;           // empty: the default working folder
    bool trace = false;
    bool help = false;
};

// Reads the arguments after `compose`. Returns the options, or a one-line reason for refusing
// them (unknown option, missing value, malformed number or choice).
std::variant<ComposeOptions, std::string> parseComposeOptions(const std::vector<std::string>& args);

// The option summary printed by `compose --help`.
const char* composeUsage();

} // namespace pluvarine
