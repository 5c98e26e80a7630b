#include "StoreTestSupport.h"
#include "tests/fuzz/FuzzProperties.h"

namespace pluvarine::testing {
namespace {

const std::string kValid = le(3) + record("Data.ini", "[SEKTION]\r\nEINTRAG= 2\r\n") +
                           record(" 1.tob", "object one") + record(" 2.tob", "");

// The folder holds a file of the same name as a record, another file and a sub-folder; the
// archive lies outside it.
class DamagedArchive : public ArchiveTest {
protected:
    void SetUp() override {
        fs::create_directory(obj() / "sub");
        put({{" 1.tob", "current object one"}, {"keep.txt", "keep"}, {"sub/inner", "inner"}});
    }

    // A refused archive leaves the whole tree as it was and shows neither progress nor message.
    void expectRefused(const std::string& bytes, const std::string& what) {
        SCOPED_TRACE(what);
        progress = {};
        writeFile(archive(), bytes);
        const auto error = failureChangingNothing([this] { unpack(); });
        ASSERT_TRUE(error) << "accepted";
        EXPECT_EQ(error->number(), kDamagedArchiveError) << error->what();
        EXPECT_NE(std::string(error->what()).find("damaged"), std::string::npos);
        EXPECT_TRUE(progress.percentages.empty() && messages.empty());
        EXPECT_THROW(readArchiveIndex(bytes), RuntimeError);
    }
};

TEST_F(DamagedArchive, TruncatedAtEveryOffsetOrWithTrailingBytesIsRefused) {
    EXPECT_EQ(readArchiveIndex(kValid).size(), 3u);
    for (std::size_t size = 0; size < kValid.size(); ++size)
        expectRefused(kValid.substr(0, size), "cut to " + std::to_string(size) + " bytes");
    expectRefused(kValid + "x", "one byte more");
    expectRefused(le(0) + "junk", "junk after an empty archive");
}

TEST_F(DamagedArchive, HostileLengthsAndNamesAreRefusedWritingNothing) {
    const std::string one = le(1);
    const std::string a1 = one + le(1, 2) + "a";
    // clang-format off
    const std::pair<const char*, std::string> corpus[] = {
        {"negative count", le(-1)}, {"count past the records", le(2) + record("a", "A")},
        {"huge count", le(0x7FFFFFFF) + record("a", "A")},
        {"negative name length", one + le(-2, 2) + "ab" + le(0)},
        {"zero name length", one + le(0, 2) + le(1) + "A"},
        {"name length past the end", one + le(30000, 2) + "a"},
        {"negative data length", a1 + le(-5) + "xxxxx"}, {"data past the end", a1 + le(9)},
        {"data length 2 GiB - 1", a1 + le(0x7FFFFFFF)},
        {"parent folder", one + record("..", "x")}, {"this folder", one + record(".", "x")},
        {"traversal", one + record("../escaped", "x")}, {"backslash", one + record("..\\up", "x")},
        {"deep traversal", one + record("../../../../tmp/escaped", "x")},
        {"absolute path", one + record("/tmp/escaped", "x")},
        {"sub-folder", one + record("sub/inner", "x")},
        {"drive", one + record("C:escaped", "x")}, {"bare drive", one + record("C:", "x")},
        {"NUL in the name", one + record(std::string("a\0b", 3), "x")},
        {"name too long for the file system", one + record(std::string(256, 'n'), "")},
        {"name too long once in UTF-8", one + record(std::string(200, '\xE4'), "")},
        {"same name twice", le(2) + record(" 1.tob", "x") + record(" 1.tob", "y")},
        {"good records then a bad one",
         le(3) + record("keep.txt", "lost") + record(" 1.tob", "lost") + record("../x", "x")}};
    // clang-format on
    for (const auto& [what, bytes] : corpus)
        expectRefused(bytes, what);
    // The longest bare name is not hostile.
    writeFile(archive(), le(1) + record(std::string(255, 'n'), "ok"));
    EXPECT_EQ(unpack(), 1);
    EXPECT_EQ(readFile(obj() / std::string(255, 'n')), "ok");
}

// The inputs the fuzzers kept (tests/fuzz/corpus) go through the same checks, and every archive
// input also through a real unpack.
std::vector<fs::path> corpus(const char* target) {
    std::vector<fs::path> files;
    for (const auto& entry :
         fs::directory_iterator(fs::path(PLUVARINE_SOURCE_DIR) / "tests/fuzz/corpus" / target))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    EXPECT_FALSE(files.empty()) << target;
    return files;
}

TEST(FuzzCorpus, ProfileInputsKeepTheirProperties) {
    for (const auto& file : corpus("profile"))
        EXPECT_EQ(fuzz::checkProfileBytes(readFile(file)), "") << file;
}

// A refused input changes nothing; an accepted one writes exactly its records into the folder.
TEST_F(DamagedArchive, FuzzArchiveInputsAreRefusedOrRestoredExactly) {
    for (const auto& file : corpus("archive")) {
        const std::string bytes = readFile(file);
        EXPECT_EQ(fuzz::checkArchiveBytes(bytes), "") << file;
        std::vector<ArchiveEntry> entries;
        try {
            entries = readArchiveIndex(bytes);
        } catch (const RuntimeError&) {
            expectRefused(bytes, file.string());
            continue;
        }
        writeFile(archive(), bytes);
        auto expected = snapshot(root());
        for (const ArchiveEntry& entry : entries)
            expected["obj/" + entry.name] =
                bytes.substr(static_cast<std::size_t>(entry.dataOffset),
                             static_cast<std::size_t>(entry.dataLength));
        EXPECT_EQ(unpack(), static_cast<std::int32_t>(entries.size())) << file;
        EXPECT_EQ(snapshot(root()), expected) << file;
    }
}

} // namespace
} // namespace pluvarine::testing
