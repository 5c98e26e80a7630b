#include "StoreTestSupport.h"
#include "base/RuntimeError.h"
#include "store/ArchiveFormat.h"
#include "store/ProjectArchive.h"

#include <gtest/gtest.h>
#include <random>

namespace pluvarine {
namespace {

using namespace testing; // the store test fakes and file helpers

std::string randomBytes(std::size_t size, unsigned seed) {
    std::mt19937 generator(seed);
    std::string bytes(size, '\0');
    for (char& c : bytes) {
        c = static_cast<char>(generator() & 0xFF);
    }
    return bytes;
}

class ArchiveRoundTrip : public ::testing::Test {
protected:
    PackResult pack(const EventPump& pump = {}) {
        return PackFolder(m_tree.objFolder(), m_tree.archive(), "*.*", m_progress, pump);
    }
    std::int32_t unpack(const std::filesystem::path& into, const EventPump& pump = {}) {
        return UnpackFolder(m_tree.archive(), into.string(), m_progress, pump, m_messages);
    }

    ArchiveTree m_tree;
    RecordingProgress m_progress;
    RecordingMessages m_messages;
};

TEST_F(ArchiveRoundTrip, ReproducesEveryFileByteForByte) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    writeFile(m_tree.obj() / "Data.ini", "[SEKTION]\r\nEINTRAG= 12\r\n");
    writeFile(m_tree.obj() / " 1.tob", randomBytes(70000, 1));
    writeFile(m_tree.obj() / " 12.tob", randomBytes((1 << 20) + 3, 2)); // past one copy chunk
    writeFile(m_tree.obj() / "empty", "");
    writeFile(m_tree.obj() / "bytes.bin", all);
    writeFile(m_tree.obj() / "Fassade Süd €.tob", "x");
    writeFile(m_tree.obj() / "fallrohr.tob", randomBytes(1, 3));
    const PackResult result = pack();
    EXPECT_EQ(result.count, 7);
    EXPECT_TRUE(result.problems.empty());

    const std::filesystem::path restored = m_tree.root() / "restored";
    std::filesystem::create_directory(restored);
    EXPECT_EQ(unpack(restored), 7);
    EXPECT_EQ(snapshot(restored), snapshot(m_tree.obj()));
}

TEST_F(ArchiveRoundTrip, UnpackReplacesSameNamesAndKeepsOthers) {
    writeFile(m_tree.obj() / "a", "archived");
    pack();
    writeFile(m_tree.obj() / "a", "newer");
    writeFile(m_tree.obj() / "b", "other");
    EXPECT_EQ(unpack(m_tree.obj()), 1);
    EXPECT_EQ(readFile(m_tree.obj() / "a"), "archived");
    EXPECT_EQ(readFile(m_tree.obj() / "b"), "other");
}

TEST_F(ArchiveRoundTrip, NameOutsideTheCodePageIsLeftOutAndReported) {
    writeFile(m_tree.obj() / "a", "A");
    writeFile(m_tree.obj() / "Łódź.tob", "L");
    writeFile(m_tree.obj() / "z", "Z");
    const PackResult result = pack();
    EXPECT_EQ(result.count, 2);
    ASSERT_EQ(result.problems.size(), 1u);
    EXPECT_EQ(result.problems[0].name, "Łódź.tob");
    EXPECT_NE(result.problems[0].reason.find("Windows-1252"), std::string::npos);
    const std::vector<ArchiveEntry> entries = readArchiveIndexOfFile(m_tree.archive());
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].name, "a");
    EXPECT_EQ(entries[1].name, "z");
    EXPECT_EQ(m_progress.percentages(), (std::vector<int>{33, 67, 100}));
}

// A listed file that is gone when its turn comes is left out; the count tells the records.
TEST_F(ArchiveRoundTrip, UnreadableFileIsLeftOutWithTheCountCorrected) {
    writeFile(m_tree.obj() / "a", "A");
    writeFile(m_tree.obj() / "b", "B");
    writeFile(m_tree.obj() / "c", "C");
    int pumps = 0;
    const PackResult result = pack([&] {
        if (++pumps == 1) {
            std::filesystem::remove(m_tree.obj() / "b");
        }
    });
    EXPECT_EQ(result.count, 2);
    ASSERT_EQ(result.problems.size(), 1u);
    EXPECT_EQ(result.problems[0].name, "b");
    const std::vector<ArchiveEntry> entries = readArchiveIndexOfFile(m_tree.archive());
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[1].name, "c");
}

