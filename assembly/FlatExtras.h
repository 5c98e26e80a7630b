#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace pluvarine {

// Flat key/value metadata as an object file carries it in the extras of its scene: whole
// numbers and texts only, no nesting, so that any glTF reader sees plain values.
using FlatValue = std::variant<std::int32_t, std::string>;
using FlatExtras = std::vector<std::pair<std::string, FlatValue>>;

} // namespace pluvarine
