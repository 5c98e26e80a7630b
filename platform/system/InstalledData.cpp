#include "platform/system/InstalledData.h"

#include <QCoreApplication>
#include <QDir>
#include <filesystem>

namespace pluvarine {

std::string InstalledData::folder() {
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/../share/pluvarine"))
        .toStdString();
}

std::string InstalledData::workFolderTree() {
    return folder() + "/workfolder";
}

std::string InstalledData::sampleBuilding() {
    return folder() + "/sample/house.json";
}

std::string InstalledData::helpFolder() {
    return folder() + "/help";
}

std::vector<std::string> InstalledData::missing(const std::string& folder,
                                                const std::vector<std::string>& files) {
    std::vector<std::string> result;
    for (const std::string& file : files) {
        std::error_code ec;
        const std::string path = (std::filesystem::path(folder) / file).string(); // absolute: as is
        if (!std::filesystem::is_regular_file(path, ec)) {
            result.push_back(path);
        }
    }
    return result;
}

} // namespace pluvarine
