#pragma once

namespace pluvarine {

// The angle of the bend and kink parts, chosen with the option buttons O42 and O72.
enum class BendAngle { Deg42, Deg72 };

} // namespace pluvarine
