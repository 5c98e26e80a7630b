#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace pluvarine {

// One line of a parts list: an article of the catalogue in one material, with its count and,
// for the pieces cut to length (pipe, standpipe), the cut length.
struct PartsListRow {
    std::string article;       // outlet, pipe, standpipe, cap, clamp, bendLeft, bendRight, kink
    int textId = 0;            // the article's name in the string table
    std::string file;          // the catalogue's part file
    std::int32_t diameter = 0; // nominal sizes from the catalogue: mm, degrees, mm (0: none)
    std::int32_t angle = 0;
    std::int32_t length = 0;
    std::string material; // grey, copper, zinc, alu
    int materialTextId = 0;
    std::int32_t count = 0;
    std::optional<std::int32_t> cutLength;   // mm, whole
    std::optional<std::int64_t> totalLength; // mm: count x cut length, or the sum in a total
    bool warning = false;                    // a cut length of 0 or less (in a total: any)

    bool operator==(const PartsListRow&) const = default;
};

} // namespace pluvarine
