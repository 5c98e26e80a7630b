#include "platform/system/ProfileFile.h"

#include "platform/system/AtomicFile.h"
#include "platform/system/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace pluvarine {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return asciiLower(x) == asciiLower(y);
           });
}

std::string_view unquoted(std::string_view value) {
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front()) {
        return value.substr(1, value.size() - 2);
    }
    return value;
}

struct Line {
    enum class Kind { Blank, Comment, Section, Key, Other };
    Kind kind = Kind::Blank;
    std::size_t begin = 0;      // first byte of the line
    std::size_t contentEnd = 0; // end of the line without its line break
    std::size_t next = 0;       // first byte after the line break
    std::string_view name;      // section or key name, trimmed
    std::string_view value;     // raw value after '=' (keys only)
};

Line classify(std::string_view content, std::size_t begin, std::size_t contentEnd,
              std::size_t next) {
    Line line;
    line.begin = begin;
    line.contentEnd = contentEnd;
    line.next = next;
    const std::string_view text = trimmed(content.substr(begin, contentEnd - begin));
    if (text.empty()) {
        line.kind = Line::Kind::Blank;
    } else if (text.front() == ';') {
        line.kind = Line::Kind::Comment;
    } else if (const std::size_t close = text.find(']');
               text.front() == '[' && close != std::string_view::npos) {
        line.kind = Line::Kind::Section;
        line.name = trimmed(text.substr(1, close - 1));
    } else if (const std::size_t equals = text.find('='); equals != std::string_view::npos) {
        line.kind = Line::Kind::Key;
        line.name = trimmed(text.substr(0, equals));
        line.value = text.substr(equals + 1);
    } else {
        line.kind = Line::Kind::Other;
    }
    return line;
}

std::vector<Line> splitLines(std::string_view content) {
    std::vector<Line> lines;
    std::size_t begin = 0;
    while (begin < content.size()) {
        const std::size_t lf = content.find('\n', begin);
        const std::size_t next = lf == std::string_view::npos ? content.size() : lf + 1;
        std::size_t contentEnd = lf == std::string_view::npos ? content.size() : lf;
        if (contentEnd > begin && content[contentEnd - 1] == '\r') {
            --contentEnd;
        }
        lines.push_back(classify(content, begin, contentEnd, next));
        begin = next;
    }
    return lines;
}

// The lines of the first section with this name: [first, last) indexes of the lines after its
// header, or nullopt. first - 1 is the header.
struct Block {
    std::size_t first;
    std::size_t last;
};

std::optional<Block> findSection(const std::vector<Line>& lines, std::string_view section) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].kind == Line::Kind::Section && sameName(lines[i].name, section)) {
            std::size_t end = i + 1;
            while (end < lines.size() && lines[end].kind != Line::Kind::Section) {
                ++end;
            }
            return Block{i + 1, end};
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> findKey(const std::vector<Line>& lines, Block block,
                                   std::string_view key) {
    for (std::size_t i = block.first; i < block.last; ++i) {
        if (lines[i].kind == Line::Kind::Key && sameName(lines[i].name, key)) {
            return i;
        }
    }
    return std::nullopt;
}

enum class ReadResult { Ok, Missing, Failed };

// The whole file; Missing when there is no file, Failed when there is one that cannot be read.
ReadResult readWholeFile(const std::string& fileName, std::string& content) {
    content.clear();
    const FileDescriptor fd(::open(fileName.c_str(), O_RDONLY | O_CLOEXEC));
    if (!fd.isOpen()) {
        return errno == ENOENT ? ReadResult::Missing : ReadResult::Failed;
    }
    struct stat info {};
    if (::fstat(fd.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
        return ReadResult::Failed;
    }
    char chunk[65536];
    for (;;) {
        const ssize_t got = ::read(fd.get(), chunk, sizeof chunk);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return ReadResult::Failed;
        }
        if (got == 0) {
            return ReadResult::Ok;
        }
        content.append(chunk, static_cast<std::size_t>(got));
    }
}

bool hasLineBreakOrNul(std::string_view text) {
    return text.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
}

} // namespace

