#include "store/ArchiveFormat.h"

#include "base/RuntimeError.h"
#include "platform/system/CodePage.h"
#include "platform/system/FileDescriptor.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_set>

namespace pluvarine {

namespace {

constexpr std::size_t kMaxFileNameBytes = 255;

[[noreturn]] void damaged(const std::string& reason) {
    throw RuntimeError(kDamagedArchiveError, "The archive is damaged: " + reason);
}

std::int64_t littleEndian(const unsigned char* bytes, int count) {
    std::uint32_t value = 0;
    for (int i = count - 1; i >= 0; --i) {
        value = (value << 8) | bytes[i];
    }
    if (count == 2) {
        return static_cast<std::int16_t>(value);
    }
    return static_cast<std::int32_t>(value);
}

std::string quoted(const std::string& name) {
    std::string text = "\"";
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02X", byte);
            text += escaped;
        } else {
            text += c;
        }
    }
    return text + "\"";
}

} // namespace

bool isBareArchiveName(std::string_view nameBytes) {
    if (nameBytes.empty() || nameBytes == "." || nameBytes == "..") {
        return false;
    }
    if (nameBytes.find_first_of(std::string_view("/\\:\0", 4)) != std::string_view::npos) {
        return false;
    }
    return fromCodePage(nameBytes).size() <= kMaxFileNameBytes;
}

std::vector<ArchiveEntry> readArchiveIndex(const ArchiveReadAt& readAt, std::int64_t size) {
    unsigned char number[4];
    std::int64_t offset = 0;
    auto readNumber = [&](int count, std::int64_t record, const char* what) {
        if (!readAt(offset, reinterpret_cast<char*>(number), static_cast<std::size_t>(count))) {
            if (record == 0) {
                damaged("it ends before its record count");
            }
            damaged("record " + std::to_string(record) + " is cut short in its " + what);
        }
        offset += count;
        return littleEndian(number, count);
    };

    const std::int64_t count = readNumber(4, 0, "count");
    if (count < 0) {
        damaged("its record count is negative (" + std::to_string(count) + ")");
    }
    std::vector<ArchiveEntry> entries;
    std::unordered_set<std::string> names;
    for (std::int64_t record = 1; record <= count; ++record) {
        const std::int64_t nameLength = readNumber(2, record, "name length");
        if (nameLength <= 0) {
            damaged("record " + std::to_string(record) + " has a name length of " +
                    std::to_string(nameLength));
        }
        std::string nameBytes(static_cast<std::size_t>(nameLength), '\0');
        if (!readAt(offset, nameBytes.data(), nameBytes.size())) {
            damaged("record " + std::to_string(record) + " is cut short in its name");
        }
        offset += nameLength;
        ArchiveEntry entry;
        entry.name = fromCodePage(nameBytes);
        if (!isBareArchiveName(nameBytes)) {
            damaged("record " + std::to_string(record) + " names " + quoted(entry.name) +
                    ", which is not a bare file name");
        }
        const std::int64_t dataLength = readNumber(4, record, "data length");
        if (dataLength < 0) {
            damaged("record " + std::to_string(record) + " has a negative data length (" +
                    std::to_string(dataLength) + ")");
        }
        if (dataLength > size - offset) {
            damaged("record " + std::to_string(record) + " (" + quoted(entry.name) + ") claims " +
                    std::to_string(dataLength) + " bytes, but only " +
                    std::to_string(size - offset) + " follow");
        }
        if (!names.insert(entry.name).second) {
            damaged("the name " + quoted(entry.name) + " appears twice");
        }
        entry.dataOffset = offset;
        entry.dataLength = static_cast<std::int32_t>(dataLength);
        offset += dataLength;
        entries.push_back(std::move(entry));
    }
    if (offset != size) {
        damaged(std::to_string(size - offset) + " bytes follow the last of its " +
                std::to_string(count) + " records");
    }
    return entries;
}

std::vector<ArchiveEntry> readArchiveIndex(std::string_view archiveBytes) {
    const auto size = static_cast<std::int64_t>(archiveBytes.size());
    return readArchiveIndex(
        [&](std::int64_t offset, char* buffer, std::size_t count) {
            if (offset < 0 || offset > size || static_cast<std::int64_t>(count) > size - offset) {
                return false;
            }
            std::memcpy(buffer, archiveBytes.data() + offset, count);
            return true;
        },
        size);
}

std::vector<ArchiveEntry> readArchiveIndexOfDescriptor(int fd, std::int64_t size) {
    // A record's header is read with one call: a small window from its first byte.
    constexpr std::size_t kWindow = 4096;
    std::vector<char> window(kWindow);
    std::int64_t windowStart = 0;
    std::size_t windowSize = 0;
    return readArchiveIndex(
        [&](std::int64_t offset, char* buffer, std::size_t count) {
            if (offset < windowStart || offset + static_cast<std::int64_t>(count) >
                                            windowStart + static_cast<std::int64_t>(windowSize)) {
                if (count > window.size()) {
                    window.resize(count);
                }
                windowStart = offset;
                windowSize = 0;
                while (windowSize < window.size()) {
                    const ssize_t got =
                        ::pread(fd, window.data() + windowSize, window.size() - windowSize,
                                offset + static_cast<std::int64_t>(windowSize));
                    if (got < 0 && errno == EINTR) {
                        continue;
                    }
                    if (got <= 0) {
                        break;
                    }
                    windowSize += static_cast<std::size_t>(got);
                }
                if (windowSize < count) {
                    return false;
                }
            }
            std::memcpy(buffer, window.data() + (offset - windowStart), count);
            return true;
        },
        size);
}

std::vector<ArchiveEntry> readArchiveIndexOfFile(const std::string& archive) {
    const FileDescriptor fd(::open(archive.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat info {};
    if (!fd.isOpen() || ::fstat(fd.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
        const std::string reason = fd.isOpen() ? "it is not a file" : std::strerror(errno);
        throw RuntimeError(RuntimeError::FileNotFound,
                           "The archive " + archive + " cannot be opened: " + reason);
    }
    return readArchiveIndexOfDescriptor(fd.get(), info.st_size);
}

} // namespace pluvarine
