#pragma once

// What the fuzz targets check for one input. The libFuzzer targets abort on a broken property;
// the store tests replay the kept corpus through the same functions. Each returns the empty
// text when the input behaved, else what went wrong.

#include "base/RuntimeError.h"
#include "platform/system/CodePage.h"
#include "platform/system/ProfileFile.h"
#include "store/ArchiveFormat.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace pluvarine::fuzz {

// The archive reader either refuses the bytes as damaged or lists records that describe the
// bytes exactly: writing the listed records again gives the same bytes.
inline std::string checkArchiveBytes(std::string_view bytes) {
    std::vector<ArchiveEntry> entries;
    try {
        entries = readArchiveIndex(bytes);
    } catch (const RuntimeError& error) {
        return error.number() == kDamagedArchiveError
                   ? std::string()
                   : "refused with error " + std::to_string(error.number());
    }
    std::string rebuilt;
    auto put = [&rebuilt](std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i) {
            rebuilt += static_cast<char>((value >> (8 * i)) & 0xFF);
        }
    };
    put(static_cast<std::uint32_t>(entries.size()), 4);
    for (const ArchiveEntry& entry : entries) {
        const std::optional<std::string> name = toCodePage(entry.name);
        if (!name || !isBareArchiveName(*name)) {
            return "accepted the name \"" + entry.name + "\"";
        }
        put(static_cast<std::uint32_t>(name->size()), 2);
        rebuilt += *name;
        put(static_cast<std::uint32_t>(entry.dataLength), 4);
        if (entry.dataOffset != static_cast<std::int64_t>(rebuilt.size()) || entry.dataLength < 0 ||
            entry.dataOffset + entry.dataLength > static_cast<std::int64_t>(bytes.size())) {
            return "a record's data lies outside the archive";
        }
        rebuilt += bytes.substr(static_cast<std::size_t>(entry.dataOffset),
                                static_cast<std::size_t>(entry.dataLength));
    }
    return rebuilt == bytes ? std::string() : "the records do not describe the whole archive";
}

// Input: section NUL key NUL value NUL profile text (without three NULs: the whole input is the
// profile text, looked up as "Sektion"/"Eintrag"). Reading never fails; a writable entry reads
// back as the platform's reading of its value, and writing it again changes nothing.
inline std::string checkProfileBytes(std::string_view bytes) {
    std::string_view parts[3] = {"Sektion", "Eintrag", " 1"};
    std::string_view content = bytes;
    std::size_t pos = 0;
    bool split = true;
    for (std::string_view& part : parts) {
        const std::size_t nul = bytes.find('\0', pos);
        if (nul == std::string_view::npos) {
            split = false;
            break;
        }
        part = bytes.substr(pos, nul - pos);
        pos = nul + 1;
    }
    if (split) {
        content = bytes.substr(pos);
    } else {
        parts[0] = "Sektion";
        parts[1] = "Eintrag";
        parts[2] = " 1";
    }
    const auto [section, key, value] = parts;
    findProfileValue(content, section, key);
    if (!isWritableProfileEntry(section, key, value)) {
        return {};
    }
    const std::string updated = withProfileValue(content, section, key, value);
    const std::optional<std::string> expected =
        findProfileValue("[s]\r\nk=" + std::string(value), "s", "k");
    if (findProfileValue(updated, section, key) != expected) {
        return "the written value does not read back";
    }
    if (withProfileValue(updated, section, key, value) != updated) {
        return "writing the same value twice changed the file";
    }
    return {};
}

} // namespace pluvarine::fuzz
