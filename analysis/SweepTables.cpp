// Builds the per-grid tables of the ladder analysis.
#include "analysis/SweepTables.h"

#include <cmath>
#include <limits>

#include "analysis/LadderKernel.h"
#include "design/FilterDesign.h"
#include "numbers/Matherrmain.h"

namespace ladderwise {
namespace {

// Between these angular frequencies w, 1/w and their squares are far from overflow. Any other
// point (0 Hz above all) goes to the reference form.
constexpr double LowestKernelOmega = 1e-100;
constexpr double HighestKernelOmega = 1e100;

constexpr double PaddingFrequency = 1.0;  // Hz; its results are thrown away

}  // namespace

void BuildSweepTables(SweepTables& tables, std::span<const double> freqs, double F0) {
    const std::size_t count = freqs.size();
    const std::size_t padded = (count + KernelBlock - 1) / KernelBlock * KernelBlock;
    tables.Count = count;
    tables.F0 = F0;
    for (std::vector<double>* table : {&tables.Frequency, &tables.Omega, &tables.InvOmega,
                                       &tables.SkinOmega, &tables.RelativeF, &tables.ZeroOrNaN})
        table->resize(padded);
    for (std::size_t i = 0; i < padded; ++i) {
        const double f = i < count ? freqs[i] : PaddingFrequency;
        const double w = TwoPi * f;
        const bool usable = w > LowestKernelOmega && w < HighestKernelOmega;
        tables.Frequency[i] = f;
        tables.Omega[i] = w;
        tables.InvOmega[i] = 1.0 / w;
        tables.SkinOmega[i] = TwoPi * GuardedSqrt(F0 * f);
        tables.RelativeF[i] = f / F0;
        tables.ZeroOrNaN[i] = usable ? 0.0 : std::numeric_limits<double>::quiet_NaN();
    }
}

}  // namespace ladderwise
