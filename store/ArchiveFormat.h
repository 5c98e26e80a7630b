#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvarine {

// The project archive: a flat little-endian file without header or checksum.
//   int32 count N, then N records: int16 name length L, L name bytes (Windows-1252, a bare
//   file name), int32 data length D, D data bytes. The file ends after the last record.

// RuntimeError number of a damaged or hostile archive ("Bad file format").
constexpr int kDamagedArchiveError = 321;

struct ArchiveEntry {
    std::string name;            // UTF-8
    std::int64_t dataOffset = 0; // of the first data byte in the archive
    std::int32_t dataLength = 0;
};

// Reads size bytes at offset into buffer; false when they are not all there.
using ArchiveReadAt = std::function<bool(std::int64_t offset, char* buffer, std::size_t size)>;

// Validates the whole archive and lists its records. Throws RuntimeError(kDamagedArchiveError)
// with the reason for a damaged or hostile archive: a negative count or length, a record cut
// short, bytes after the last record, a name that is not a bare file name, a name twice.
std::vector<ArchiveEntry> readArchiveIndex(const ArchiveReadAt& readAt, std::int64_t size);
std::vector<ArchiveEntry> readArchiveIndex(std::string_view archiveBytes);
// The same for an open archive file of that size.
std::vector<ArchiveEntry> readArchiveIndexOfDescriptor(int fd, std::int64_t size);
// The same for an archive file; a file that cannot be opened throws RuntimeError(FileNotFound).
std::vector<ArchiveEntry> readArchiveIndexOfFile(const std::string& archive);

// A name as a record may hold it (code-page bytes): not empty, not "." or "..", no '/', '\',
// ':' (drives, streams) or NUL, and at most 255 bytes once in UTF-8.
bool isBareArchiveName(std::string_view nameBytes);

} // namespace pluvarine
