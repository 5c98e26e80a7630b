#pragma once

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <sys/mount.h>
#include <unistd.h>

namespace pluvarine::test {

// A real file-system fault on a folder, as an unprivileged user on a read-only folder or on a
// full disk meets it; the files the folder held stay, byte for byte. Root is not stopped by
// permission bits, so for root the folder gets a small tmpfs of its own mounted over it with
// its files copied in, then remounted read-only or filled up (ENOSPC). Each call returns false
// where this cannot be done here (a full disk without mount rights): skip the test then.
class FaultyFolder {
public:
    explicit FaultyFolder(std::filesystem::path folder) : m_folder(std::move(folder)) {}
    ~FaultyFolder() {
        if (m_mounted) {
            ::umount2(m_folder.c_str(), MNT_DETACH);
        }
        std::filesystem::permissions(m_folder, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, m_error);
    }
    FaultyFolder(const FaultyFolder&) = delete;
    FaultyFolder& operator=(const FaultyFolder&) = delete;

    bool makeReadOnly() {
        if (::geteuid() != 0) {
            std::filesystem::permissions(m_folder, std::filesystem::perms::owner_write,
                                         std::filesystem::perm_options::remove, m_error);
            return !m_error;
        }
        return mountCopy() &&
               ::mount("none", m_folder.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    }

    bool makeFull() {
        if (::geteuid() != 0 || !mountCopy()) {
            return false;
        }
        // A hidden filler, so listings of ordinary files see only the folder's own files.
        std::ofstream filler(m_folder / ".filler", std::ios::binary);
        const std::string block(4096, 'x');
        while (filler.write(block.data(), static_cast<std::streamsize>(block.size()))) {
        }
        return true;
    }

private:
    bool mountCopy() {
        std::map<std::filesystem::path, std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder)) {
            std::ifstream in(entry.path(), std::ios::binary);
            files[entry.path().filename()] = {std::istreambuf_iterator<char>(in), {}};
        }
        if (::mount("tmpfs", m_folder.c_str(), "tmpfs", 0, "size=256k,mode=0755") != 0) {
            return false;
        }
        m_mounted = true;
        for (const auto& [name, bytes] : files) {
            std::ofstream(m_folder / name, std::ios::binary) << bytes;
        }
        return true;
    }

    std::filesystem::path m_folder;
    bool m_mounted = false;
    std::error_code m_error;
};

} // namespace pluvarine::test
