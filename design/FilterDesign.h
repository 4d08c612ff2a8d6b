// The design state: every choice and number that defines the filter, the ladder computed from it
// and the sweep of that ladder. Ground floor, no Qt. Every computation is a plain function over it.
//
// Units inside are SI: hertz, henries, farads, ohms, seconds. Levels and attenuations are in dB,
// line lengths in degrees at F0. Ladder slots, g-values and poles count from 1; sweep points from
// 0.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "design/DirectCoupledSettings.h"
#include "design/ElementCatalogue.h"
#include "design/ValuePlace.h"

namespace ladderwise {

/// What kind of filter is designed. The numbers stand in design files.
enum class PassType : int {
    LowPass = 0,
    HighPass = 1,
    BandPassCanonical = 2,
    Notch = 3,
    DirectCoupled = 4,
    Norton = 5,
};

/// Whether a pass type has a bandwidth: band-passes and the notch.
constexpr bool HasBandWidth(PassType pass) {
    return pass != PassType::LowPass && pass != PassType::HighPass;
}

/// Response family. The numbers stand in design files; 12 is not in use and falls back to
/// Butterworth.
enum class ResponseType : int {
    Butterworth = 0,
    Chebyshev = 1,
    BesselFreq = 2,
    BesselDelay = 3,
    Papoulis = 4,
    Gauss = 5,
    LinearChebyshev = 6,
    EllipticA = 7,
    EllipticB = 8,
    EllipticC = 9,
    EllipticD = 10,
    EllipticE = 11,
    CoefficientsFile = 13,
};

/// True for the families that are built of traps (codes 7 to 11).
constexpr bool IsElliptic(ResponseType response) {
    return response >= ResponseType::EllipticA && response <= ResponseType::EllipticE;
}

/// The order of the low-pass prototype of a family whose number counts `count` traps, or poles: an
/// elliptic one has two poles for each trap and one to three more.
constexpr int OrderOf(ResponseType response, int count) {
    if (!IsElliptic(response)) return count;
    return 2 * count + (response == ResponseType::EllipticC   ? 1
                        : response == ResponseType::EllipticE ? 3
                                                              : 2);
}

/// How the sweep spans F0. The numbers stand in design files.
enum class SweepType : int {
    Linear = 0,
    OneOctave = 1,
    TwoOctaves = 2,
    ThreeOctaves = 3,
    OneDecade = 4,
    TwoDecades = 5,
};

/// Which part models the analysis uses.
enum class PartChoice : int { IdealParts = 0, RealParts = 1, DeEmbed = 2 };

/// How standard values are chosen: each the nearest one; together for the closest response, with
/// single parts or with capacitors as two in parallel; or for the highest yield.
enum class StdMethod : int { Nearest = 1, Together = 2, Pairs = 3, Yield = 4 };

inline constexpr double TwoPi = 6.283185307179586;
inline constexpr double TwoPiSquared = 39.47841760435743;    ///< (2 pi)^2
inline constexpr double OneOverTwoPi = 0.15915494309189535;  ///< 1 / (2 pi)

/// Value of a slot position that no stage has written. Large enough to be no part.
inline constexpr double UnusedValue = 1e50;
/// Any value above this is not in use: it shows as "Not Used" and is exported as nothing.
inline constexpr double NotUsedLimit = 1e47;
/// Part values below this (or NaN) are raised to it before use, so that no zero is divided by.
inline constexpr double SmallestPartValue = 1e-18;
/// The level of zero power, dB.
inline constexpr double ZeroPowerDb = -1000.0;
/// A phase or group-delay point that is not to be drawn; compared for exact equality.
inline constexpr double BlankMarker = -1.123456e-9;

inline constexpr int NumSlots = 32;          ///< ElementList slots; slot 0 is never used
inline constexpr int NumGValues = 33;        ///< G[0 .. 32]
inline constexpr int NumSweepPoints = 1024;  ///< points of the SweepGrid
inline constexpr int MaxPoles = 10;
inline constexpr int MaxCoefficients = 12;  ///< values in one row of a coefficients file

/// One ladder slot: a type and four values, whose meaning InfoOf(Type).Values tells.
struct CircuitElement {
    ElementType Type = ElementType::errorBitMap;
    double V1 = UnusedValue;  ///< inductance (H) or line length (degrees at F0)
    double V2 = UnusedValue;  ///< capacitance (F) or line impedance (ohm)
    double V3 = UnusedValue;  ///< second inductance or second line length
    double V4 = UnusedValue;  ///< second capacitance or second line impedance

