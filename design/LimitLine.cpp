// One table of the kinds of limits; everything else reads it.
#include "design/LimitLine.h"

#include <cmath>

namespace ladderwise {

namespace {

constexpr double HighestLimitHz = 1e15;  // beyond every filter of coils and capacitors

struct LimitKindRow {
    LimitKind Kind;
    const char* Name;
    const char* Caption;
    const char* Symbol;
    const char* Unit;
    double Factor;
};

constexpr std::array<LimitKindRow, AllLimitKinds.size()> limitKinds = {{
    {LimitKind::AttenMin, "atten-min", "attenuation at least", "atten \u2265", "dB", 1.0},
    {LimitKind::AttenMax, "atten-max", "attenuation at most", "atten \u2264", "dB", 1.0},
    {LimitKind::ReturnLossMin, "return-loss-min", "return loss at least", "RL \u2265", "dB", 1.0},
    {LimitKind::DelayVariationMax, "delay-variation-max", "delay variation at most",
     "GD var \u2264", "ns", 1e-9},
}};

const LimitKindRow& LimitRowOf(LimitKind kind) {
    return limitKinds[static_cast<std::size_t>(kind)];
}

}  // namespace

const char* NameOf(LimitKind kind) {
    return LimitRowOf(kind).Name;
}

std::optional<LimitKind> LimitKindNamed(std::string_view name) {
    for (const LimitKindRow& row : limitKinds)
        if (row.Name == name) return row.Kind;
    return std::nullopt;
}

const char* CaptionOf(LimitKind kind) {
    return LimitRowOf(kind).Caption;
}

const char* SymbolOf(LimitKind kind) {
    return LimitRowOf(kind).Symbol;
}

const char* UnitOf(LimitKind kind) {
    return LimitRowOf(kind).Unit;
}

double UnitFactor(LimitKind kind) {
    return LimitRowOf(kind).Factor;
}

std::string FaultOf(const LimitLine& line) {
    if (!(line.From >= 0.0) || !(line.To <= HighestLimitHz) || !(line.To > 0.0))
        return "a frequency is out of range";
    if (!(line.From <= line.To)) return "it ends below its beginning";
    if (!std::isfinite(line.Value)) return "its value is no number";
    if (line.Kind == LimitKind::DelayVariationMax && line.From == line.To)
        return "a delay varies between two frequencies";
    if (!(line.Value > 0.0) && line.Kind != LimitKind::AttenMax) return "its value is not above 0";
    if (line.Value < 0.0) return "its value is below 0";
    return {};
}

}  // namespace ladderwise