std::optional<std::string> findProfileValue(std::string_view content, std::string_view section,
                                            std::string_view key) {
    const std::vector<Line> lines = splitLines(content);
    const std::optional<Block> block = findSection(lines, trimmed(section));
    if (!block) {
        return std::nullopt;
    }
    const std::optional<std::size_t> line = findKey(lines, *block, trimmed(key));
    if (!line) {
        return std::nullopt;
    }
    return std::string(unquoted(trimmed(lines[*line].value)));
}

bool isWritableProfileEntry(std::string_view section, std::string_view key,
                            std::string_view value) {
    section = trimmed(section);
    key = trimmed(key);
    return !section.empty() && !key.empty() && !hasLineBreakOrNul(section) &&
           !hasLineBreakOrNul(key) && !hasLineBreakOrNul(value) &&
           section.find(']') == std::string_view::npos && key.find('=') == std::string_view::npos &&
           key.front() != ';' && key.front() != '[';
}

std::string withProfileValue(std::string_view content, std::string_view section,
                             std::string_view key, std::string_view value) {
    section = trimmed(section);
    key = trimmed(key);
    const std::vector<Line> lines = splitLines(content);
    std::string result(content);
    const std::optional<Block> block = findSection(lines, section);
    if (!block) {
        if (!result.empty() && result.back() != '\n') {
            result += "\r\n";
        }
        result.append("[").append(section).append("]\r\n");
        result.append(key).append("=").append(value).append("\r\n");
        return result;
    }
    if (const std::optional<std::size_t> index = findKey(lines, *block, key)) {
        const Line& line = lines[*index];
        std::string replacement(line.name);
        replacement.append("=").append(value);
        result.replace(line.begin, line.contentEnd - line.begin, replacement);
        return result;
    }
    std::size_t after = block->first - 1; // the header when the section has no entry yet
    for (std::size_t i = block->first; i < block->last; ++i) {
        if (lines[i].kind != Line::Kind::Blank) {
            after = i;
        }
    }
    const Line& anchor = lines[after];
    std::string insertion;
    if (content[anchor.next - 1] != '\n') { // the last line of a file without a final break
        insertion = "\r\n";
    }
    insertion.append(key).append("=").append(value).append("\r\n");
    result.insert(anchor.next, insertion);
    return result;
}

std::uint32_t GetPrivateProfileStringA(std::string_view section, std::string_view key,
                                       std::string_view defaultValue, char* buffer,
                                       std::uint32_t size, const std::string& fileName) {
    if (size == 0 || buffer == nullptr) {
        return 0;
    }
    std::string content;
    std::optional<std::string> value;
    if (readWholeFile(fileName, content) == ReadResult::Ok) {
        value = findProfileValue(content, section, key);
    }
    const std::string_view text = value ? std::string_view(*value) : defaultValue;
    const std::size_t count = std::min<std::size_t>(text.size(), size - 1);
    std::copy_n(text.data(), count, buffer);
    buffer[count] = '\0';
    return static_cast<std::uint32_t>(count);
}

std::int32_t WritePrivateProfileStringA(std::string_view section, std::string_view key,
                                        std::string_view value, const std::string& fileName) {
    if (!isWritableProfileEntry(section, key, value)) {
        return 0;
    }
    std::string content;
    if (readWholeFile(fileName, content) == ReadResult::Failed) {
        return 0; // never replace a file whose content could not be read
    }
    const std::string updated = withProfileValue(content, section, key, value);
    AtomicFile file(fileName);
    if (!file.create() || !file.writeAll(updated.data(), updated.size()) ||
        !file.commit(AtomicFile::Sync::Data)) {
        return 0;
    }
    return 1;
}

} // namespace pluvarine
