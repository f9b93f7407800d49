// Internal; do not include directly.
//
// Rewriting a settings file as a whole, safe against a crash in the middle
// and against other processes that rewrite the same file.
//
//   vx::UpdateFile(hostPath, [](const std::string* current, std::string& out) {
//       out = current ? Changed(*current) : Fresh();
//       return true;                        // false: leave the file alone
//   });
//
// The new text goes to a temporary file in the same directory, is flushed
// to the disk and renamed over the file, so a reader sees the old file or the
// new one, never a part. Writers hold an exclusive open-file-description lock
// (fcntl F_OFD_SETLKW) on the file from before they read it until after the
// rename; a writer that waited on a file that was replaced in the meantime
// takes the lock again on the new one. So two writers never lose each other's
// change. A missing file is created with link(), which fails when another
// writer created it first; the loser then starts over on that file.
#pragma once

#include <functional>
#include <string>

namespace vx {

enum class UpdateResult {
    Done,     // the file now holds the new text
    Declined, // `update` returned false; the file is unchanged
    Failed,   // the file is unchanged (or still missing)
};

// Makes the text for the file from its current bytes (null when the file does
// not exist). Returns false to leave the file as it is.
using FileUpdater = std::function<bool(const std::string* current, std::string& out)>;

// Rewrites the file at `hostPath` (UTF-8) with what `update` makes of it.
// Fails, changing nothing, when the file exists but cannot be opened for both
// reading and writing, when the directory takes no new file, or when the
// text cannot be written in full. A symbolic link is followed, so its target
// is replaced and the link stays. The file keeps its permission bits; a new
// one gets 0666 less the umask.
UpdateResult UpdateFile(const std::string& hostPath, const FileUpdater& update);

} // namespace vx
