// The rows of the list of filters in words. No Qt.
#pragma once

#include <string>

#include "choosing/FilterChoices.h"

namespace ladderwise {

/// "Chebyshev, 5 poles, CLC, 0.1 dB" and what else tells a row from its neighbours.
std::string NameOf(const FilterChoice& row);

/// "Fo 145.2 MHz, BW 6 MHz".
std::string PlaceOf(const FilterChoice& row);

/// "10.1 pF to 33.4 pF", or "-" where there are none.
std::string RangeText(const ValueRange& range, const char* unit);

/// What a miss asks of the limits: "attenuation at least 45 dB from 144 MHz to 148 MHz by 1.20 dB;
/// ...".
std::string RelaxText(const FilterChoice& row);

}  // namespace ladderwise
