// The status line: what a builder must know of the design, notices, the progress of a worst case,
// and the button that lists math errors.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <string>

#include "pipeline/ReferenceDesign.h"

class QProgressBar;
class QStatusBar;
class QToolButton;

namespace ladderwise {

class ElidedLabel;

class StatusView : public QObject {
    Q_OBJECT

public:
    explicit StatusView(QStatusBar* bar);

    /// Notes and figures of a calculation, with those of the reference shown, if any; `rejected`
    /// names texts of the value grid that are no values.
    void Show(const Calculation& calculation, const ReferenceDesign* reference,
              const std::string& rejected);

    /// Shows a notice in their place, for `duration` ms or until EndNotice.
    void ShowNotice(const QString& notice, int duration);
    void EndNotice();

    /// A run of a worst case has been drawn: 1 .. runs. True if the picture is to be shown now.
    bool ShowProgress(int run, int runs);

    QWidget* MathErrorButton() const;

signals:
    void MathErrorsAsked();

private:
    QStatusBar* bar;
    ElidedLabel* label;
    QProgressBar* progress;
    QToolButton* mathErrorButton;  ///< when there is an error to list
    QElapsedTimer sinceRepaint;
};

}  // namespace ladderwise
