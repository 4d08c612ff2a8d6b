// Texts and progress in the status bar.
#include "app/StatusView.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>
#include <QToolButton>
#include <algorithm>

#include "controls/ElidedLabel.h"
#include "design/ChoiceNames.h"
#include "pipeline/Notes.h"

namespace ladderwise {

namespace {

constexpr int ProgressWidth = 200;   ///< pixels
constexpr int FigureMargin = 6;      ///< pixels right of the figures
constexpr int RepaintInterval = 40;  ///< ms between two looks at a growing overlay

QProgressBar* NewProgress(QWidget* parent, const char* name, const char* format) {
    auto* const made = new QProgressBar(parent);
    made->setObjectName(QString::fromLatin1(name));
    made->setFixedWidth(ProgressWidth);
    made->setFormat(QString::fromLatin1(format));
    made->hide();
    return made;
}

}  // namespace

StatusView::StatusView(QStatusBar* bar) : QObject(bar), bar(bar) {
    label = new ElidedLabel(bar);
    figuresLabel = new QLabel(bar);
    figuresLabel->setObjectName("FiguresLabel");
    figuresLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    figuresLabel->setContentsMargins(0, 0, FigureMargin, 0);
    figuresLabel->hide();
    progress = NewProgress(bar, "WorstCaseProgress", "Worst case %v of %m");
    choosing = NewProgress(bar, "ChoosingProgress", "Choosing parts: %p %");
    boards = NewProgress(bar, "BoardsProgress", "Boards: %v of %m");
    stopBoards = new QToolButton(bar);
    stopBoards->setObjectName("StopBoardsButton");
    stopBoards->setText("Stop");
    stopBoards->setFocusPolicy(Qt::TabFocus);
    stopBoards->setToolTip("Builds no more boards; those that are there count");
    stopBoards->hide();
    connect(stopBoards, &QToolButton::clicked, this, &StatusView::BoardsStopped);
    bar->addWidget(label, 1);
    mathErrorButton = new QToolButton(bar);
    mathErrorButton->setObjectName("MathErrorButton");
    mathErrorButton->setAutoRaise(true);
    mathErrorButton->setFocusPolicy(Qt::TabFocus);
    mathErrorButton->setToolTip("Lists the math errors of this run of the program");
    mathErrorButton->hide();
    connect(mathErrorButton, &QToolButton::clicked, this, &StatusView::MathErrorsAsked);
    bar->addPermanentWidget(figuresLabel);
    bar->addPermanentWidget(boards);
    bar->addPermanentWidget(stopBoards);
    bar->addPermanentWidget(choosing);
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

void StatusView::Show(const Calculation& calculation, const std::string& rejected) {
    StatusLine status = DescribeStatus(calculation);
    const FilterDesign& design = calculation.Design;
    if (status.Warnings.empty() && status.Hints.empty() && SlotsInUse(design) < 1)
        status.Hints = DesignTitle(design) + ", no elements";
    label->SetText(QString::fromStdString(rejected + status.Warnings),
                   QString::fromStdString(status.Hints));
    const auto errors = MathErrors().ErrorCount();
    mathErrorButton->setText("Math errors: " + QString::number(errors));
    mathErrorButton->setVisible(errors > 0);
}

void StatusView::ShowFigures(const std::string& figures) {
    figuresLabel->setText(QString::fromStdString(figures));
    figuresLabel->setVisible(!figures.empty());
}

void StatusView::ShowNotice(const QString& notice, int duration) {
    label->ShowNotice(notice, duration);
}

void StatusView::EndNotice() {
    label->EndNotice();
}

void StatusView::ShowChoosing(double share) {
    choosing->setValue(static_cast<int>(100.0 * share));
    choosing->setVisible(share < 1.0);
}

void StatusView::ShowBoards(int built, int wanted) {
    boards->setMaximum(wanted);
    boards->setValue(built);
    boards->setVisible(built < wanted);
    stopBoards->setVisible(built < wanted);
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
