#pragma once

#include <string>

namespace pluvarine {

// The macro's working folder below the host's program folder, and the paths held for the whole
// run. Nothing here creates a folder: obj/, destination/, res/ and mat/ come with the
// installation.
struct WorkFolder {
    std::string workFolder;    // program folder + "Standard/" + string 8002 + "/Pluvarine"
    std::string settingsFile;  // workFolder + "/obj/Data.ini"
    std::string oldObjectFile; // workFolder + "/obj/fallrohr.tob"

    // programFolder already ends with a separator, so "Standard/" is appended directly; string
    // 8002 is "Makros" or "Macros" depending on the user-interface language.
    static WorkFolder resolve(const std::string& programFolder);

    std::string objFolder() const { return workFolder + "/obj/"; }
    std::string archiveFile() const { return workFolder + "/destination/pluvarine.dat"; }
};

} // namespace pluvarine
