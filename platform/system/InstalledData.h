#pragma once

#include <string>
#include <vector>

namespace pluvarine {

// Where the program finds the data it ships: below <prefix>/share/pluvarine, the prefix being
// the folder above the executable's, as installed Qt programs find theirs. The build tree is
// laid out the same way (build/<preset>/share/pluvarine beside build/<preset>/app), so no
// path of the build is compiled in and an installed program never reaches back into one.
// Needs a QCoreApplication.
class InstalledData {
public:
    static std::string folder();
    // The working-folder tree the host's macro folders are seeded from.
    static std::string workFolderTree();
    // The building the stand-in host opens unless told otherwise.
    static std::string sampleBuilding();
    // The help pages.
    static std::string helpFolder();

    // The files of `files` (relative to `folder`, or absolute) that are not files, as full paths.
    static std::vector<std::string> missing(const std::string& folder,
                                            const std::vector<std::string>& files);
};

} // namespace pluvarine
