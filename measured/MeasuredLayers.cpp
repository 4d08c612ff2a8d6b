// From complex traces to levels, phases and delays.
#include "measured/MeasuredLayers.h"

#include <algorithm>
#include <cmath>

#include "analysis/Magphasefunctions.h"

namespace ladderwise {

namespace {

constexpr double StepDb = 0.25;          // from one point of a line to the next, at most
constexpr double StepOctave = 1.0 / 64;  // likewise: on a logarithmic axis a straight line is none
constexpr double MostPieces = 64.0;      // of the way between two points of the file
constexpr double MostPoints = 16384.0;   // a file of more is dense enough as it is
constexpr std::size_t NameLetters = 12;  // of a short name

/// A way from one value to the next, as it is said to run.
struct Way {
    Complex From, To;
    double Turn = 0.0;  ///< rad, the shorter way round

    Way(Complex from, Complex to) : From(from), To(to), Turn(PhaseRad(to * std::conj(from))) {}

    Complex At(double part) const {
        if (part >= 1.0) return To;
        const double magnitude = Magnitude(From) + part * (Magnitude(To) - Magnitude(From));
        return std::polar(1.0, PhaseRad(From) + part * Turn) * magnitude;
    }
    double Pieces() const { return std::fabs(ComplexToDb(To) - ComplexToDb(From)) / StepDb; }
};

void AddTransfer(MeasuredArrays& arrays, Complex transfer, double delay, double threshold) {
    const double level = ComplexToDb(transfer);
    const bool blank = level < threshold;
    arrays.MagnitudeDb.push_back(level);
    arrays.PhaseDeg.push_back(blank ? BlankMarker : PhaseDeg(transfer));
    arrays.GroupDelay.push_back(blank ? BlankMarker : delay);
}

double DelayBetween(double from, double to, double part) {
    if (part >= 1.0) return to;
    if (from == BlankMarker || to == BlankMarker) return BlankMarker;
    return from + part * (to - from);
}

std::string WithoutFolderAndEnding(const std::string& path) {
    const std::string name = path.substr(path.find_last_of("/\\") + 1);
    return name.substr(0, std::min(name.find_last_of('.'), name.size()));
}

/// Whole letters of UTF-8.
std::string Cut(const std::string& name) {
    std::size_t end = 0, letters = 0;
    while (end < name.size() && letters < NameLetters) {
        ++end;
        ++letters;
        while (end < name.size() && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80)
            ++end;
    }
    return end < name.size() ? name.substr(0, end) + "\u2026" : name;
}

}  // namespace

std::vector<double> DelaysOf(const MeasuredTraces& traces, double threshold) {
    const std::size_t count = traces.Transfer.size();
    std::vector<double> steps(count, 0.0), delays(count, BlankMarker);
    for (std::size_t i = 1; i < count; ++i)
        steps[i] = PhaseRad(traces.Transfer[i] * std::conj(traces.Transfer[i - 1]));
    for (std::size_t i = 0; i < count && count > 1; ++i) {
        const std::size_t from = i > 0 ? i - 1 : 0, to = std::min(i + 1, count - 1);
        double turn = 0.0;
        for (std::size_t k = from + 1; k <= to; ++k)
            turn += steps[k];
        if (!(ComplexToDb(traces.Transfer[i]) < threshold))
            delays[i] = -turn / (TwoPi * (traces.Hz[to] - traces.Hz[from]));
    }
    return delays;
}

MeasuredArrays ArraysOf(const MeasuredTraces& traces, double threshold) {
    MeasuredArrays arrays;
    const bool through = !traces.Transfer.empty(), reflected = !traces.Reflection.empty();
    const std::vector<double> delays = DelaysOf(traces, threshold);
    const double most =
        std::clamp(MostPoints / static_cast<double>(traces.Hz.size()), 1.0, MostPieces);
    for (std::size_t i = 0; i < traces.Hz.size(); ++i) {
        const std::size_t before = i > 0 ? i - 1 : 0;
        const double from = traces.Hz[before], to = traces.Hz[i];
        const Way way(through ? traces.Transfer[before] : 0.0, through ? traces.Transfer[i] : 0.0);
        const Way back(reflected ? traces.Reflection[before] : 0.0,
                       reflected ? traces.Reflection[i] : 0.0);
        double pieces = std::max(way.Pieces(), back.Pieces());
        if (from > 0.0) pieces = std::max(pieces, std::log2(to / from) / StepOctave);
        // What is no number lies between its neighbours as a gap.
        const int count =
            pieces >= 1.0 && i > 0 ? static_cast<int>(std::min(std::ceil(pieces), most)) : 1;
        for (int k = 1; k <= count; ++k) {
            const double part = static_cast<double>(k) / count;
            arrays.Hz.push_back(k == count ? to : from + part * (to - from));
            if (through)
                AddTransfer(arrays, way.At(part), DelayBetween(delays[before], delays[i], part),
                            threshold);
            if (reflected) arrays.ReturnLossDb.push_back(ComplexToDb(back.At(part)));
        }
    }
    return arrays;
}

PlotLayer LayerOf(const MeasuredArrays& arrays, const MeasuredFile& file, const std::string& name,
                  const std::string& shortName) {
    PlotLayer layer;
    layer.Values = {
        arrays.MagnitudeDb, arrays.PhaseDeg, arrays.GroupDelay, {}, arrays.ReturnLossDb};
    const MeasuredColour& colour = ColourOf(file);
    layer.Colours.fill({colour.Red, colour.Green, colour.Blue});
    layer.Role = LayerRole::Measurement;
    layer.Name = name;
    layer.ShortName = shortName;
    layer.Sweep.Freqs = arrays.Hz;
    return layer;
}

std::vector<std::string> ShortNamesOf(const MeasuredFiles& files) {
    std::vector<std::string> names;
    for (const MeasuredFile& file : files) {
        const std::string plain = Cut(WithoutFolderAndEnding(file.Path));
        std::string name = plain;
        for (int n = 2; std::find(names.begin(), names.end(), name) != names.end(); ++n)
            name = plain + " " + std::to_string(n);
        names.push_back(name);
    }
    return names;
}

}  // namespace ladderwise
