// The step that makes the smallest of many linear functions largest. No Qt.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace ladderwise {

inline constexpr std::size_t MostUnknowns = 4;

/// A function that is `Value` where one stands and grows by `Slope[j]` for each 1 of step[j].
struct LinearFunction {
    double Value = 0.0;
    std::array<double, MostUnknowns> Slope{};
};

/// A step, and what the smallest of the functions is there.
struct MinimaxStep {
    std::array<double, MostUnknowns> Step{};
    double Smallest = 0.0;
};

/// The step within |step[j]| <= reach[j] (at least 0), j = 0 ... MostUnknowns - 1, that makes the
/// smallest of `functions` (at least one, all finite) largest, by the simplex method from the lower
/// corner of the box. Where it does not end within some hundred exchanges, as rounding may have
/// it, what it has come to: a step inside the box in any case.
/// Source: K. Madsen, H. Schjaer-Jacobsen, "Linearly constrained minimax optimization",
/// Mathematical Programming 14 (1978), of which this is the linear subproblem; G. Dantzig, "Linear
/// Programming and Extensions", 1963.
MinimaxStep LargestSmallest(const std::vector<LinearFunction>& functions,
                            const std::array<double, MostUnknowns>& reach);

}  // namespace ladderwise
