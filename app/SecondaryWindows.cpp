// The secondary windows.
#include "app/SecondaryWindows.h"

#include "controls/WindowPlacement.h"
#include "files/Directories.h"
#include "windows/AboutWindow.h"
#include "windows/DirectCoupledWindow.h"
#include "windows/HelpWindow.h"
#include "windows/MathErrWindow.h"
#include "windows/OptionsWindow.h"
#include "windows/PartDefinitionsWindow.h"

namespace ladderwise {

SecondaryWindows::SecondaryWindows(DesignInputs& inputs, const FilterDesign& design,
                                   const InputActions& actions, const NortonActions& nortonActions,
                                   const MeasuredActions& measuredActions,
                                   const LimitActions& limitActions, const SharesShown& sharesShown,
                                   const ChoiceActions& choiceActions,
                                   const BoardActions& boardActions, QWidget* owner)
    : design(design), owner(owner) {
    const std::string helpFolder = FindRunTimeFolder(AskSystem()) + "/Help Files";
    partDefinitions = new PartDefinitionsWindow(inputs, actions, owner);
    help = new HelpWindow(QString::fromStdString(helpFolder), owner);
    directCoupled = new DirectCoupledWindow(inputs, design, actions, owner);
    norton = new NortonWindow(inputs, design, nortonActions, owner);
    mathErrors = new MathErrWindow(owner);
    measured = new MeasuredWindow(measuredActions, owner);
    limits = new LimitsWindow(limitActions, owner);
    options = new OptionsWindow(inputs, actions, owner);
    shares = new SharesWindow(sharesShown, owner);
    choices = new ChoicesWindow(choiceActions, owner);
    board = new BoardWindow(boardActions, owner);
}

void SecondaryWindows::StoreInputs() {
    partDefinitions->Binder().StoreInputs();
    directCoupled->StoreInputs();
    norton->StoreInputs();
    options->Binder().StoreInputs();
}

void SecondaryWindows::ShowInputs() {
    partDefinitions->Binder().ShowInputs(design);
    directCoupled->ShowInputs();
    norton->ShowInputs();
    options->Binder().ShowInputs(design);
}

void SecondaryWindows::ShowPartDefinitions() {
    partDefinitions->Binder().ShowInputs(design);
    partDefinitions->ShowBesideOwner();
}

void SecondaryWindows::ShowOptions() {
    options->Binder().ShowInputs(design);
    options->show();
    options->raise();
    options->activateWindow();
}

void SecondaryWindows::ShowHelp() {
    help->ShowPage(HelpPage::Start);
}

void SecondaryWindows::ShowMathErrors() {
    mathErrors->ShowLog();
}

void SecondaryWindows::ShowAbout() {
    AboutWindow(owner).exec();
}

void SecondaryWindows::ShowMeasuredData(const MeasuredFiles& files,
                                        const std::vector<MeasuredSummary>& summaries) {
    measured->ShowFiles(files, summaries);
    measured->ShowBelowPlot();
}

bool SecondaryWindows::ShowsMeasuredData() const {
    return measured->isVisible();
}

void SecondaryWindows::RefreshMeasuredData(const MeasuredFiles& files,
                                           const std::vector<MeasuredSummary>& summaries) {
    measured->ShowFiles(files, summaries);
}

void SecondaryWindows::ShowShares(const std::vector<ShareTable>& tables) {
    shares->ShowBesideOwner();
    shares->ShowTables(tables);
}

bool SecondaryWindows::ShowsShares() const {
    return shares->isVisible();
}

void SecondaryWindows::RefreshShares(const std::vector<ShareTable>& tables) {
    shares->ShowTables(tables);
}

void SecondaryWindows::ShowChoices() {
    choices->Open();
}

void SecondaryWindows::ShowBoard() {
    board->Open();
}

void SecondaryWindows::RefreshBoard() {
    board->NoteDesign();
}

void SecondaryWindows::RefreshChoices() {
    choices->NoteDesign();
}

void SecondaryWindows::FollowLimits(const LimitLines& limits) {
    choices->FollowLimits(limits);
}

void SecondaryWindows::ShowLimits(const LimitReport& report) {
    limits->ShowLimits(report);
    limits->ShowBesidePlot();
}

void SecondaryWindows::RefreshLimits(const LimitReport& report) {
    if (limits->isVisible()) limits->ShowLimits(report);
}

void SecondaryWindows::FinishEditing() {
    limits->FinishEditing();
}

void SecondaryWindows::ShowFor(PassType pass) {
    if (pass == PassType::DirectCoupled) ShowCentredOnOwner(directCoupled);
    if (pass == PassType::Norton) norton->ShowBesideOwner();
}

/// The keyboard goes back to the owner, where no window manager would see to it too.
void SecondaryWindows::CloseOthers(PassType pass) {
    const auto closeUnless = [&](bool stays, QWidget* window) {
        const bool active = window->isActiveWindow();
        if (stays) return;
        window->close();
        if (active) owner->activateWindow();
    };
    closeUnless(pass == PassType::DirectCoupled, directCoupled);
    closeUnless(pass == PassType::Norton, norton);
}

bool SecondaryWindows::HasInputs(const QObject* window) const {
    for (const QObject* const one :
         std::initializer_list<const QObject*>{partDefinitions, directCoupled, norton, options})
        if (one == window) return true;
    return false;
}

bool SecondaryWindows::TakesFiles(const QObject* window) const {
    return HasInputs(window) || window == measured;
}

void SecondaryWindows::RefreshMathErrors() {
    mathErrors->Refresh();
}

void SecondaryWindows::CloseAll() {
    for (QWidget* const window : All())
        window->close();
}

std::array<QWidget*, 11> SecondaryWindows::All() const {
    return {partDefinitions, help,    directCoupled, mathErrors, measured, limits,
            norton,          options, shares,        choices,    board};
}

}  // namespace ladderwise
