#include "store/ProjectArchive.h"

#include "base/Conversions.h"
#include "base/ResumeNext.h"
#include "base/RuntimeError.h"
#include "platform/system/AtomicFile.h"
#include "platform/system/CodePage.h"
#include "platform/system/FileCopy.h"
#include "platform/system/FileDescriptor.h"
#include "platform/system/UserMessages.h"
#include "store/ArchiveFormat.h"
#include "store/text/LoadText.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <limits>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace pluvarine {

namespace {

bool s_running = false;

// One pack or unpack at a time; see archiveOperationRunning().
class ArchiveBusy {
public:
    ArchiveBusy() {
        if (s_running) {
            throw RuntimeError(RuntimeError::PathFileAccess,
                               "The project archive is busy: another pack or unpack is running");
        }
        s_running = true;
    }
    ~ArchiveBusy() { s_running = false; }
    ArchiveBusy(const ArchiveBusy&) = delete;
    ArchiveBusy& operator=(const ArchiveBusy&) = delete;
};

std::string withSlash(const std::string& folder) {
    return !folder.empty() && folder.back() == '/' ? folder : folder + "/";
}

char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// '*' any run of characters, '?' one character, ASCII case ignored as on Windows.
bool wildcardMatch(std::string_view name, std::string_view pattern) {
    std::size_t n = 0;
    std::size_t p = 0;
    std::optional<std::size_t> star;
    std::size_t starName = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            starName = n;
        } else if (p < pattern.size() &&
                   (pattern[p] == '?' || asciiLower(pattern[p]) == asciiLower(name[n]))) {
            ++p;
            ++n;
        } else if (star) {
            p = *star + 1;
            n = ++starName;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') {
        ++p;
    }
    return p == pattern.size();
}

// A trailing ".*" also matches names without an extension, so "*.*" lists every file.
bool matchesPattern(std::string_view name, std::string_view pattern) {
    return wildcardMatch(name, pattern) ||
           (pattern.size() >= 2 && pattern.substr(pattern.size() - 2) == ".*" &&
            wildcardMatch(name, pattern.substr(0, pattern.size() - 2)));
}

// Ordinary files: regular files that are not dot-files ("." and ".." included), not links.
std::vector<std::string> listOrdinaryFiles(const std::string& folder, const std::string& pattern) {
    DIR* dir = ::opendir(folder.c_str());
    if (dir == nullptr) {
        throw RuntimeError(RuntimeError::PathFileAccess,
                           "The folder " + folder + " cannot be listed: " + std::strerror(errno));
    }
    std::vector<std::string> names;
    while (const dirent* entry = ::readdir(dir)) {
        const std::string name = entry->d_name;
        if (name.front() == '.' || !matchesPattern(name, pattern)) {
            continue;
        }
        bool regular = entry->d_type == DT_REG;
        if (entry->d_type == DT_UNKNOWN) {
            struct stat info {};
            regular = ::fstatat(::dirfd(dir), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0 &&
                      S_ISREG(info.st_mode);
        }
        if (regular) {
            names.push_back(name);
        }
    }
    ::closedir(dir);
    // The listing order is the file system's; name order makes archives reproducible.
    std::sort(names.begin(), names.end());
    return names;
}

void putLittleEndian(std::string& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out += static_cast<char>((value >> (8 * i)) & 0xFF);
    }
}

bool writeAt(int fd, const std::string& bytes, std::int64_t offset, std::string& errorText) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t put = ::pwrite(fd, bytes.data() + done, bytes.size() - done,
                                     static_cast<off_t>(offset + done));
        if (put < 0 && errno == EINTR) {
            continue;
        }
        if (put < 0) {
            errorText = std::strerror(errno);
            return false;
        }
        done += static_cast<std::size_t>(put);
    }
    return true;
}

[[noreturn]] void archiveWriteFailed(const std::string& archive, const std::string& reason) {
    throw RuntimeError(RuntimeError::PathFileAccess,
                       "The archive " + archive + " cannot be written: " + reason);
}

void reportProgress(ProgressSink& progress, const std::string& text, std::size_t done,
                    std::size_t total, const EventPump& pumpEvents) {
    tryStep([&] { progress.ShowProgress(text, toInt32(100.0 / total * done)); });
    if (pumpEvents) {
        tryStep(pumpEvents);
    }
}

// Copies like copyFileBytes, in pieces of kCopyPiece bytes with events let run between them,
// so that a large file does not hold up the window for all of its length. The re-entry rule
// is that of the whole pack or unpack (archiveOperationRunning()).
constexpr std::int64_t kCopyPiece = 8 << 20;
constexpr std::int64_t kSmallFile = 64 << 10;

