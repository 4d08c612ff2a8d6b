// The window "Limits": what the design must do as a table that is typed, pasted or read from a
// file, what becomes of each limit, and ready-made ones.
#pragma once

#include <QDialog>
#include <functional>
#include <set>

#include "limits/LimitMargin.h"
#include "pipeline/DesignPromise.h"
#include "pipeline/LimitEntries.h"

class QLabel;
class QPushButton;
class QTableWidget;
class QTableWidgetItem;

namespace ladderwise {

/// What the window asks for; it changes nothing by itself.
struct LimitActions {
    std::function<void(const LimitLines&)> Change;  ///< the limits as they are to be
    std::function<void()> Open;                     ///< those of a file
    std::function<void()> Save;                     ///< into a file
    std::function<DesignPromise()> Promise;         ///< of the design in hand
    std::function<void()> Choose{};                 ///< lists the filters that keep them
};

class LimitPresetPanel;

class LimitsWindow : public QDialog {
    Q_OBJECT

public:
    LimitsWindow(LimitActions actions, QWidget* parent);

    /// Shows limits and what became of them. What was typed and is no limit yet stays.
    void ShowLimits(const LimitReport& report);

    /// Takes over what stands in a cell that is still open.
    void FinishEditing();

    /// Shows the window, for the first time at its owner's lower right corner, where most of the
    /// plot stays in view, but always on screen; later where it was left.
    void ShowBesidePlot();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildTable();
    QWidget* BuildButtons();
    QWidget* BuildFileButtons();
    void Fill();
    void FillRow(int row);
    void TakeCell(QTableWidgetItem* item);
    void TellChange(bool changed);
    void Say(const QString& text);
    void AddRow();
    void RemoveRows();
    void Copy();
    void Paste();
    void TakePreset(const LimitLines& lines, bool instead);
    std::set<std::size_t> SelectedRows() const;
    QString ResultOf(std::size_t row) const;

    LimitActions actions;
    LimitEntries entries;
    LimitReport report;
    QTableWidget* table;
    QLabel* message;
    LimitPresetPanel* presets = nullptr;
    QPushButton* remove = nullptr;
    bool placed = false;
};

}  // namespace ladderwise
