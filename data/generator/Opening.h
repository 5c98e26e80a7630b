#pragma once

#include "data/generator/Vec3.h"

#include <string>

namespace pluvarine {

// Where a part joins the next one: the centre of its end circle, the direction pointing out of
// the part along the pipe axis, and the circle's radius (millimetres in the generator).
struct Opening {
    std::string name;
    Vec3 centre;
    Vec3 direction;
    double radius = 0;
};

} // namespace pluvarine
