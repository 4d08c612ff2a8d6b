// Texts and progress in the status bar.
#include "app/StatusView.h"

#include <QApplication>
#include <QProgressBar>
#include <QStatusBar>
#include <QToolButton>
#include <algorithm>

#include "controls/ElidedLabel.h"
#include "design/ChoiceNames.h"
#include "pipeline/Notes.h"
#include "pipeline/ResultsText.h"

namespace ladderwise {

namespace {

constexpr int ProgressWidth = 200;   ///< pixels
constexpr int RepaintInterval = 40;  ///< ms between two looks at a growing overlay

}  // namespace

StatusView::StatusView(QStatusBar* bar) : QObject(bar), bar(bar) {
    label = new ElidedLabel(bar);
    progress = new QProgressBar(bar);
    progress->setObjectName("WorstCaseProgress");
    progress->setFixedWidth(ProgressWidth);
    progress->setFormat("Worst case %v of %m");
    progress->hide();
    bar->addWidget(label, 1);
    mathErrorButton = new QToolButton(bar);
    mathErrorButton->setObjectName("MathErrorButton");
    mathErrorButton->setAutoRaise(true);
    mathErrorButton->setFocusPolicy(Qt::TabFocus);
    mathErrorButton->setToolTip("Lists the math errors of this run of the program");
    mathErrorButton->hide();
    connect(mathErrorButton, &QToolButton::clicked, this, &StatusView::MathErrorsAsked);
    bar->addPermanentWidget(progress);
    bar->addPermanentWidget(mathErrorButton);
    bar->setSizeGripEnabled(false);
    // What comes and goes in it must not move the plot.
    bar->setFixedHeight(
        std::max({bar->sizeHint().height(), label->sizeHint().height(),
                  progress->sizeHint().height(), mathErrorButton->sizeHint().height()}));
}

QWidget* StatusView::MathErrorButton() const {
    return mathErrorButton;
}

void StatusView::Show(const Calculation& calculation, const ReferenceDesign* reference,
                      const std::string& rejected) {
    StatusLine status = DescribeStatus(calculation);
    if (!rejected.empty()) {
        status.Text = rejected + status.Text;
        status.Warning = true;
    }
    const FilterDesign& design = calculation.Design;
    const ResponseResults& results = calculation.Results;
    const std::string line = ResultsLine(design, results);
    if (status.Text.empty() && line.empty()) status.Text = DesignTitle(design) + ", no elements";
    std::string list = status.Text;
    for (const auto& [name, value] : reference ? BesideReference(design, results, *reference)
                                               : DescribeResults(design, results))
        list += (list.empty() ? "" : "\n") + name + ": " + value;
    if (!status.Text.empty() && !line.empty()) status.Text += "  ";
    label->SetText(QString::fromStdString(status.Text + line), status.Warning,
                   QString::fromStdString(list));
    const auto errors = MathErrors().ErrorCount();
    mathErrorButton->setText("Math errors: " + QString::number(errors));
    mathErrorButton->setVisible(errors > 0);
}

void StatusView::ShowNotice(const QString& notice, int duration) {
    label->ShowNotice(notice, duration);
}

void StatusView::EndNotice() {
    label->EndNotice();
}

bool StatusView::ShowProgress(int run, int runs) {
    if (run == 1) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        progress->setRange(0, runs);
        sinceRepaint.start();
    }
    if (run == runs) {
        progress->hide();
        QApplication::restoreOverrideCursor();
        return false;
    }
    if (sinceRepaint.elapsed() < RepaintInterval) return false;
    progress->setValue(run);
    progress->show();
    bar->repaint();
    sinceRepaint.restart();
    return true;
}

}  // namespace ladderwise
