#include "platform/tectaro/ProgramFolder.h"

#include <QStandardPaths>
#include <filesystem>
#include <system_error>

namespace pluvarine {

namespace fs = std::filesystem;

namespace {

bool report(std::string* error, const std::string& text) {
    if (error) {
        *error = text;
    }
    return false;
}

// Copies the files of `from` below `to` where they are missing or older. At the top level the
// macro's project folders obj/ and destination/ are created but their files are left alone.
bool copyNewer(const fs::path& from, const fs::path& to, bool topLevel, std::string* error) {
    std::error_code ec;
    fs::create_directories(to, ec);
    if (ec) {
        return report(error, "cannot create " + to.string() + ": " + ec.message());
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(from, ec)) {
        const fs::path target = to / entry.path().filename();
        const std::string name = entry.path().filename().string();
        if (entry.is_directory()) {
            if (topLevel && (name == "obj" || name == "destination")) {
                fs::create_directories(target, ec);
                if (ec) {
                    return report(error, "cannot create " + target.string() + ": " + ec.message());
                }
                continue;
            }
            if (!copyNewer(entry.path(), target, false, error)) {
                return false;
            }
            continue;
        }
        fs::copy_file(entry.path(), target, fs::copy_options::update_existing, ec);
        if (ec) {
            return report(error, "cannot copy " + entry.path().string() + ": " + ec.message());
        }
    }
    if (ec) {
        return report(error, "cannot read " + from.string() + ": " + ec.message());
    }
    return true;
}

} // namespace

std::string ProgramFolder::defaultPath() {
    std::string base =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation).toStdString();
    if (base.empty()) {
        base = ".";
    }
    return base + "/pluvarine/tectaro/";
}

bool ProgramFolder::seed(const std::string& programFolder, const std::string& workFolderTree,
                         const std::string& helpFolder, std::string* error) {
    if (workFolderTree.empty() && helpFolder.empty()) {
        return true; // nothing to lay out
    }
    const fs::path root(programFolder);
    std::error_code ec;
    fs::create_directories(root, ec);
    if (ec) {
        return report(error, "cannot create " + root.string() + ": " + ec.message());
    }
    if (!workFolderTree.empty()) {
        if (!fs::is_directory(workFolderTree)) {
            return report(error, "no working-folder tree at " + workFolderTree);
        }
        for (const char* macroFolder : macroFolders) {
            if (!copyNewer(workFolderTree, root / macroFolder, true, error)) {
                return false;
            }
        }
    }
    if (!helpFolder.empty()) {
        if (!fs::is_directory(helpFolder)) {
            return report(error, "no help pages at " + helpFolder);
        }
        if (!copyNewer(helpFolder, root / helpFolderName, false, error)) {
            return false;
        }
    }
    return true;
}

} // namespace pluvarine
