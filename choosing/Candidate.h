// A filter that might do, but for its frequencies, and the ladder that it makes at given ones. No
// Qt.
#pragma once

#include <map>
#include <tuple>
#include <vector>

#include "design/FilterDesign.h"

namespace ladderwise {

/// What a filter is, but for where it lies.
struct Candidate {
    PassType Pass = PassType::LowPass;
    ResponseType Response = ResponseType::Butterworth;
    int Poles = 3;  ///< or traps
    bool FormCLC = true;
    double RippleDb = 0.2;                                 ///< of Chebyshev and elliptic families
    double AttenDb = 50.0;                                 ///< of elliptic families
    int TrapType = 1;                                      ///< of elliptic band-passes and notches
    InverterType Inverter = InverterType::SeriesInductor;  ///< of direct-coupled band-passes
    double TankNanohenries = DefaultTankValue;             ///< the same
    ladderwise::NortonType NortonType = ladderwise::NortonType::TCap;
    double NortonK = 2.0;
    double NortonM = 1.0;

    bool operator==(const Candidate&) const = default;
};

/// Whether the ripple, or the attenuation, plays a part.
bool HasRipple(const Candidate& candidate);

/// A group is all candidates that differ in ripple, attenuation and the evenness of their parts
/// alone: they have the same parts count.
std::tuple<int, int, int, bool, int, int, int> GroupOf(const Candidate& candidate);

/// A low-pass prototype between its terminations.
struct StoredPrototype {
    ElementList Elements{};
    std::array<double, NumGValues> G{};
    int NumElements = 0;
    double RLoad = 0.0;  ///< ohm
    bool FormCLC = true;
    double RippleDb = 0.0;
    EllipticResult Elliptic{};
    CalcFlags Flags{};
};

/// Elliptic prototypes cost more than the search for their frequencies, so they are kept.
using PrototypeStore =
    std::map<std::tuple<ResponseType, int, double, double, double>, StoredPrototype>;

/// Makes the ladders of candidates with the very functions of the calculation.
class LadderMaker {
public:
    /// Terminations and part model of `base`, whose RLoad is the user's.
    LadderMaker(const FilterDesign& base, PrototypeStore& prototypes);

    /// Takes up a candidate; false if its family cannot be built.
    bool Use(const Candidate& candidate);

    /// Builds it at F0 and BandWidth (Hz) as it would be built: de-embedded and with standard
    /// values where the part model says so. False where a value is no part.
    bool Place(double f0, double bandWidth);

    /// The work design: after Place with the ladder.
    FilterDesign& Design() { return work; }
    const FilterDesign& Design() const { return work; }

    /// Standard values on or off, for a search that first goes without their steps.
    void UseStandardValues(bool on) { work.StdLCValues = on; }

    /// Gives the tanks of a direct-coupled band-pass or the transformers of a Norton one the values
    /// that make its parts evenest at F0 and BandWidth. False if none can be built.
    bool MakeEven(Candidate& candidate, double f0, double bandWidth);

private:
    bool MakeTanksEven(Candidate& candidate, double f0, double bandWidth);
    bool MakeTransformersEven(Candidate& candidate, double f0, double bandWidth);
    bool PlaceUnchanged(double f0, double bandWidth);

    FilterDesign work;
    double userLoad;
    PrototypeStore& store;
    StoredPrototype prototype{};
};

/// True for an end part that a Norton ladder of A = 1 leaves out: a capacitor of 0 F across the
/// line, an inductor of 0 H in it.
constexpr bool IsLeftOut(ElementType type, double value) {
    return value == 0.0 && (type == ElementType::ShuntCap || type == ElementType::SeriesInd);
}

/// Calls take(kind, value) for every part of the ladder from the source to the load.
template <typename Take>
void ForEachPart(const DesignState& design, const Take& take) {
    for (int slot = 1; slot <= SlotsInUse(design); ++slot) {
        const CircuitElement& element = design.Elements[static_cast<std::size_t>(slot)];
        const ElementInfo& info = InfoOf(element.Type);
        for (int row = 0; row < 4; ++row) {
            const ValueKind kind = info.Values[static_cast<std::size_t>(row)];
            const double value = element.Value(row);
            if (IsPart(kind) && !(value > NotUsedLimit) && !IsLeftOut(element.Type, value))
                take(kind, value);
        }
    }
}

/// Numbers of parts in a ladder.
struct PartCounts {
    int Inductors = 0;
    int Capacitors = 0;

    int Both() const { return Inductors + Capacitors; }
};
PartCounts CountParts(const DesignState& design);

/// Smallest and largest value of a kind, SI units; 0 where there is none.
struct ValueRange {
    double Smallest = 0.0;
    double Largest = 0.0;
};
ValueRange RangeOf(const DesignState& design, ValueKind kind);

}  // namespace ladderwise
