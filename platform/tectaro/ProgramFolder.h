#pragma once

#include <string>

namespace pluvarine {

// The stand-in host's program folder: per user, ending with "/". It holds the macro folders
// <folder>/Standard/Macros/Pluvarine and <folder>/Standard/Makros/Pluvarine (the macro picks one
// by its language) and the help pages in the folder <folder>/Tectaro.chm/.
class ProgramFolder {
public:
    // $XDG_DATA_HOME/pluvarine/tectaro/, or ~/.local/share/pluvarine/tectaro/.
    static std::string defaultPath();

    // Lays out the program folder from the installed working-folder tree (main.v3o, res/,
    // mat/, obj/, destination/) and the help pages. Files of the tree that are missing or older
    // in the program folder are copied; obj/ and destination/ hold the macro's project files
    // and are only created, never filled or cleared. Empty sources are skipped. Returns false
    // (with a reason) when a folder or file cannot be written.
    static bool seed(const std::string& programFolder, const std::string& workFolderTree,
                     const std::string& helpFolder, std::string* error = nullptr);

    // The two macro folders below the program folder.
    static constexpr const char* macroFolders[] = {"Standard/Macros/Pluvarine",
                                                   "Standard/Makros/Pluvarine"};
    static constexpr const char* helpFolderName = "Tectaro.chm";
};

} // namespace pluvarine
