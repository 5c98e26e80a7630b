#include "StoreTestSupport.h"
#include "base/RuntimeError.h"
#include "store/ArchiveFormat.h"
#include "store/ProjectArchive.h"

#include <gtest/gtest.h>

namespace pluvarine {
namespace {

using namespace testing; // the store test fakes and file helpers

const std::string kValid = le32(3) + record("Data.ini", "[SEKTION]\r\nEINTRAG= 2\r\n") +
                           record(" 1.tob", "object one") + record(" 2.tob", "");

// The folder holds a file of the same name as a record, another file and a sub-folder; the
// archive lies outside it. A refused archive must leave the whole tree as it was.
class DamagedArchive : public ::testing::Test {
protected:
    void SetUp() override {
        writeFile(m_tree.obj() / " 1.tob", "current object one");
        writeFile(m_tree.obj() / "keep.txt", "keep");
        std::filesystem::create_directory(m_tree.obj() / "sub");
        writeFile(m_tree.obj() / "sub" / "inner", "inner");
    }

    // Unpacks the archive bytes and checks that the refusal is clean.
    void expectRefused(const std::string& bytes, const std::string& what) {
        writeFile(m_tree.archive(), bytes);
        const auto before = snapshot(m_tree.root());
        RecordingProgress progress;
        RecordingMessages messages;
        try {
            UnpackFolder(m_tree.archive(), m_tree.objFolder(), progress, {}, messages);
            ADD_FAILURE() << what << ": accepted";
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.number(), kDamagedArchiveError) << what << ": " << error.what();
            EXPECT_NE(std::string(error.what()).find("damaged"), std::string::npos) << what;
        }
        EXPECT_EQ(snapshot(m_tree.root()), before) << what;
        EXPECT_TRUE(progress.shown.empty()) << what;
        EXPECT_TRUE(messages.messages.empty()) << what;
        EXPECT_THROW(readArchiveIndex(bytes), RuntimeError) << what;
    }

    ArchiveTree m_tree;
};

TEST_F(DamagedArchive, TheValidArchiveIsAccepted) {
    EXPECT_EQ(readArchiveIndex(kValid).size(), 3u);
}

TEST_F(DamagedArchive, TruncatedAtEveryOffsetIsRefused) {
    for (std::size_t size = 0; size < kValid.size(); ++size) {
        expectRefused(kValid.substr(0, size), "cut to " + std::to_string(size) + " bytes");
    }
}

TEST_F(DamagedArchive, TrailingBytesAreRefused) {
    expectRefused(kValid + "x", "one byte more");
    expectRefused(le32(0) + "junk", "junk after an empty archive");
}

struct HostileCase {
    const char* what;
    std::string bytes;
};

class HostileArchive : public DamagedArchive, public ::testing::WithParamInterface<HostileCase> {};

TEST_P(HostileArchive, IsRefusedWritingNothing) {
    expectRefused(GetParam().bytes, GetParam().what);
}

INSTANTIATE_TEST_SUITE_P(
    Corpus, HostileArchive,
    ::testing::Values(
        HostileCase{"negative count", le32(-1)},
        HostileCase{"count larger than the records", le32(2) + record("a", "A")},
        HostileCase{"huge count", le32(0x7FFFFFFF) + record("a", "A")},
        HostileCase{"negative name length", le32(1) + le16(-2) + "ab" + le32(0)},
        HostileCase{"zero name length", le32(1) + le16(0) + le32(1) + "A"},
        HostileCase{"name length past the end", le32(1) + le16(30000) + "a"},
        HostileCase{"negative data length", le32(1) + le16(1) + "a" + le32(-5) + "xxxxx"},
        HostileCase{"data length past the end", le32(1) + le16(1) + "a" + le32(100) + "x"},
        HostileCase{"data length 2 GiB - 1", le32(1) + le16(1) + "a" + le32(0x7FFFFFFF)},
        HostileCase{"parent folder", le32(1) + record("..", "x")},
        HostileCase{"this folder", le32(1) + record(".", "x")},
        HostileCase{"traversal", le32(1) + record("../escaped", "x")},
        HostileCase{"deep traversal", le32(1) + record("../../../../tmp/escaped", "x")},
        HostileCase{"absolute path", le32(1) + record("/tmp/escaped", "x")},
        HostileCase{"sub-folder", le32(1) + record("sub/inner", "x")},
        HostileCase{"backslash", le32(1) + record("..\\escaped", "x")},
        HostileCase{"drive", le32(1) + record("C:escaped", "x")},
        HostileCase{"bare drive", le32(1) + record("C:", "x")},
        HostileCase{"NUL in the name", le32(1) + record(std::string("a\0b", 3), "x")},
        HostileCase{"name too long for the file system",
                    le32(1) + record(std::string(256, 'n'), "")},
        HostileCase{"name too long once in UTF-8", le32(1) + record(std::string(200, '\xE4'), "")},
        HostileCase{"same name twice", le32(2) + record(" 1.tob", "x") + record(" 1.tob", "y")},
        HostileCase{"good records then a bad one", le32(3) + record("keep.txt", "lost") +
                                                       record(" 1.tob", "lost") +
                                                       record("../escaped", "x")}));

TEST_F(DamagedArchive, LongestBareNameIsAccepted) {
    writeFile(m_tree.archive(), le32(1) + record(std::string(255, 'n'), "ok"));
    RecordingProgress progress;
    RecordingMessages messages;
    EXPECT_EQ(UnpackFolder(m_tree.archive(), m_tree.objFolder(), progress, {}, messages), 1);
    EXPECT_EQ(testing::readFile(m_tree.obj() / std::string(255, 'n')), "ok");
}

} // namespace
} // namespace pluvarine
