#include "platform/system/ProfileFile.h"

#include "tests/support/FileBytes.h"
#include "tests/support/WriteFaults.h"

#include <QTemporaryDir>
#include <array>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace pluvarine;

// ---- reading ----------------------------------------------------------------------------

TEST(ProfileRead, FindsTheValue) {
    // clang-format off
    const std::tuple<const char*, const char*, const char*, const char*,
                     std::optional<std::string>> table[] = { // what, content, section, key, value
        {"plain", "[Sektion]\r\nEintrag=12\r\n", "Sektion", "Eintrag", "12"},
        {"names ignore case", "[SEKTION]\r\nEINTRAG= 7\r\n", "Sektion", "Eintrag", "7"},
        {"asked names trimmed", "[s]\r\nk=1\r\n", "  s\t", " k ", "1"},
        {"file names trimmed", "[ s ]\r\n  k  =  v  \r\n", "s", "k", "v"},
        {"value trimmed then unquoted", "[s]\r\nk=  \" v \"  \r\n", "s", "k", " v "},
        {"single quotes", "[s]\r\nk='v'\r\n", "s", "k", "v"},
        {"only one pair removed", "[s]\r\nk=\"\"v\"\"\r\n", "s", "k", "\"v\""},
        {"unmatched quotes stay", "[s]\r\nk=\"x'\r\n", "s", "k", "\"x'"},
        {"lone quote stays", "[s]\r\nk=\"\r\n", "s", "k", "\""},
        {"empty value is present", "[s]\r\nk=\r\n", "s", "k", ""},
        {"value keeps its '='", "[s]\r\nk=a=b\r\n", "s", "k", "a=b"},
        {"comment line", "[s]\r\n;k=1\r\nk=2\r\n", "s", "k", "2"},
        {"indented comment line", "[s]\r\n   ;k=1\r\nk=2\r\n", "s", "k", "2"},
        {"';' and '#' later are data", "[s]\r\nk=a;b#c\r\n", "s", "k", "a;b#c"},
        {"'#' starts no comment", "[s]\r\n#k=1\r\n", "s", "#k", "1"},
        {"line without '=' is no key", "[s]\r\nk\r\n", "s", "k", std::nullopt},
        {"blank lines ignored", "\r\n\r\n[s]\r\n\r\n  \r\nk=3\r\n", "s", "k", "3"},
        {"LF line ends", "[s]\nk=4\n", "s", "k", "4"},
        {"no final line break", "[s]\r\nk=5", "s", "k", "5"},
        {"first key wins", "[s]\r\nk=1\r\nK=2\r\n", "s", "k", "1"},
        {"first section wins", "[s]\r\na=1\r\n[t]\r\n[S]\r\nb=2\r\n", "s", "b", std::nullopt},
        {"before the first section", "k=0\r\n[s]\r\n", "s", "k", std::nullopt},
        {"junk after ']'", "[s]junk\r\nk=1\r\n", "s", "k", "1"},
        {"unclosed header is no section", "[s\r\nk=1\r\n", "s", "k", std::nullopt},
        {"other section's key", "[a]\r\nk=1\r\n[b]\r\n", "b", "k", std::nullopt},
        {"empty file", "", "s", "k", std::nullopt},
        {"only ASCII case folds", "[\xC4]\r\nk=1\r\n", "\xE4", "k", std::nullopt},
        {"8-bit value", "[s]\r\nk=Gr\xF6\xDF\x65\r\n", "s", "k", "Gr\xF6\xDF\x65"}};
    // clang-format on
    for (const auto& [what, content, section, key, value] : table)
        EXPECT_EQ(findProfileValue(content, section, key), value) << what;
}

// ---- writing ----------------------------------------------------------------------------

