// Between the console program and whoever runs it: the words of the command line, the standard
// streams, and texts made fit for a terminal. The one place that differs from system to system.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ladderwise {

/// The words after the program's name, as UTF-8 on systems that keep them otherwise and byte for
/// byte where they are bytes.
std::vector<std::string> ArgumentWords(int argc, char** argv);

/// Standard output takes bytes as they are, line ends included; a console shows them as UTF-8.
void PrepareStreams();

/// The toolkit's platform that paints with the system's fonts and needs no screen. That of Windows
/// does so until a window is shown; the screenless one knows no font there.
const char* PaintingPlatform();

/// Writes all bytes to standard output; an empty text, or why that failed.
std::string WriteToOutput(std::string_view bytes);

/// A text with every control character and every byte that is no UTF-8 written as \x1b: a terminal
/// would obey it, or show nothing.
std::string Printable(std::string_view text);

}  // namespace ladderwise
