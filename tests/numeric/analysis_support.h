// Shared by the tests of the analysis: designs and grids in the 50 ohm, 100 MHz region.
#pragma once

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "analysis/Circuitanalysis.h"

namespace ladderwise::testing {

inline constexpr double TestF0 = 100e6;                         ///< Hz
inline constexpr double TestL = 50.0 / (TwoPi * TestF0);        ///< 50 ohm at TestF0, H
inline constexpr double TestC = 1.0 / (TwoPi * TestF0 * 50.0);  ///< 50 ohm at TestF0, F

/// A logarithmic grid of `count` points, TestF0 / 10 .. 10 TestF0.
inline std::vector<double> LogGrid(std::size_t count) {
    std::vector<double> freqs(count);
    for (std::size_t i = 0; i < count; ++i)
        freqs[i] = 0.1 * TestF0 * std::pow(100.0, double(i) / double(count));
    return freqs;
}

inline FilterDesign MakeDesign(std::vector<CircuitElement> slots,
                               PartChoice parts = PartChoice::IdealParts) {
    FilterDesign design;
    design.F0 = TestF0;
    design.PartModel.Choice = parts;
    design.NumElements = static_cast<int>(slots.size());
    for (std::size_t k = 0; k < slots.size(); ++k)
        design.Elements[k + 1] = slots[k];
    return design;
}

/// A slot of `type` with random values: parts within a factor of 5 about 50 ohm, stubs of 5 .. 85
/// degrees at TestF0.
inline CircuitElement RandomSlot(ElementType type, std::mt19937& random) {
    std::uniform_real_distribution<double> spread(-std::log(5.0), std::log(5.0));
    std::uniform_real_distribution<double> degrees(5.0, 85.0);
    CircuitElement slot;
    slot.Type = type;
    for (int row = 0; row < 4; ++row) {
        switch (InfoOf(type).Values[row]) {
            case ValueKind::Unused:
                break;
            case ValueKind::Inductance:
                slot.Value(row) = TestL * std::exp(spread(random));
                break;
            case ValueKind::Capacitance:
                slot.Value(row) = TestC * std::exp(spread(random));
                break;
            case ValueKind::LengthDegrees:
                slot.Value(row) = degrees(random);
                break;
            case ValueKind::Impedance:
                slot.Value(row) = 50.0 * std::exp(spread(random));
                break;
        }
    }
    return slot;
}

/// The result of one sweep.
struct Sweep {
    std::vector<double> Re, Im, ReflectionDb;

    Complex H(std::size_t i) const { return {Re[i], Im[i]}; }
    /// |Gamma|
    double Reflection(std::size_t i) const { return std::pow(10.0, ReflectionDb[i] / 20.0); }
};

inline Sweep Analyse(const FilterDesign& design, const std::vector<double>& freqs,
                     KernelChoice choice = KernelChoice::Automatic,
                     const MessageCallback& report = {}) {
    SweepTables tables;
    BuildSweepTables(tables, freqs, design.F0);
    const std::size_t n = freqs.size();
    Sweep out{std::vector<double>(n, 7.0), std::vector<double>(n, 7.0),
              std::vector<double>(n, 7.0)};
    AnalyseLadder(design, tables, report, out.Re, out.Im, out.ReflectionDb, choice);
    return out;
}

/// Every form of the analysis that runs here.
inline std::vector<KernelChoice> AvailableKernels() {
    std::vector<KernelChoice> kernels{KernelChoice::Reference, KernelChoice::Baseline};
    if (KernelAvailable(KernelChoice::V3)) kernels.push_back(KernelChoice::V3);
    return kernels;
}

}  // namespace ladderwise::testing
