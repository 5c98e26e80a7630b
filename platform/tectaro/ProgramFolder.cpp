#include "platform/tectaro/ProgramFolder.h"

#include "platform/system/AtomicFile.h"
#include "platform/system/FileCopy.h"
#include "platform/system/FileDescriptor.h"

#include <QStandardPaths>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
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

// Through AtomicFile: a seeding that is cut short leaves no half file whose new date would keep
// it from being copied again.
bool copyFile(const fs::path& from, const fs::path& to, std::string* error) {
    const FileDescriptor in(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat info {};
    AtomicFile out(to.string());
    if (!in.isOpen() || ::fstat(in.get(), &info) != 0 || !out.create()) {
        return report(error,
                      "cannot copy " + from.string() + ": " +
                          (out.errorText().empty() ? std::strerror(errno) : out.errorText()));
    }
    const CopyResult copied = copyFileBytes(in.get(), 0, out.descriptor(), 0, info.st_size);
    if (copied.failure != CopyResult::Failure::None || copied.bytes != info.st_size ||
        !out.commit(AtomicFile::Sync::None)) {
        return report(error, "cannot copy " + from.string() + ": " +
                                 (copied.errorText.empty() ? out.errorText() : copied.errorText));
    }
    return true;
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
        std::error_code dateError; // a date that cannot be read: copy
        const bool current = fs::exists(target, dateError) &&
                             fs::last_write_time(target, dateError) >=
                                 fs::last_write_time(entry.path(), dateError) &&
                             !dateError;
        if (!current && !copyFile(entry.path(), target, error)) {
            return false;
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
