#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace pluvarine {

// Writes a file through a temporary file in the same folder that replaces the target by a
// rename only once it is complete: a crash, a full disk or a failed write leaves the previous
// file as it was. The temporary file is a dot-file (".pluvarine-<process id>-<random>.tmp"), so
// folder listings of ordinary files never see it; it is removed again unless it became the target.
// Qt's QSaveFile does the same but names its temporary file visibly after the target.
//
// A writer killed before it could remove its temporary file leaves it behind. The first write of
// a process in a folder removes such files there: those whose process no longer runs (and those
// of older versions, whose names carry no process id). Files of running processes stay.
class AtomicFile {
public:
    enum class Sync { None, Data };

    explicit AtomicFile(std::string targetPath);
    AtomicFile(AtomicFile&& other) noexcept;
    AtomicFile& operator=(AtomicFile&&) = delete;
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    ~AtomicFile();

    // Creates the temporary file. An existing target lends its permission bits; a new file gets
    // the usual 0666 less the umask.
    bool create();
    // The same when the caller already knows the target's permission bits (nullopt: no target).
    bool create(std::optional<unsigned> targetPermissions);
    int descriptor() const { return m_fd; }
    bool writeAll(const char* data, std::size_t size);
    // Optionally flushes the data to the disk, then closes the temporary file.
    bool finish(Sync sync);
    // Renames the finished temporary file over the target.
    bool replaceTarget();
    // finish + replaceTarget + (with Sync::Data) flush of the folder entry.
    bool commit(Sync sync);
    // Removes the temporary file unless it already replaced the target.
    void discard();

    const std::string& targetPath() const { return m_target; }
    // The reason of the last failure, e.g. "No space left on device".
    const std::string& errorText() const { return m_error; }

private:
    bool fail();

    std::string m_target;
    std::string m_temporary;
    std::string m_error;
    int m_fd = -1;
    bool m_replaced = false;
};

} // namespace pluvarine
