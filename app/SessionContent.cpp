// What is shown of the session's document: on the plot, in pictures and exports; its limits, and
// the measured files of it, which are read when they are to be drawn.
#include <utility>

#include "app/ClientArea.h"
#include "app/DesignSession.h"
#include "app/PlotArea.h"
#include "app/SecondaryWindows.h"
#include "design/LadderNumbers.h"
#include "measured/MeasuredDisk.h"

namespace ladderwise {

namespace {

/// All that the bands of a worst case depend on.
std::vector<double> BandNumbers(const Calculation& work) {
    const FilterDesign& design = work.Design;
    std::vector<double> numbers = LadderNumbers(design);
    numbers.insert(numbers.end(),
                   {design.SweepF1, design.SweepF2, static_cast<double>(design.SweepType),
                    design.PhaseGDThreshold, design.PartModel.IndTolerance,
                    design.PartModel.CapTolerance, static_cast<double>(work.WorstCase.Runs),
                    static_cast<double>(work.WorstCase.Seed), static_cast<double>(design.Overlay)});
    return numbers;
}

}  // namespace

/// The worst case has been drawn.
void DesignSession::FinishBands() {
    const Calculation& work = Document.Work;
    if (!ShowsBands(work.Design)) return;
    bands = std::make_shared<const TraceBands>(
        collector.Finish(TracesOf(work.Quantities, work.Design.Response)));
    bandsOf = BandNumbers(work);
}

PlotContent DesignSession::Content() const {
    const Calculation& work = Document.Work;
    std::vector<PlotLayer> layers;
    if (compared) {
        layers.push_back(
            LayerOf(compared->Design, compared->Quantities, LayerRole::Reference, comparedName));
    } else if (Document.ReferenceShown()) {
        const ReferenceDesign& reference = *Document.Reference();
        layers.push_back(LayerOf(reference.Design, reference.Quantities, LayerRole::Reference,
                                 ReferenceName(reference, work.Design)));
    }
    for (PlotLayer& layer : measured.LayersOf(Document.Measured, work.Design))
        layers.push_back(std::move(layer));
    PlotContent content = ContentOf(work.Design, ShownTraces(work), work.Quantities, layers);
    content.Markers = Document.Markers;
    content.Limits = Judged();
    content.WorstCaseRuns = Document.WorstCaseRuns();
    if (work.WorstCase.Runs > 0 && SameLadderNumbers(bandsOf, BandNumbers(work)))
        content.Bands = bands;
    return content;
}

/// The runs of the worst case that is drawn, once more.
void DesignSession::RepeatRuns(const PlotRunCallback& run) {
    FinishDrawing();
    if (Document.Work.WorstCase.Runs == 0) return;
    AskForRepeat(Document.Work);
    FinishCalculation(Document.Work, report, [&run](const AnalysedRun& analysed) {
        if (analysed.Number > 0) run(analysed);
    });
}

PictureContent DesignSession::Picture(std::vector<OverlayRun>& runs) {
    FinishDrawing();
    if (runs.empty() && ShowsRuns(Document.Work.Design))
        RepeatRuns([&runs](const AnalysedRun& run) {
            runs.push_back({run.Quantities, run.Response});
        });
    PictureContent picture{Content(), Answers()};
    for (const OverlayRun& run : runs)
        picture.Plot.Overlays.push_back(run.Traces());
    return picture;
}

std::vector<ElementList> DesignSession::WorstCaseLadders(int count) {
    std::vector<ElementList> ladders;
    RepeatRuns([&](const AnalysedRun& run) {
        if (run.Number <= count) ladders.push_back(Document.Work.Design.Elements);
    });
    return ladders;
}

std::vector<ShareTable> DesignSession::ShareTables() const {
    const Calculation& work = Document.Work;
    const LimitReport& limits = Judged();
    return DescribeShares(work.Design, work.Results, limits,
                          SharesOf(work.Design, work.Results, limits));
}

// --- limits

const LimitLines& DesignSession::ShownLimits() const {
    return dragged && dragged->Before == Document.Limits ? dragged->Now : Document.Limits;
}

const LimitReport& DesignSession::Judged() const {
    return judge.Judge(Document.Work.Design, ShownLimits());
}

void DesignSession::DragLimit(std::size_t limit, const LimitLine& line) {
    FinishDrawing();
    if (!dragged) dragged = {Document.Limits, Document.Limits};
    // Undone, opened or edited meanwhile: there is no such limit any more.
    if (Document.Limits != dragged->Before || limit >= dragged->Now.size())
        return views.Client->Area()->AbandonDrag();
    if (dragged->Now[limit] == line) return;
    dragged->Now[limit] = line;
    views.Client->Area()->ShowMarkers();
    ShowResults();
    views.Windows->RefreshLimits(Judged());
    views.Windows->FollowLimits(dragged->Now);
}

void DesignSession::DropLimit(bool taken) {
    if (!dragged) return;
    const bool takes = taken && Document.Limits == dragged->Before;
    const LimitLines lines = takes ? dragged->Now : Document.Limits;
    dragged.reset();
    if (takes) return ChangeLimits(lines);
    DrawMarkers();
}

DesignSession::JudgedLimits DesignSession::JudgeShown() const {
    const LimitLines& lines = ShownLimits();
    const ReferenceDesign* const beside = lines.empty() ? nullptr : Beside();
    JudgedLimits judged{
        Judged(), beside ? &referenceJudge.Judge(beside->Design, lines) : nullptr, {}};
    for (MeasuredVerdict& verdict : measured.Judge(Document.Measured, Document.Work.Design, lines))
        judged.Measured.push_back({std::move(verdict.ShortName), std::move(verdict.Report)});
    return judged;
}

void DesignSession::ChangeLimits(const LimitLines& lines) {
    const bool changed = Document.Limits != lines;
    Document.Limits = lines;
    const FilterDesign& design = Document.Work.Design;
    const bool choosesByThem = design.StdLCValues && design.StdMethod == StdMethod::Yield;
    if (!changed || !choosesByThem || HasEdits(design)) return DrawMarkers();
    views.Binder->StoreInputs();
    Recalculate();
}

// --- measured data

/// Those of the document that were not read yet. Nobody is told of faults before all is drawn.
void DesignSession::ReadMeasured() {
    for (const MeasuredFile& file : Document.Measured) {
        if (measured.Find(file.Path)) continue;
        MeasuredNetwork network = OpenMeasured(file.Path, ReadRegularFile);
        if (!network.Error.empty())
            measuredFaults += (measuredFaults.empty() ? "" : "\n\n") + network.Error;
        measured.Put(std::move(network));
    }
}

std::vector<MeasuredSummary> DesignSession::MeasuredSummaries() const {
    return measured.Describe(Document.Measured, Document.Work.Design);
}

void DesignSession::TellMeasuredFaults() {
    const std::string faults = std::exchange(measuredFaults, {});
    if (faults.empty()) return;
    report(
        "Error",
        faults +
            "\n\nA file that cannot be used stays in the list of measured data, but is not shown.");
}

}  // namespace ladderwise
