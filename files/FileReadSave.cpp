// The table of the design file, and the codec that walks through it.
#include "files/FileReadSave.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <stdexcept>

#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr const char* programIdent = "Tarnwick Ladderwise";
constexpr int highestMinor = 3;  ///< of version 2; |minor| stays below it
constexpr int highestOlderMinor = 1;

using enum RecordType;

// clang-format off
const std::vector<RecordField> fields = {
    {0, WideText, 268, "ProgramIdent", 0, programIdent, "identification"},
    {268, Int32, 1, "VersionMajor", DesignVersionMajor, "", "version"},
    {272, Int32, 1, "VersionMinor", DesignVersionMinor, "", "version"},
    {276, Int32, 1, "FiltStructSize", FILT_STRUCT_SIZE, "", "bytes of the record"},

    {280, Int32, 1, "ResponseType", 0, "", "code of the response; used where ResponseItem is unknown"},
    {284, Int32, 1, "PassType", 0, "", "code of the pass type; used where PassItem is unknown"},
    {288, Int32, 1, "FormCLC", 1, "", "1: a shunt capacitor first; used where FormItem is unknown"},
    {292, Int32, 1, "NumPoles", 3, "", "poles, or traps of an elliptic response"},
    {296, Double, 1, "F0", 200e6, "", "corner or centre frequency, Hz"},
    {304, Double, 1, "BandWidth", 40e6, "", "bandwidth, Hz"},
    {312, Double, 1, "Ripple", 0.2, "", "pass-band ripple, dB"},
    {320, Double, 1, "RS", 50, "", "source resistance, ohm"},
    {328, Double, 1, "RL", 50, "", "load resistance, ohm"},
    {336, Double, 1, "EllipticAtten", 50, "", "stop-band attenuation, dB"},
    {344, Int32, 1, "TrapType", 1, "", "form of the elliptic traps, 1 to 4"},
    {348, Int32, 1, "SweepType", 4, "", "code of the sweep; used where SweepItem is unknown"},
    {352, Double, 1, "IndQ", 35, "", "unloaded Q of every inductor at F0"},
    {360, Double, 1, "IndC", 0.25e-12, "", "capacitance in parallel with every inductor, F"},
    {368, Double, 1, "CapR", 0.25, "", "resistance in series with every capacitor, ohm"},
    {376, Double, 1, "CapL", 0.5e-9, "", "inductance in series with every capacitor, H"},
    {384, Int32, 1, "WorstCaseSims", 100, "", "runs of a worst case"},
    {388, Int32, 1, "CoefFileRead", 0, "", "1: CoefficientTable was read from a file"},
    {392, Double, 1, "Seed", -1, "", "of the worst-case draws; negative: a new one for every calculation"},
    {400, Double, 1, "GDPhaseThreshold", -20, "", "level below which phase and delay are not drawn, dB, at most 0"},
    {408, Double, 1, "Scale", 0, "", "group-delay scale as typed, s; 0: none"},
    {416, Double, 1, "PercentChange", 5, "", "step of the keys F1 and F2, %"},

    // The component names of what is checked; an empty text for a check box that is not.
    {424, Text, TextBytes, "PassItem", 0, "LowPassMenu", "pass type"},
    {456, Text, TextBytes, "ResponseItem", 0, "ButterworthMenu", "response"},
    {488, Text, TextBytes, "FormItem", 0, "FormCLCMenu", "form of the ladder"},
    {520, Text, TextBytes, "SweepItem", 0, "OneDecadeMenu", "sweep"},
    {552, Text, TextBytes, "BandWidthUnitItem", 0, "BWMHzButton", "unit in which the bandwidth is typed"},
    {584, Text, TextBytes, "PartsItem", 0, "IdealPartsButton", "part models"},
    {616, Text, TextBytes, "CapToleranceItem", 0, "FivePercentCap", "tolerance of the capacitors"},
    {648, Text, TextBytes, "IndToleranceItem", 0, "TenPercentInd", "tolerance of the inductors"},
    {680, Text, TextBytes, "StdValuesBox", 0, "", "standard values"},
    {712, Text, TextBytes, "WorstCaseBox", 0, "", "worst case"},
    {744, Text, TextBytes, "AutoScaleCheckBox", 0, "AutoScaleCheckBox", "group-delay scale from the response"},
    {776, Text, TextBytes, "PlotMag1dBBox", 0, "", "trace: magnitude, 1 dB per division"},
    {808, Text, TextBytes, "PlotMagBox", 0, "PlotMagBox", "trace: magnitude, 10 dB per division"},
    {840, Text, TextBytes, "PlotPhaseBox", 0, "", "trace: phase"},
    {872, Text, TextBytes, "PlotGDBox", 0, "", "trace: group delay"},
    {904, Text, TextBytes, "PlotPulseBox", 0, "", "trace: response to a square pulse"},
    {936, Text, TextBytes, "PlotReturnLossBox", 0, "", "trace: return loss"},
    {968, Double, 1, "RLWanted", 0, "", "load resistance that the user typed before RL took its place, ohm; 0: RL is the user's"},
    {976, Text, 80, "RLWhy", 0, "", "why RL took its place, in words; read where RLReason is 0, as in older files"},
    {1056, Double, 1, "RLHeld", 0, "", "load resistance before the last calculation moved it to RL, ohm; 0: it did not"},
    {1064, Int32, 1, "RLReason", 0, "", "why RL took its place: 1, 2, 3 equal to, twice, half of RS as the response needs it; 4 limit of an even-order Chebyshev; 5 load of an elliptic ladder"},
    {1068, Unused, 156, "Reserved1", 0, "", ""},
    {1224, Double, 120, "CoefficientTable", 0, "", "12 g-values each of the orders 1 to 10, g1 first; 0: none"},
    {2184, Unused, 496, "Reserved2", 0, "", ""},

    // From here on only in files of FILT_STRUCT_SIZE.
    {2680, Double, 1, "TLIN", 45, "", "line inverters of direct-coupled filters, degrees"},
    {2688, Double, 1, "TLSC", 45, "", "shorted stubs of their tanks, degrees"},
    {2696, Double, 1, "TLOC", 45, "", "open stubs of their tanks, degrees"},
    {2704, Double, 1, "Factor", 1, "", "tapping factor of their tanks"},
    {2712, Double, 1, "TankValue1", 50, "", "value of tank 1, in the unit chosen"},
    {2720, Double, 1, "TankValue2", 50, "", "value of tank 2, in the unit chosen"},
    {2728, Double, 1, "TankValue3", 50, "", "value of tank 3, in the unit chosen"},
    {2736, Double, 1, "TankValue4", 50, "", "value of tank 4, in the unit chosen"},
    {2744, Double, 1, "TankValue5", 50, "", "value of tank 5, in the unit chosen"},
    {2752, Double, 1, "TankValue6", 50, "", "value of tank 6, in the unit chosen"},
    {2760, Double, 1, "TankValue7", 50, "", "value of tank 7, in the unit chosen"},
    {2768, Double, 1, "TankValue8", 50, "", "value of tank 8, in the unit chosen"},
    {2776, Double, 1, "TankValue9", 50, "", "value of tank 9, in the unit chosen"},
    {2784, Double, 1, "TankValue10", 50, "", "value of tank 10, in the unit chosen"},
    {2792, Double, 1, "A", 1, "", "impedance scalar of Norton filters"},
    {2800, Double, 1, "K", 2, "", "turns ratio of their first transform"},
    {2808, Double, 1, "M", 1, "", "turns ratio of the second transform of 5 poles"},
    {2816, Text, TextBytes, "TankTypeItem", 0, "ShuntLCTankMenu_2", "tanks of direct-coupled filters"},
    {2848, Text, TextBytes, "InverterTypeItem", 0, "InductorInverterMenu_1", "their inverters"},
    {2880, Text, TextBytes, "TankUnitsItem", 0, "nHButton", "unit of TankValue"},
    {2912, Text, TextBytes, "AltInverterBox", 0, "AltInverterBox", "dual inverters at their ends"},
    {2944, Text, TextBytes, "NortonTypeItem", 0, "TCapMenu", "structure of Norton filters"},
    {2976, Text, TextBytes, "AutoOptimizeBox", 0, "", "K and M optimised at every change"},
    {3008, Text, TextBytes, "OptimizeItem", 0, "OptimizeLButton", "the kind of parts that the optimiser evens out"},
    {3040, Text, TextBytes, "AbsorbBox", 0, "", "parasitics absorbed by other values"},
    {3072, Text, TextBytes, "FitWidthBox", 0, "", "centre and width fitted"},
    {3104, Text, TextBytes, "CapAbsItem", 0, "CapAbsOffButton", "absolute tolerance of capacitors below 10 pF"},
    {3136, Text, TextBytes, "DrawItem", 0, "UniformButton", "distribution of the values of boards"},
    {3168, Double, 1, "Reel", 0, "", "chance that a part takes the draw of the first one of its value"},
    {3176, Int32, 1, "StdMethod", 0, "", "how standard values are chosen: 2 together, 3 with pairs of capacitors, 4 for the highest yield; 0: each the nearest"},
    {3180, Text, TextBytes, "OverlayItem", 0, "OverlayBothButton", "what of a worst case lies over the traces"},
    {3212, Unused, 236, "Reserved3", 0, "", ""},
};
// clang-format on

