// Coefficients files: low-pass prototypes by their g-values as text, one order in each row. No Qt,
// no disk.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "design/FilterDesign.h"

namespace ladderwise {

/// [n][k - 1]: k-th g-value of order n; a row of zeros where the file has no such order.
using CoefficientRows = decltype(FilterDesign::CoefficientTable);

/// More than any coefficients file needs; larger files are refused.
inline constexpr std::size_t MaxCoefficientsBytes = 1'000'000;

/// What a text gave. On an error, which names the line, there are no rows.
struct CoefficientsResult {
    CoefficientRows Rows{};
    std::string Error;
};

/// Reads the text of a coefficients file. `#` starts a comment. A row is an order, 1 to
/// MaxCoefficients, and its g-values in henries or farads at 1 ohm and 1 rad/s, g1 first: at least
/// as many as the order, at most MaxCoefficients; what lies beyond the order is checked but has no
/// use. Values are separated by commas; in a row with a semicolon by semicolons, and then a comma
/// is a decimal separator too. Orders beyond MaxPoles are checked but not kept.
CoefficientsResult ReadCoefficients(std::string_view text);

/// True if the rows hold the order.
bool HasOrder(const CoefficientRows& rows, int order);

}  // namespace ladderwise
