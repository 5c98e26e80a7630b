#include "assembly/WorkFolderFiles.h"

#include "assembly/MaterialChoice.h"
#include "assembly/PartCatalogue.h"

namespace pluvarine {

std::vector<std::string> workFolderFiles() {
    using namespace parts;
    std::vector<std::string> files{std::string(baseScene).substr(1)};
    for (const char* part : {outlet, pipe, standpipe, cap, clamp, bend72Upper, bend72Lower,
                             bend42Upper, bend42Lower, kink72, kink42, dummy}) {
        files.push_back(std::string(resFolder).substr(1) + part);
    }
    for (const MaterialEntry& entry : materialEntries()) {
        files.push_back(std::string(entry.file).substr(1));
    }
    return files;
}

} // namespace pluvarine
