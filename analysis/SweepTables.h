// Per-grid tables of the ladder analysis: what depends on the frequencies and F0 alone is computed
// once per grid, so that a thousand worst-case runs over one grid share it. No Qt.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace ladderwise {

/// The tables of one frequency grid. Entries 0 .. Count - 1 belong to the grid; the arrays are
/// padded with a harmless frequency to whole blocks of the kernel.
struct SweepTables {
    std::size_t Count = 0;          ///< frequencies in the grid
    double F0 = 0.0;                ///< Hz, where line lengths and the inductor Q are given
    std::vector<double> Frequency;  ///< f, Hz
    std::vector<double> Omega;      ///< w = 2 pi f, rad/s
    std::vector<double> InvOmega;   ///< 1 / w, s
    std::vector<double> SkinOmega;  ///< 2 pi sqrt(F0 f), rad/s; over Q it is R / L of a real coil
    std::vector<double> RelativeF;  ///< f / F0; times a length at F0 it is the length at f
    std::vector<double> ZeroOrNaN;  ///< NaN where the kernel cannot be used (w or 1/w extreme)
};

/// Fills the tables for the grid `freqs` (Hz) and the reference frequency F0 (Hz). Any number of
/// points, in any order; allocates only when the padded size grows.
void BuildSweepTables(SweepTables& tables, std::span<const double> freqs, double F0);

}  // namespace ladderwise
