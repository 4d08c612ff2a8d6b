// A board as JSON and as a table.
#include "cli/BoardOutput.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "cli/Terminal.h"
#include "exchange/Json.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr int valueDigits = 4;   ///< decimals of the shown mantissa
constexpr int tuningDigits = 5;  ///< the same of a frequency
constexpr double Kilohertz = 1e3;
constexpr double Picosecond = 1e-12;

JsonValue Optional(const std::optional<double>& value) {
    return value ? JsonValue(*value) : JsonValue();
}

/// The members of an estimate; of one that the data do not tell the numbers are null.
void AddEstimate(JsonObject& object, const std::string& name, const Estimate& estimate) {
    const auto number = [&](double x) {
        return estimate.Undetermined ? JsonValue() : JsonValue(x);
    };
    object.emplace_back(name, number(estimate.Actual));
    object.emplace_back("low", number(estimate.Low));
    object.emplace_back("high", number(estimate.High));
    object.emplace_back("undetermined", estimate.Undetermined);
}

JsonValue PartObject(const BoardPart& part) {
    JsonObject object{{"designator", part.Designator},
                      {"slot", part.Place.Slot},
                      {"row", part.Place.Row},
                      {"nominal", part.Nominal}};
    AddEstimate(object, "actual", part.Value);
    if (part.Kind == ValueKind::Inductance) object.emplace_back("q", Optional(part.Q));
    return object;
}

JsonValue ResonatorObject(const BoardResonator& resonator) {
    JsonObject object{{"slot", resonator.Slot}, {"nominal_hz", resonator.Nominal}};
    AddEstimate(object, "actual_hz", resonator.Tuning);
    return object;
}

JsonValue FaultObject(const std::optional<BoardFault>& fault) {
    if (!fault) return {};
    JsonList designators;
    for (const std::string& name : fault->Designators)
        designators.emplace_back(name);
    return JsonObject{{"kind", NameOf(fault->Kind)},
                      {"designators", std::move(designators)},
                      {"text", fault->Text}};
}

std::string Column(std::string text, std::size_t width) {
    text.resize(std::max(text.size() + 1, width), ' ');
    return text;
}

std::string Signed(double x, int decimals) {
    return (x < 0.0 ? "-" : "+") + FormatFixed(std::fabs(x), decimals);
}

std::string PartLine(const BoardPart& part) {
    std::string line = Column(part.Designator, 8) +
                       Column(FormatWithPrefix(part.Nominal, valueDigits, UnitOf(part.Kind)), 14);
    if (part.Value.Undetermined) return line + "undetermined\n";
    line += Column(FormatWithPrefix(part.Value.Actual, valueDigits, UnitOf(part.Kind)), 14) +
            Column(Signed(100.0 * part.Deviation(), 2) + " %", 11) +
            Column(FormatWithPrefix(part.Value.Low, valueDigits, UnitOf(part.Kind)) + " to " +
                       FormatWithPrefix(part.Value.High, valueDigits, UnitOf(part.Kind)),
                   30);
    if (part.Q) line += "Q " + FormatFixed(*part.Q, 0);
    return line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
}

std::string ResonatorLine(const BoardResonator& resonator) {
    const std::string line = Column(resonator.Name, 8) +
                             Column(FormatWithPrefix(resonator.Nominal, tuningDigits, "Hz"), 14);
    const Estimate& tuning = resonator.Tuning;
    if (tuning.Undetermined) return line + "undetermined\n";
    return line + Column(FormatWithPrefix(tuning.Actual, tuningDigits, "Hz"), 14) +
           Signed(resonator.Detuning() / Kilohertz, 1) + " kHz, give or take " +
           FormatFixed(0.5 * (tuning.High - tuning.Low) / Kilohertz, 1) + " kHz\n";
}

}  // namespace

std::string ReadFreedom(const std::string& names, BoardFreedom& freedom) {
    BoardFreedom read{false, false, false, false, false};
    const std::array<std::pair<const char*, bool*>, 5> known = {
        {{"q", &read.CoilQ},
         {"coil-c", &read.CoilCapacitance},
         {"cap-l", &read.CapacitorInductance},
         {"cap-r", &read.CapacitorResistance},
         {"ports", &read.Ports}}};
    std::size_t from = 0;
    while (names != "none" && from <= names.size()) {
        const std::size_t comma = std::min(names.find(',', from), names.size());
        const std::string name = names.substr(from, comma - from);
        bool found = false;
        for (const auto& [word, is] : known)
            if (name == word) found = *is = true;
        if (!found)
            return "--free takes names of q,coil-c,cap-l,cap-r,ports, or none, not \"" + name +
                   "\"";
        from = comma + 1;
    }
    freedom = read;
    return {};
}

std::string BoardObject(const BoardReading& reading) {
    JsonList parts, resonators, next;
    for (const BoardPart& part : reading.Parts)
        parts.push_back(PartObject(part));
    for (const BoardResonator& resonator : reading.Resonators)
        resonators.push_back(ResonatorObject(resonator));
    for (const BoardTurn& turn : reading.Next)
        next.push_back(JsonObject{{"designator", turn.Designator},
                                  {"slot", turn.Place.Slot},
                                  {"row", turn.Place.Row},
                                  {"change_percent", 100.0 * turn.Change},
                                  {"margin_gain_db", turn.Gain},
                                  {"text", turn.Text}});
    const bool told = reading.Understood;
    JsonList delays;
    for (const double delay : reading.PortDelay)
        delays.push_back(told ? JsonValue(delay) : JsonValue());
    std::string text = WriteJson(JsonObject{{"understood", told},
                                            {"text", reading.Text},
                                            {"hypothesis", FaultObject(reading.Fault)},
                                            {"residual_db", reading.ResidualDb},
                                            {"residual_at_hz", reading.ResidualAt},
                                            {"residual_over_noise", reading.Excess},
                                            {"q", Optional(reading.Q)},
                                            {"port_delay_s", std::move(delays)},
                                            {"parts", std::move(parts)},
                                            {"resonators", std::move(resonators)},
                                            {"next", std::move(next)}});
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

std::string BoardTable(const BoardReading& reading, const std::string& file) {
    std::string text = "\nBoard of " + Printable(file) + ": " + reading.Text + "\n";
    text += "Model and data differ by " + FormatFixed(reading.ResidualDb, 1) + " dB, " +
            FormatFixed(reading.Excess, 2) + " times the noise, most at " +
            FormatWithPrefix(reading.ResidualAt, valueDigits, "Hz") + "\n";
    if (!reading.Understood) return text;
    if (reading.Q) text += "Q of the coils " + FormatFixed(*reading.Q, 1) + "\n";
    text += "Cables " + FormatFixed(reading.PortDelay[0] / Picosecond, 1) + " ps at the source, " +
            FormatFixed(reading.PortDelay[1] / Picosecond, 1) + " ps at the load\n" +
            Column("Part", 8) + Column("Nominal", 14) + Column("Actual", 14) + Column("Off", 11) +
            "95 % interval\n";
    for (const BoardPart& part : reading.Parts)
        text += PartLine(part);
    if (!reading.Resonators.empty())
        text += Column("Tank", 8) + Column("Nominal", 14) + Column("Actual", 14) + "Off\n";
    for (const BoardResonator& resonator : reading.Resonators)
        text += ResonatorLine(resonator);
    for (const BoardTurn& turn : reading.Next)
        text += "Turn " + turn.Text + ": " + FormatFixed(turn.Gain, 2) + " dB nearer\n";
    return text;
}

}  // namespace ladderwise
