// The answers beside the ladder: the figures of the design, those of the reference beside them, and
// the markers by number, as a table whose text can be copied. Where there is no room for it, it
// folds behind a tab. It knows texts, not the design.
#pragma once

#include <QWidget>
#include <vector>

#include "pipeline/ReferenceDesign.h"

class QAbstractButton;
class QTableWidget;

namespace ladderwise {

class ResultsPanel : public QWidget {
    Q_OBJECT

public:
    explicit ResultsPanel(QWidget* parent);

    static constexpr int LeastWidth = 300;  ///< pixels; with less it folds

    /// The rows, in one or more blocks side by side as the room allows; those with text in
    /// OfReference ask for a third column.
    void ShowRows(const std::vector<ComparedResult>& newRows);

    /// Takes its place: the whole of `room`, or, folded, the tab at its right edge and, while that
    /// is open, LeastWidth pixels to its left.
    void PlaceIn(const QRect& newRoom, bool isFolded);

    /// Pixels of the tab.
    int TabWidth() const;

    /// Pixels at the right edge that the tab covers.
    int Covers() const { return folded ? TabWidth() : 0; }

    /// True if the table is seen.
    bool IsOpen() const { return !folded || open; }

    /// The rows with a selected cell, or without any all of them: tabs between the cells, a line
    /// each.
    QString SelectedText() const;

signals:
    void Unfolded(bool shown);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Form {
        int Blocks = 1;
        int Rows = 0;
        std::vector<int> Widths;  ///< of the columns of a block
    };
    Form FormFor(QSize size) const;
    void Fill();
    void Place();
    void Copy() const;
    QRect TableRect() const;

    QTableWidget* table;
    QAbstractButton* tab;
    std::vector<ComparedResult> rows;
    QRect room;
    bool hasReference = false;
    bool folded = false;
    bool open = false;
};

}  // namespace ladderwise
