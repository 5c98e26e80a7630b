#include "platform/system/AtomicFile.h"

#include "tests/support/WriteFaults.h"

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

using namespace pluvarine;

using test::namesIn;

// A writer killed with kill -9 in the middle leaves the target whole and a hidden temporary
// file; the first write of a later program in the folder removes that, and the files of older
// versions, but not those of a program still running (process 1) or anybody else's.
TEST(AtomicFile, TheNextWriteRemovesWhatAKilledWriterLeftBehind) {
    QTemporaryDir dir;
    const std::filesystem::path folder = dir.path().toStdString();
    std::ofstream(folder / "target") << "old";
    const auto [child, ended] = test::runInDyingChild([&] {
        AtomicFile file((folder / "target").string());
        if (file.create() && file.writeAll("half", 4)) {
            ::kill(::getpid(), SIGKILL);
        }
    });
    ASSERT_EQ(ended, SIGKILL);
    const std::string killed = ".pluvarine-" + std::to_string(child) + "-";
    std::vector<std::string> names = namesIn(folder);
    ASSERT_EQ(names.size(), 2u);
    EXPECT_TRUE(names[0].starts_with(killed)) << names[0];

    const std::vector<std::string> kept = {".pluvarine-1-0123456789abcdef.tmp",
                                           ".pluvarine-notes.tmp", "pluvarine-1.tmp"};
    for (const std::string& name : kept) {
        std::ofstream(folder / name) << "not stale";
    }
    std::ofstream(folder / ".pluvarine-0123456789abcdef.tmp") << "an older version's";
    AtomicFile file((folder / "other").string());
    ASSERT_TRUE(file.create() && file.writeAll("new", 3) && file.commit(AtomicFile::Sync::None));

    std::vector<std::string> expected = kept;
    expected.insert(expected.end(), {"other", "target"});
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(namesIn(folder), expected);
    std::ifstream target(folder / "target");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(target), {}), "old");
}