template <typename Unsigned>
void PutInteger(std::string& bytes, int offset, Unsigned value) {
    for (std::size_t i = 0; i < sizeof value; ++i)
        bytes[static_cast<std::size_t>(offset) + i] = static_cast<char>(value >> (8 * i) & 0xff);
}

template <typename Unsigned>
Unsigned TakeInteger(std::string_view bytes, int offset) {
    Unsigned value = 0;
    for (std::size_t i = 0; i < sizeof value; ++i)
        value |= static_cast<Unsigned>(
            Unsigned{static_cast<unsigned char>(bytes[static_cast<std::size_t>(offset) + i])}
            << (8 * i));
    return value;
}

std::int32_t TakeInt32(std::string_view bytes, int offset) {
    return std::bit_cast<std::int32_t>(TakeInteger<std::uint32_t>(bytes, offset));
}

std::int32_t ToInt32(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(value)) return 0;
    return static_cast<std::int32_t>(std::clamp<double>(value, Limits::min(), Limits::max()));
}

void PutNumbers(std::string& bytes, const RecordField& field, const std::vector<double>& values) {
    static_assert(std::numeric_limits<double>::is_iec559 && sizeof(double) == 8);
    const int size = SizeOf(field) / field.Count;
    for (int i = 0; i < field.Count; ++i) {
        const double value = values[static_cast<std::size_t>(i)];
        const int offset = field.Offset + i * size;
        if (field.Type == Int32)
            PutInteger(bytes, offset, std::bit_cast<std::uint32_t>(ToInt32(value)));
        else
            PutInteger(bytes, offset, std::bit_cast<std::uint64_t>(value));
    }
}

