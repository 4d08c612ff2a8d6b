// Whole files to and from the disk: the one way in which every output of the programs is written.
// An output is complete in memory before this is called, and complete on the disk before it takes
// its name. QtCore.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ladderwise {

/// Writes `bytes` as the whole content of the file `path` (UTF-8). Returns an empty text, or why it
/// failed as a sentence for the user: "cannot write out.json: the disk is full (...)".
///
/// A regular file, wherever it lies, is replaced by renaming a complete temporary file that stood
/// beside it: after a full disk, a write-protected folder or a kill at any moment the old file is
/// whole. Links are followed, never replaced. What is no regular file (a device, a pipe, a socket;
/// also behind a link) and the open streams of programs (/dev/stdout, /proc/self/fd/1) are opened
/// and written to, and keep what they are.
/// Names that are not valid UTF-8 are refused, because they could not be kept as they are.
std::string WriteWholeFile(const std::string& path, std::string_view bytes);

/// What ReadWholeFile found: the content, or a sentence for the user ("cannot read ...: ...").
struct FileContent {
    std::string Bytes;
    std::string Error;
};

/// Reads at most `limit` bytes from the start of the file `path` (UTF-8). The limit protects from
/// files without end: callers that care whether a file is longer ask for one byte more.
FileContent ReadWholeFile(const std::string& path, std::size_t limit);

/// As ReadWholeFile, but refuses what is no regular file: a window that reads a pipe would wait for
/// its other end.
FileContent ReadRegularFile(const std::string& path, std::size_t limit);

/// Removes a file; one that is not there is none to remove. An empty text, or why it failed, as
/// that of WriteWholeFile.
std::string RemoveFile(const std::string& path);

}  // namespace ladderwise