    /// Value by row, 0 .. 3 for V1 .. V4, as the value grid counts its rows.
    double& Value(int row) { return row == 0 ? V1 : row == 1 ? V2 : row == 2 ? V3 : V4; }
    double Value(int row) const { return row == 0 ? V1 : row == 1 ? V2 : row == 2 ? V3 : V4; }
};

using ElementList = std::array<CircuitElement, NumSlots>;

/// Parasitics, tolerances and Monte Carlo settings; the same for every inductor and every
/// capacitor.
struct PartModel {
    double IndQ = 30.0;     ///< unloaded Q of every inductor at F0
    double IndC = 0.5e-12;  ///< capacitance in parallel with every inductor, F
    double CapR = 0.1;      ///< resistance in series with every capacitor, ohm
    double CapL = 0.5e-9;   ///< inductance in series with every capacitor, H
    PartChoice Choice = PartChoice::IdealParts;
    double CapTolerance = 0.05;  ///< fraction
    double IndTolerance = 0.1;   ///< fraction
    int CapSeriesStep = 4;       ///< stride through the standard-value table for capacitors
    int IndSeriesStep = 8;       ///< stride through the standard-value table for inductors
    int MonteCarloRuns = 100;    ///< 1 .. 1000
};

/// What lies over the traces in a worst case: its runs, the band that they lie in, or both.
enum class OverlayLook : int { RunsAndBands = 0, Runs = 1, Bands = 2 };

/// How the values of parts as bought differ from those of the design, beside their tolerances.
struct BoardDraw {
    /// Tolerance of capacitors below SmallCapacitor, F, in the place of the percentage; 0: none.
    double CapAbsolute = 0.0;
    double Reel = 0.0;    ///< chance that a part takes the draw of the first one of its value
    bool Normal = false;  ///< normal with a standard deviation of tolerance / 3, cut at tolerance

    static constexpr double SmallCapacitor = 10e-12;  ///< F
};

/// The sweep of the ladder: one entry per sweep point, overwritten by every analysis.
struct SweepResponse {
    std::array<double, NumSweepPoints> TransferRe{};    ///< Re H, H = 1 for a lossless match
    std::array<double, NumSweepPoints> TransferIm{};    ///< Im H
    std::array<double, NumSweepPoints> ReflectionDb{};  ///< 10 log10 |Gamma|^2 at the input, dB
};

/// Structure of a Norton-transformed band-pass: a T or pi of which the coupling is made with
/// capacitors or inductors. The numbers stand in design files.
enum class NortonType : int { TCap = 0, TInd = 1, PiCap = 2, PiInd = 3 };

/// What the search for K and M makes even.
enum class NortonGoal : int { Capacitors = 0, Inductors = 1 };

/// What the Norton window sets.
struct NortonSettings {
    ladderwise::NortonType NortonType = ladderwise::NortonType::TCap;
    double ImpedanceScalar = 1.0;  ///< A, 1 .. 100
    double NortonK = 2.0;          ///< turns ratio of the first transformer of each half
    double NortonM = 1.0;          ///< of the second one; 5 poles only
};

inline constexpr int MaxNortonValues = 9;  ///< inductors, or capacitors, of one transformed ladder

/// The last Norton transform: its numbers, and its values from source to load.
struct NortonResult {
    double A = 1.0;
    double K = 2.0;
    double M = 1.0;
    int NortonCapCount = 0;  ///< 0: nothing was transformed
    int NortonIndCount = 0;
    std::array<double, MaxNortonValues> Capacitors{};  ///< F
    std::array<double, MaxNortonValues> Inductors{};   ///< H
    /// While "Auto Optimize" is on: what its search finds for this design, as the boxes would show
    /// it. 0: not searched.
    double SearchedK = 0.0;
    double SearchedM = 0.0;
};

/// What a calculation did beyond what was asked, for the looks of boxes and the status line.
struct CalcFlags {
    bool LoadMoved = false;   ///< RLoad moved to the limit of an even Chebyshev (a yellow box)
    bool FormForced = false;  ///< FormCLC changed by the terminations
    bool FellBack = false;    ///< ResponseType set to Butterworth: the chosen one cannot be built
    /// RLoad is the one that Elliptic A to C need (one decimal; a yellow box if it is not RSource)
    bool LoadOfFamily = false;
};

/// What an elliptic prototype came to. Frequencies in rad/s of the normalised low pass, whose 3 dB
/// corner is 1.
struct EllipticResult {
    int NumTraps = 0;                          ///< 0: the response is not elliptic
    double AttenUsedDb = 0.0;                  ///< least attenuation in the stop band
    bool AttenRaised = false;                  ///< AttenUsedDb is above what was asked for
    std::array<double, MaxPoles> TrapFreqs{};  ///< of the traps in their order from the source
    double PassBandEdge = 0.0;                 ///< highest frequency within the ripple
    double StopBandEdge = 0.0;  ///< lowest frequency from which the attenuation holds
    double LoadRatio = 1.0;     ///< RLoad / RSource that the ladder is built for
};

/// The design state but for its sweep: small enough to be kept for every step of a history. Initial
/// values are those of a fresh program.
struct DesignState {
    ladderwise::ResponseType ResponseType = ladderwise::ResponseType::Butterworth;
    ladderwise::PassType PassType = ladderwise::PassType::LowPass;
    bool FormCLC = true;      ///< true: a shunt capacitor first; false: a series inductor first
    int NumPoles = 3;         ///< poles, or traps for an elliptic response
    int NumElements = 0;      ///< slots 1 .. NumElements are in use
    double F0 = 200e6;        ///< corner or centre, Hz
    double BandWidth = 40e6;  ///< Hz
    double RippleDb = 1.0;
    double RSource = 50.0;
    double RLoad = 50.0;
    double EllipticAtten = 50.0;    ///< stop-band attenuation, dB
    double EllipticStopFreq = 1.0;  ///< Hz
    int TrapType = 1;               ///< 1 .. 4
    bool CoefFileRead = false;
    /// CoefficientTable[n][k - 1]: k-th g-value of order n, from a coefficients file.
    std::array<std::array<double, MaxCoefficients>, MaxPoles + 1> CoefficientTable{};

