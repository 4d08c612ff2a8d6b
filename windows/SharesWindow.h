// The window "Which Part Matters": the share of each part in the spread of the response, at one
// frequency of several.
#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "pipeline/PartShares.h"

class QComboBox;
class QLabel;
class QTableWidget;

namespace ladderwise {

/// Told the rows that the window shows whenever they change; none when it is hidden.
using SharesShown = std::function<void(const std::vector<ShareRow>&)>;

class SharesWindow : public QDialog {
    Q_OBJECT

public:
    SharesWindow(SharesShown shown, QWidget* parent);

    /// Shows tables; the frequency that was chosen stays, by its place in the list.
    void ShowTables(std::vector<ShareTable> newTables);

    /// Shows the window at its owner's lower right corner, but always on screen.
    void ShowBesideOwner();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void ShowChosen();
    void CopyTable();

    SharesShown shown;
    std::vector<ShareTable> tables;
    QComboBox* place;
    QLabel* spread;
    QTableWidget* table;
};

}  // namespace ladderwise
