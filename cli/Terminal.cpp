// Command line, streams and texts for a terminal.
#include "cli/Terminal.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "numbers/Utf8.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>
#endif

namespace ladderwise {

#ifdef _WIN32

std::vector<std::string> ArgumentWords(int, char**) {
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> words;
    for (int i = 1; wide && i < count; ++i) {
        const int size = WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, nullptr, 0, nullptr, nullptr);
        std::string word(static_cast<std::size_t>(std::max(size, 1)), '\0');
        WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, word.data(), size, nullptr, nullptr);
        word.pop_back();  // the closing zero
        words.push_back(word);
    }
    LocalFree(wide);
    return words;
}

void PrepareStreams() {
    _setmode(_fileno(stdout), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
}

const char* PaintingPlatform() {
    return "windows";
}

#else

std::vector<std::string> ArgumentWords(int argc, char** argv) {
    return {argv + std::min(argc, 1), argv + argc};
}

void PrepareStreams() {}

const char* PaintingPlatform() {
    return "offscreen";
}

#endif

std::string WriteToOutput(std::string_view bytes) {
    errno = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size() &&
        std::fflush(stdout) == 0)
        return {};
    const char* const reason = errno == ENOSPC ? "the disk is full" : std::strerror(errno);
    return std::string("cannot write to standard output: ") + reason;
}

std::string Printable(std::string_view text) {
    constexpr std::string_view hex = "0123456789abcdef";
    std::string shown;
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        const auto first = static_cast<unsigned char>(text[0]);
        const bool control = first < 0x20 || first == 0x7f;
        // U+0080 to U+009F: the control characters that some terminals obey as well.
        const bool second =
            length == 2 && first == 0xc2 && static_cast<unsigned char>(text[1]) < 0xa0;
        const std::size_t taken = std::max<std::size_t>(length, 1);
        for (const char c : text.substr(0, taken)) {
            if (length > 0 && !control && !second) {
                shown += c;
            } else {
                const auto byte = static_cast<unsigned char>(c);
                shown += {'\\', 'x', hex[byte >> 4], hex[byte & 15]};
            }
        }
        text.remove_prefix(taken);
    }
    return shown;
}

}  // namespace ladderwise
