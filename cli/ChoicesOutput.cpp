// Rows of the list in text.
#include "cli/ChoicesOutput.h"

#include <algorithm>
#include <cmath>

#include "choosing/ChoiceTexts.h"
#include "design/ChoiceNames.h"
#include "exchange/Json.h"
#include "limits/LimitTable.h"
#include "numbers/Formatfunctions.h"
#include "numbers/PlainNumbers.h"

namespace ladderwise {

namespace {

std::string WordOf(ChoiceId id, int code) {
    const ChoiceRow* const row = FindRow(id, code);
    return row ? row->Word : "";
}

std::string OptionalNumberOf(const std::optional<double>& x) {
    return x ? JsonNumber(*x) : "null";
}

/// A number where the text is one, else a text.
std::string SettingJson(const std::string& value) {
    double x = 0.0;
    const bool number = ReadPlainNumber(value, x) == NumberFault::None && std::isfinite(x);
    return number ? JsonNumber(x) : JsonQuoted(value);
}

std::string SettingsObject(const ChoosingRequest& request, const FilterChoice& row) {
    std::string text;
    for (const auto& [name, value] : SettingsOf(request, row))
        text += (text.empty() ? "{" : ", ") + JsonQuoted(name) + ": " + SettingJson(value);
    return text + "}";
}

std::string RelaxList(const FilterChoice& row) {
    return JsonListOf(row.Relax.size(), [&](std::size_t i) {
        const RelaxedLimit& relaxed = row.Relax[i];
        const double unit = UnitFactor(row.Report.Rows[relaxed.Limit].Line.Kind);
        return "{\"limit\": " + std::to_string(relaxed.Limit + 1) +
               ", \"by\": " + JsonNumber(relaxed.By / unit) + "}";
    });
}

std::string RowObject(const ChoosingRequest& request, const FilterChoice& row) {
    const Candidate& what = row.What;
    std::string text;
    const auto member = [&](const char* name, const std::string& value) {
        text += (text.empty() ? "{" : ",\n      ") + JsonQuoted(name) + ": " + value;
    };
    const auto word = [](ChoiceId id, auto code) {
        return JsonQuoted(WordOf(id, static_cast<int>(code)));
    };
    const bool traps = IsElliptic(what.Response);
    member("set", SettingsObject(request, row));
    member("response", word(ChoiceId::Response, what.Response));
    member("pass", word(ChoiceId::Pass, what.Pass));
    member("poles", std::to_string(what.Poles));
    member("form", word(ChoiceId::Form, row.FormCLC));
    member("f0", JsonNumber(row.F0));
    member("bw", HasBandWidth(what.Pass) ? JsonNumber(row.BandWidth) : "null");
    member("ripple", HasRipple(what) ? JsonNumber(what.RippleDb) : "null");
    member("atten", traps ? JsonNumber(what.AttenDb) : "null");
    member("trap", traps && HasTrapPanel(what.Pass) ? std::to_string(what.TrapType) : "null");
    member("r_load", JsonNumber(row.RLoad));
    member("other_load", row.OtherLoad ? "true" : "false");
    member("inductors", std::to_string(row.Parts.Inductors));
    member("capacitors", std::to_string(row.Parts.Capacitors));
    member("elements", JsonListOf(static_cast<std::size_t>(row.NumElements), [&](std::size_t i) {
               return ElementObject(row.Elements[i + 1], i + 1);
           }));
    member("loss_db", OptionalNumberOf(row.LossDb));
    member("margin_db", row.TightestHz > 0.0 ? JsonNumber(row.MarginDb) : "null");
    member("tightest_hz", row.TightestHz > 0.0 ? JsonNumber(row.TightestHz) : "null");
    member("spread_db", JsonNumber(row.SpreadDb));
    member("cost", JsonNumber(row.Cost));
    member("folded", row.Folded ? "true" : "false");
    member("passing_share", OptionalNumberOf(row.PassingShare));
    if (row.Kept != KeptLimits::All) {
        member("kept", row.Kept == KeptLimits::Pass ? "\"pass\"" : "\"stop\"");
        member("relax", RelaxList(row));
    }
    return text + "}";
}

std::string FewestObject(const FewestParts& fewest) {
    const auto number = [](const std::optional<int>& n) { return n ? std::to_string(*n) : "null"; };
    return "{\"inductors\": " + number(fewest.Inductors) + ", \"parts\": " + number(fewest.Parts) +
           "}";
}

std::string PaddedTo(std::string text, std::size_t width) {
    if (text.size() < width) text.resize(width, ' ');
    return text + "  ";
}

std::string RowLine(const FilterChoice& row) {
    const std::string yield =
        row.PassingShare ? FormatFixed(100.0 * *row.PassingShare, 1) + " %" : std::string("-");
    return PaddedTo(FormatFixed(row.Cost, 2), 6) +
           PaddedTo(std::to_string(row.Parts.Inductors) + " L " +
                        std::to_string(row.Parts.Capacitors) + " C",
                    10) +
           PaddedTo(row.LossDb ? FormatFixed(*row.LossDb, 2) : std::string("-"), 7) +
           PaddedTo(FormatFixed(row.MarginDb, 2), 7) + PaddedTo(yield, 7) +
           PaddedTo(NameOf(row), 44) + PaddedTo(PlaceOf(row), 18) + RangeText(row.Inductors, "H") +
           ", " + RangeText(row.Capacitors, "F") + "\n";
}

std::string FewestLine(const char* where, const FewestParts& fewest) {
    if (!fewest.Inductors) return {};
    return std::string("Fewest parts at ") + where + ": " + std::to_string(*fewest.Inductors) +
           (*fewest.Inductors == 1 ? " inductor" : " inductors") + ", or " +
           std::to_string(*fewest.Parts) + " parts in all\n";
}

std::string MissLine(const FilterChoice& row) {
    return NameOf(row) + ", " + PlaceOf(row) + ": " + RelaxText(row) + "\n";
}

std::string MissesText(const FilterList& list) {
    std::string text = "No filter meets the limits.\n";
    for (const KeptLimits kept : {KeptLimits::Pass, KeptLimits::Stop}) {
        bool begun = false;
        for (const FilterChoice& row : list.NearestMisses) {
            if (row.Kept != kept) continue;
            if (!begun)
                text += kept == KeptLimits::Pass
                            ? "Nearest with the limits of the pass band kept; to be relaxed:\n"
                            : "Nearest with the attenuation kept; to be relaxed:\n";
            begun = true;
            text += "  " + MissLine(row);
        }
    }
    return text;
}

}  // namespace

JsonMembers ChoicesMembers(const ChoosingRequest& request, const FilterList& list) {
    const auto rows = [&](const std::vector<FilterChoice>& of) {
        return JsonListOf(of.size(), [&](std::size_t i) { return RowObject(request, of[i]); });
    };
    return {{"choices", rows(list.Choices)},
            {"nearest_misses", rows(list.NearestMisses)},
            {"fewest_parts", "{\"users_load\": " + FewestObject(list.AtUsersLoad) +
                                 ", \"other_load\": " + FewestObject(list.AtOtherLoad) + "}"}};
}

std::string ChoicesTable(const ChoosingRequest& request, const FilterList& list) {
    if (list.Choices.empty()) return MissesText(list);
    std::string text = PaddedTo("Cost", 6) + PaddedTo("Parts", 10) + PaddedTo("Loss dB", 7) +
                       PaddedTo("Margin", 7) + PaddedTo("Boards", 7) + PaddedTo("Filter", 44) +
                       "Place and values\n";
    std::size_t folded = 0;
    for (const FilterChoice& row : list.Choices) {
        if (row.Folded)
            ++folded;
        else
            text += RowLine(row);
    }
    if (folded > 0)
        text += std::to_string(folded) + " more that one of these is better than in everything\n";
    text += FewestLine("the load that is set", list.AtUsersLoad);
    text += FewestLine("another load", list.AtOtherLoad);
    return text + "Boards: the share of " + std::to_string(request.Boards) +
           " boards, values within their tolerances, that keep all limits\n";
}

}  // namespace ladderwise
