// Names, places and ranges of the rows.
#include "choosing/ChoiceTexts.h"

#include <string_view>

#include "design/ChoiceNames.h"
#include "limits/LimitTable.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr int digitsOfValues = 3;  ///< after the first

std::string ChoiceWord(ChoiceId id, int code) {
    const ChoiceRow* const row = FindRow(id, code);
    return row ? row->Word : "";
}

/// "Elliptic C": as the title of a plot names it, without what its number counts.
std::string FamilyOf(ResponseType response) {
    static constexpr std::string_view counted = " Pole ";
    const ChoiceRow* const row = FindRow(ChoiceId::Response, static_cast<int>(response));
    std::string_view title = row ? row->Title : "";
    if (title.starts_with(counted)) title.remove_prefix(counted.size());
    return std::string(title);
}

}  // namespace

std::string NameOf(const FilterChoice& row) {
    const Candidate& what = row.What;
    const bool traps = IsElliptic(what.Response);
    std::string text = FamilyOf(what.Response) + ", " + std::to_string(what.Poles) +
                       (traps ? " trap" : " pole") + (what.Poles == 1 ? "" : "s");
    if (!traps) text += row.FormCLC ? ", CLC" : ", LCL";
    if (HasRipple(what)) text += ", " + FormatPlain(what.RippleDb, digitsOfValues) + " dB";
    if (traps) text += ", " + FormatPlain(what.AttenDb, digitsOfValues) + " dB";
    if (what.Pass == PassType::DirectCoupled)
        text += ", coupled by " +
                ChoiceWord(ChoiceId::InverterType,
                           static_cast<int>(InverterFor(what.Inverter, TankType::ShuntLC)));
    if (what.Pass == PassType::Norton)
        text += ", Norton " + ChoiceWord(ChoiceId::NortonType, static_cast<int>(what.NortonType));
    if (row.OtherLoad) text += ", R load " + FormatWithPrefix(row.RLoad, digitsOfValues, "ohm");
    return text;
}

std::string RangeText(const ValueRange& range, const char* unit) {
    if (range.Largest == 0.0) return "-";
    return FormatWithPrefix(range.Smallest, 2, unit) + " to " +
           FormatWithPrefix(range.Largest, 2, unit);
}

std::string PlaceOf(const FilterChoice& row) {
    std::string text = "Fo " + FormatWithPrefix(row.F0, 5, "Hz");
    if (HasBandWidth(row.What.Pass)) text += ", BW " + FormatWithPrefix(row.BandWidth, 5, "Hz");
    return text;
}

std::string RelaxText(const FilterChoice& row) {
    std::string text;
    for (const RelaxedLimit& relaxed : row.Relax) {
        const LimitLine& line = row.Report.Rows[relaxed.Limit].Line;
        text += (text.empty() ? "" : "; ") + TextOf(line) + " by " +
                FormatFixed(relaxed.By / UnitFactor(line.Kind), 2) + " " + UnitOf(line.Kind);
    }
    return text;
}

}  // namespace ladderwise