std::vector<double> TakeNumbers(std::string_view bytes, const RecordField& field) {
    const int size = SizeOf(field) / field.Count;
    std::vector<double> values;
    for (int i = 0; i < field.Count; ++i) {
        const int offset = field.Offset + i * size;
        const double value = field.Type == Int32
                                 ? TakeInt32(bytes, offset)
                                 : std::bit_cast<double>(TakeInteger<std::uint64_t>(bytes, offset));
        values.push_back(std::isfinite(value) ? value : field.Default);
    }
    return values;
}

/// Bytes of one character of a text.
int CharacterSize(const RecordField& field) {
    return field.Type == WideText ? 2 : 1;
}

void PutText(std::string& bytes, const RecordField& field, const std::string& text) {
    const int size = CharacterSize(field);
    const auto room = static_cast<std::size_t>(field.Count / size - 1);
    for (std::size_t i = 0; i < std::min(room, text.size()); ++i)
        bytes[static_cast<std::size_t>(field.Offset) + i * static_cast<std::size_t>(size)] =
            text[i];
}

/// The text up to its terminator or the end of its field; a character that is not ASCII ends it as
/// a question mark, so that it is the name of nothing.
std::string TakeText(std::string_view bytes, const RecordField& field) {
    std::string text;
    for (int i = 0; i < field.Count; i += CharacterSize(field)) {
        const int code = field.Type == WideText
                             ? TakeInteger<std::uint16_t>(bytes, field.Offset + i)
                             : TakeInteger<std::uint8_t>(bytes, field.Offset + i);
        if (code == 0) break;
        if (code > 0x7f) return text + '?';
        text += static_cast<char>(code);
    }
    return text;
}

