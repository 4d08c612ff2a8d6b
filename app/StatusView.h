// The status line: what a builder must know of the design, notices, the progress of a worst case,
// the button that lists math errors, and the chief figures while the panel of results is folded.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <string>

#include "pipeline/Calculation.h"

class QLabel;
class QProgressBar;
class QStatusBar;
class QToolButton;

namespace ladderwise {

class ElidedLabel;

class StatusView : public QObject {
    Q_OBJECT

public:
    explicit StatusView(QStatusBar* bar);

    /// The notes of a calculation; `rejected` names texts of the value grid that are no values.
    void Show(const Calculation& calculation, const std::string& rejected);

    /// Figures at the right, where no notice takes their place; none: empty.
    void ShowFigures(const std::string& figures);

    /// Shows a notice in their place, for `duration` ms or until EndNotice.
    void ShowNotice(const QString& notice, int duration);
    void EndNotice();

    /// A run of a worst case has been drawn: 1 .. runs. True if the picture is to be shown now.
    bool ShowProgress(int run, int runs);

    /// How much of a choice of parts is done, 0 to 1; 1: there is none.
    void ShowChoosing(double share);

    /// Boards of a count that goes on; as many as are wanted: it does not.
    void ShowBoards(int built, int wanted);

    QWidget* MathErrorButton() const;

signals:
    void BoardsStopped();
    void MathErrorsAsked();

private:
    QStatusBar* bar;
    ElidedLabel* label;
    QLabel* figuresLabel;
    QProgressBar* progress;
    QProgressBar* choosing;
    QProgressBar* boards;
    QToolButton* stopBoards;
    QToolButton* mathErrorButton;  ///< when there is an error to list
    QElapsedTimer sinceRepaint;
};

}  // namespace ladderwise
