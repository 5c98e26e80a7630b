#include "app/cli/ArchiveMessages.h"
#include "app/cli/ArchiveProgress.h"
#include "app/cli/Commands.h"
#include "base/ResumeNext.h"
#include "store/ArchiveFormat.h"
#include "store/ProjectArchive.h"

#include <iomanip>
#include <iostream>
#include <unistd.h>

namespace pluvarine {

namespace {

constexpr const char* kUsage =
    "usage: pluvarine-cli archive pack DIR ARCHIVE | unpack ARCHIVE DIR | list ARCHIVE";

int refuse(const std::string& reason) {
    std::cerr << "pluvarine-cli: " << reason << '\n';
    return 2;
}

// Runs the step; a RuntimeError becomes the one-line reason of exit code 2.
int runStep(const Step& step) {
    std::string reason;
    if (!tryStep(step, [&](const RuntimeError& error) { reason = error.what(); })) {
        return refuse(reason);
    }
    return 0;
}

// Files left out are named on standard error; the exit code 1 says the archive is incomplete.
int pack(const std::string& folder, const std::string& archive) {
    ArchiveProgress progress(std::cerr, ::isatty(STDERR_FILENO) != 0);
    PackResult result;
    if (const int refused =
            runStep([&] { result = PackFolder(folder, archive, "*.*", progress, {}); })) {
        return refused;
    }
    for (const ArchiveProblem& problem : result.problems) {
        std::cerr << "pluvarine-cli: left out \"" << problem.name << "\": " << problem.reason
                  << '\n';
    }
    std::cout << "packed " << result.count << " files into " << archive << '\n';
    return result.problems.empty() ? 0 : 1;
}

int unpack(const std::string& archive, const std::string& folder) {
    ArchiveProgress progress(std::cerr, ::isatty(STDERR_FILENO) != 0);
    ArchiveMessages messages;
    std::int32_t count = 0;
    if (const int refused =
            runStep([&] { count = UnpackFolder(archive, folder, progress, {}, messages); })) {
        return refused;
    }
    if (!messages.last().empty()) {
        return refuse(messages.last());
    }
    std::cout << "unpacked " << count << " files into " << folder << '\n';
    return 0;
}

int list(const std::string& archive) {
    std::vector<ArchiveEntry> entries;
    if (const int refused = runStep([&] { entries = readArchiveIndexOfFile(archive); })) {
        return refused;
    }
    for (const ArchiveEntry& entry : entries) {
        std::cout << std::setw(12) << entry.dataLength << "  " << entry.name << '\n';
    }
    return 0;
}

} // namespace

int runArchive(const std::vector<std::string>& args) {
    if (args.size() == 3 && args[0] == "pack") {
        return pack(args[1], args[2]);
    }
    if (args.size() == 3 && args[0] == "unpack") {
        return unpack(args[1], args[2]);
    }
    if (args.size() == 2 && args[0] == "list") {
        return list(args[1]);
    }
    return refuse(kUsage);
}

} // namespace pluvarine