TEST(ProfileWrite, ChangesOnlyTheEntryAndRefusesEntriesThatCannotBeReadBack) {
    // clang-format off
    const std::array<const char*, 6> table[] = { // what, before, section, key, value, after
        {"new file", "", "SEKTION", "EINTRAG", " 7", "[SEKTION]\r\nEINTRAG= 7\r\n"},
        {"replace keeps spelling", "[Sektion]\r\nEintrag= 3\r\n", "SEKTION", "EINTRAG", " 4",
         "[Sektion]\r\nEintrag= 4\r\n"},
        {"replace keeps the rest", "; head\r\n[a]\r\n; note\r\nx = 1 \r\ny=2\r\n", "A", "X", "9",
         "; head\r\n[a]\r\n; note\r\nx=9\r\ny=2\r\n"},
        {"replace keeps LF", "[a]\nx=1\nz=2\n", "a", "x", "5", "[a]\nx=5\nz=2\n"},
        {"new key after the last entry", "[a]\r\nx=1\r\n\r\n[b]\r\ny=2\r\n", "a", "z", "3",
         "[a]\r\nx=1\r\nz=3\r\n\r\n[b]\r\ny=2\r\n"},
        {"new key in an empty section", "[a]\r\n[b]\r\n", "a", "k", "v", "[a]\r\nk=v\r\n[b]\r\n"},
        {"new key at the end", "[a]\r\nx=1", "a", "y", "2", "[a]\r\nx=1\r\ny=2\r\n"},
        {"new section appended", "[a]\r\nx=1\r\n", "b", "y", "2", "[a]\r\nx=1\r\n[b]\r\ny=2\r\n"},
        {"first of duplicate sections", "[a]\r\nx=1\r\n[a]\r\ny=2\r\n", "A", "y", "3",
         "[a]\r\nx=1\r\ny=3\r\n[a]\r\ny=2\r\n"},
        {"first of duplicate keys", "[a]\r\nk=1\r\nk=2\r\n", "a", "k", "3",
         "[a]\r\nk=3\r\nk=2\r\n"},
        {"lines before the first section stay", "k=0\r\n", "s", "k", "1", "k=0\r\n[s]\r\nk=1\r\n"},
        {"value as given", "", "s", "k", "  \"q\" ", "[s]\r\nk=  \"q\" \r\n"},
        {"names trimmed", "", " s ", "\tk ", "v", "[s]\r\nk=v\r\n"},
        {"junk header kept", "[a]junk\r\nk=1\r\n", "a", "k", "2", "[a]junk\r\nk=2\r\n"}};
    // clang-format on
    for (const auto& [what, before, section, key, value, after] : table) {
        ASSERT_TRUE(isWritableProfileEntry(section, key, value)) << what;
        EXPECT_EQ(withProfileValue(before, section, key, value), after) << what;
    }
    const std::string nul("a\0b", 3);
    const std::array<std::string_view, 3> refused[] = {
        {"", "k", "v"},     {" ", "k", "v"},   {"s", "", "v"},  {"s", "k", "a\r\nb=c"},
        {"s", "k", "a\nb"}, {"s\n", "k", "v"}, {"s", "k", nul}, {"s]x", "k", "v"},
        {"s", "a=b", "v"},  {"s", ";k", "v"},  {"s", "[k", "v"}};
    for (const auto& [section, key, value] : refused)
        EXPECT_FALSE(isWritableProfileEntry(section, key, value))
            << section << "|" << key << "|" << value;
}

// ---- files ------------------------------------------------------------------------------

struct ProfileFile : ::testing::Test {
    std::string folder() const { return m_dir.path().toStdString(); }
    std::string file() const { return folder() + "/Data.ini"; }
    auto entryCount() const {
        return std::distance(std::filesystem::directory_iterator(folder()), {});
    }
    void put(const std::string& content) { std::ofstream(file(), std::ios::binary) << content; }
    std::string written() const { return pluvarine::test::readFile(file()); }
    std::string get(const std::string& key, std::uint32_t size = 255) {
        std::string buffer(size + 1, '#');
        const auto count = GetPrivateProfileStringA("s", key, "dflt", buffer.data(), size, file());
        EXPECT_EQ(buffer[count], '\0');
        return buffer.substr(0, count);
    }
    QTemporaryDir m_dir;
};

TEST_F(ProfileFile, BufferOf255KeepsAtMost254AndAMissingFileGivesTheDefault) {
    EXPECT_EQ(get("k"), "dflt");
    EXPECT_EQ(entryCount(), 0);
    put("[s]\r\nk300=" + std::string(300, 'x') + "\r\nk254=" + std::string(254, 'y') +
        "\r\nk253=" + std::string(253, 'z') + "\r\n");
    EXPECT_EQ(get("k300"), std::string(254, 'x'));
    EXPECT_EQ(get("k254"), std::string(254, 'y'));
    EXPECT_EQ(get("k253"), std::string(253, 'z'));
    EXPECT_EQ(get("k300", 1), "");
}

TEST_F(ProfileFile, WriteMakesSectionAndKeyWithCrLfAndKeepsEverythingElse) {
    EXPECT_NE(WritePrivateProfileStringA("SEKTION", "EINTRAG", " 7", file()), 0);
    EXPECT_EQ(written(), "[SEKTION]\r\nEINTRAG= 7\r\n");
    put("; c\r\n[SEKTION]\r\nEINTRAG= 1\r\n[x]\r\ny=2\r\n");
    ::chmod(file().c_str(), 0640);
    EXPECT_NE(WritePrivateProfileStringA("Sektion", "Eintrag", " 2", file()), 0);
    EXPECT_EQ(written(), "; c\r\n[SEKTION]\r\nEINTRAG= 2\r\n[x]\r\ny=2\r\n");
    EXPECT_EQ(std::filesystem::status(file()).permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(entryCount(), 1); // no temporary file left behind
}

// A refused entry, a missing folder, a folder in the file's place or a full disk (here: the
// file-size limit) leave the old file whole and no temporary file behind.
TEST_F(ProfileFile, FailedWritesChangeNothing) {
    EXPECT_EQ(WritePrivateProfileStringA("s", "k", "v", folder() + "/obj/Data.ini"), 0);
    std::filesystem::create_directory(file());
    EXPECT_EQ(WritePrivateProfileStringA("s", "k", "v", file()), 0);
    EXPECT_TRUE(std::filesystem::is_directory(file()));
    std::filesystem::remove(file());
    put("[s]\r\nk=1\r\n");
    EXPECT_EQ(WritePrivateProfileStringA("s", "k", "2\r\n[t]", file()), 0);
    {
        const pluvarine::test::FileSizeLimit full(16);
        EXPECT_EQ(WritePrivateProfileStringA("s", "k", std::string(100, 'v'), file()), 0);
    }
    EXPECT_EQ(written(), "[s]\r\nk=1\r\n");
    EXPECT_EQ(entryCount(), 1);
}
