// Nearest integer with a symmetric, reported limit.
#include "numbers/UtilityFunctions.h"

#include <cmath>

namespace ladderwise {

namespace {
constexpr double LargestInt = 2147483647.0;  ///< symmetric: the lowest integer is never returned
}  // namespace

int NearestInt(double x, const MessageCallback& report) {
    if (std::isnan(x)) return 0;
    if (std::abs(x) > LargestInt) {
        if (report)
            report("Error", "ERROR: Value out of range in NearestInt() UtilityFunctions.cpp");
        return x < 0.0 ? -2147483647 : 2147483647;
    }
    return static_cast<int>(x < 0.0 ? std::ceil(x - 0.5) : std::floor(x + 0.5));
}

}  // namespace ladderwise
