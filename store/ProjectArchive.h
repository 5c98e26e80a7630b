#pragma once

#include "store/ProgressSink.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pluvarine {

class UserMessages;

// A file of the folder that could not be recorded, and why.
struct ArchiveProblem {
    std::string name;
    std::string reason;
};

struct PackResult {
    std::int32_t count = 0;               // records in the archive written
    std::vector<ArchiveProblem> problems; // files left out of it
};

// Packs the ordinary files directly inside folder whose names match pattern (Windows wildcards,
// "*.*" is every file) into archive, in name order: no sub-folders, no dot-files, no links or
// devices. After each file: ShowProgress(string 4000, 100 / N * i rounded half to even) and
// pumpEvents(); pumpEvents() also after every 8 MiB of a larger file, so the window stays
// responsive while it is copied; at the end EndProgress(). Failures of the progress display or of
// an event handler do not stop the packing.
//
// The archive is written beside its place under a temporary name and renamed into place when
// complete, so an interrupted or failed pack leaves the previous archive whole. It is not
// flushed to the disk first: the host copies it into its project file at once, and the files
// it was made of stay in the folder. A file that
// cannot be read, changes its size while it is copied, is larger than 2 GiB - 1 or has a name
// Windows-1252 cannot represent is left out, the count tells the records actually written, and
// the file is listed in problems.
//
// Throws RuntimeError when the folder cannot be listed, the archive cannot be written (nothing
// is replaced then) or another pack or unpack is running (see below).
PackResult PackFolder(const std::string& folder, const std::string& archive,
                      const std::string& pattern, ProgressSink& progress,
                      const EventPump& pumpEvents);

// Restores every file of archive into folder; returns the number of files restored.
// A missing archive shows "The archive does not exist!" (critical) and returns 0.
// The whole archive is validated first (ArchiveFormat.h): a damaged or hostile one is refused
// with RuntimeError(kDamagedArchiveError) and nothing is written. Every file is then written
// under a temporary name and all of them are renamed into place at the end, replacing files of
// the same name; other files of the folder stay. A write that fails (a full disk) removes what
// was written and throws, leaving the folder as it was. Progress as for packing, string 4001.
// The folder must exist; it is never created.
std::int32_t UnpackFolder(const std::string& archive, const std::string& folder,
                          ProgressSink& progress, const EventPump& pumpEvents,
                          UserMessages& messages);

// Re-entry: pumpEvents lets host events and user actions run in the middle of a pack or unpack
// (a second save, a project load or close). While one pack or unpack runs, another call of
// either is refused with RuntimeError(PathFileAccess) "busy" before it touches anything, so two
// of them never write the same archive or folder at once. A project close in the middle only
// deletes files: the pack leaves out what vanished, the unpack fails cleanly if its temporary
// files vanished.
bool archiveOperationRunning();

} // namespace pluvarine
