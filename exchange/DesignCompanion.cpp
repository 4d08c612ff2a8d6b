// Between the struct and its JSON.
#include "exchange/DesignCompanion.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>

namespace ladderwise {

namespace {

constexpr const char* FormatMember = "ladderwise_companion";
constexpr double CompanionFormat = 1;

/// Relative. The same calculation on another machine differs in its last digits.
constexpr double SameCalculation = 1e-6;

/// What is wrong with a member; thrown inside the reader, never out of it.
struct CompanionFault {
    std::string Reason;
};

/// Takes known members out of an object one by one; what is left is not known.
class MemberTaker {
public:
    MemberTaker(const JsonValue& value, const std::string& called) : what(called) {
        const JsonObject* const object = value.As<JsonObject>();
        if (!object) throw CompanionFault{what + " is no object"};
        Left = *object;
    }

    std::optional<JsonValue> Take(const std::string& name) {
        const auto found = std::find_if(Left.begin(), Left.end(),
                                        [&](const auto& member) { return member.first == name; });
        if (found == Left.end()) return {};
        JsonValue value = std::move(found->second);
        Left.erase(found);
        return value;
    }

    std::string Text(const std::string& name) {
        const auto value = Take(name);
        const std::string* const text = value ? value->As<std::string>() : nullptr;
        if (!text) Fail(name, "a text");
        return *text;
    }
    bool Truth(const std::string& name) {
        const auto value = Take(name);
        if (!value) return false;
        if (!value->As<bool>()) Fail(name, "true or false");
        return *value->As<bool>();
    }
    double Number(const std::string& name) {
        const auto value = Take(name);
        double x = 0.0;
        if (!value || !value->ReadNumber(x)) Fail(name, "a number");
        return x;
    }
    double NumberOr(const std::string& name, double otherwise) {
        const auto value = Take(name);
        double x = otherwise;
        if (value && !value->ReadNumber(x)) Fail(name, "a number");
        return x;
    }
    int Whole(const std::string& name, int least, int most) {
        const double x = Number(name);
        if (!(x >= least) || !(x <= most) || x != std::floor(x)) Fail(name, "in its range");
        return static_cast<int>(x);
    }
    JsonList List(const std::string& name) {
        const auto value = Take(name);
        if (!value) return {};
        if (!value->As<JsonList>()) Fail(name, "a list");
        return *value->As<JsonList>();
    }

    JsonObject Left;

private:
    std::string what;

