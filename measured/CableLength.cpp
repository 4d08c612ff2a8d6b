// Times and lengths of cables.
#include "measured/CableLength.h"

#include <cmath>

#include "numbers/Formatfunctions.h"
#include "numbers/UnitTexts.h"

namespace ladderwise {

namespace {

constexpr double SpeedOfLight = 299792458.0;  // m/s
constexpr double Picosecond = 1e-12;          // s
constexpr int CableDigits = 6;                // significant, of a length in ps

}  // namespace

std::optional<double> ReadCableDelay(const std::string& text) {
    double read = 0.0;
    const std::size_t last = text.find_last_not_of(' ');
    const bool metres = last != std::string::npos && text[last] == 'm';
    if (TryParseDouble(text, read))
        read *= Picosecond;
    else if (metres && TryParseWithPrefix(text, "m", read))
        read /= SpeedOfLight;
    else if (metres || !TryParseWithPrefix(text, "s", read))
        return {};
    if (!(std::fabs(read) <= LongestCableDelay)) return {};
    return read;
}

std::string CableText(double delay) {
    return FormatPlain(delay / Picosecond, CableDigits);
}

}  // namespace ladderwise
