// The client area of the main window: input panel, plot, value grid and what scrolls them, each at
// its place. Panel, plot and grid do not know each other; here they are put together.
#pragma once

#include <QWidget>
#include <functional>

#include "controls/InputBinder.h"
#include "display/Plot.h"
#include "pipeline/Calculation.h"
#include "pipeline/PartShares.h"
#include "schematic/ValueGridContent.h"

class QScrollArea;
class QScrollBar;

namespace ladderwise {

class EllipticPanel;
class MainPanel;
class PlotArea;
class ResultsPanel;
class ValueGrid;

class ClientArea : public QWidget {
    Q_OBJECT

public:
    /// `design` is the one that the calculation writes, `content` what the plot shows of it;
    /// `annotate` adds to the values what else is known of them.
    ClientArea(InputBinder& binder, const FilterDesign& design,
               std::function<PlotContent()> content,
               std::function<void(std::vector<GridColumn>&)> annotate, QWidget* parent);

    MainPanel* Panel() const { return panel; }
    PlotArea* Area() const { return plotArea; }
    ValueGrid* Grid() const { return valueGrid; }
    ResultsPanel* Results() const { return results; }

    /// Shows the forms of the traps, or hides their panel.
    void ShowTraps(bool visible);

    /// Draws a run; before run 0 everything takes its place.
    void PlotRun(const AnalysedRun& run, bool groupDelay, bool autoScale);

    /// The values of the design and their marks.
    void ShowValues();

    /// The picture as large as the area, at the screen's density.
    void SizePicture();

    /// The order of the Tab key from the panel on; `last` follows.
    void SetTabOrder(QWidget* last);

    /// Bars at the symbols of the parts that rows of a table tell of.
    void ShowShares(const std::vector<ShareRow>& rows);

    /// Lights a part in strip and grid; slot 0: none.
    void LightPart(int slot, int row = -1);

signals:
    void Resized();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void BuildScrolling(InputBinder& binder);
    void LayOut();
    void ScrollStrip(int position);
    void RevealColumn(int column);
    void PlaceGroupDelayControls(bool groupDelay, bool autoScale);
    PlotPlacement Placement() const;
    int Scroll() const;

    const FilterDesign& design;
    std::function<void(std::vector<GridColumn>&)> annotate;
    MainPanel* panel;
    QScrollArea* panelView;  ///< scrolls the panel where the window is too narrow for it
    PlotArea* plotArea;
    ValueGrid* valueGrid;
    ResultsPanel* results;
    QScrollBar* stripBar;
    EllipticPanel* ellipticPanel;
    NumberEdit* scaleBox;
    int litSlot = 0;
    int litRow = -1;
};

}  // namespace ladderwise