CopyResult copyPumping(int from, std::int64_t fromOffset, int to, std::int64_t toOffset,
                       std::int64_t count, const EventPump& pumpEvents) {
    CopyResult total;
    while (total.bytes < count) {
        const std::int64_t want = std::min(kCopyPiece, count - total.bytes);
        const CopyResult piece =
            copyFileBytes(from, fromOffset + total.bytes, to, toOffset + total.bytes, want);
        total.bytes += piece.bytes;
        if (piece.failure != CopyResult::Failure::None || piece.bytes < want) {
            total.failure = piece.failure;
            total.errorText = piece.errorText;
            break;
        }
        if (total.bytes < count && pumpEvents) {
            tryStep(pumpEvents);
        }
    }
    return total;
}

// Records of small files wait in `pending` and go to the archive together: one write per
// megabyte rather than one per file. They end at the archive's present end.
constexpr std::size_t kPendingLimit = 1 << 20;

void writePending(const AtomicFile& out, std::string& pending, std::int64_t end,
                  const std::string& archive) {
    std::string errorText;
    if (!pending.empty() && !writeAt(out.descriptor(), pending,
                                     end - static_cast<std::int64_t>(pending.size()), errorText)) {
        archiveWriteFailed(archive, errorText);
    }
    pending.clear();
}

// Appends the record of one file at offset (small ones to `pending`); returns the new end of
// the archive, or nullopt with a problem when the file is left out. Failures to write the
// archive throw.
std::optional<std::int64_t> packOne(const std::string& folder, const std::string& name,
                                    const AtomicFile& out, std::int64_t offset,
                                    std::string& pending, const std::string& archive,
                                    PackResult& result, const EventPump& pumpEvents) {
    auto leaveOut = [&](const std::string& reason) -> std::optional<std::int64_t> {
        result.problems.push_back({name, reason});
        return std::nullopt;
    };
    const std::optional<std::string> nameBytes = toCodePage(name);
    if (!nameBytes) {
        return leaveOut("the name cannot be written in the code page Windows-1252");
    }
    const FileDescriptor in(
        ::open((folder + name).c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat info {};
    if (!in.isOpen() || ::fstat(in.get(), &info) != 0) {
        return leaveOut(std::string("it cannot be read: ") + std::strerror(errno));
    }
    if (!S_ISREG(info.st_mode)) {
        return leaveOut("it is no longer an ordinary file");
    }
    if (info.st_size > std::numeric_limits<std::int32_t>::max()) {
        return leaveOut("it is larger than an archive record can hold (2 GiB - 1 bytes)");
    }
    const auto size = static_cast<std::int32_t>(info.st_size);
    std::string header;
    putLittleEndian(header, static_cast<std::uint32_t>(nameBytes->size()), 2);
    header += *nameBytes;
    putLittleEndian(header, static_cast<std::uint32_t>(size), 4);
    std::string errorText;
    if (size <= kSmallFile) {
        // For a few kilobytes the kernel copy costs more than reading them.
        const std::size_t before = pending.size();
        pending += header;
        const std::size_t start = pending.size();
        pending.resize(start + static_cast<std::size_t>(size));
        for (std::int64_t got = 0; got < size;) {
            const ssize_t n = ::pread(in.get(), pending.data() + start + got,
                                      static_cast<std::size_t>(size - got), got);
            if (n < 0 && errno == EINTR) {
                continue;
            }
            if (n <= 0) {
                const std::string reason =
                    n < 0 ? std::string("it cannot be read: ") + std::strerror(errno)
                          : "it became shorter while it was packed";
                pending.resize(before);
                return leaveOut(reason);
            }
            got += n;
        }
        return offset + static_cast<std::int64_t>(header.size()) + size;
    }
    writePending(out, pending, offset, archive);
    if (!writeAt(out.descriptor(), header, offset, errorText)) {
        archiveWriteFailed(archive, errorText);
    }
    const std::int64_t dataOffset = offset + static_cast<std::int64_t>(header.size());
    const CopyResult copied =
        copyPumping(in.get(), 0, out.descriptor(), dataOffset, size, pumpEvents);
    if (copied.failure == CopyResult::Failure::Write) {
        archiveWriteFailed(archive, copied.errorText);
    }
    if (copied.failure == CopyResult::Failure::Read) {
        return leaveOut("it cannot be read: " + copied.errorText);
    }
    if (copied.bytes != size) {
        return leaveOut("it became shorter while it was packed");
    }
    return dataOffset + size;
}

} // namespace

bool archiveOperationRunning() {
    return s_running;
}

PackResult PackFolder(const std::string& folder, const std::string& archive,
                      const std::string& pattern, ProgressSink& progress,
                      const EventPump& pumpEvents) {
    const ArchiveBusy busy;
    const std::string source = withSlash(folder);
    std::vector<std::string> names = listOrdinaryFiles(source, pattern);
    struct stat archiveInfo {};
    if (::stat(archive.c_str(), &archiveInfo) == 0) {
        // An archive inside the folder it packs is not packed into itself.
        std::erase_if(names, [&](const std::string& name) {
            struct stat info {};
            return ::stat((source + name).c_str(), &info) == 0 &&
                   info.st_dev == archiveInfo.st_dev && info.st_ino == archiveInfo.st_ino;
        });
    }

    AtomicFile out(archive);
    if (!out.create()) {
        archiveWriteFailed(archive, out.errorText());
    }
    const std::string text = LoadText(4000);
    PackResult result;
    std::int64_t end = 4; // after the count, which is written last
    std::string pending;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (const std::optional<std::int64_t> next =
                packOne(source, names[i], out, end, pending, archive, result, pumpEvents)) {
            end = *next;
            ++result.count;
        }
        if (pending.size() >= kPendingLimit) {
            writePending(out, pending, end, archive);
        }
        reportProgress(progress, text, i + 1, names.size(), pumpEvents);
    }
    writePending(out, pending, end, archive);
    std::string count;
    putLittleEndian(count, static_cast<std::uint32_t>(result.count), 4);
    std::string errorText;
    if (!writeAt(out.descriptor(), count, 0, errorText)) {
        archiveWriteFailed(archive, errorText);
    }
    // A record left out after some of it was written leaves bytes beyond the end.
    if (::ftruncate(out.descriptor(), end) != 0 || !out.commit(AtomicFile::Sync::None)) {
        archiveWriteFailed(archive,
                           out.errorText().empty() ? std::strerror(errno) : out.errorText());
    }
    tryStep([&] { progress.EndProgress(); });
    return result;
}

