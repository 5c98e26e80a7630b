#pragma once

// The prefabricated part files in the working folder's res folder, and the base scene. Their
// names carry the nominal sizes in millimetres (first number: the pipe diameter they fit).

namespace pluvarine::parts {

inline constexpr const char* baseScene = "/main.v3o"; // below the working folder
inline constexpr const char* resFolder = "/res/";     // part files live here

inline constexpr const char* outlet = "Reinhangestutzen_100_218.v3o"; // gutter outlet
inline constexpr const char* pipe = "Fallrohr_100_500.v3o";           // 500 mm pipe piece
inline constexpr const char* standpipe = "Standrohr_125_500.v3o";     // 500 mm, 125 diameter
inline constexpr const char* cap = "Abdeckkappe_100_125.v3o";         // cover cap
inline constexpr const char* clamp = "Rohrschelle_100.v3o";           // pipe clamp
inline constexpr const char* bend72Upper = "Bogen_100_72_L.v3o";
inline constexpr const char* bend72Lower = "Bogen_100_72_R.v3o";
inline constexpr const char* bend42Upper = "Bogen_100_42_L.v3o";
inline constexpr const char* bend42Lower = "Bogen_100_42_R.v3o";
inline constexpr const char* kink72 = "Knick_100_72.v3o";
inline constexpr const char* kink42 = "Knick_100_42.v3o";
inline constexpr const char* dummy = "dummy.v3o"; // scaled to the wall offset

} // namespace pluvarine::parts
