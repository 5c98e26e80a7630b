#pragma once

#include "platform/tectaro/Building.h"

#include <memory>
#include <string>

namespace pluvarine {

// How the stand-in host is set up. Tests set the program folder and the version text.
struct TectaroOptions {
    // Ending with "/" (added when missing). Empty: ProgramFolder::defaultPath().
    std::string programFolder;
    // What GetVersionText answers: the host's name and version ("+" and the version number).
    // A whole number: the macro reads it with the system locale's number rules, where "2026.1"
    // is no number at all with a decimal comma.
    std::string versionText = "Tectaro Architektur +2026";
    // The installed working-folder tree that seeds the macro folders; empty: no seeding.
    std::string workFolderTree;
    // The folder of the help pages copied to <program folder>/Tectaro.chm/; empty: none.
    std::string helpFolder;
    // The building of the project the host starts with and of every new project.
    std::shared_ptr<const Building> defaultBuilding;
};

} // namespace pluvarine
