#include "StoreTestSupport.h"
#include "store/text/LoadText.h"

#include <algorithm>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace pluvarine::testing {
namespace {

std::string randomBytes(std::size_t size, unsigned seed) {
    std::mt19937 generator(seed);
    std::string bytes(size, '\0');
    for (char& c : bytes)
        c = static_cast<char>(generator());
    return bytes;
}

using ArchiveFormat = ArchiveTest;
using ArchiveRoundTrip = ArchiveTest;

TEST_F(ArchiveFormat, MissingArchiveShowsTheFixedMessageEmptyFolderIsFourZeroBytes) {
    EXPECT_EQ(unpack(), 0);
    const decltype(messages) missing{{"The archive does not exist!", Icon::Critical}};
    EXPECT_TRUE(messages == missing && progress.ended == 0);
    EXPECT_EQ(pack().count, 0);
    EXPECT_EQ(readFile(archive()), std::string(4, '\0'));
    EXPECT_EQ(unpack(), 0);
    EXPECT_TRUE(fs::is_empty(obj()) && progress.percentages.empty() && progress.ended == 2);
    EXPECT_EQ(messages, missing);
}

TEST_F(ArchiveFormat, OnlyOrdinaryFilesOfTheFolderItselfMatchingThePattern) {
    fs::create_directory(obj() / "sub");
    put({{"a.tob", "A"}, {"B.TOB", "B"}, {"Data.ini", ""}, {".hidden", "h"}, {"sub/in.tob", "i"}});
    fs::create_symlink(obj() / ".hidden", obj() / "link.tob");
    ::mkfifo((obj() / "pipe").c_str(), 0600);
    EXPECT_EQ(pack({}, "?ata.*").count, 1);
    EXPECT_EQ(pack({}, "*.tob").count, 2); // Windows wildcards ignore case
    EXPECT_EQ(readFile(archive()), le(2) + record("B.TOB", "B") + record("a.tob", "A"));
    fs::remove(obj() / "pipe"); // a snapshot would wait on it
    put({{"a.tob", "changed"}, {"B.TOB", "changed"}});
    auto expected = snapshot(obj());
    expected["a.tob"] = "A";
    expected["B.TOB"] = "B";
    EXPECT_EQ(unpack(), 2); // replaces the files of the same name and leaves the rest alone
    EXPECT_EQ(snapshot(obj()), expected);
}

TEST_F(ArchiveFormat, ProgressForEightFilesRoundsHalfToEven) {
    for (int i = 1; i <= 8; ++i)
        writeFile(obj() / ("f" + std::to_string(i)), std::string(i, 'x'));
    for (const int text : {4000, 4001}) {
        progress = {};
        int pumps = 0;
        const EventPump pump = [&pumps] { ++pumps; };
        EXPECT_EQ(text == 4000 ? pack(pump).count : unpack(pump), 8);
        EXPECT_EQ(progress.percentages, (std::vector<int>{12, 25, 38, 50, 62, 75, 88, 100}));
        EXPECT_EQ(progress.texts, std::vector<std::string>(8, LoadText(text)));
        EXPECT_TRUE(progress.ended == 1 && pumps == 8);
    }
}

// A large file lets events run while it is copied (after 8 and 16 MiB), not only after it.
TEST_F(ArchiveRoundTrip, ReproducesEveryFileByteForByteAndLetsEventsRunInALargeOne) {
    put({{"Data.ini", "[SEKTION]\r\nEINTRAG= 12\r\n"},
         {" 1.tob", randomBytes(70000, 1)},
         {" 12.tob", randomBytes((20 << 20) + 1, 2)},
         {"empty", ""},
         {"Fassade Süd €.tob", "x"}});
    int pumps = 0;
    const EventPump pump = [&pumps] { ++pumps; };
    const PackResult result = pack(pump);
    EXPECT_EQ(result.count, 5);
    EXPECT_TRUE(result.problems.empty());
    EXPECT_EQ(pumps, 5 + 2);
    fs::create_directory(root() / "restored");
    EXPECT_EQ(unpack(pump, root() / "restored"), 5);
    EXPECT_EQ(pumps, 2 * (5 + 2));
    EXPECT_EQ(snapshot(root() / "restored"), snapshot(obj()));
}

// Byte for byte, an empty file too. Names are stored in Windows-1252 (the sign position of a
// number kept as a blank); a name the code page cannot represent is left out and reported.
TEST_F(ArchiveFormat, RecordsByteForByteWithNamesInWindows1252) {
    const std::string binary("\x00\xFF\x80", 3);
    put({{" 7.tob", "seven"}, {"Größe", binary}, {"empty.tob", ""}, {"Łódź.tob", "L"}});
    const PackResult result = pack();
    EXPECT_EQ(result.count, 3);
    ASSERT_EQ(result.problems.size(), 1u);
    EXPECT_EQ(result.problems[0].name, "Łódź.tob");
    EXPECT_NE(result.problems[0].reason.find("Windows-1252"), std::string::npos);
    EXPECT_EQ(readFile(archive()), le(3) + record(" 7.tob", "seven") +
                                       record("Gr\xF6\xDF\x65", binary) + record("empty.tob", ""));
    EXPECT_EQ(progress.percentages, (std::vector<int>{25, 50, 75, 100}));
}

// A failed pack leaves the previous archive, a failed unpack the folder as it was.
TEST_F(ArchiveRoundTrip, FailedPackOrUnpackChangesNothing) {
    put({{"small", "s"}, {"large", randomBytes(8192, 5)}});
    pack();
    // The disk fills up in the middle of a file.
    EXPECT_TRUE(failureChangingNothing([this] { pack(); }, 1024));
    writeFile(obj() / "small", "kept");
    fs::remove(obj() / "large");
    EXPECT_TRUE(failureChangingNothing([this] { unpack(); }, 4096));
    EXPECT_TRUE(failureChangingNothing([this] { unpack({}, root() / "missing"); }));
    fs::create_directory(obj() / "large"); // a sub-folder of a record's name is not replaced
    EXPECT_TRUE(failureChangingNothing([this] { unpack(); }));
    fs::rename(obj(), root() / "elsewhere"); // the folder to pack is missing
    EXPECT_TRUE(failureChangingNothing([this] { pack(); }));
    fs::rename(root() / "elsewhere", obj());
    fs::remove_all(root() / "destination"); // the archive's folder is missing
    EXPECT_TRUE(failureChangingNothing([this] { pack(); }));
}

// A pack killed (kill -9) after its first file leaves the previous archive whole and only a
// hidden temporary file beside it, which the next pack, in a later program, removes.
TEST_F(ArchiveRoundTrip, KilledPackLeavesThePreviousArchiveAndTheNextPackCleansUp) {
    put({{"a", randomBytes(4096, 6)}, {"b", "second"}});
    writeFile(archive(), "the previous archive");
    const int ended =
        test::runInDyingChild([this] { pack([] { ::kill(::getpid(), SIGKILL); }); }).second;
    ASSERT_EQ(ended, SIGKILL);
    const fs::path destination = root() / "destination";
    const std::vector<std::string> left = test::namesIn(destination);
    ASSERT_EQ(left.size(), 2u);
    EXPECT_TRUE(left[0].starts_with(".pluvarine-")) << left[0];
    EXPECT_EQ(readFile(archive()), "the previous archive");
    EXPECT_EQ(pack().count, 2);
    EXPECT_EQ(test::namesIn(destination), std::vector<std::string>{"pluvarine.dat"});
}

// A failing progress display stops neither pack nor unpack; an archive inside the packed folder
// is not packed into itself.
TEST_F(ArchiveRoundTrip, FailingProgressDisplayDoesNotStopThePackNorIsTheArchivePackedIntoItself) {
    struct BrokenProgress : ProgressSink {
        void ShowProgress(const std::string&, std::int32_t) override { EndProgress(); }
        void EndProgress() override { throw RuntimeError(RuntimeError::HostError, "no display"); }
    } broken;
    display = &broken;
    put({{"a", "A"}, {"b", "B"}});
    EXPECT_EQ(pack().count, 2);
    fs::remove(obj() / "a");
    EXPECT_EQ(unpack(), 2);
    EXPECT_EQ(readFile(obj() / "a"), "A");
    const std::string self = (obj() / "self.dat").string();
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(PackFolder(obj().string() + "/", self, "*.*", progress, {}).count, 2);
}

} // namespace
} // namespace pluvarine::testing
