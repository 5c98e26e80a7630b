// Replays the inputs the fuzzers kept (tests/fuzz/corpus) through the same checks, and every
// archive input also through a real unpack.
#include "StoreTestSupport.h"
#include "store/ArchiveFormat.h"
#include "store/ProjectArchive.h"
#include "tests/fuzz/FuzzProperties.h"

#include <gtest/gtest.h>

namespace pluvarine {
namespace {

using namespace testing; // the store test fakes and file helpers

std::vector<std::filesystem::path> corpus(const char* target) {
    std::vector<std::filesystem::path> files;
    const std::filesystem::path folder =
        std::filesystem::path(PLUVARINE_SOURCE_DIR) / "tests" / "fuzz" / "corpus" / target;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    return files;
}

TEST(FuzzCorpus, ProfileInputsKeepTheirProperties) {
    const auto files = corpus("profile");
    EXPECT_FALSE(files.empty());
    for (const auto& file : files) {
        EXPECT_EQ(fuzz::checkProfileBytes(readFile(file)), "") << file;
    }
}

TEST(FuzzCorpus, ArchiveInputsAreRefusedOrRestoredExactly) {
    const auto files = corpus("archive");
    EXPECT_FALSE(files.empty());
    for (const auto& file : files) {
        const std::string bytes = readFile(file);
        EXPECT_EQ(fuzz::checkArchiveBytes(bytes), "") << file;

        ArchiveTree tree;
        writeFile(tree.obj() / "keep", "keep");
        writeFile(tree.archive(), bytes);
        auto before = snapshot(tree.root());
        RecordingProgress progress;
        RecordingMessages messages;
        std::vector<ArchiveEntry> entries;
        bool valid = true;
        try {
            entries = readArchiveIndex(bytes);
        } catch (const RuntimeError&) {
            valid = false;
        }
        if (!valid) {
            EXPECT_THROW(UnpackFolder(tree.archive(), tree.objFolder(), progress, {}, messages),
                         RuntimeError)
                << file;
            EXPECT_EQ(snapshot(tree.root()), before) << file;
            continue;
        }
        EXPECT_EQ(UnpackFolder(tree.archive(), tree.objFolder(), progress, {}, messages),
                  static_cast<std::int32_t>(entries.size()))
            << file;
        for (const ArchiveEntry& entry : entries) {
            EXPECT_EQ(readFile(tree.obj() / entry.name),
                      bytes.substr(static_cast<std::size_t>(entry.dataOffset),
                                   static_cast<std::size_t>(entry.dataLength)))
                << file << ": " << entry.name;
        }
        // Nothing outside the folder changed.
        auto after = snapshot(tree.root());
        const auto inObj = [](const auto& item) { return item.first.rfind("obj/", 0) == 0; };
        std::erase_if(after, inObj);
        std::erase_if(before, inObj);
        EXPECT_EQ(after, before) << file;
        const bool replacesKeep = std::any_of(entries.begin(), entries.end(),
                                              [](const auto& e) { return e.name == "keep"; });
        if (!replacesKeep) {
            EXPECT_EQ(readFile(tree.obj() / "keep"), "keep") << file;
        }
    }
}

} // namespace
} // namespace pluvarine
