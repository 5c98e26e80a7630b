#pragma once

#include "assembly/DesignRecord.h"
#include "assembly/RoofData.h"

#include <string>

namespace pluvarine {

// The shared data module: exactly one design at a time, shared by every window and procedure.
struct Daten {
    DesignRecord design;
    RoofData roof;
    std::string workFolder;    // the macro's working folder, without a trailing separator
    std::string oldObjectFile; // workFolder + "/obj/fallrohr.tob", deleted by every reset
};

} // namespace pluvarine