bool IsNumber(const RecordField& field) {
    return field.Type == Int32 || field.Type == Double;
}
bool IsText(const RecordField& field) {
    return field.Type == Text || field.Type == WideText;
}

/// The limits are historical and hold as they stand, absolute values included.
bool IsKnownVersion(std::int64_t major, std::int64_t minor) {
    if (major == DesignVersionMajor) return std::abs(minor) < highestMinor;
    return major == DesignVersionMajor - 1 && std::abs(minor) <= highestOlderMinor;
}

}  // namespace

const std::vector<RecordField>& RecordFields() {
    return fields;
}

const RecordField* FindField(std::string_view name) {
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&](const RecordField& field) { return field.Name == name; });
    return found == fields.end() ? nullptr : &*found;
}

int SizeOf(const RecordField& field) {
    switch (field.Type) {
        case Int32:
            return 4 * field.Count;
        case Double:
            return 8 * field.Count;
        case Text:
        case WideText:
        case Unused:
            return field.Count;
    }
    return 0;
}

DesignRecord::DesignRecord() {
    for (const RecordField& field : fields) {
        if (IsNumber(field))
            Numbers[field.Name].assign(static_cast<std::size_t>(field.Count), field.Default);
        if (IsText(field)) Texts[field.Name] = field.DefaultText;
    }
}

double& DesignRecord::Number(std::string_view name, std::size_t index) {
    const auto found = Numbers.find(name);
    if (found == Numbers.end()) throw std::out_of_range("no number " + std::string(name));
    return found->second.at(index);
}

double DesignRecord::Number(std::string_view name, std::size_t index) const {
    return const_cast<DesignRecord*>(this)->Number(name, index);
}

std::string& DesignRecord::Text(std::string_view name) {
    const auto found = Texts.find(name);
    if (found == Texts.end()) throw std::out_of_range("no text " + std::string(name));
    return found->second;
}

const std::string& DesignRecord::Text(std::string_view name) const {
    return const_cast<DesignRecord*>(this)->Text(name);
}

void RefreshRecord(DesignRecord& record, const MessageCallback& report) {
    record.Number("VersionMajor") = DesignVersionMajor;
    record.Number("VersionMinor") = DesignVersionMinor;
    record.Number("FiltStructSize") = FILT_STRUCT_SIZE;
    record.Text("ProgramIdent") = programIdent;
    const RecordField& last = fields.back();
    if (last.Offset + SizeOf(last) != FILT_STRUCT_SIZE && report)
        report("Error", "FILT_STRUCT_SIZE not set correctly");
    double& threshold = record.Number("GDPhaseThreshold");
    if (threshold > 0.0) threshold = -threshold;
}

std::string VersionText() {
    return "Version " + FormatFixed(DesignVersionMajor, 0) + "." +
           FormatFixed(DesignVersionMinor, 0);
}

std::string EncodeRecord(const DesignRecord& record) {
    std::string bytes(FILT_STRUCT_SIZE, '\0');
    for (const RecordField& field : fields) {
        if (IsNumber(field)) PutNumbers(bytes, field, record.Numbers.find(field.Name)->second);
        if (IsText(field)) PutText(bytes, field, record.Text(field.Name));
    }
    return bytes;
}

std::optional<DesignRecord> DecodeRecord(std::string_view bytes) {
    if (bytes.size() != FILT_STRUCT_SIZE && bytes.size() != OLDER_STRUCT_SIZE) return {};
    DesignRecord record;
    for (const RecordField& field : fields) {
        if (static_cast<std::size_t>(field.Offset + SizeOf(field)) > bytes.size()) continue;
        if (IsNumber(field)) record.Numbers[field.Name] = TakeNumbers(bytes, field);
        if (IsText(field)) record.Texts[field.Name] = TakeText(bytes, field);
    }
    const auto whole = [&](const char* name) {
        return static_cast<std::int64_t>(record.Number(name));
    };
    if (static_cast<std::size_t>(whole("FiltStructSize")) != bytes.size()) return {};
    if (record.Text("ProgramIdent") != programIdent) return {};
    if (!IsKnownVersion(whole("VersionMajor"), whole("VersionMinor"))) return {};
    return record;
}

}  // namespace ladderwise
