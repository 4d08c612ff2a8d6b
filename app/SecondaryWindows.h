// The secondary windows of the main window: made in one place, read and shown together.
#pragma once

#include <array>

#include "controls/InputBinder.h"
#include "design/FilterDesign.h"
#include "windows/BoardWindow.h"
#include "windows/ChoicesWindow.h"
#include "windows/LimitsWindow.h"
#include "windows/MeasuredWindow.h"
#include "windows/NortonWindow.h"
#include "windows/SharesWindow.h"

class QWidget;

namespace ladderwise {

class DirectCoupledWindow;
class HelpWindow;
class MathErrWindow;
class OptionsWindow;
class PartDefinitionsWindow;

class SecondaryWindows {
public:
    /// Each window is a child of `owner`.
    SecondaryWindows(DesignInputs& inputs, const FilterDesign& design, const InputActions& actions,
                     const NortonActions& nortonActions, const MeasuredActions& measuredActions,
                     const LimitActions& limitActions, const SharesShown& sharesShown,
                     const ChoiceActions& choiceActions, const BoardActions& boardActions,
                     QWidget* owner);

    /// Takes the texts of all boxes into the inputs, and shows the inputs again.
    void StoreInputs();
    void ShowInputs();

    void ShowPartDefinitions();
    void ShowOptions();
    void ShowHelp();
    void ShowMathErrors();
    void ShowAbout();
    void ShowMeasuredData(const MeasuredFiles& files,
                          const std::vector<MeasuredSummary>& summaries);

    /// Which part matters; open, it is to be shown what has become of that.
    void ShowShares(const std::vector<ShareTable>& tables);
    bool ShowsShares() const;
    void RefreshShares(const std::vector<ShareTable>& tables);

    /// Which filter: the list, and what it is to be told after a change.
    void ShowChoices();
    void RefreshChoices();
    void FollowLimits(const LimitLines& limits);

    /// A measured board, and that the design is another one than it was read for.
    void ShowBoard();
    void RefreshBoard();

    /// The window of a band-pass that has one of its own.
    void ShowFor(PassType pass);
    /// Closes those of other pass types.
    void CloseOthers(PassType pass);

    /// True for a window with inputs of the design.
    bool HasInputs(const QObject* window) const;

    /// True for a window that takes files which are dropped on it.
    bool TakesFiles(const QObject* window) const;

    /// The window of the measured files is open, and to be shown what has become of them.
    bool ShowsMeasuredData() const;
    void RefreshMeasuredData(const MeasuredFiles& files,
                             const std::vector<MeasuredSummary>& summaries);

    /// The window of the limits, and what has become of them.
    void ShowLimits(const LimitReport& report);
    void RefreshLimits(const LimitReport& report);

    /// Takes over what stands in an open cell of any of them.
    void FinishEditing();

    /// The list of math errors, if it is open, as it is now.
    void RefreshMathErrors();
    void CloseAll();
    std::array<QWidget*, 11> All() const;

private:
    const FilterDesign& design;
    QWidget* owner;
    PartDefinitionsWindow* partDefinitions;
    HelpWindow* help;
    DirectCoupledWindow* directCoupled;
    NortonWindow* norton;
    MathErrWindow* mathErrors;
    MeasuredWindow* measured;
    LimitsWindow* limits;
    OptionsWindow* options;
    SharesWindow* shares;
    ChoicesWindow* choices;
    BoardWindow* board;
};

}  // namespace ladderwise
