#pragma once

namespace pluvarine {

// The construction a rebuild composed; None when it built nothing (question asked, overhang
// not a number or negative).
enum class Construction { None, Continuous, Bend42, Bend72, Kink42, Kink72 };

} // namespace pluvarine
