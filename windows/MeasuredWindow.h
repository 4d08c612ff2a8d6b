// The window "Measured Data": the measured files shown with a design, how each was connected and is
// drawn, and what was found in it.
#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "measured/MeasuredSet.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTableWidget;

namespace ladderwise {

/// What the window asks for; it changes nothing by itself.
struct MeasuredActions {
    std::function<void()> Add;                         ///< asks for files
    std::function<void(const MeasuredFiles&)> Change;  ///< the list as it is to be
    std::function<void()> ReadAgain;                   ///< all files, as they are now
};

class MeasuredWindow : public QDialog {
    Q_OBJECT

public:
    MeasuredWindow(MeasuredActions actions, QWidget* parent);

    /// Shows a list, with a summary of each file. What stands in a box and was not read yet stays.
    void ShowFiles(const MeasuredFiles& newFiles, const std::vector<MeasuredSummary>& newSummaries);

    /// Shows the window at its owner's lower left corner, where the plot stays in view, but always
    /// on screen.
    void ShowBelowPlot();

private:
    QWidget* BuildDetails();
    QWidget* BuildButtons();
    QLineEdit* NewCableEdit(const char* name, const char* tip);
    void ShowDetails();
    void ShowRow(int row);
    int Selected() const;
    void TakeChecks();
    void TakeCable(QLineEdit* edit, double MeasuredFile::*delay);
    void ChangeSelected(const std::function<void(MeasuredFile&)>& change);
    void Remove();

    MeasuredActions actions;
    MeasuredFiles files;
    std::vector<MeasuredSummary> summaries;
    QTableWidget* table;
    QWidget* details;
    QComboBox* colour;
    QCheckBox* swapped;
    QLineEdit* sourceCable;
    QLineEdit* loadCable;
    QPlainTextEdit* remarks;
    QPushButton* remove;
    QPushButton* readAgain;
};

}  // namespace ladderwise
