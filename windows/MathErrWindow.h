// The window "Math Err": the log of the math errors of this run of the program.
#pragma once

#include <QDialog>
#include <cstdint>

class QPlainTextEdit;

namespace ladderwise {

class MathErrWindow : public QDialog {
    Q_OBJECT

public:
    explicit MathErrWindow(QWidget* parent);

    /// Brings the window to the screen with the whole log.
    void ShowLog();

    /// Adds what the log has gained since, if the window is on the screen.
    void Refresh();

private:
    QPlainTextEdit* memo;
    std::uint64_t shownErrors = 0;  ///< errors of the run whose lines are in the memo
};

}  // namespace ladderwise
