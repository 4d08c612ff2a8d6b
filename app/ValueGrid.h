// The grid of part values below the schematic: shows and edits cells, marks those that were edited
// or cannot be read, and tells what is pointed at and stepped. It knows texts, not the design.
#pragma once

#include <QTableWidget>
#include <array>
#include <string>
#include <vector>

#include "pipeline/Keystrokes.h"
#include "schematic/ValueGridContent.h"

class QMenu;
class QTableView;

namespace ladderwise {

class ValueGrid : public QTableWidget {
    Q_OBJECT

public:
    explicit ValueGrid(QWidget* parent);

    /// Shows the values of a ladder; texts that were rejected stay where they are.
    void ShowColumns(const std::vector<GridColumn>& columns);

    /// A value typed into a cell.
    struct TypedValue {
        CellPosition At;
        double Value;
    };
    /// The values typed since ShowColumns. Texts that are none are rejected: they stay to be mended
    /// until ForgetRejected.
    std::vector<TypedValue> TakeTyped();
    void ForgetRejected() { rejected.clear(); }

    /// What the status line says about rejected texts of that ladder; empty: there are none.
    std::string RejectedText(const FilterDesign& design) const;

    /// The cell that keys act on; of the label column, the first element's.
    CellPosition SelectedCell();

    /// True if Enter in `target` means the grid as it stands. An open cell editor lets Enter
    /// through to the grid before it hands its text over: that text is simulated by itself.
    bool TakesEnter(const QObject* target) const;

    /// True while a cell's editor is open.
    bool IsEditorOpen() const { return state() == EditingState; }

    /// Closes an open editor, whose text is taken.
    void FinishEditing();

    /// Lights cells of a slot's column; slot 0: none.
    void Light(int slot, const std::array<bool, ValueGridRows>& rows);

    /// "% Change" as its menu says it.
    void SetStepText(const QString& percent) { stepText = percent; }

    /// Height of the rows that are shown, pixels.
    int RowsHeight() const;

    /// Keeps the row headers in view where the grid, `scroll` pixels to the left of its place,
    /// would take them along.
    void KeepHeaders(int scroll);

    /// Pixels of a scrolled grid that its row headers cover.
    int HeaderWidth() const;

signals:
    void Edited();                      ///< a cell's text was typed
    void Stepped(FormKey key);          ///< the wheel or the menu: a key on the selected cell
    void PointedAt(int slot, int row);  ///< slot 0: at no value
    void PartsTableAsked();
    void HoldAsked(int slot, int row, bool hold);
    void ToleranceAsked(int slot, int row, double fraction);  ///< 0: that of its kind

protected:
    void wheelEvent(QWheelEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void BuildHeaders();
    void SetRowHeights();
    void ShowRows(int rows);
    void ShowLabels(const std::vector<GridColumn>& columns);
    void MarkRejected(QTableWidgetItem* item, const GridCell& cell, CellPosition at);
    bool IsReadable(QTableWidgetItem* item, CellPosition at, std::vector<TypedValue>& typed) const;
    void OpenMenu(QPoint at);
    void AddTolerances(QMenu& menu, const QTableWidgetItem* cell);
    bool IsEditing() const;

    /// A text that is no value.
    struct RejectedCell {
        CellPosition At;
        QString Text;
    };
    std::vector<RejectedCell> rejected;
    QTableView* headers = nullptr;  ///< over the label column, which lies below them unscrolled
    QString stepText;               ///< percent
    bool showing = false;           ///< cells change because the program writes them
    int litSlot = 0;
    int shownRows = ValueGridRows;
};

}  // namespace ladderwise
