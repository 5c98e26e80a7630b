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
    // Here the steps run at the first event.
    EventPump handlerThat(const std::vector<Step>& steps) {
        return [this, steps] {
            for (const Step& step : std::exchange(m_handled, true) ? std::vector<Step>{} : steps)
                tryStep(step,
                        [this](const RuntimeError& error) { m_errors.push_back(error.what()); });
        };
    }

    bool m_handled = false;
    std::vector<std::string> m_errors;
};

TEST_F(ArchiveReentry, SaveOrLoadDuringAPackIsRefusedAndTheArchiveIsWhole) {
    pack();
    writeFile(obj() / " 1.tob", "changed after the save");
    const Step saveAgain = [this] {
        EXPECT_TRUE(archiveOperationRunning());
        pack();
    };
    EXPECT_EQ(pack(handlerThat({saveAgain, [this] { unpack(); }})).count, 4);
    ASSERT_EQ(m_errors.size(), 2u);
    for (const std::string& error : m_errors)
        EXPECT_NE(error.find("busy"), std::string::npos);
    EXPECT_EQ(readFile(obj() / " 1.tob"), "changed after the save");
    EXPECT_EQ(readArchiveIndexOfFile(archive()).size(), 4u);
    EXPECT_FALSE(archiveOperationRunning());
    EXPECT_EQ(pack().count, 4); // usable again afterwards
}

TEST_F(ArchiveReentry, SaveDuringAnUnpackIsRefusedAndTheRestoreIsComplete) {
    pack();
    const auto before = snapshot(root());
    fs::remove_all(obj());
    fs::create_directory(obj());
    EXPECT_EQ(unpack(handlerThat({[this] { pack(); }})), 4);
    EXPECT_EQ(m_errors.size(), 1u);
    EXPECT_EQ(snapshot(root()), before);
}

// A project close in the middle of a save deletes the working files: what is gone is left out,
// the count tells the records and the archive stays readable.
TEST_F(ArchiveReentry, ProjectClosedDuringAPackLeavesAReadableArchive) {
    const PackResult result = pack(
        handlerThat({[this] { fs::remove_all(obj()); }, [this] { fs::create_directory(obj()); }}));
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