TEST_F(ArchiveRoundTrip, FailedPackLeavesThePreviousArchive) {
    writeFile(m_tree.obj() / "a", randomBytes(4096, 4));
    pack();
    const auto before = snapshot(m_tree.destination());
    {
        const FileSizeLimit limit(1024); // the disk fills up in the middle of the file
        EXPECT_THROW(pack(), RuntimeError);
    }
    EXPECT_EQ(snapshot(m_tree.destination()), before);
    EXPECT_THROW(
        PackFolder((m_tree.root() / "missing").string(), m_tree.archive(), "*.*", m_progress, {}),
        RuntimeError);
    EXPECT_EQ(snapshot(m_tree.destination()), before);
}

TEST_F(ArchiveRoundTrip, PackIntoAMissingFolderCreatesNothing) {
    const auto before = snapshot(m_tree.root());
    EXPECT_THROW(PackFolder(m_tree.objFolder(), (m_tree.root() / "nowhere" / "a.dat").string(),
                            "*.*", m_progress, {}),
                 RuntimeError);
    EXPECT_EQ(snapshot(m_tree.root()), before);
}

TEST_F(ArchiveRoundTrip, FailedUnpackLeavesTheFolderAsItWas) {
    writeFile(m_tree.obj() / "small", "s");
    writeFile(m_tree.obj() / "large", randomBytes(8192, 5));
    pack();
    writeFile(m_tree.obj() / "small", "kept");
    std::filesystem::remove(m_tree.obj() / "large");
    const auto before = snapshot(m_tree.root());
    {
        const FileSizeLimit limit(4096);
        EXPECT_THROW(unpack(m_tree.obj()), RuntimeError);
    }
    EXPECT_EQ(snapshot(m_tree.root()), before);
}

TEST_F(ArchiveRoundTrip, UnpackNeverCreatesTheFolder) {
    pack();
    const auto before = snapshot(m_tree.root());
    EXPECT_THROW(unpack(m_tree.root() / "missing"), RuntimeError);
    EXPECT_EQ(snapshot(m_tree.root()), before);
}

TEST_F(ArchiveRoundTrip, SubFolderOfARecordNameIsNotReplaced) {
    writeFile(m_tree.obj() / "a", "A");
    writeFile(m_tree.obj() / "b", "B");
    pack();
    std::filesystem::remove(m_tree.obj() / "a");
    std::filesystem::remove(m_tree.obj() / "b");
    std::filesystem::create_directory(m_tree.obj() / "b");
    const auto before = snapshot(m_tree.root());
    EXPECT_THROW(unpack(m_tree.obj()), RuntimeError);
    EXPECT_EQ(snapshot(m_tree.root()), before);
}

TEST_F(ArchiveRoundTrip, ArchiveInsideThePackedFolderIsNotPackedIntoItself) {
    writeFile(m_tree.obj() / "a", "A");
    const std::string archive = m_tree.objFolder() + "self.dat";
    PackFolder(m_tree.objFolder(), archive, "*.*", m_progress, {});
    const PackResult again = PackFolder(m_tree.objFolder(), archive, "*.*", m_progress, {});
    EXPECT_EQ(again.count, 1);
}

TEST_F(ArchiveRoundTrip, FailingProgressDisplayDoesNotStopThePack) {
    class BrokenProgress : public ProgressSink {
    public:
        void ShowProgress(const std::string&, std::int32_t) override {
            throw RuntimeError(RuntimeError::HostError, "no progress display");
        }
        void EndProgress() override {
            throw RuntimeError(RuntimeError::HostError, "no progress display");
        }
    } broken;
    writeFile(m_tree.obj() / "a", "A");
    writeFile(m_tree.obj() / "b", "B");
    EXPECT_EQ(PackFolder(m_tree.objFolder(), m_tree.archive(), "*.*", broken, {}).count, 2);
    std::filesystem::remove(m_tree.obj() / "a");
    EXPECT_EQ(UnpackFolder(m_tree.archive(), m_tree.objFolder(), broken, {}, m_messages), 2);
    EXPECT_EQ(readFile(m_tree.obj() / "a"), "A");
}

} // namespace
} // namespace pluvarine
