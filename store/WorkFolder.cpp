#include "store/WorkFolder.h"

#include "store/text/LoadText.h"

namespace pluvarine {

WorkFolder WorkFolder::resolve(const std::string& programFolder) {
    WorkFolder folder;
    folder.workFolder = programFolder + "Standard/" + LoadText(8002) + "/Pluvarine";
    folder.settingsFile = folder.workFolder + "/obj/" + "Data.ini";
    folder.oldObjectFile = folder.workFolder + "/obj/fallrohr.tob";
    return folder;
}

} // namespace pluvarine