std::int32_t UnpackFolder(const std::string& archive, const std::string& folder,
                          ProgressSink& progress, const EventPump& pumpEvents,
                          UserMessages& messages) {
    struct stat archiveInfo {};
    if (::stat(archive.c_str(), &archiveInfo) != 0 || !S_ISREG(archiveInfo.st_mode)) {
        messages.showMessage("The archive does not exist!", UserMessages::Icon::Critical);
        return 0;
    }
    const ArchiveBusy busy;
    const std::string target = withSlash(folder);
    struct stat folderInfo {};
    if (::stat(target.c_str(), &folderInfo) != 0 || !S_ISDIR(folderInfo.st_mode)) {
        throw RuntimeError(RuntimeError::PathFileAccess,
                           "The folder " + target + " does not exist");
    }
    const FileDescriptor in(::open(archive.c_str(), O_RDONLY | O_CLOEXEC));
    if (!in.isOpen()) {
        throw RuntimeError(RuntimeError::FileNotFound,
                           "The archive " + archive + " cannot be opened: " + std::strerror(errno));
    }
    const std::vector<ArchiveEntry> entries =
        readArchiveIndexOfDescriptor(in.get(), archiveInfo.st_size);
    // Permission bits of the files that will be replaced; a folder in the way refuses it all.
    std::vector<std::optional<unsigned>> permissions;
    permissions.reserve(entries.size());
    for (const ArchiveEntry& entry : entries) {
        struct stat info {};
        if (::lstat((target + entry.name).c_str(), &info) != 0 || S_ISLNK(info.st_mode)) {
            permissions.emplace_back();
        } else if (S_ISDIR(info.st_mode)) {
            throw RuntimeError(RuntimeError::PathFileAccess,
                               "The archive holds a file \"" + entry.name +
                                   "\", but the folder has a sub-folder of that name");
        } else {
            permissions.emplace_back(info.st_mode & 07777);
        }
    }

    const std::string text = LoadText(4001);
    std::vector<AtomicFile> files;
    files.reserve(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const ArchiveEntry& entry = entries[i];
        AtomicFile& file = files.emplace_back(target + entry.name);
        if (!file.create(permissions[i])) {
            throw RuntimeError(RuntimeError::PathFileAccess,
                               "\"" + entry.name + "\" cannot be restored: " + file.errorText());
        }
        const CopyResult copied = copyPumping(in.get(), entry.dataOffset, file.descriptor(), 0,
                                              entry.dataLength, pumpEvents);
        if (copied.failure != CopyResult::Failure::None || copied.bytes != entry.dataLength ||
            !file.finish(AtomicFile::Sync::None)) {
            const std::string reason =
                copied.failure != CopyResult::Failure::None ? copied.errorText
                : copied.bytes != entry.dataLength ? "the archive changed while it was read"
                                                   : file.errorText();
            throw RuntimeError(RuntimeError::PathFileAccess,
                               "\"" + entry.name + "\" cannot be restored: " + reason);
        }
        reportProgress(progress, text, i + 1, entries.size(), pumpEvents);
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!files[i].replaceTarget()) {
            throw RuntimeError(RuntimeError::PathFileAccess,
                               "Restored " + std::to_string(i) + " of " +
                                   std::to_string(files.size()) + " files; \"" + entries[i].name +
                                   "\" cannot be replaced: " + files[i].errorText());
        }
    }
    tryStep([&] { progress.EndProgress(); });
    return static_cast<std::int32_t>(entries.size());
}

} // namespace pluvarine
