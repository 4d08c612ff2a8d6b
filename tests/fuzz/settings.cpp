// Fuzzes the reader of the settings file: what it read survives being written and read again.
#include <cstdint>
#include <cstdlib>

#include "files/Settings.h"

using namespace ladderwise;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ProgramSettings settings;
    int messages = 0;
    ReadSettingsText({reinterpret_cast<const char*>(data), size}, settings,
                     [&](const std::string&, const std::string&) { ++messages; });
    if (messages > 1) std::abort();
    for (const std::string& path : settings.Recent.Paths())
        if (ShortenedPath(path).size() > path.size() + 5) std::abort();
    const std::string text = SettingsText(settings);
    ProgramSettings again;
    ReadSettingsText(text, again, [](const std::string&, const std::string&) { std::abort(); });
    if (SettingsText(again) != text) std::abort();
    return 0;
}
