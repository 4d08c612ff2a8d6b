// What is offered to the session's document by other windows, shown beside the design and taken
// into it: filters of the list, and the board as it was measured.
#include <memory>
#include <utility>

#include "app/DesignSession.h"
#include "app/SecondaryWindows.h"
#include "design/ChoiceNames.h"
#include "design/LadderNumbers.h"
#include "measured/MeasuredDisk.h"

namespace ladderwise {

namespace {

/// As if the analyser's cables had been the other way round.
void SwapPorts(NetworkData& network) {
    std::swap(network.Reference.Source, network.Reference.Load);
    for (SParameters& point : network.S) {
        std::swap(point.S11, point.S22);
        std::swap(point.S21, point.S12);
    }
}

}  // namespace

ChoiceActions DesignSession::ActionsOfChoices() {
    const auto request = [this] {
        ChoosingRequest made;
        made.Inputs = Document.Work.Inputs;
        made.Present = Document.Work.Design;
        made.Limits = Document.Limits;
        return made;
    };
    return {request, [this](const DesignInputs& inputs) { TakeInputs(inputs); },
            [this](const DesignInputs* inputs) { CompareWith(inputs); }};
}

/// A design of the list: one step, which undo takes back.
void DesignSession::TakeInputs(const DesignInputs& inputs) {
    StoreInputs();
    const PassType before = Document.Work.Design.PassType;
    Document.Work.Inputs = inputs;
    Document.Work.Inputs.Held.clear();  // the row was listed without them
    ShowLoaded(before);
}

/// What the list offers beside the design, in the place of the reference; null: no more. Nothing of
/// the document changes.
void DesignSession::CompareWith(const DesignInputs* inputs) {
    if (!inputs) return ShowBeside(nullptr, {});
    auto other = std::make_unique<Calculation>();
    other->Inputs = *inputs;
    other->FixedSeed = 0;
    ladderwise::Calculate(*other, nullptr);
    const std::string name = "Compared: " + DesignTitle(other->Design);
    ShowBeside(other, name);
}

void DesignSession::ShowBeside(const std::unique_ptr<Calculation>& other, const std::string& name) {
    if (!other && !compared) return;
    compared = other ? std::make_unique<ReferenceDesign>(StoreReference(*other, report)) : nullptr;
    comparedName = name;
    Redraw();
}

/// What is shown beside the design, in plot, results and limits alike: what is compared for the
/// moment, else the reference; null: nothing.
const ReferenceDesign* DesignSession::Beside() const {
    return compared ? compared.get() : Document.ReferenceShown() ? Document.Reference() : nullptr;
}

BoardActions DesignSession::ActionsOfBoard() {
    const auto list = [this] {
        std::vector<BoardFile> files;
        const std::vector<std::string> names = ShortNamesOf(Document.Measured);
        for (std::size_t i = 0; i < names.size(); ++i)
            files.push_back({Document.Measured[i].Path, names[i]});
        return files;
    };
    return {list,
            [this](const std::string& path, Adjustable turned,
                   const std::function<void(double)>& progress) {
                return ReadBoardFile(path, turned, progress);
            },
            [this](const BoardReading& reading) {
                FinishChoosing();
                Document.Work.Design.Elements = MeasuredLadder(reading, Document.Work.Design);
                AnalyseAndDraw();
                boardOf = LadderNumbers(Document.Work.Design);
            },
            [this](const BoardReading* reading) { ShowNextStep(reading); }};
}

/// The file as it is on the disk now: an analyser writes it anew while a board is being tuned.
std::optional<BoardReading> DesignSession::ReadBoardFile(
    const std::string& path, Adjustable turned, const std::function<void(double)>& progress) {
    ReadEntries();
    MeasuredNetwork network = OpenMeasured(path, ReadRegularFile);
    if (!network.Error.empty()) {
        report("Error", network.Error);
        return {};
    }
    NetworkData data = network.Network;
    for (const MeasuredFile& file : Document.Measured)
        if (file.Path == path && file.PortsSwapped) SwapPorts(data);
    measured.Put(std::move(network));
    BoardOptions options;
    options.Limits = Document.Limits;
    options.Turned = turned;
    options.Progress = progress;
    std::optional<BoardReading> reading = ReadBoard(data, Document.Work.Design, options);
    boardOf = LadderNumbers(Document.Work.Design);
    Redraw();  // the trace of the file may be another one
    return reading;
}

/// The board after its next part is turned; null: no more.
void DesignSession::ShowNextStep(const BoardReading* reading) {
    if (!reading || reading->Next.empty()) return ShowBeside(nullptr, {});
    const BoardTurn& turn = reading->Next.front();
    auto after = std::make_unique<Calculation>(Document.Work);
    FilterDesign& design = after->Design;
    design.Elements = MeasuredLadder(*reading, Document.Work.Design);
    design.Elements[static_cast<std::size_t>(turn.Place.Slot)].Value(turn.Place.Row) *=
        1.0 + turn.Change;
    if (reading->Q) design.PartModel.IndQ = *reading->Q;
    AnalyseAsItStands(*after, nullptr);
    ShowBeside(after, "After " + turn.Designator);
}

void DesignSession::NoteBoardDesign() {
    if (!SameLadderNumbers(boardOf, LadderNumbers(Document.Work.Design)))
        views.Windows->RefreshBoard();
}

}  // namespace ladderwise
