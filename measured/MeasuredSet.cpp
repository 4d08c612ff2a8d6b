// Networks by their files, and their traces kept while nothing that they depend on changes.
#include "measured/MeasuredSet.h"

#include <algorithm>
#include <utility>

#include "design/LadderNumbers.h"
#include "display/Subtitle.h"
#include "measured/MeasuredMargins.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr int ResistanceDigits = 5;  // significant

std::string NameOf(const std::string& path) {
    return path.substr(path.find_last_of("/\\") + 1);
}

std::string Ohms(double ohms) {
    return FormatPlain(ohms, ResistanceDigits) + " \u03a9";
}

std::string Ohms(PortResistances ports) {
    return ports.Source == ports.Load ? Ohms(ports.Source)
                                      : Ohms(ports.Source) + " and " + Ohms(ports.Load);
}

/// All numbers of a design that the traces of a network depend on.
std::vector<double> DependsOn(const MeasuredFile& file, const NetworkData& network,
                              const FilterDesign& design) {
    std::vector<double> numbers = {static_cast<double>(file.PortsSwapped),
                                   file.SourceDelay,
                                   file.LoadDelay,
                                   design.RSource,
                                   design.RLoad,
                                   design.PhaseGDThreshold};
    if (!network.OnePath) return numbers;  // else the design's own reflection is used
    const std::vector<double> ladder = LadderNumbers(design);
    numbers.insert(numbers.end(), ladder.begin(), ladder.end());
    return numbers;
}

bool IsSeen(const NetworkData& network, const FilterDesign& design) {
    return network.Hz.front() <= design.SweepF2 && network.Hz.back() >= design.SweepF1;
}

std::string DataText(const NetworkData& network) {
    const std::size_t points = network.Hz.size();
    return std::to_string(points) + (points == 1 ? " point, " : " points, ") +
           ExactFrequency(network.Hz.front()) +
           (points == 1 ? "" : " to " + ExactFrequency(network.Hz.back())) +
           (network.Ports == 1 ? ", one port at " + Ohms(network.Reference.Source)
                               : ", two ports at " + Ohms(network.Reference));
}

/// What the traces are seen between.
std::string SeenText(const NetworkData& network, const MeasuredFile& file,
                     const FilterDesign& design) {
    const bool swapped = file.PortsSwapped && network.Ports == 2;
    PortResistances own = network.Reference;
    if (swapped) std::swap(own.Source, own.Load);
    if (network.Ports == 1)
        return (own.Source == design.RSource
                    ? "Reflection at the design's source of " + Ohms(design.RSource)
                    : "Renormalised from " + Ohms(own.Source) + " to the design's source of " +
                          Ohms(design.RSource)) +
               ", with the load that it was measured with.";
    const PortResistances ends{design.RSource, design.RLoad};
    if (own == ends) return "Shown as measured, at the design's terminations.";
    return "Renormalised from " + Ohms(own) + " to the design's terminations of " + Ohms(ends) +
           ".";
}

}  // namespace

struct MeasuredSet::Shown {
    const MeasuredNetwork* From = nullptr;
    std::vector<double> Numbers{};
    MeasuredTraces Traces{};
    MeasuredArrays Arrays{};
    std::optional<LimitReport> Limits{};  ///< judged last
};

MeasuredSet::MeasuredSet() = default;
MeasuredSet::~MeasuredSet() = default;

void MeasuredSet::Put(MeasuredNetwork network) {
    shown.clear();
    std::string file = network.File;
    networks.insert_or_assign(std::move(file), std::move(network));
}

void MeasuredSet::Clear() {
    shown.clear();
    networks.clear();
}

const MeasuredNetwork* MeasuredSet::Find(const std::string& path) const {
    const auto found = networks.find(path);
    return found == networks.end() ? nullptr : &found->second;
}

MeasuredSet::Shown& MeasuredSet::ShownOf(std::size_t index, const MeasuredFile& file,
                                         const MeasuredNetwork& network,
                                         const FilterDesign& design) {
    std::unique_ptr<Shown>& kept = shown[index];
    std::vector<double> numbers = DependsOn(file, network.Network, design);
    if (kept && kept->From == &network && SameLadderNumbers(kept->Numbers, numbers)) return *kept;
    kept = std::make_unique<Shown>();
    kept->From = &network;
    kept->Numbers = std::move(numbers);
    kept->Traces = TracesBetweenTerminations(
        network.Network, {file.PortsSwapped, file.SourceDelay, file.LoadDelay}, design);
    kept->Arrays = ArraysOf(kept->Traces, design.PhaseGDThreshold);
    return *kept;
}

std::vector<PlotLayer> MeasuredSet::LayersOf(const MeasuredFiles& files,
                                             const FilterDesign& design) {
    shown.resize(files.size());
    const std::vector<std::string> names = ShortNamesOf(files);
    std::vector<PlotLayer> layers;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const MeasuredNetwork* const network = Find(files[i].Path);
        if (files[i].Hidden || !network || !network->Error.empty()) continue;
        const std::string name =
            NameOf(files[i].Path) + (IsSeen(network->Network, design) ? "" : ", outside this plot");
        layers.push_back(
            LayerOf(ShownOf(i, files[i], *network, design).Arrays, files[i], name, names[i]));
    }
    return layers;
}

std::vector<MeasuredVerdict> MeasuredSet::Judge(const MeasuredFiles& files,
                                                const FilterDesign& design,
                                                const LimitLines& lines) {
    shown.resize(files.size());
    const std::vector<std::string> names = ShortNamesOf(files);
    std::vector<MeasuredVerdict> verdicts;
    for (std::size_t i = 0; i < files.size() && !lines.empty(); ++i) {
        const MeasuredNetwork* const network = Find(files[i].Path);
        if (files[i].Hidden || !network || !network->Error.empty()) continue;
        Shown& kept = ShownOf(i, files[i], *network, design);
        const bool same =
            kept.Limits &&
            std::equal(lines.begin(), lines.end(), kept.Limits->Rows.begin(),
                       kept.Limits->Rows.end(),
                       [](const auto& line, const auto& row) { return line == row.Line; });
        if (!same) kept.Limits = JudgeMeasured(kept.Traces, lines);
        verdicts.push_back({names[i], *kept.Limits});
    }
    return verdicts;
}

std::vector<MeasuredSummary> MeasuredSet::Describe(const MeasuredFiles& files,
                                                   const FilterDesign& design) {
    shown.resize(files.size());
    const std::vector<std::string> names = ShortNamesOf(files);
    std::vector<MeasuredSummary> summaries;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const MeasuredNetwork* const network = Find(files[i].Path);
        MeasuredSummary& summary =
            summaries.emplace_back(MeasuredSummary{NameOf(files[i].Path), names[i], {}, false, {}});
        summary.Data = network ? network->Error : "not read";
        if (!network || !network->Error.empty()) continue;
        const NetworkData& data = network->Network;
        summary.IsUsable = true;
        summary.Data = DataText(data);
        const Shown& traces = ShownOf(i, files[i], *network, design);
        // Of a one-path measurement a note says what it is renormalised with, or that it is not.
        summary.Remarks.push_back(SeenText(data, files[i], design));
        for (const auto& texts : {traces.Traces.Notes, data.Messages})
            summary.Remarks.insert(summary.Remarks.end(), texts.begin(), texts.end());
        if (!IsSeen(data, design))
            summary.Remarks.push_back("It lies outside of the plot's sweep.");
    }
    return summaries;
}

}  // namespace ladderwise
