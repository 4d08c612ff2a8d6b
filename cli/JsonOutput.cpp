// The JSON of a calculation, member by member.
#include "cli/JsonOutput.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "display/TraceMap.h"
#include "exchange/Json.h"
#include "limits/LimitTable.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/NamedSettings.h"
#include "pipeline/Notes.h"
#include "pipeline/PartShares.h"
#include "pipeline/ResultsText.h"
#include "scaling/BandScaler.h"

namespace ladderwise {

namespace {

std::string Number(double x) {
    return JsonNumber(x);
}

/// `separator` is that of the texts to come, which follow the locale; the JSON does not.
std::string Pointed(const std::string& text, char separator) {
    return separator == ',' ? WithDecimalPoints(text) : text;
}

std::string Quoted(std::string_view text) {
    return JsonQuoted(text);
}

template <typename Item>
std::string List(std::size_t count, Item item) {
    return JsonListOf(count, item);
}

std::string Numbers(std::span<const double> values) {
    return List(values.size(), [&](std::size_t i) { return Number(values[i]); });
}

std::string BlankableNumbers(std::span<const double> values) {
    return List(values.size(), [&](std::size_t i) {
        return values[i] == BlankMarker ? std::string("null") : Number(values[i]);
    });
}

std::string ValueText(const SettingValue& value) {
    if (const double* number = std::get_if<double>(&value)) return Number(*number);
    if (const std::string* word = std::get_if<std::string>(&value)) return Quoted(*word);
    return "null";
}

std::string InputsText(const Calculation& calculation) {
    const std::vector<SettingInUse> inUse = SettingsInUse(calculation);
    std::string list = List(inUse.size(), [&](std::size_t i) {
        return Quoted(inUse[i].Name) + ": " + ValueText(inUse[i].Value);
    });
    list.front() = '{';
    list.back() = '}';
    return list;
}

const char* NameOf(BoxColour colour) {
    switch (colour) {
        case BoxColour::Normal:
            return "normal";
        case BoxColour::Silver:
            return "silver";
        case BoxColour::Yellow:
            return "yellow";
    }
    return "";
}

std::string NoteText(Note note, char separator) {
    for (std::string* const member : {&note.Text, &note.Typed, &note.InUse})
        *member = Pointed(*member, separator);
    std::string text = "{\"kind\": " + Quoted(NameOf(note.Kind)) +
                       ", \"name\": " + Quoted(note.Name) + ", \"text\": " + Quoted(note.Text);
    if (note.Kind == NoteKind::Replaced || note.Kind == NoteKind::LoadMoved)
        text += ", \"typed\": " + Quoted(note.Typed) + ", \"in_use\": " + Quoted(note.InUse) +
                ", \"colour\": " + Quoted(NameOf(note.Colour));
    if (note.Kind == NoteKind::AttenRaised) text += ", \"in_use\": " + Quoted(note.InUse);
    return text + "}";
}

/// Where w (rad/s) of the prototype lies in the filter: one number, or the lower and the upper one.
std::string Scaled(const FilterDesign& design, double w) {
    const std::vector<double> f = ScaledFrequencies(design, w);
    return f.size() == 1 ? Number(f[0]) : Numbers(f);
}

std::string EllipticObject(const FilterDesign& design) {
    const EllipticResult& result = design.Elliptic;
    return "{\"attenuation_used_db\": " + Number(result.AttenUsedDb) +
           ", \"trap_hz\": " + Numbers(TrapFrequencies(design)) +
           ", \"passband_edge_hz\": " + Scaled(design, result.PassBandEdge) +
           ", \"stopband_edge_hz\": " + Scaled(design, result.StopBandEdge) + "}";
}

std::string DirectCoupledObject(const DirectCoupledResult& limits, char separator) {
    const auto truth = [](bool is) { return std::string(is ? "true" : "false"); };
    return "{\"readouts\": " +
           List(2,
                [&](std::size_t end) { return Quoted(Pointed(limits.Readouts[end], separator)); }) +
           ", \"warnings\": " +
           List(2, [&](std::size_t end) { return truth(limits.WarningShown[end]); }) +
           ", \"clamped\": " +
           List(2, [&](std::size_t end) { return truth(limits.Clamped[end]); }) + "}";
}

std::string WorstCaseObject(const WorstCaseResult& result) {
    return "{\"runs\": " + std::to_string(result.Runs) +
           ", \"seed\": " + std::to_string(result.Seed) +
           ", \"pass_band_loss_db\": " + Number(result.PassBandLossDb) +
           ", \"spread_at_f0_db\": " + Number(result.SpreadAtF0Db) +
           ",\n    \"low_db\": " + Numbers(result.LowDb) +
           ",\n    \"high_db\": " + Numbers(result.HighDb) + "}";
}

std::string OptionalNumber(const std::optional<double>& value) {
    return value ? Number(*value) : "null";
}

std::string EdgesText(const ResponseEdges& edges) {
    return "[" + OptionalNumber(edges.Lower) + ", " + OptionalNumber(edges.Upper) + "]";
}

std::string PeakObject(const std::optional<ResponsePeak>& peak) {
    if (!peak) return "null";
    return "{\"hz\": " + Number(peak->Frequency) + ", \"loss_db\": " + Number(peak->Loss) + "}";
}

std::string ResultsObject(const FilterDesign& design, const ResponseResults& results) {
    if (!results.Valid) return "null";
    std::string text;
    const auto member = [&text](const char* name, const std::string& value) {
        text += (text.empty() ? "{" : ",\n    ") + Quoted(name) + ": " + value;
    };
    member("loss_at_f0_db", Number(results.LossAtF0));
    member("peak_hz", results.Peak ? Number(results.Peak->Frequency) : "null");
    member("peak_loss_db", results.Peak ? Number(results.Peak->Loss) : "null");
    member("edge_depth_db", Number(HalfPowerDb));
    member("edges_hz", EdgesText(results.Edges));
    member("width_hz", OptionalNumber(results.Edges.Width(design.PassType)));
    member("band_offset", OptionalNumber(results.BandOffset));
    member("other_band", PeakObject(results.OtherBand));
    member("return_loss_band_hz", EdgesText(results.ReturnLossBand));
    member("worst_return_loss_db", Number(results.WorstReturnLoss));
    member("worst_return_loss_hz", Number(results.WorstReturnLossAt));
    member("shape_factor_60_6", OptionalNumber(results.ShapeFactor));
    member("no_shape", results.NoShape ? "{\"hz\": " + Number(results.NoShape->Frequency) +
                                             ", \"db_below_peak\": " +
                                             Number(results.NoShape->Attenuation) + "}"
                                       : "null");
    if (results.StopAttenuation > 0.0) {
        member("stop_band_db", Number(results.StopAttenuation));
        member("stop_bands_hz", List(results.StopBands.size(), [&](std::size_t i) {
                   const HeldBand& band = results.StopBands[i];
                   return EdgesText({band.From, band.To});
               }));
    }
    member("attenuations", List(results.Attenuations.size(), [&](std::size_t i) {
               const AttenuationAt& at = results.Attenuations[i];
               return "{\"at\": " + Quoted(at.Where) + ", \"hz\": " + Number(at.Frequency) +
                      ", \"db\": " + Number(at.Attenuation) + "}";
           }));
    return text + "}";
}

std::string NortonObject(const NortonResult& result) {
    const auto list = [](const std::array<double, MaxNortonValues>& values, int count) {
        return Numbers({values.data(), static_cast<std::size_t>(count)});
    };
    return "{\"A\": " + Number(result.A) + ", \"K\": " + Number(result.K) +
           ", \"M\": " + Number(result.M) +
           ", \"capacitors\": " + list(result.Capacitors, result.NortonCapCount) +
           ", \"inductors\": " + list(result.Inductors, result.NortonIndCount) + "}";
}

/// `more`: further members.
std::string LimitObject(const LimitMargin& row, const std::string& more = "") {
    const double unit = UnitFactor(row.Line.Kind);
    return "{\"kind\": " + Quoted(NameOf(row.Line.Kind)) +
           ", \"from_hz\": " + Number(row.Line.From) + ", \"to_hz\": " + Number(row.Line.To) +
           ", \"value\": " + Number(row.Line.Value / unit) +
           ", \"margin\": " + Number(row.Margin / unit) + ", \"at_hz\": " + Number(row.At) + more +
           "}";
}

std::string LimitsObject(const LimitReport& limits) {
    return "{\"met\": " + std::string(limits.Met() ? "true" : "false") + ", \"rows\": " +
           List(limits.Rows.size(), [&](std::size_t i) { return LimitObject(limits.Rows[i]); }) +
           "}";
}

/// How a measurement keeps limits: as far as it reaches.
std::string MeasuredLimitsObject(const LimitReport& limits) {
    static constexpr const char* reach[] = {"whole", "part", "nothing"};
    return "{\"met\": " + std::string(limits.Met() ? "true" : "false") + ", \"rows\": " +
           List(limits.Rows.size(),
                [&](std::size_t i) {
                    const LimitMargin& row = limits.Rows[i];
                    return LimitObject(row, std::string(", \"reach\": \"") +
                                                reach[static_cast<std::size_t>(row.Reach)] + "\"");
                }) +
           "}";
}

/// `limits`: null where there are none.
std::string MeasuredObject(const MeasuredNetwork& measured, const LimitReport* limits) {
    const NetworkData& data = measured.Network;
    const auto pair = [](Complex z) {
        return "[" + Number(z.real()) + ", " + Number(z.imag()) + "]";
    };
    const auto parameter = [&](Complex SParameters::*which, bool isThere) {
        if (!isThere) return std::string("null");
        return List(data.S.size(), [&](std::size_t i) { return pair(data.S[i].*which); });
    };
    const bool two = data.Ports == 2;
    const PortResistances& ohms = data.Reference;
    return "{\"file\": " + Quoted(measured.File) +
           ", \"points\": " + std::to_string(data.Hz.size()) +
           ",\n    \"hz\": " + Numbers(data.Hz) + ",\n    \"s\": [" +
           parameter(&SParameters::S11, true) + ",\n      " + parameter(&SParameters::S21, two) +
           ",\n      " + parameter(&SParameters::S12, two) + ",\n      " +
           parameter(&SParameters::S22, two) + "],\n    \"reference_ohm\": " +
           (ohms.Source == ohms.Load ? Number(ohms.Source)
                                     : "[" + Number(ohms.Source) + ", " + Number(ohms.Load) + "]") +
           (limits ? ",\n    \"limits\": " + MeasuredLimitsObject(*limits) : "") +
           ", \"messages\": " +
           List(data.Messages.size(), [&](std::size_t i) { return Quoted(data.Messages[i]); }) +
           "}";
}

std::string ShareObject(const PartShare& share) {
    return "{\"designator\": " + Quoted(share.Designator) +
           ", \"slot\": " + std::to_string(share.Slot) +
           ", \"row\": " + std::to_string(share.Row + 1) + ", \"share\": " + Number(share.Share) +
           ", \"db_per_percent\": " + Number(share.DbPerPercent) +
           ", \"at_hz\": " + Number(share.At) +
           ", \"by_samples\": " + (share.BySamples ? "true" : "false") + "}";
}

}  // namespace

std::string ElementObject(const CircuitElement& element, std::size_t slot) {
    const ElementInfo& info = InfoOf(element.Type);
    std::string text = "{\"slot\": " + std::to_string(slot) +
                       ", \"code\": " + std::to_string(static_cast<int>(element.Type)) +
                       ", \"type\": " + Quoted(info.Name);
    for (int row = 0; row < 4; ++row) {
        const double value = element.Value(row);
        const bool shown = info.Values[row] != ValueKind::Unused && !(value > NotUsedLimit);
        text += ", \"V" + std::to_string(row + 1) + "\": " + (shown ? Number(value) : "null");
    }
    return text + "}";
}

std::string JsonText(const Calculation& calculation, const std::vector<RecordedMessage>& messages,
                     const std::vector<MeasuredNetwork>& measured, const LimitReport& limits,
                     const JsonMembers& more, const std::vector<NamedReport>& measuredLimits) {
    // Texts made from here on have points; what the calculation has left is turned where it stands.
    const char separator = SystemFormatSettings().DecimalSeparator;
    const FormatSettingsScope points({'.'});
    const DisplayQuantities& quantities = calculation.Quantities;
    const FilterDesign& design = calculation.Design;
    const SweepResponse& response = design.Response;
    const std::vector<Note> notes = CollectNotes(calculation);
    std::string text = "{\n";
    const auto member = [&text](const char* name, const std::string& value) {
        text += "  " + Quoted(name) + ": " + value + ",\n";
    };
    member("inputs", InputsText(calculation));
    member("r_load", Number(design.RLoad));
    member("form", Quoted(design.FormCLC ? "clc" : "lcl"));
    if (design.Elliptic.NumTraps > 0) member("elliptic", EllipticObject(design));
    member("elements", List(design.NumElements, [&](std::size_t i) {
               return ElementObject(design.Elements[i + 1], i + 1);
           }));
    if (design.PassType == PassType::DirectCoupled)
        member("direct_coupled", DirectCoupledObject(design.DirectCoupledLimits, separator));
    member("sweep_hz", Numbers(design.SweepFreqs));
    member("transfer", List(NumSweepPoints, [&](std::size_t i) {
               return "[" + Number(response.TransferRe[i]) + ", " + Number(response.TransferIm[i]) +
                      "]";
           }));
    member("reflection_db", Numbers(response.ReflectionDb));
    member("magnitude_db", Numbers(quantities.MagnitudeDb));
    member("phase_deg", BlankableNumbers(quantities.PhaseDeg));
    member("group_delay_s", BlankableNumbers(quantities.GroupDelay));
    member("group_delay_full_scale_s", Number(ScalesOf(design).GDFullScale));
    if (ShownTraces(calculation).Pulse) {
        member("pulse", Numbers(quantities.Pulse));
        member("pulse_time_step_s", Number(design.PulseTimeStep));
    }
    if (MathErrorCount(calculation) > 0) {
        const std::vector<std::string> lines =
            MathErrors().Lines(calculation.FirstMathError - calculation.SynthesisMathErrors);
        member("math_errors", List(lines.size(), [&](std::size_t i) { return Quoted(lines[i]); }));
    }
    member("results", ResultsObject(design, calculation.Results));
    if (!limits.Rows.empty()) member("limits", LimitsObject(limits));
    const std::vector<PartShare> shares = SharesOf(design, calculation.Results, limits);
    member("sensitivity",
           List(shares.size(), [&](std::size_t i) { return ShareObject(shares[i]); }));
    for (const auto& [name, value] : more)
        member(name.c_str(), value);
    if (calculation.WorstCase.Runs > 0)
        member("worst_case", WorstCaseObject(calculation.WorstCase));
    if (design.PassType == PassType::Norton) member("norton", NortonObject(design.NortonResult));
    member("measured", List(measured.size(), [&](std::size_t i) {
               return MeasuredObject(
                   measured[i], i < measuredLimits.size() ? &measuredLimits[i].Report : nullptr);
           }));
    member("messages", List(messages.size(), [&](std::size_t i) {
               return "{\"caption\": " + Quoted(messages[i].Caption) +
                      ", \"text\": " + Quoted(Pointed(messages[i].Text, separator)) + "}";
           }));
    text += "  \"notes\": " +
            List(notes.size(), [&](std::size_t i) { return NoteText(notes[i], separator); }) +
            "\n}\n";
    return text;
}

}  // namespace ladderwise
