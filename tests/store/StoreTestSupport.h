#pragma once

// Fakes and file helpers shared by the store tests.

#include "platform/system/UserMessages.h"
#include "store/ProgressSink.h"

#include <QTemporaryDir>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <utility>
#include <vector>

namespace pluvarine::testing {

class RecordingProgress : public ProgressSink {
public:
    void ShowProgress(const std::string& text, std::int32_t percentage) override {
        shown.emplace_back(text, percentage);
    }
    void EndProgress() override { ++ended; }

    std::vector<int> percentages() const {
        std::vector<int> values;
        for (const auto& entry : shown) {
            values.push_back(entry.second);
        }
        return values;
    }

    std::vector<std::pair<std::string, int>> shown;
    int ended = 0;
};

class RecordingMessages : public UserMessages {
public:
    void showMessage(const std::string& text, Icon icon) override {
        messages.emplace_back(text, icon);
    }
    std::vector<std::pair<std::string, Icon>> messages;
};

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

inline void writeFile(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

// Little-endian integers and archive records, as the archive format lays them out.
inline std::string le32(std::int64_t value) {
    const auto bits = static_cast<std::uint32_t>(value);
    return {static_cast<char>(bits & 0xFF), static_cast<char>((bits >> 8) & 0xFF),
            static_cast<char>((bits >> 16) & 0xFF), static_cast<char>((bits >> 24) & 0xFF)};
}

inline std::string le16(std::int64_t value) {
    const auto bits = static_cast<std::uint16_t>(value);
    return {static_cast<char>(bits & 0xFF), static_cast<char>((bits >> 8) & 0xFF)};
}

inline std::string record(const std::string& nameBytes, const std::string& data) {
    return le16(static_cast<std::int64_t>(nameBytes.size())) + nameBytes +
           le32(static_cast<std::int64_t>(data.size())) + data;
}

// Every file and folder below root (dot-files included) with the content of the files:
// compared before and after an operation, it shows anything written, changed or lost.
inline std::map<std::string, std::string> snapshot(const std::filesystem::path& root) {
    std::map<std::string, std::string> entries;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        const std::string relative = std::filesystem::relative(entry.path(), root).string();
        entries[relative] = entry.is_directory() ? std::string("<folder>") : readFile(entry);
    }
    return entries;
}

// While it lives, no file of the process can grow beyond limit bytes: writes beyond fail as on
// a full disk (EFBIG, with SIGXFSZ ignored).
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t limit) {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_previous);
        rlimit tight = m_previous;
        tight.rlim_cur = limit;
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
    void (*m_handler)(int) = nullptr;
};

// A temporary tree: root/obj (the folder packed and restored), root/destination (the archive).
class ArchiveTree {
public:
    ArchiveTree() {
        std::filesystem::create_directory(obj());
        std::filesystem::create_directory(destination());
    }
    std::filesystem::path root() const { return m_dir.path().toStdString(); }
    std::filesystem::path obj() const { return root() / "obj"; }
    std::filesystem::path destination() const { return root() / "destination"; }
    std::string objFolder() const { return obj().string() + "/"; }
    std::string archive() const { return (destination() / "pluvarine.dat").string(); }

private:
    QTemporaryDir m_dir;
};

} // namespace pluvarine::testing
