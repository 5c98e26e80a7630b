#include "store/ArchiveFormat.h"

#include "StoreTestSupport.h"
#include "store/ProjectArchive.h"
#include "ui/text/LoadText.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace pluvarine {
namespace {

using namespace testing; // the store test fakes and file helpers

class ArchiveFormat : public ::testing::Test {
protected:
    PackResult pack(const std::string& pattern = "*.*") {
        return PackFolder(m_tree.objFolder(), m_tree.archive(), pattern, m_progress,
                          [this] { ++m_pumps; });
    }
    std::int32_t unpack(const std::filesystem::path& into) {
        return UnpackFolder(
            m_tree.archive(), into.string(), m_progress, [this] { ++m_pumps; }, m_messages);
    }

    ArchiveTree m_tree;
    RecordingProgress m_progress;
    RecordingMessages m_messages;
    int m_pumps = 0;
};

TEST_F(ArchiveFormat, EmptyFolderIsFourZeroBytes) {
    const PackResult result = pack();
    EXPECT_EQ(result.count, 0);
    EXPECT_EQ(readFile(m_tree.archive()), std::string(4, '\0'));
    EXPECT_TRUE(m_progress.shown.empty());
    EXPECT_EQ(m_progress.ended, 1);

    const std::filesystem::path restored = m_tree.root() / "restored";
    std::filesystem::create_directory(restored);
    EXPECT_EQ(unpack(restored), 0);
    EXPECT_TRUE(std::filesystem::is_empty(restored));
    EXPECT_TRUE(m_messages.messages.empty());
}

TEST_F(ArchiveFormat, DataIniAndAnEmptyFileByteForByte) {
    const std::string ini = "[SEKTION]\r\nEINTRAG=1"; // 20 bytes
    ASSERT_EQ(ini.size(), 20u);
    writeFile(m_tree.obj() / "Data.ini", ini);
    writeFile(m_tree.obj() / "empty.tob", "");
    const PackResult result = pack();
    EXPECT_EQ(result.count, 2);
    EXPECT_TRUE(result.problems.empty());
    const std::string archive = readFile(m_tree.archive());
    EXPECT_EQ(archive.size(), 4u + (2 + 8 + 4 + 20) + (2 + 9 + 4 + 0));
    EXPECT_EQ(archive, le32(2) + record("Data.ini", ini) + record("empty.tob", ""));
}

TEST_F(ArchiveFormat, NamesInWindows1252AndTheSignPositionBlank) {
    const std::string binary("\x00\xFF\x80", 3);
    writeFile(m_tree.obj() / " 7.tob", "seven");
    writeFile(m_tree.obj() / "Größe", binary);
    EXPECT_EQ(pack().count, 2);
    EXPECT_EQ(readFile(m_tree.archive()), le32(2) + record(" 7.tob", "seven") +
                                              record("Gr\xF6\xDF"
                                                     "e",
                                                     binary));
}

TEST_F(ArchiveFormat, OnlyOrdinaryFilesOfTheFolderItself) {
    writeFile(m_tree.obj() / "a.tob", "A");
    std::filesystem::create_directory(m_tree.obj() / "sub");
    writeFile(m_tree.obj() / "sub" / "inner.tob", "inner");
    writeFile(m_tree.obj() / ".hidden", "h");
    std::filesystem::create_symlink(m_tree.obj() / "a.tob", m_tree.obj() / "link.tob");
    ::mkfifo((m_tree.obj() / "pipe").c_str(), 0600);
    EXPECT_EQ(pack().count, 1);
    EXPECT_EQ(readFile(m_tree.archive()), le32(1) + record("a.tob", "A"));

    // Unpacking leaves the sub-folder and the other files alone.
    writeFile(m_tree.obj() / "a.tob", "changed");
    EXPECT_EQ(unpack(m_tree.obj()), 1);
    EXPECT_EQ(readFile(m_tree.obj() / "a.tob"), "A");
    EXPECT_EQ(readFile(m_tree.obj() / "sub" / "inner.tob"), "inner");
    EXPECT_EQ(readFile(m_tree.obj() / ".hidden"), "h");
}

TEST_F(ArchiveFormat, PatternUsesWindowsWildcards) {
    writeFile(m_tree.obj() / "a.tob", "1");
    writeFile(m_tree.obj() / "B.TOB", "2");
    writeFile(m_tree.obj() / "Data.ini", "3");
    writeFile(m_tree.obj() / "README", "4");
    EXPECT_EQ(pack("*.tob").count, 2);
    EXPECT_EQ(pack("?ata.*").count, 1);
    EXPECT_EQ(pack("*.*").count, 4);
    EXPECT_EQ(pack("*").count, 4);
}

TEST_F(ArchiveFormat, ZeroByteFileIsRestoredEmpty) {
    writeFile(m_tree.obj() / "zero", "");
    pack();
    std::filesystem::remove(m_tree.obj() / "zero");
    EXPECT_EQ(unpack(m_tree.obj()), 1);
    EXPECT_TRUE(std::filesystem::exists(m_tree.obj() / "zero"));
    EXPECT_EQ(std::filesystem::file_size(m_tree.obj() / "zero"), 0u);
}

TEST_F(ArchiveFormat, ProgressForEightFilesRoundsHalfToEven) {
    for (int i = 1; i <= 8; ++i) {
        writeFile(m_tree.obj() / ("f" + std::to_string(i)), std::string(i, 'x'));
    }
    pack();
    const std::vector<int> expected = {12, 25, 38, 50, 62, 75, 88, 100};
    EXPECT_EQ(m_progress.percentages(), expected);
    for (const auto& [text, percentage] : m_progress.shown) {
        EXPECT_EQ(text, LoadText(4000));
    }
    EXPECT_EQ(m_progress.ended, 1);
    EXPECT_EQ(m_pumps, 8);

    m_progress = {};
    m_pumps = 0;
    EXPECT_EQ(unpack(m_tree.obj()), 8);
    EXPECT_EQ(m_progress.percentages(), expected);
    for (const auto& [text, percentage] : m_progress.shown) {
        EXPECT_EQ(text, LoadText(4001));
    }
    EXPECT_EQ(m_progress.ended, 1);
    EXPECT_EQ(m_pumps, 8);
}

TEST_F(ArchiveFormat, MissingArchiveShowsTheFixedMessage) {
    EXPECT_EQ(unpack(m_tree.obj()), 0);
    ASSERT_EQ(m_messages.messages.size(), 1u);
    EXPECT_EQ(m_messages.messages[0].first, "The archive does not exist!");
    EXPECT_EQ(m_messages.messages[0].second, UserMessages::Icon::Critical);
    EXPECT_TRUE(m_progress.shown.empty());
    EXPECT_EQ(m_progress.ended, 0);
    EXPECT_TRUE(std::filesystem::is_empty(m_tree.obj()));
}

TEST_F(ArchiveFormat, IndexListsNamesAndSizes) {
    writeFile(m_tree.obj() / "a", "12345");
    writeFile(m_tree.obj() / "b", "");
    pack();
    const std::vector<ArchiveEntry> entries = readArchiveIndexOfFile(m_tree.archive());
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].name, "a");
    EXPECT_EQ(entries[0].dataLength, 5);
    EXPECT_EQ(entries[0].dataOffset, 4 + 2 + 1 + 4);
    EXPECT_EQ(entries[1].name, "b");
    EXPECT_EQ(entries[1].dataLength, 0);
}

} // namespace
} // namespace pluvarine
