#pragma once

// Fakes, file helpers and the archive fixture shared by the store tests.

#include "base/RuntimeError.h"
#include "platform/system/UserMessages.h"
#include "store/ArchiveFormat.h"
#include "store/ProjectArchive.h"
#include "tests/support/FileBytes.h"
#include "tests/support/WriteFaults.h"

#include <QTemporaryDir>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>

namespace pluvarine::testing {

namespace fs = std::filesystem;

struct RecordingProgress : ProgressSink {
    void ShowProgress(const std::string& text, std::int32_t percentage) override {
        texts.push_back(text);
        percentages.push_back(percentage);
    }
    void EndProgress() override { ++ended; }
    std::vector<std::string> texts;
    std::vector<int> percentages;
    int ended = 0;
};

using test::readFile, test::writeFile;

// A little-endian integer of width bytes (a count or length: 4), as the archive lays them out.
inline std::string le(std::int64_t value, int width = 4) {
    std::string bytes;
    for (int i = 0; i < width; ++i)
        bytes += static_cast<char>((static_cast<std::uint64_t>(value) >> (8 * i)) & 0xFF);
    return bytes;
}

inline std::string record(const std::string& nameBytes, const std::string& data) {
    return le(nameBytes.size(), 2) + nameBytes + le(data.size()) + data;
}

// Every file and folder below root with the content of the files: compared before and after an
// operation, it shows anything written, changed or lost.
inline std::map<std::string, std::string> snapshot(const fs::path& root) {
    std::map<std::string, std::string> entries;
    for (const auto& entry : fs::recursive_directory_iterator(root))
        entries[entry.path().lexically_relative(root).string()] =
            entry.is_directory() ? std::string("<folder>") : readFile(entry);
    return entries;
}

// A temporary tree: root/obj (the folder packed and restored), root/destination (the archive).
class ArchiveTest : public ::testing::Test, public UserMessages {
protected:
    ArchiveTest() {
        fs::create_directory(root() / "destination");
        fs::create_directory(obj());
    }
    fs::path root() const { return m_dir.path().toStdString(); }
    fs::path obj() const { return root() / "obj"; }
    std::string archive() const { return (root() / "destination" / "pluvarine.dat").string(); }

    void put(const std::map<std::string, std::string>& files) {
        for (const auto& [name, content] : files)
            writeFile(obj() / name, content);
    }
    PackResult pack(const EventPump& pump = {}, const std::string& pattern = "*.*") {
        return PackFolder(obj().string() + "/", archive(), pattern, *display, pump);
    }
    std::int32_t unpack(const EventPump& pump = {}, const fs::path& into = {}) {
        const std::string folder = (into.empty() ? obj() : into).string() + "/";
        return UnpackFolder(archive(), folder, *display, pump, *this);
    }

    // Runs an operation that must fail with a run-time error and leave the tree as it was. Under
    // a size limit, writes beyond it fail as on a full disk (EFBIG, with SIGXFSZ ignored).
    std::optional<RuntimeError> failureChangingNothing(const std::function<void()>& operation,
                                                       rlim_t sizeLimit = RLIM_INFINITY) {
        const auto before = snapshot(root());
        std::optional<RuntimeError> failure;
        try {
            const test::FileSizeLimit limit(sizeLimit);
            operation();
        } catch (const RuntimeError& error) {
            failure = error;
        } catch (const std::exception& error) {
            ADD_FAILURE() << error.what();
        }
        EXPECT_EQ(snapshot(root()), before);
        return failure;
    }

    void showMessage(const std::string& text, Icon icon) override {
        messages.emplace_back(text, icon);
    }

    RecordingProgress progress;
    ProgressSink* display = &progress;
    std::vector<std::pair<std::string, Icon>> messages;

private:
    QTemporaryDir m_dir;
};

} // namespace pluvarine::testing
