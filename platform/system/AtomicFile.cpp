#include "platform/system/AtomicFile.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <mutex>
#include <random>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace pluvarine {

namespace {

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

constexpr std::string_view kPrefix = ".pluvarine-";
constexpr std::string_view kSuffix = ".tmp";

// A temporary file of ours that no running process writes: its name carries the id of a process
// that has ended, or no process id at all (the names of older versions).
bool isStaleTemporary(std::string_view name) {
    if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix)) {
        return false;
    }
    const std::string_view middle =
        name.substr(kPrefix.size(), name.size() - kPrefix.size() - kSuffix.size());
    const std::size_t dash = middle.find('-');
    if (dash == std::string_view::npos) {
        return middle.size() == 16 && middle.find_first_not_of("0123456789abcdef") ==
                                          std::string_view::npos; // an older version's name
    }
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(middle.data(), middle.data() + dash, pid);
    if (error != std::errc() || end != middle.data() + dash || pid <= 0) {
        return false; // not a name this class gives
    }
    return pid != ::getpid() && ::kill(pid, 0) != 0 && errno == ESRCH;
}

// Once per folder and process: later writes of this process cannot meet files of a process that
// ended before it started, and a folder of many files is listed only once.
void removeStaleTemporaries(const std::string& folder) {
    static std::mutex mutex;
    static std::set<std::string> cleaned;
    {
        const std::lock_guard lock(mutex);
        if (!cleaned.insert(folder).second) {
            return;
        }
    }
    DIR* dir = ::opendir(folder.c_str());
    if (dir == nullptr) {
        return;
    }
    while (const dirent* entry = ::readdir(dir)) {
        struct stat info {};
        if (isStaleTemporary(entry->d_name) &&
            ::fstatat(::dirfd(dir), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(info.st_mode)) {
            ::unlinkat(::dirfd(dir), entry->d_name, 0);
        }
    }
    ::closedir(dir);
}

std::string randomSuffix() {
    static std::mt19937_64 generator{std::random_device{}()};
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(generator()));
    return text;
}

} // namespace

AtomicFile::AtomicFile(std::string targetPath) : m_target(std::move(targetPath)) {}

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : m_target(std::move(other.m_target)), m_temporary(std::move(other.m_temporary)),
      m_error(std::move(other.m_error)), m_fd(std::exchange(other.m_fd, -1)),
      m_replaced(other.m_replaced) {
    other.m_temporary.clear();
}

AtomicFile::~AtomicFile() {
    discard();
}

bool AtomicFile::fail() {
    m_error = std::strerror(errno);
    return false;
}

bool AtomicFile::create() {
    struct stat existing {};
    if (::stat(m_target.c_str(), &existing) == 0 && S_ISREG(existing.st_mode)) {
        return create(existing.st_mode & 07777);
    }
    return create(std::nullopt);
}

bool AtomicFile::create(std::optional<unsigned> targetPermissions) {
    const std::string folder = folderOf(m_target);
    removeStaleTemporaries(folder);
    const std::string prefix =
        folder + "/" + std::string(kPrefix) + std::to_string(::getpid()) + "-";
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::string candidate = prefix + randomSuffix() + std::string(kSuffix);
        const int fd = ::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0) {
            m_fd = fd;
            m_temporary = std::move(candidate);
            if (targetPermissions) {
                ::fchmod(m_fd, *targetPermissions);
            }
            return true;
        }
        if (errno != EEXIST) {
            return fail();
        }
    }
    return fail();
}

bool AtomicFile::writeAll(const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(m_fd, data, size);
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return fail();
        }
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool AtomicFile::finish(Sync sync) {
    if (m_fd < 0) {
        return !m_temporary.empty();
    }
    bool ok = sync == Sync::None || ::fdatasync(m_fd) == 0 || fail();
    if (::close(m_fd) != 0 && ok) {
        ok = fail();
    }
    m_fd = -1;
    return ok;
}

bool AtomicFile::replaceTarget() {
    if (m_temporary.empty() || ::rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        return fail();
    }
    m_replaced = true;
    m_temporary.clear();
    return true;
}

bool AtomicFile::commit(Sync sync) {
    if (!finish(sync) || !replaceTarget()) {
        return false;
    }
    if (sync == Sync::Data) {
        // The rename itself reaches the disk with the folder's entry.
        const int folder = ::open(folderOf(m_target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder >= 0) {
            ::fsync(folder);
            ::close(folder);
        }
    }
    return true;
}

void AtomicFile::discard() {
    if (m_fd >= 0) {
        ::close(m_fd);
        m_fd = -1;
    }
    if (!m_replaced && !m_temporary.empty()) {
        ::unlink(m_temporary.c_str());
        m_temporary.clear();
    }
}

} // namespace pluvarine
