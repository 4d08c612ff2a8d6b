// The first half of the Touchstone reader: lines of words, the option line and the keywords of
// version 2. For TouchstoneReader alone. No Qt.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/SParameters.h"

namespace ladderwise {

enum class NetworkParameter { S, Y, Z, G, H };
enum class PairFormat { RealImaginary, Magnitude, Decibels };
enum class PairOrder { Columns, Rows };  ///< 21_12 (all of version 1), and 12_21
enum class MatrixShape { Full, Lower, Upper };

/// What stands before the data.
struct TouchstoneHeader {
    int Version = 1;
    double Unit = 1e9;  ///< hertz in one unit of the frequencies
    NetworkParameter Parameter = NetworkParameter::S;
    PairFormat Format = PairFormat::Magnitude;
    PortResistances Reference{50.0, 50.0};
    bool HasTwoReferences = false;
    std::size_t OptionLine = 0;  ///< from 1; 0: none
    int Ports = 0;               ///< of version 2
    std::optional<PairOrder> Order{};
    std::optional<std::size_t> Points{};
    MatrixShape Matrix = MatrixShape::Full;
};

/// A line without its comment, cut at blanks; none is empty.
struct WordLine {
    std::size_t Number;  ///< from 1
    std::vector<std::string_view> Words;
};

struct TouchstoneBody {
    TouchstoneHeader Header{};
    std::vector<WordLine> Data{};
    std::size_t LastLine = 1;
    std::vector<std::string> Messages{};
};

/// Why a file cannot be used; thrown inside the reader, never out of it.
struct TouchstoneRefusal {
    std::size_t Line;
    std::string Reason;
};
[[noreturn]] void Refuse(std::size_t line, const std::string& reason);

/// A word for a message: in quotes, cut where it is long, bytes beyond ASCII as "?".
std::string QuotedWord(std::string_view word);

/// Everything but the numbers. The words point into `bytes`.
TouchstoneBody ReadTouchstoneLines(std::string_view bytes);

}  // namespace ladderwise
