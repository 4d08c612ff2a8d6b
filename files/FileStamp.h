// Whether a file still is what a program read or wrote: another window or program may have saved a
// design of its own in its place meanwhile. QtCore.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ladderwise {

/// What tells one content from another: its length and its SHA-256. Times play no part: they are
/// coarse on some file systems, and a file that was copied back or touched is still the same.
struct FileStamp {
    std::size_t Size = 0;
    std::string Digest;
};

/// Those of a design file and of the companion beside it, as they were read or written last; empty
/// where there was none.
struct DesignStamps {
    std::optional<FileStamp> Design{};
    std::optional<FileStamp> Companion{};
};

/// The stamp of a content just read or written. Made of the bytes in hand rather than of the file,
/// so that nothing can come in between.
FileStamp StampOf(std::string_view bytes);

/// What has become of a file.
enum class FileChange {
    None,
    Changed,  ///< it holds something else now, or what it holds cannot be read
    Gone      ///< there is no file of that name any more
};

/// Compares the file `path` (UTF-8) with the stamp taken when it was last read or written.
FileChange FileChangedSince(const std::string& path, const FileStamp& stamp);

}  // namespace ladderwise
