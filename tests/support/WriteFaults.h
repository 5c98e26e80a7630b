#pragma once

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace pluvarine::test {

// While it lives, writes beyond `bytes` fail as on a full disk (EFBIG, SIGXFSZ ignored).
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_previous);
        const rlimit tight{bytes, m_previous.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &tight);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_handler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_previous{};
    void (*m_handler)(int);
};

// Runs `work` in a child process without core dumps; gives the child's id and the signal that
// ended it (0 if it ended without one).
inline std::pair<pid_t, int> runInDyingChild(const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        const rlimit noCore{0, 0};
        ::setrlimit(RLIMIT_CORE, &noCore);
        work();
        ::_exit(1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return {child, WIFSIGNALED(status) ? WTERMSIG(status) : 0};
}

// The names of the entries in a folder, sorted.
inline std::vector<std::string> namesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace pluvarine::test
