#include "StoreTestSupport.h"
#include "base/ResumeNext.h"
#include "store/ArchiveFormat.h"
#include "store/ProjectArchive.h"

#include <gtest/gtest.h>

namespace pluvarine {
namespace {

using namespace testing; // the store test fakes and file helpers

// The host link runs its event handlers as steps; a refused re-entry is a failed step there.
class ArchiveReentry : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"Data.ini", " 1.tob", " 2.tob", " 3.tob"}) {
            writeFile(m_tree.obj() / name, std::string("content of ") + name);
        }
    }

    EventPump handlerThat(const Step& step) {
        return [this, step] {
            if (!m_handled) {
                m_handled = true;
                m_failures +=
                    tryStep(step, [this](const RuntimeError& error) { m_lastError = error.what(); })
                        ? 0
                        : 1;
            }
        };
    }

    PackResult pack(const EventPump& pump) {
        return PackFolder(m_tree.objFolder(), m_tree.archive(), "*.*", m_progress, pump);
    }
    std::int32_t unpack(const EventPump& pump) {
        return UnpackFolder(m_tree.archive(), m_tree.objFolder(), m_progress, pump, m_messages);
    }

    ArchiveTree m_tree;
    RecordingProgress m_progress;
    RecordingMessages m_messages;
    bool m_handled = false;
    int m_failures = 0;
    std::string m_lastError;
};

TEST_F(ArchiveReentry, SecondSaveDuringAPackIsRefusedAndTheArchiveIsWhole) {
    EXPECT_FALSE(archiveOperationRunning());
    const PackResult result = pack(handlerThat([this] {
        EXPECT_TRUE(archiveOperationRunning());
        pack({});
    }));
    EXPECT_EQ(m_failures, 1);
    EXPECT_NE(m_lastError.find("busy"), std::string::npos);
    EXPECT_EQ(result.count, 4);
    EXPECT_EQ(readArchiveIndexOfFile(m_tree.archive()).size(), 4u);
    EXPECT_FALSE(archiveOperationRunning());
    EXPECT_EQ(pack({}).count, 4); // usable again afterwards
}

TEST_F(ArchiveReentry, LoadDuringAPackIsRefused) {
    pack({});
    writeFile(m_tree.obj() / " 1.tob", "changed after the save");
    pack(handlerThat([this] { unpack({}); }));
    EXPECT_EQ(m_failures, 1);
    EXPECT_EQ(readFile(m_tree.obj() / " 1.tob"), "changed after the save");
}

TEST_F(ArchiveReentry, SaveDuringAnUnpackIsRefusedAndTheRestoreIsComplete) {
    pack({});
    const auto archived = snapshot(m_tree.obj());
    const std::string archiveBefore = readFile(m_tree.archive());
    for (const auto& [name, content] : archived) {
        std::filesystem::remove(m_tree.obj() / name);
    }
    EXPECT_EQ(unpack(handlerThat([this] { pack({}); })), 4);
    EXPECT_EQ(m_failures, 1);
    EXPECT_EQ(snapshot(m_tree.obj()), archived);
    EXPECT_EQ(readFile(m_tree.archive()), archiveBefore);
}

// A project close in the middle of a save deletes the working files: what is gone is left out,
// the archive stays readable.
TEST_F(ArchiveReentry, ProjectClosedDuringAPackLeavesAReadableArchive) {
    const PackResult result = pack(handlerThat([this] {
        for (const auto& entry : std::filesystem::directory_iterator(m_tree.obj())) {
            std::filesystem::remove(entry.path());
        }
    }));
    EXPECT_EQ(result.count, 1);
    EXPECT_EQ(result.problems.size(), 3u);
    EXPECT_EQ(readArchiveIndexOfFile(m_tree.archive()).size(), 1u);
}

// A handler that fails with something other than a run-time error ends the pack: the
// previous archive stays and the next pack is not refused.
TEST_F(ArchiveReentry, EscapingExceptionLeavesThePreviousArchive) {
    pack({});
    const auto before = snapshot(m_tree.destination());
    writeFile(m_tree.obj() / " 4.tob", "new");
    EXPECT_THROW(pack([] { throw std::logic_error("handler bug"); }), std::logic_error);
    EXPECT_EQ(snapshot(m_tree.destination()), before);
    EXPECT_FALSE(archiveOperationRunning());
    EXPECT_EQ(pack({}).count, 5);
}

} // namespace
} // namespace pluvarine
