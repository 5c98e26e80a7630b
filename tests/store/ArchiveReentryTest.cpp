#include "StoreTestSupport.h"
#include "base/ResumeNext.h"

namespace pluvarine::testing {
namespace {

class ArchiveReentry : public ArchiveTest {
protected:
    void SetUp() override {
        for (const char* name : {"Data.ini", " 1.tob", " 2.tob", " 3.tob"})
            writeFile(obj() / name, name);
    }

    // The host link runs its event handlers as steps; a refused re-entry is a failed step there.
    EventPump handlerThat(const Step& step) {
        return [this, step] {
            if (!std::exchange(m_handled, true) &&
                !tryStep(step, [this](const RuntimeError& error) { m_lastError = error.what(); }))
                ++m_failures;
        };
    }

    bool m_handled = false;
    int m_failures = 0;
    std::string m_lastError;
};

TEST_F(ArchiveReentry, SecondSaveDuringAPackIsRefusedAndTheArchiveIsWhole) {
    EXPECT_FALSE(archiveOperationRunning());
    EXPECT_EQ(pack(handlerThat([this] {
                  EXPECT_TRUE(archiveOperationRunning());
                  pack();
              })).count,
              4);
    EXPECT_EQ(m_failures, 1);
    EXPECT_NE(m_lastError.find("busy"), std::string::npos);
    EXPECT_EQ(readArchiveIndexOfFile(archive()).size(), 4u);
    EXPECT_FALSE(archiveOperationRunning());
    EXPECT_EQ(pack().count, 4); // usable again afterwards
}

TEST_F(ArchiveReentry, LoadDuringAPackIsRefused) {
    pack();
    writeFile(obj() / " 1.tob", "changed after the save");
    pack(handlerThat([this] { unpack(); }));
    EXPECT_EQ(m_failures, 1);
    EXPECT_EQ(readFile(obj() / " 1.tob"), "changed after the save");
}

TEST_F(ArchiveReentry, SaveDuringAnUnpackIsRefusedAndTheRestoreIsComplete) {
    pack();
    const auto before = snapshot(root());
    for (const char* name : {"Data.ini", " 1.tob", " 2.tob", " 3.tob"})
        fs::remove(obj() / name);
    EXPECT_EQ(unpack(handlerThat([this] { pack(); })), 4);
    EXPECT_EQ(m_failures, 1);
    EXPECT_EQ(snapshot(root()), before);
}

// A project close in the middle of a save deletes the working files: what is gone is left out,
// the count tells the records and the archive stays readable.
TEST_F(ArchiveReentry, ProjectClosedDuringAPackLeavesAReadableArchive) {
    const PackResult result = pack(handlerThat([this] {
        for (const auto& entry : fs::directory_iterator(obj()))
            fs::remove(entry.path());
    }));
    EXPECT_EQ(result.count, 1);
    EXPECT_EQ(result.problems.size(), 3u);
    EXPECT_EQ(readArchiveIndexOfFile(archive()).size(), 1u);
}

// A handler that fails with something other than a run-time error ends the pack: the
// previous archive stays and the next pack is not refused.
TEST_F(ArchiveReentry, EscapingExceptionLeavesThePreviousArchive) {
    pack();
    const auto before = snapshot(root() / "destination");
    writeFile(obj() / " 4.tob", "new");
    EXPECT_THROW(pack([] { throw std::logic_error("handler bug"); }), std::logic_error);
    EXPECT_EQ(snapshot(root() / "destination"), before);
    EXPECT_FALSE(archiveOperationRunning());
    EXPECT_EQ(pack().count, 5);
}

} // namespace
} // namespace pluvarine::testing
