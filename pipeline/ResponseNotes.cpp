// Notes about the response as a whole.
#include <algorithm>
#include <cmath>

#include "analysis/PartValues.h"
#include "analysis/Results.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/CoupledBand.h"
#include "pipeline/NoteSources.h"
#include "pipeline/ResultsText.h"
#include "prototypes/NaturalModes.h"

namespace ladderwise {

namespace {

constexpr double MostCornerOffDb = 0.5;   ///< from the 3 dB that a prototype has at its corner
constexpr double LeastMismatchDb = 0.05;  ///< that is worth a note
constexpr double WideFrom = 1.05;         ///< of the width asked for
constexpr int NoteFrequencyDigits = 3;    ///< decimals of frequencies
constexpr int OffsetDigits = 1;           ///< decimals of how far a band has moved, %
constexpr int QDigits = 3;                ///< significant digits of a Q

std::string FrequencyText(double f) {
    return FormatWithPrefix(f, NoteFrequencyDigits, "Hz");
}

/// Tabulated families that are meant to have 3 dB at their corner; Bessel (Delay) has its delay.
bool HasTabulatedCorner(const FilterDesign& design) {
    switch (design.ResponseType) {
        case ResponseType::BesselFreq:
        case ResponseType::Papoulis:
        case ResponseType::Gauss:
        case ResponseType::LinearChebyshev:
        case ResponseType::CoefficientsFile:
            return true;
        case ResponseType::Butterworth:
        case ResponseType::Chebyshev:
        case ResponseType::BesselDelay:
        case ResponseType::EllipticA:
        case ResponseType::EllipticB:
        case ResponseType::EllipticC:
        case ResponseType::EllipticD:
        case ResponseType::EllipticE:
            return false;
    }
    return false;
}

/// Where the prototype's half-power point `w` comes to lie: "its 3 dB edge is at 170.000 MHz".
std::string HalfPowerText(const FilterDesign& design, double w) {
    switch (design.PassType) {
        case PassType::LowPass:
            return "its 3 dB edge is " + FrequencyText(design.F0 * w);
        case PassType::HighPass:
            return "its 3 dB edge is " + FrequencyText(design.F0 / w);
        case PassType::Notch:
            return "it is " + FrequencyText(design.BandWidth / w) + " wide at 3 dB";
        case PassType::BandPassCanonical:
        case PassType::DirectCoupled:
        case PassType::Norton:
            return "it is " + FrequencyText(design.BandWidth * w) + " wide at 3 dB";
    }
    return {};
}

void AddCorner(const FilterDesign& design, std::vector<Note>& notes) {
    if (!HasTabulatedCorner(design)) return;
    const PrototypeFigures figures = MeasurePrototype(design);
    if (std::abs(figures.CornerLossDb - HalfPowerDb) < MostCornerOffDb) return;
    const bool band = HasBandWidth(design.PassType);
    notes.push_back({NoteKind::Missed, "response",
                     "With " + std::to_string(design.NumPoles) +
                         (design.NumPoles > 1 ? " poles" : " pole") + " this response is " +
                         FormatFixed(figures.CornerLossDb, 1) + " dB down at " +
                         (band ? "the edges of the bandwidth" : "F0") +
                         ", not 3: " + HalfPowerText(design, figures.HalfPower) + "."});
}

/// The largest |H|^2 of a lossless ladder between unequal ends, t = RLoad / RSource: 4 t / (1 +
/// t)^2, of an even-order Chebyshev response (1 + e^2) times that, e^2 = 10^(ripple / 10) - 1.
double LargestGain(const FilterDesign& design) {
    const double t = design.RLoad / design.RSource;
    const double gain = 4.0 * t / ((1.0 + t) * (1.0 + t));
    const bool even = design.ResponseType == ResponseType::Chebyshev && design.NumPoles % 2 == 0;
    return std::min(1.0, even ? gain * std::pow(10.0, 0.1 * design.RippleDb) : gain);
}

void AddMismatch(const FilterDesign& design, std::vector<Note>& notes) {
    if (design.ResponseType != ResponseType::Butterworth &&
        design.ResponseType != ResponseType::Chebyshev)
        return;
    if (design.PassType == PassType::DirectCoupled) return;
    const double gain = LargestGain(design), loss = -10.0 * std::log10(gain);
    if (!(loss > LeastMismatchDb)) return;
    Note note{NoteKind::Advice, "r-load",
              "The unequal ends leave a mismatch: at least " + FormatFixed(loss, 2) +
                  " dB of loss, at best " + FormatFixed(-10.0 * std::log10(1.0 - gain), 1) +
                  " dB of return loss."};
    note.Advice = true;
    notes.push_back(note);
}

/// True where every resonator has a coil, whose Q is then the resonator's.
bool HasCoilsInResonators(const FilterDesign& design) {
    if (!HasBandWidth(design.PassType)) return false;
    if (design.PassType != PassType::DirectCoupled) return true;
    const TankType tank = design.DirectCoupled.TankType;
    return tank != TankType::ShuntCapShortedLine && tank != TankType::OpenAndShortedLines &&
           tank != TankType::ShortedLine;
}

void AddLostShape(const FilterDesign& design, std::vector<Note>& notes) {
    if (design.PartModel.Choice == PartChoice::IdealParts || !HasCoilsInResonators(design)) return;
    const double damping = LeastDamping(design);
    if (!(damping > 0.0)) return;
    const double least = design.F0 / (design.BandWidth * damping);
    if (design.PartModel.IndQ >= least) return;
    notes.push_back({NoteKind::TooLossy, "ind-q",
                     "Coils of Q " + FormatPlain(design.PartModel.IndQ, QDigits) +
                         " are too lossy for " + FrequencyText(design.BandWidth) + " at " +
                         FrequencyText(design.F0) + ": below a Q of " +
                         FormatPlain(least, QDigits) +
                         " this response has lost its shape and its corners are round."});
}

/// What the synthesis says about the end tanks, in the words of the window.
void AddEndTanks(const FilterDesign& design, bool asAsked, std::vector<Note>& notes) {
    const DirectCoupledResult& limits = design.DirectCoupledLimits;
    for (const std::size_t end : {SourceEnd, LoadEnd})
        if (limits.Clamped[end])
            notes.push_back({NoteKind::EndTank, "tank-values",
                             std::string(end == SourceEnd ? "First" : "Last") +
                                 " tank: its value is beyond " + limits.Readouts[end] +
                                 ", so it is not matched."});
    const bool first = limits.WarningShown[SourceEnd], last = limits.WarningShown[LoadEnd];
    if (!first && !last) return;
    Note note{
        NoteKind::EndTank, "tank-values",
        std::string(first && last ? "First and Last"
                    : first       ? "First"
                                  : "Last") +
            " Tank Z is Large" +
            (asAsked ? ", more than Q times the termination; the pass band is as asked for all "
                       "the same."
                     : ": more than Q times the termination.")};
    note.Advice = asAsked;
    notes.push_back(note);
}

void AddCoupledBand(const Calculation& calculation, bool buildable, std::vector<Note>& notes) {
    const FilterDesign& design = calculation.Design;
    if (design.PassType != PassType::DirectCoupled) return;
    bool asAsked = false;
    if (buildable && !HasEdits(design)) {
        const PassBand asked = AskedBand(design);
        const auto made = MeasureBand(design, calculation.IdealElements);
        std::string miss = MissText(asked, made);
        asAsked = miss.empty();
        const bool byInductors =
            design.DirectCoupled.InverterType == InverterType::SeriesInductor &&
            (design.DirectCoupled.TankUnits == TankUnits::nH ||
             design.DirectCoupled.TankUnits == TankUnits::uH);
        if (made && byInductors && made->Width > WideFrom * asked.Width)
            miss +=
                ". Inductor inverters come out wide with tanks in nH or uH; in pF or nF they "
                "do not";
        // Fitted with their losses, it is not meant to be right without them.
        const bool fitted = design.FitWidth && design.PartModel.Choice != PartChoice::IdealParts;
        if (!asAsked && !fitted)
            notes.push_back({NoteKind::Missed, "pass",
                             "Without losses the pass band is not as asked for: " + miss + "."});
    }
    AddEndTanks(design, asAsked, notes);
    if (design.Flags.FormForced) {
        Note note{NoteKind::Advice, "form",
                  "The form, CLC or LCL, plays no part in a direct-coupled band-pass."};
        note.Advice = true;
        notes.push_back(note);
    }
}

/// True if the band of a design that changed in nothing but its values or parts is where it was
/// asked for.
bool IsInPlace(const FilterDesign& design) {
    const ResponseResults results = ResultsOf(design);
    return results.Peak && !results.BandOffset;
}

/// Why a band has moved, as far as a calculation without the cause brings it back.
std::string CauseOfMove(const Calculation& calculation) {
    FilterDesign trial = calculation.Design;
    if (HasEdits(trial)) {
        trial.Elements = *trial.CalculatedElements;
        return IsInPlace(trial) ? ": values edited by hand" : "";
    }
    const auto place = [&](PartChoice parts, bool std) {
        trial.Elements = calculation.IdealElements;
        trial.PartModel.Choice = parts;
        if (parts == PartChoice::DeEmbed) DeEmbedParts(trial);
        if (std) SnapToStdValue(trial);
        return IsInPlace(trial);
    };
    const PartChoice parts = calculation.Design.PartModel.Choice;
    const bool std = calculation.Design.StdLCValues;
    if (parts == PartChoice::RealParts && place(PartChoice::IdealParts, std))
        return place(PartChoice::DeEmbed, std) ? ": parasitics; DeEmbed brings it back"
                                               : ": parasitics";
    if (std && place(parts, false)) return ": standard values";
    return "";
}

/// Where the pass band of a band-pass is, if not where it was asked for.
void AddBand(const Calculation& calculation, std::vector<Note>& notes) {
    const ResponseResults& results = calculation.Results;
    const PassType pass = calculation.Design.PassType;
    if (!results.Valid || !HasBandWidth(pass) || pass == PassType::Notch) return;
    if (!results.Peak)
        notes.push_back({NoteKind::NoBand, "f0",
                         "There is no pass band about Fo: the loss has no minimum there."});
    if (!results.BandOffset) return;
    const std::string cause = CauseOfMove(calculation);
    // What the synthesis itself misses is said by AddCoupledBand.
    if (pass == PassType::DirectCoupled && cause.empty()) return;
    const double offset = *results.BandOffset;
    notes.push_back({NoteKind::BandMoved, "f0",
                     "Band lies " + FormatFixed(100.0 * std::abs(offset), OffsetDigits) +
                         (offset < 0.0 ? " % low" : " % high") + cause + "."});
}

}  // namespace

void AddResponseNotes(const Calculation& calculation, bool buildable, std::vector<Note>& notes) {
    const FilterDesign& design = calculation.Design;
    AddCoupledBand(calculation, buildable, notes);
    if (buildable) AddBand(calculation, notes);
    AddCorner(design, notes);
    AddLostShape(design, notes);
    AddMismatch(design, notes);
}

}  // namespace ladderwise
