// The window "Which Filter": all filters that keep the limits, best first, each to be compared and
// taken.
#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "choosing/FilterChoices.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTableWidget;

namespace ladderwise {

/// What the window asks for; it changes nothing by itself.
struct ChoiceActions {
    std::function<ChoosingRequest()> Request;          ///< for the design in hand and its limits
    std::function<void(const DesignInputs&)> Take;     ///< as the design, one step
    std::function<void(const DesignInputs*)> Compare;  ///< beside the design; null: no more
};

class ChoicesWindow : public QDialog {
    Q_OBJECT

public:
    ChoicesWindow(ChoiceActions actions, QWidget* parent);

    /// Searches, and shows the window at its owner's lower left corner, but always on screen.
    void Open();

    /// Searches again if the limits have changed; says so if the parts or the source have.
    void NoteDesign();

    /// What becomes of the list while a limit is dragged; the release asks for the whole search.
    void FollowLimits(const LimitLines& limits);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* BuildNeed();
    QWidget* BuildCosts();
    QWidget* BuildButtons();
    void BuildTable();
    QLineEdit* NewCostEdit(QWidget* group, const char* name, const char* tip, double value);
    /// Most of the plot stays in view above it.
    void TakeStartSize();
    void Search();
    void ReadCosts();
    void ShowList();
    void FillChoiceRow(int row, std::size_t choice);
    void ShowCounts();
    const FilterChoice* Selected() const;
    void TakeSelected();
    void CompareSelected(bool on);
    void ShowCompared();
    /// While something is compared only a strip with the row stays, lest the window hides the plot.
    void StepAside();
    void StepBack();
    void CopyTable();

    ChoiceActions actions;
    ChoosingRequest request;
    ChoosingMemory memory;
    FilterList list, lastWhole;  ///< as shown; of the last whole search
    bool misses = false;         ///< the table shows the nearest misses
    bool outdated = false;       ///< the design has other parts than it had at the search
    bool comparing = false;
    QRect whole{};                   ///< the window's geometry, while it is a strip
    bool following = false;          ///< the list is of limits that are being dragged
    QWidget *above, *costs, *below;  ///< what is around the table
    QLabel* need;
    QComboBox* counts;
    QCheckBox* folded;
    QLineEdit *inductorCost, *impracticalCost, *lossCost;
    QLineEdit *leastC, *mostC, *leastL, *mostL;
    QTableWidget* table;
    QLabel* told;
    QProgressBar* progress;
    QPushButton* take;
};

}  // namespace ladderwise
