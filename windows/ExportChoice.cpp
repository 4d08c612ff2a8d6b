// The choice of the export dialog as text.
#include "windows/ExportChoice.h"

#include <cmath>
#include <map>
#include <type_traits>

#include "numbers/PlainNumbers.h"

namespace ladderwise {

namespace {

constexpr double MostRuns = 1000.0;
constexpr double MostFrequency = 1e15;  ///< Hz
constexpr double MostOhms = 1e9;
constexpr double MostSide = 1e5;  ///< of a picture; FaultOf knows what it can have

/// Every member with its name and bounds, for reading and writing alike.
template <typename Choice, typename Visitor>
void VisitMembers(Choice& choice, const Visitor& visit) {
    auto& options = choice.Options;
    visit("page", choice.Page, 0.0, NumExportPages - 1.0);
    visit("version", options.Version, 1.0, 2.0);
    visit("reference", options.Reference, 1e-3, MostOhms);
    visit("runs", options.Runs, 0.0, MostRuns);
    visit("with-runs", choice.WithRuns, 0.0, 1.0);
    visit("simulator", options.For, 0.0, 1.0);
    visit("subcircuit", options.Subcircuit, 0.0, 1.0);
    visit("separator", options.Separator, 0.0, 1.0);
    visit("own-points", choice.OwnPoints, 0.0, 1.0);
    visit("from", options.Points.From, 0.0, MostFrequency);
    visit("to", options.Points.To, 0.0, MostFrequency);
    visit("points", options.Points.Points, 1.0, static_cast<double>(MostExportPoints));
    visit("logarithmic", options.Points.Logarithmic, 0.0, 1.0);
    visit("parts", choice.Look.Parts, 0.0, 2.0);
    visit("white", choice.Look.White, 0.0, 1.0);
    visit("format", choice.Format, 0.0, PictureEndings.size() - 1.0);
    visit("width", choice.Size.Width, 1.0, MostSide);
    visit("height", choice.Size.Height, 1.0, MostSide);
    visit("millimetres", choice.Size.Millimetres, 0.0, 1.0);
}

template <typename Value>
struct IsOptional : std::false_type {};
template <typename Value>
struct IsOptional<std::optional<Value>> : std::true_type {};

template <typename Member>
void PutNumber(Member& member, double x, double least, double most) {
    if constexpr (IsOptional<Member>::value) {
        typename Member::value_type value{};
        PutNumber(value, x, least, most);
        if (x >= least && x <= most) member = value;
    } else {
        const bool whole = std::is_same_v<Member, double> || x == std::floor(x);
        if (whole && x >= least && x <= most) member = static_cast<Member>(x);
    }
}

/// "name=1.5" of each word; other words are left out.
std::map<std::string, double, std::less<>> NumbersOf(std::string_view text) {
    std::map<std::string, double, std::less<>> numbers;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        const std::string_view word = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t equals = word.find('=');
        double x = 0.0;
        if (equals != std::string_view::npos &&
            ReadPlainNumber(word.substr(equals + 1), x) == NumberFault::None)
            numbers[std::string(word.substr(0, equals))] = x;
    }
    return numbers;
}

}  // namespace

ExportKind KindOf(ExportPage page) {
    switch (page) {
        case ExportPage::Touchstone:
            return ExportKind::Touchstone;
        case ExportPage::Netlist:
            return ExportKind::Netlist;
        case ExportPage::Schematic:
            return ExportKind::Schematic;
        case ExportPage::PartsList:
            return ExportKind::PartsList;
        case ExportPage::Sweep:
        case ExportPage::Picture:
            break;
    }
    return ExportKind::Sweep;
}

std::string EndingOf(const ExportChoice& choice) {
    switch (choice.Page) {
        case ExportPage::Touchstone:
            return "s2p";
        case ExportPage::Netlist:
            return "cir";
        case ExportPage::Schematic:
            return "asc";
        case ExportPage::Sweep:
        case ExportPage::PartsList:
            return "csv";
        case ExportPage::Picture:
            break;
    }
    return PictureEndings[static_cast<std::size_t>(choice.Format)];
}

std::string ChoiceText(const ExportChoice& choice) {
    std::string text;
    VisitMembers(choice, [&text](const char* name, const auto& member, double, double) {
        const auto add = [&](double x) {
            text += (text.empty() ? "" : " ") + std::string(name) + "=" + ExactNumber(x);
        };
        if constexpr (IsOptional<std::remove_cvref_t<decltype(member)>>::value) {
            if (member) add(static_cast<double>(*member));
        } else {
            add(static_cast<double>(member));
        }
    });
    return text;
}

ExportChoice ReadChoiceText(std::string_view text) {
    ExportChoice choice;
    const auto numbers = NumbersOf(text);
    VisitMembers(choice, [&](const char* name, auto& member, double least, double most) {
        const auto found = numbers.find(std::string_view(name));
        if (found != numbers.end()) PutNumber(member, found->second, least, most);
    });
    return choice;
}

}  // namespace ladderwise
