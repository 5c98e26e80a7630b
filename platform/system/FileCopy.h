#pragma once

#include <cstdint>
#include <string>

namespace pluvarine {

struct CopyResult {
    enum class Failure { None, Read, Write };
    std::int64_t bytes = 0; // copied; less than asked when the source ended early
    Failure failure = Failure::None;
    std::string errorText;
};

// Copies count bytes from one open file to another at the given offsets, in pieces, so memory
// stays flat however large the data is. The kernel copies where it can (copy_file_range);
// otherwise a 1 MiB buffer does.
CopyResult copyFileBytes(int from, std::int64_t fromOffset, int to, std::int64_t toOffset,
                         std::int64_t count);

} // namespace pluvarine
