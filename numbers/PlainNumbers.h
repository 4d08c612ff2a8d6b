// Numbers in files that other programs read: a decimal point whatever the locale. No Qt.
#pragma once

#include <string>
#include <string_view>

namespace ladderwise {

/// The shortest text that reads back as the same double: "50", "7.957747154594767e-08".
std::string ExactNumber(double x);

/// 17 significant digits with an exponent, always of one width: " 1.2345678901234567e-01". Reads
/// back as the same double; -0 is written as 0.
std::string AlignedNumber(double x);

/// `digits` significant digits, with an exponent where that is shorter: "79.5774715e-9" is
/// "7.95774715e-08".
std::string RoundedNumber(double x, int digits);

/// How a text is no usable number.
enum class NumberFault { None, NotANumber, TooLarge };

/// Reads a decimal number with a point, an optional sign and exponent. "inf" and "infinity" with a
/// sign are read too; what is too small for a double is 0. `x` is left alone after a fault.
NumberFault ReadPlainNumber(std::string_view text, double& x);

}  // namespace ladderwise
