// The window "Read the Board": from a measured file to every part's actual value, what is wrong,
// and what to turn.
#pragma once

#include <QDialog>
#include <QFileSystemWatcher>
#include <QTimer>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "measured/BoardReading.h"

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QTableWidget;

namespace ladderwise {

/// A measured file that can be read.
struct BoardFile {
    std::string Path;
    std::string Name;
};

/// What the window asks for; it changes nothing by itself.
struct BoardActions {
    std::function<std::vector<BoardFile>()> Files;  ///< those shown with the design
    /// The reading of a file, which is taken from the disk anew; what is wrong with it is told and
    /// nothing returned.
    std::function<std::optional<BoardReading>(const std::string& path, Adjustable turned,
                                              const std::function<void(double)>& progress)>
        Read;
    std::function<void(const BoardReading&)> PutIntoGrid;  ///< one step
    /// The board after its next part is turned, drawn beside the design; null: no more.
    std::function<void(const BoardReading*)> ShowNext;
    std::function<void()> Add{};  ///< asks for measured files
};

class BoardWindow : public QDialog {
    Q_OBJECT

public:
    BoardWindow(BoardActions actions, QWidget* parent);

    /// Reads the file that is chosen, and shows the window.
    void Open();

    /// The design is another one: what was read of it is no longer true.
    void NoteDesign();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* BuildChoices();
    QWidget* BuildButtons();
    void BuildTables();
    void ListFiles();
    void AddFile();
    void Read();
    void ShowReading();
    void FillParts();
    void AddResonators();
    void FillNext();
    void Forget(const QString& why);
    void CopyTable();

    BoardActions actions;
    std::vector<BoardFile> files;
    std::optional<BoardReading> reading;
    bool busy = false;
    QComboBox *file, *turned;
    QLabel* told;
    QProgressBar* progress;
    QTableWidget *parts, *next;
    QPushButton *putIntoGrid, *copy;
    QFileSystemWatcher watcher;
    QTimer settled;  ///< runs out when a file that was written has been left alone for a while
};

}  // namespace ladderwise
