// What a direct-coupled band-pass is built of, and what its synthesis has to say about the end
// tanks. Ground floor, no Qt. Part of the design state.
#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace ladderwise {

/// Form of the resonators. The numbers stand in design files.
enum class TankType : int {
    SeriesLC = 0,             ///< in the series arm; every other form is a shunt tank
    ShuntLC = 1,              ///< parallel L and C
    ShuntIndOpenLine = 2,     ///< L, and an open stub for the C
    ShuntCapShortedLine = 3,  ///< C, and a shorted stub for the L
    OpenAndShortedLines = 4,  ///< stubs for both
    ShuntCSeriesLC = 5,       ///< C in parallel with L and C in series
    ShuntLSeriesLC = 6,       ///< L in parallel with L and C in series
    TappedByC = 7,            ///< parallel L and C behind a series C
    TappedByL = 8,            ///< parallel L and C behind a series L
    ShortedLine = 9,          ///< a quarter-wave shorted stub
};

/// What couples two tanks. The numbers stand in design files.
enum class InverterType : int {
    SeriesInductor = 0,
    SeriesCapacitor = 1,
    ShuntInductor = 2,
    ShuntCapacitor = 3,
    SeriesLine = 4,
};

/// The inverter of the same kind that fits the tanks: shunt inverters stand between series tanks,
/// series inverters between shunt tanks. A line stays a line, which is right for shunt tanks only.
constexpr InverterType InverterFor(InverterType type, TankType tank) {
    const bool series = tank == TankType::SeriesLC;
    switch (type) {
        case InverterType::SeriesInductor:
        case InverterType::ShuntInductor:
            return series ? InverterType::ShuntInductor : InverterType::SeriesInductor;
        case InverterType::SeriesCapacitor:
        case InverterType::ShuntCapacitor:
            return series ? InverterType::ShuntCapacitor : InverterType::SeriesCapacitor;
        case InverterType::SeriesLine:
            return InverterType::SeriesLine;
    }
    return type;
}

/// The unit in which one value per tank is given: an inductance, a capacitance, or the level that
/// the tank is to have.
enum class TankUnits : int { nH = 0, uH = 1, pF = 2, nF = 3, TankZ = 4 };

inline constexpr int MaxTanks = 10;             ///< one for each pole
inline constexpr double DefaultTankValue = 50;  ///< in any unit

/// The choices of the direct-coupled window. Initial values are those of a fresh program.
struct DirectCoupledSettings {
    ladderwise::TankType TankType = ladderwise::TankType::ShuntLC;
    ladderwise::InverterType InverterType = ladderwise::InverterType::SeriesInductor;
    double TLINLength = 45.0;  ///< of a line inverter, degrees at F0
    double TLSCLength = 45.0;  ///< of a shorted stub in a tank, degrees at F0
    double TLOCLength = 45.0;  ///< of an open stub in a tank, degrees at F0
    double TankFactor = 1.0;   ///< tapping of the three-element tanks, 1: none
    ladderwise::TankUnits TankUnits = ladderwise::TankUnits::nH;
    bool AlternateMatch = true;  ///< the dual inverter at both ends
    /// TankValues[i - 1]: the value of tank i in TankUnits.
    std::array<double, MaxTanks> TankValues = [] {
        std::array<double, MaxTanks> values{};
        for (double& value : values)
            value = DefaultTankValue;
        return values;
    }();
};

/// The two ends of a filter, as indices.
enum FilterEnd : std::size_t { SourceEnd = 0, LoadEnd = 1 };

/// What the synthesis found out about the end tanks; index SourceEnd or LoadEnd.
struct DirectCoupledResult {
    /// The limit of the end tank's value: "Min L1 = 9.95E-9", SI units.
    std::array<std::string, 2> Readouts{"Min", "Min"};
    /// The end tank's level is above Q times the termination. Most such designs are good ones.
    std::array<bool, 2> WarningShown{};
    /// The end tank's level was beyond what the end inverter can match; the termination was taken.
    std::array<bool, 2> Clamped{};
};

}  // namespace ladderwise
