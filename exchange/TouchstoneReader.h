// Reads measured one- and two-ports: Touchstone files of version 1 and 2, as many programs and
// instruments write them. No Qt, no disk.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analysis/SParameters.h"

namespace ladderwise {

/// A network as its file has it, in ascending order of frequency.
struct NetworkData {
    int Ports = 2;                        ///< 1: S11 alone is there
    PortResistances Reference{};          ///< of the parameters in S; equal for one port
    std::vector<double> Hz{};             ///< ascending, none twice
    std::vector<SParameters> S{};         ///< of one port: the other three are 0
    bool OnePath = false;                 ///< S12 and S22 are all zero: those were not measured
    std::vector<std::string> Messages{};  ///< what was changed or left out, a sentence each
};

/// A network, or why the text holds none: the line (from 1) and a sentence.
struct TouchstoneResult {
    NetworkData Network{};
    std::string Error{};  ///< "line 7: \"0,5\" is no number"; empty if Network holds the file
};

/// More bytes than this are refused unread; a caller reads at most one more.
inline constexpr std::size_t MaxTouchstoneBytes = 64u << 20;

/// Reads a file's bytes. The number of columns tells one port from two. Data in Y, Z, G and H are
/// turned into S at the reference resistances; version 1 has them normalised to R, version 2 not
/// ("Touchstone File Format Specification", version 2.0, IBIS Open Forum 2009). Accepted beyond
/// the letter of the format: a missing option line (GHz S MA R 50), wrapped lines, any line end,
/// comments of any encoding, -inf as a level in dB, frequencies out of order.
TouchstoneResult ReadTouchstone(std::string_view bytes);

}  // namespace ladderwise
