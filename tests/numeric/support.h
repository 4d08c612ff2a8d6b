// Shared by the numeric tests: designs and grids in the 50 ohm, 100 MHz region, sweeps by every
// form of the analysis, and a decimal separator for the length of a test.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "analysis/Circuitanalysis.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/NamedSettings.h"

namespace ladderwise {

inline constexpr double Infinity = std::numeric_limits<double>::infinity();
inline constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
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

inline FilterDesign MakeDesign(const std::vector<CircuitElement>& slots,
                               PartChoice parts = PartChoice::IdealParts) {
    FilterDesign design;
    design.F0 = TestF0;
    design.PartModel.Choice = parts;
    design.NumElements = static_cast<int>(slots.size());
    std::copy(slots.begin(), slots.end(), design.Elements.begin() + 1);
    return design;
}

/// A slot of `type` whose used values are `valueOf` their kinds.
template <typename ValueOf>
CircuitElement SlotOf(ElementType type, const ValueOf& valueOf) {
    CircuitElement slot;
    slot.Type = type;
    for (int row = 0; row < 4; ++row) {
        const ValueKind kind = InfoOf(type).Values[row];
        if (kind != ValueKind::Unused) slot.Value(row) = valueOf(kind);
    }
    return slot;
}

/// Random values: parts within a factor of 5 about 50 ohm, stubs of 9 .. 225 degrees at TestF0.
inline CircuitElement RandomSlot(ElementType type, std::mt19937& random) {
    std::uniform_real_distribution<double> spread(-std::log(5.0), std::log(5.0));
    return SlotOf(type, [&](ValueKind kind) {
        const double unit = kind == ValueKind::Inductance    ? TestL
                            : kind == ValueKind::Capacitance ? TestC
                            : kind == ValueKind::Impedance   ? 50.0
                                                             : 45.0;
        return unit * std::exp(spread(random));
    });
}

/// The result of one sweep.
struct Swept {
    std::vector<double> Re, Im, ReflectionDb;

    Complex H(std::size_t i) const { return {Re[i], Im[i]}; }
    /// |Gamma|
    double Reflection(std::size_t i) const { return std::pow(10.0, ReflectionDb[i] / 20.0); }
};

inline Swept Analyse(const FilterDesign& design, const std::vector<double>& freqs,
                     KernelChoice choice = KernelChoice::Automatic,
                     const MessageCallback& report = {}) {
    SweepTables tables;
    BuildSweepTables(tables, freqs, design.F0);
    const std::vector<double> before(freqs.size(), 7.0);
    Swept out{before, before, before};
    AnalyseLadder(design, tables, report, out.Re, out.Im, out.ReflectionDb, choice);
    return out;
}

/// Every form of the analysis that runs here; the first is the reference form.
inline std::vector<KernelChoice> AvailableKernels() {
    std::vector<KernelChoice> kernels{KernelChoice::Reference, KernelChoice::Baseline};
    if (KernelAvailable(KernelChoice::V3)) kernels.push_back(KernelChoice::V3);
    return kernels;
}

/// |H|^2 of a normalised ladder at w (rad/s): its load is referred to a 1-ohm source.
inline double PrototypeGain(FilterDesign design, double w) {
    design.RLoad /= design.RSource;
    design.RSource = 1.0;
    return std::norm(AnalysePoint(design, 1.0, w * OneOverTwoPi).Transfer);
}

/// A decimal separator until the end of the scope. The settings are one for the whole program, so
/// every test that changes them has to put them back.
class SeparatorScope {
public:
    explicit SeparatorScope(char separator) : before(SystemFormatSettings()) {
        SetSystemFormatSettings({separator});
    }
    ~SeparatorScope() { SetSystemFormatSettings(before); }
    SeparatorScope(const SeparatorScope&) = delete;
    SeparatorScope& operator=(const SeparatorScope&) = delete;

private:
    const FormatSettings before;
};

/// Messages of a call, "caption: text" each.
struct Recorder {
    std::vector<std::string> Messages{};

    MessageCallback Report() {
        return [this](const std::string& caption, const std::string& text) {
            Messages.push_back(caption + ": " + text);
        };
    }
};

/// Inputs by their names on the console.
using Settings = std::vector<std::pair<std::string, std::string>>;

inline std::unique_ptr<Calculation> Designed(const Settings& settings) {
    auto calculation = std::make_unique<Calculation>();
    for (const auto& [name, value] : settings)
        EXPECT_EQ(ApplySetting(*calculation, name, value, {}), std::nullopt) << name;
    Calculate(*calculation, {});
    return calculation;
}

}  // namespace ladderwise
