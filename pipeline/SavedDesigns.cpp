// Between design records and inputs.
#include "pipeline/SavedDesigns.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "files/CoefficientsFile.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/Choices.h"

namespace ladderwise {

namespace {

constexpr int On = 1;            ///< code of a checked box
constexpr double NoSeed = -1.0;  ///< every worst case draws its own
constexpr double LargestSeed = 4294967295.0;
constexpr int TypedDigits = 15;     ///< significant; no one types more
constexpr int NeighboursTried = 4;  ///< floating-point neighbours on either side

/// The row that stands for an input in the record: the first of its rows, in SI units.
const InputRow& RecordRow(const InputRow& row) {
    return *std::find_if(InputRows().begin(), InputRows().end(),
                         [&](const InputRow& other) { return other.Id == row.Id; });
}

/// Calls `use` for every input with the row of the unit chosen.
template <typename Use>
void ForEachInput(const DesignInputs& inputs, Use use) {
    for (const InputRow& row : InputRows())
        if (&row == &RowOf(row.Id, inputs)) use(row);
}

// --- inputs to record

/// What stands in a box; 0 if it is no number.
double TypedNumber(const NumberBox& box) {
    double number = 0.0;
    if (box.HoldsExactValue()) return *box.ExactValue;
    return TryParseDouble(box.Text, number) && std::isfinite(number) ? number : 0.0;
}

void StoreNumbers(const Calculation& calculation, DesignRecord& record) {
    DesignInputs inputs = calculation.Inputs;
    FilterDesign design = calculation.Design;
    ForEachInput(inputs, [&](const InputRow& row) {
        double& number = record.Number(row.Component);
        if (row.ReadLater) {
            const bool automatic = row.Id == InputId::Scale && inputs.IsOn(ChoiceId::AutoScale);
            number = automatic ? 0.0 : TypedNumber(inputs.Box(row.Id));
            return;
        }
        StepInput(row.Id, inputs, design, {}, {});
        if (const auto kept = KeptEntry(row.Id, inputs)) row.Put(design, *kept);
        number = RecordRow(row).Get(design);
    });
}

void StoreChoices(const DesignInputs& inputs, DesignRecord& record) {
    for (const ChoiceTable& table : ChoiceTables()) {
        const int code = inputs.Choice(table.Id);
        const ChoiceRow* const row = FindRow(table.Id, code);
        record.Text(table.Record) = row ? row->Component : "";
        if (IsSwitch(table.Id)) {  // a kind of "on" without a control of its own stands in the code
            const bool ofItsOwn = !row || *row->Component || code == 0;
            if (code != 0) record.Text(table.Record) = FindRow(table.Id, On)->Component;
            if (*table.RecordCode) record.Number(table.RecordCode) = ofItsOwn ? 0 : code;
        } else if (*table.RecordCode) {
            record.Number(table.RecordCode) =
                table.Id == ChoiceId::Pass ? static_cast<int>(inputs.Pass()) : code;
        }
    }
}

void StoreCoefficients(const FilterDesign& design, DesignRecord& record) {
    record.Number("CoefFileRead") = design.CoefFileRead;
    for (std::size_t n = 1; design.CoefFileRead && n <= MaxPoles; ++n)
        for (std::size_t k = 0; k < MaxCoefficients; ++k)
            record.Number("CoefficientTable", (n - 1) * MaxCoefficients + k) =
                design.CoefficientTable[n][k];
}

// --- record to inputs

/// The number for the box of `row` that stores exactly `number` in the design: the one that a user
/// would have typed, or failing that one of its neighbours, so that the way there and back loses
/// nothing although units are converted in binary.
double BoxValue(const InputRow& row, FilterDesign design, double number) {
    const InputRow& base = RecordRow(row);
    base.Put(design, number);
    const double nearest = row.Get(design) / row.Factor;
    if (!std::isfinite(nearest) || nearest == 0.0) return nearest;  // rounding loses a sign of 0
    const auto fits = [&](double value) {
        row.Put(design, value * row.Factor);
        return base.Get(design) == number;
    };
    const double typed = RoundToSignificant(nearest, TypedDigits);
    if (fits(typed)) return typed;
    double below = nearest, above = nearest;
    for (int i = 0; i <= NeighboursTried; ++i) {
        if (fits(below)) return below;
        if (fits(above)) return above;
        below = std::nextafter(below, -HUGE_VAL);
        above = std::nextafter(above, HUGE_VAL);
    }
    return nearest;
}

/// As the stage that reads the box writes it: the scale in its notation, the numbers of a Norton
/// filter with two decimals; all others so that they read back as they are.
std::string ShownNumber(const InputRow& row, double value) {
    if (row.Id == InputId::Scale) return FormatEngineering(value, 1);
    return row.ReadLater ? FormatFixed(value, 2) : FormatFullPrecision(value);
}

void LoadNumbers(const DesignRecord& record, DesignInputs& inputs, const FilterDesign& fresh) {
    FilterDesign scratch = fresh;
    ForEachInput(inputs, [&](const InputRow& row) {
        const double number = record.Number(row.Component);
        NumberBox box;
        box.Text = row.Initial;
        const double value = BoxValue(row, scratch, number);
        // An empty box of a value that a stage provides stays empty. A scale below 0 is one that a
        // response without a positive delay left there: its reader leaves it alone, too.
        if (std::isfinite(value) && !(row.ReadLater && value == 0.0)) {
            if (row.Back == WriteBack::Significant)
                box.WriteValue(value);
            else
                box.WriteText(ShownNumber(row, value), value);
        }
        RecordRow(row).Put(scratch, number);  // what follows may be relative to it
        inputs.Box(row.Id) = box;
    });
}

int LoadedChoice(const DesignRecord& record, const ChoiceTable& table) {
    const std::string& name = record.Text(table.Record);
    if (name.empty() && IsSwitch(table.Id)) return 0;
    const auto found = FindComponent(name);
    if (found && found->Id == table.Id) {
        const bool kinds = IsSwitch(table.Id) && *table.RecordCode;
        const int kind = kinds ? static_cast<int>(record.Number(table.RecordCode)) : 0;
        return kind > found->Code && FindRow(table.Id, kind) ? kind : found->Code;
    }
    if (*table.RecordCode) {
        const int code = static_cast<int>(record.Number(table.RecordCode));
        if (FindRow(table.Id, code)) return code;
    }
    return table.Initial;
}

/// The reasons in the words of older files, by their codes.
constexpr std::pair<std::string_view, LoadReason> olderReasons[] = {
    {"equal to R Source, as this response needs it", LoadReason::Equal},
    {"twice R Source, as this response needs it", LoadReason::Twice},
    {"half of R Source, as this response needs it", LoadReason::Half},
    {"the limit of an even-order Chebyshev", LoadReason::Chebyshev},
    {"the one that this elliptic ladder needs", LoadReason::Elliptic},
};

/// The reason that a record gives; nothing if it gives none that there is.
std::optional<LoadReason> ReasonIn(const DesignRecord& record) {
    const int code = static_cast<int>(record.Number("RLReason"));
    for (const auto& [words, reason] : olderReasons)
        if (code == 0 ? record.Text("RLWhy") == words : code == static_cast<int>(reason))
            return reason;
    return {};
}

/// The load that stands in the place of the user's, or stood there before the last calculation
/// moved it once more.
void LoadMovedLoad(const DesignRecord& record, NumberBox& box) {
    const double wanted = record.Number("RLWanted"), held = record.Number("RLHeld");
    const auto why = ReasonIn(record);
    if (wanted <= 0.0 || !why) return;
    if (held > 0.0) box.WriteValue(held);
    box.Moved = MovedEntry{wanted, *why, held};
}

/// Takes over the complete rows; an order with a gap counts as lacking.
void LoadCoefficients(const DesignRecord& record, FilterDesign& design) {
    design.CoefficientTable = {};
    design.CoefFileRead = false;
    if (record.Number("CoefFileRead") == 0.0) return;
    for (std::size_t n = 1; n <= MaxPoles; ++n) {
        auto& row = design.CoefficientTable[n];
        for (std::size_t k = 0; k < MaxCoefficients; ++k)
            row[k] = record.Number("CoefficientTable", (n - 1) * MaxCoefficients + k);
        if (std::all_of(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(n),
                        [](double g) { return g > 0.0; }))
            design.CoefFileRead = true;
        else
            row = {};
    }
}

}  // namespace

DesignRecord RecordOf(const Calculation& calculation) {
    DesignRecord record;
    StoreNumbers(calculation, record);
    StoreChoices(calculation.Inputs, record);
    if (const auto& moved = calculation.Inputs.Box(InputId::RLoad).Moved) {
        record.Number("RLWanted") = moved->Wanted;
        record.Number("RLReason") = static_cast<int>(moved->Why);
        // Yellow: the last calculation itself moved it. The one after opening has to do so again.
        if (calculation.Inputs.Box(InputId::RLoad).Colour == BoxColour::Yellow)
            record.Number("RLHeld") = moved->Held;
    }
    StoreCoefficients(calculation.Design, record);
    if (calculation.FixedSeed) record.Number("Seed") = *calculation.FixedSeed;
    return record;
}

void LoadRecord(const DesignRecord& record, Calculation& calculation) {
    DesignInputs& inputs = calculation.Inputs;
    for (const ChoiceTable& table : ChoiceTables())
        inputs.Choice(table.Id) = LoadedChoice(record, table);
    LoadNumbers(record, inputs, calculation.Design);
    LoadMovedLoad(record, inputs.Box(InputId::RLoad));
    LoadCoefficients(record, calculation.Design);
    const double seed = record.Number("Seed");
    calculation.FixedSeed.reset();
    if (seed > NoSeed && seed <= LargestSeed)
        calculation.FixedSeed = static_cast<std::uint32_t>(seed);
}

bool SameDesign(const DesignRecord& one, const DesignRecord& other) {
    DesignRecord alike = one;
    alike.Number("RLHeld") = other.Number("RLHeld");
    return EncodeRecord(alike) == EncodeRecord(other);
}

std::string RecordFault(const std::vector<InputRow>& inputs,
                        const std::vector<ChoiceTable>& choices) {
    const auto lacks = [](const char* field, bool number) {
        const RecordField* const found = FindField(field);
        const bool isNumber =
            found && (found->Type == RecordType::Int32 || found->Type == RecordType::Double);
        return !found || isNumber != number || (!number && found->Type != RecordType::Text);
    };
    const auto fault = [](const char* kind, const char* name, const char* field) {
        return std::string(kind) + " \"" + name + "\" has no field \"" + field +
               "\" in the record of design files, so that saving would fail: add one to the table "
               "in files/FileReadSave.cpp.";
    };
    for (const InputRow& row : inputs)
        if (lacks(row.Component, true)) return fault("The input", row.Name, row.Component);
    for (const ChoiceTable& table : choices) {
        if (lacks(table.Record, false)) return fault("The choice", table.Name, table.Record);
        if (*table.RecordCode && lacks(table.RecordCode, true))
            return fault("The choice", table.Name, table.RecordCode);
    }
    return {};
}

std::string UseCoefficients(Calculation& calculation, std::string_view text) {
    Choose(calculation.Inputs, calculation.Design, ChoiceId::Response,
           static_cast<int>(ResponseType::CoefficientsFile));
    const CoefficientsResult result = ReadCoefficients(text);
    calculation.Design.CoefficientTable = result.Rows;
    calculation.Design.CoefFileRead = result.Error.empty();
    return result.Error;
}

std::string ProposedFileName(const FilterDesign& design) {
    const ChoiceRow* const family =
        FindRow(ChoiceId::Response, static_cast<int>(design.ResponseType));
    const ChoiceRow* const pass = FindRow(ChoiceId::Pass, static_cast<int>(design.PassType));
    return std::to_string(design.NumPoles) + (family ? family->FileTitle : "") +
           (pass ? pass->Title : "");
}

}  // namespace ladderwise