    [[noreturn]] void Fail(const std::string& name, const std::string& wanted) const {
        throw CompanionFault{name + " of " + what + " is not " + wanted};
    }
};

/// A measured file that follows `others`: without a colour that is known it takes a free one.
MeasuredFile MeasuredOf(const JsonValue& value, const MeasuredFiles& others) {
    MemberTaker members(value, "a measured file");
    MeasuredFile file = NewMeasuredFile(members.Text("file"), others);
    file.PortsSwapped = members.Truth("ports_swapped");
    file.Hidden = members.Truth("hidden");
    const JsonList delays = members.List("port_delay_s");
    if (!delays.empty() && (delays.size() != 2 || !delays[0].ReadNumber(file.SourceDelay) ||
                            !delays[1].ReadNumber(file.LoadDelay)))
        throw CompanionFault{"port_delay_s of a measured file is not two numbers"};
    const auto colour = members.Take("colour");
    const std::string* const name = colour ? colour->As<std::string>() : nullptr;
    if (colour && !name) throw CompanionFault{"colour of a measured file is not a text"};
    for (int i = 0; i < NumMeasuredColours; ++i)
        if (name && *name == MeasuredColours[static_cast<std::size_t>(i)].Name) file.Colour = i;
    if (!members.Left.empty()) file.Others = WriteJson(members.Left);
    return file;
}

JsonValue JsonOf(const MeasuredFile& file) {
    JsonObject object = {{"file", file.Path}};
    if (file.PortsSwapped) object.emplace_back("ports_swapped", true);
    if (file.SourceDelay != 0.0 || file.LoadDelay != 0.0)
        object.emplace_back("port_delay_s", JsonList{file.SourceDelay, file.LoadDelay});
    if (file.Hidden) object.emplace_back("hidden", true);
    object.emplace_back("colour", ColourOf(file).Name);
    const JsonResult others = ReadJson(file.Others);
    if (const JsonObject* const members = others.Value.As<JsonObject>())
        object.insert(object.end(), members->begin(), members->end());
    return object;
}

EditedValue EditedOf(const JsonValue& value) {
    MemberTaker members(value, "an edited value");
    EditedValue edit;
    edit.Slot = members.Whole("slot", 1, NumSlots - 1);
    edit.Row = members.Whole("row", 1, 4) - 1;
    edit.Type = members.Text("type");
    edit.Calculated = members.Number("calculated");
    edit.Value = members.Number("value");
    return edit;
}

JsonValue JsonOf(const EditedValue& edit) {
    return JsonObject{{"slot", edit.Slot},
                      {"row", edit.Row + 1},
                      {"type", edit.Type},
                      {"calculated", edit.Calculated},
                      {"value", edit.Value}};
}

HeldPart HeldOf(const JsonValue& value) {
    MemberTaker members(value, "a held part");
    HeldPart part;
    part.Place.Slot = members.Whole("slot", 1, NumSlots - 1);
    part.Place.Row = members.Whole("row", 1, 4) - 1;
    part.Value = members.NumberOr("value", 0.0);
    part.Tolerance = members.NumberOr("tolerance", 0.0);
    if (part.Value < 0.0 || part.Tolerance < 0.0 || !(part.Tolerance < 1.0) ||
        !(part.Value > 0.0 || part.Tolerance > 0.0))
        throw CompanionFault{"a held part has neither value nor tolerance"};
    return part;
}

JsonValue JsonOf(const HeldPart& part) {
    JsonObject object{{"slot", part.Place.Slot}, {"row", part.Place.Row + 1}};
    if (part.HoldsValue()) object.emplace_back("value", part.Value);
    if (part.Tolerance > 0.0) object.emplace_back("tolerance", part.Tolerance);
    return object;
}

/// The name of a limit's value: in SI units, so that it is read as it was.
const char* ValueNameOf(LimitKind kind) {
    return kind == LimitKind::DelayVariationMax ? "value_s" : "value_db";
}

LimitLine LimitOf(const JsonValue& value) {
    MemberTaker members(value, "it");
    const std::string name = members.Text("kind");
    const auto kind = LimitKindNamed(name);
    if (!kind) throw CompanionFault{"its kind \"" + name + "\" is not known"};
    LimitLine line{*kind, members.Number("from_hz"), members.Number("to_hz"),
                   members.Number(ValueNameOf(*kind))};
    const std::string fault = FaultOf(line);
    if (!fault.empty()) throw CompanionFault{fault};
    return line;
}

JsonValue JsonOf(const LimitLine& line) {
    return JsonObject{{"kind", NameOf(line.Kind)},
                      {"from_hz", line.From},
                      {"to_hz", line.To},
                      {ValueNameOf(line.Kind), line.Value}};
}

/// Takes the limits one by one: of those that are none the remark tells.
void TakeLimits(MemberTaker& members, CompanionResult& result) {
    const auto remark = [&](const std::string& text) {
        result.Remark += (result.Remark.empty() ? "" : "; ") + text;
    };
    const auto value = members.Take("limits");
    const JsonList* const list = value ? value->As<JsonList>() : nullptr;
    if (value && !list) remark("its limits are not a list");
    for (std::size_t i = 0; list && i < list->size(); ++i)
        try {
            if (i >= MaxLimitLines) return remark("it has too many limits");
            result.Companion.Limits.push_back(LimitOf((*list)[i]));
        } catch (const CompanionFault& fault) {
            remark("limit " + std::to_string(i + 1) + " is left out, because " + fault.Reason);
        }
}

std::filesystem::path PathOf(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string Utf8PathText(const std::filesystem::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

/// Whether the ladder still has what was edited, as it was before.
bool Fits(const FilterDesign& design, const EditedValue& edit) {
    if (edit.Slot > design.NumElements) return false;
    const CircuitElement& slot = design.Elements[edit.Slot];
    const double now = slot.Value(edit.Row);
    return edit.Type == InfoOf(slot.Type).Name &&
           InfoOf(slot.Type).Values[edit.Row] != ValueKind::Unused &&
           std::fabs(now - edit.Calculated) <= SameCalculation * std::fabs(edit.Calculated);
}

}  // namespace

std::string CompanionPath(const std::string& designPath) {
    return designPath + ".json";
}

CompanionResult ReadCompanion(std::string_view text) {
    if (text.size() > MaxCompanionBytes) return {{}, "it is too long", {}};
    const JsonResult json = ReadJson(text);
    if (!json.Error.empty()) return {{}, json.Error, {}};
    try {
        MemberTaker members(json.Value, "the file");
        if (members.Whole(FormatMember, 1, 1'000'000) > CompanionFormat)
            return {{}, "it is of a later version of this program", {}};
        CompanionResult result;
        DesignCompanion& companion = result.Companion;
        for (const JsonValue& value : members.List("measured"))
            companion.Measured.push_back(MeasuredOf(value, companion.Measured));
        for (const JsonValue& value : members.List("edited"))
            companion.Edited.push_back(EditedOf(value));
        for (const JsonValue& value : members.List("held"))
            companion.Held.push_back(HeldOf(value));
        TakeLimits(members, result);
        companion.Others = members.Left;
        return result;
    } catch (const CompanionFault& fault) {
        return {{}, fault.Reason, {}};
    }
}

std::string CompanionText(const DesignCompanion& companion) {
    JsonObject object = {{FormatMember, CompanionFormat}};
    JsonList measured, edited, limits, held;
    for (const MeasuredFile& file : companion.Measured)
        measured.push_back(JsonOf(file));
    for (const EditedValue& edit : companion.Edited)
        edited.push_back(JsonOf(edit));
    for (const LimitLine& line : companion.Limits)
        limits.push_back(JsonOf(line));
    for (const HeldPart& part : companion.Held)
        held.push_back(JsonOf(part));
    if (!measured.empty()) object.emplace_back("measured", measured);
    if (!edited.empty()) object.emplace_back("edited", edited);
    if (!limits.empty()) object.emplace_back("limits", limits);
    if (!held.empty()) object.emplace_back("held", held);
    object.insert(object.end(), companion.Others.begin(), companion.Others.end());
    return WriteJson(object);
}

void MakePathsRelative(DesignCompanion& companion, const std::string& folder) {
    for (MeasuredFile& file : companion.Measured) {
        const std::filesystem::path relative = PathOf(file.Path).lexically_relative(PathOf(folder));
        if (!relative.empty()) file.Path = Utf8PathText(relative);
    }
}

void MakePathsAbsolute(DesignCompanion& companion, const std::string& folder) {
    for (MeasuredFile& file : companion.Measured)
        file.Path = Utf8PathText((PathOf(folder) / PathOf(file.Path)).lexically_normal());
}

std::vector<EditedValue> EditsOf(const FilterDesign& design) {
    std::vector<EditedValue> edits;
    for (int slot = 1; slot <= design.NumElements; ++slot)
        for (int row = 0; row < 4; ++row)
            if (IsEdited(design, slot, row))
                edits.push_back({slot, row, InfoOf(design.Elements[slot].Type).Name,
                                 (*design.CalculatedElements)[slot].Value(row),
                                 design.Elements[slot].Value(row)});
    return edits;
}

bool ApplyEdits(FilterDesign& design, const std::vector<EditedValue>& edits) {
    const bool all = std::all_of(edits.begin(), edits.end(),
                                 [&](const EditedValue& edit) { return Fits(design, edit); });
    for (const EditedValue& edit : edits)
        if (all) design.Elements[edit.Slot].Value(edit.Row) = edit.Value;
    return all;
}

}  // namespace ladderwise
