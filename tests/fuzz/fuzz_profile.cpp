// libFuzzer target: reading and writing private-profile texts.
#include "FuzzProperties.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string problem = pluvarine::fuzz::checkProfileBytes(
        std::string_view(reinterpret_cast<const char*>(data), size));
    if (!problem.empty()) {
        std::fprintf(stderr, "profile text: %s\n", problem.c_str());
        std::abort();
    }
    return 0;
}
