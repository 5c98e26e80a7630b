// Replays the inputs the fuzzers kept (tests/fuzz/corpus) through the same checks, and every
// archive input also through a real unpack.
#include "StoreTestSupport.h"
#include "tests/fuzz/FuzzProperties.h"

namespace pluvarine::testing {
namespace {

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
TEST(FuzzCorpus, ArchiveInputsAreRefusedOrRestoredExactly) {
    for (const auto& file : corpus("archive")) {
        SCOPED_TRACE(file.string());
        const std::string bytes = readFile(file);
        EXPECT_EQ(fuzz::checkArchiveBytes(bytes), "");
        ArchiveTree tree;
        writeFile(tree.obj() / "keep", "keep");
        writeFile(tree.archive(), bytes);
        std::vector<ArchiveEntry> entries;
        try {
            entries = readArchiveIndex(bytes);
        } catch (const RuntimeError&) {
            EXPECT_TRUE(tree.failureChangingNothing([&tree] { tree.unpack(); }));
            continue;
        }
        auto expected = snapshot(tree.root());
        for (const ArchiveEntry& entry : entries)
            expected["obj/" + entry.name] =
                bytes.substr(static_cast<std::size_t>(entry.dataOffset),
                             static_cast<std::size_t>(entry.dataLength));
        EXPECT_EQ(tree.unpack(), static_cast<std::int32_t>(entries.size()));
        EXPECT_EQ(snapshot(tree.root()), expected);
    }
}

} // namespace
} // namespace pluvarine::testing