    ladderwise::SweepType SweepType = ladderwise::SweepType::OneDecade;
    double SweepF1 = 0.0;  ///< Hz
    double SweepF2 = 0.0;  ///< Hz; the grid stops one step short of it

    std::array<double, NumGValues> G{};  ///< G[k], k = 1 .. n from the source: 1 ohm, 1 rad/s
    ElementList Elements{};
    std::optional<ElementList> CalculatedElements{};  ///< Elements as a calculation left them
    std::vector<PairedPart> Pairs{};                  ///< as a calculation chose them: see PairAt
    ElementList NominalElements{};  ///< Elements at the start of the last worst-case run
    ladderwise::PartModel PartModel{};
    bool StdLCValues = false;  ///< take every value from its standard series
    ladderwise::StdMethod StdMethod = ladderwise::StdMethod::Nearest;
    bool AbsorbParasitics = false;  ///< refit the values so that lossy parts give the ideal shape
    bool FitWidth = false;  ///< adjust what the synthesis is given until centre and width are right
    BoardDraw Boards{};
    HeldParts Held{};        ///< as the inputs have them; see ToleranceAt
    bool WorstCase = false;  ///< repeat the analysis with randomised values
    OverlayLook Overlay = OverlayLook::RunsAndBands;
    double KeyStepFraction = 0.05;  ///< by which F1 and F2 change a part value

    double MagTopRef = 10.0;          ///< level of the top grid line of the 10 dB scale, dB
    double GDFullScale = 0.0;         ///< group delay that the full plot height stands for, s
    double PulseTimeStep = 0.0;       ///< between two samples of the pulse response, s
    double PhaseGDThreshold = -20.0;  ///< below this level phase and delay are blank, dB, <= 0

    DirectCoupledSettings DirectCoupled{};
    DirectCoupledResult DirectCoupledLimits{};  ///< of the last direct-coupled synthesis

    CalcFlags Flags{};
    EllipticResult Elliptic{};

    NortonSettings Norton{};
    ElementList NortonBaseElements{};  ///< the canonical band-pass in slots 1 .. NumPoles
    ladderwise::NortonResult NortonResult{};
};

/// The design state with what follows from it: the frequencies of the sweep and the response.
struct FilterDesign : DesignState {
    std::array<double, NumSweepPoints> SweepFreqs{};
    SweepResponse Response{};
};

/// Slots in use, whatever NumElements says: 0 .. NumSlots - 1.
inline int SlotsInUse(const DesignState& design) {
    return std::clamp(design.NumElements, 0, NumSlots - 1);
}

/// True if a value (row 0 .. 3) of a slot in use was changed by hand since the last calculation.
inline bool IsEdited(const DesignState& design, int slot, int row) {
    if (!design.CalculatedElements) return false;
    const double now = design.Elements[slot].Value(row);
    const double then = (*design.CalculatedElements)[slot].Value(row);
    return now != then && !(now != now && then != then);  // NaN stays NaN
}

/// The two capacitors that a value of the ladder is to be made of; null if it is one part, or was
/// changed since the pair was chosen.
inline const PairedPart* PairAt(const DesignState& design, const ValuePlace& place) {
    for (const PairedPart& pair : design.Pairs)
        if (pair.Place == place &&
            design.Elements[static_cast<std::size_t>(place.Slot)].Value(place.Row) == pair.Value)
            return &pair;
    return nullptr;
}

/// True if any value of the ladder was.
inline bool HasEdits(const DesignState& design) {
    for (int slot = 1; slot <= design.NumElements; ++slot)
        for (int row = 0; row < 4; ++row)
            if (IsEdited(design, slot, row)) return true;
    return false;
}

}  // namespace ladderwise
