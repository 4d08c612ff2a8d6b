// Cost of what a user waits for: one whole calculation with redraw in the window, a worst case, and
// the way from nothing to the first picture.
#include <benchmark/benchmark.h>

#include <QAction>
#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>
#include <array>
#include <memory>

#include "app/MainWindow.h"
#include "bench/BenchApplication.h"

namespace ladderwise {
namespace {

std::unique_ptr<MainWindow> ShownWindow() {
    NeedApplication();
    auto window = std::make_unique<MainWindow>();
    window->resize(1280, 800);
    window->show();
    QApplication::processEvents();
    return window;
}

// The 3-pole start-up design: inputs read, ladder analysed, plot, strip and grid painted and shown.
void CalculateAndRedraw(benchmark::State& state) {
    const auto window = ShownWindow();
    for (auto _ : state) {
        window->CalcButtonClick();
        QApplication::processEvents();
    }
}
BENCHMARK(CalculateAndRedraw)->Unit(benchmark::kMillisecond);

// The same with ten poles, real parts and every trace, or besides with those of the reference.
void CalculateAndRedrawEverything(benchmark::State& state) {
    const auto window = ShownWindow();
    window->findChild<QLineEdit*>("NumPolesBox")->setText("10");
    window->findChild<QRadioButton*>("RealPartsButton")->click();
    if (state.range(0)) window->findChild<QPushButton*>("SetRefButton")->click();
    window->findChild<QLineEdit*>("NumPolesBox")->setText("9");
    for (QCheckBox* const box : window->findChildren<QCheckBox*>())
        if (box->objectName().startsWith("Plot") && box->isEnabled() && !box->isChecked())
            box->click();
    for (auto _ : state) {
        window->CalcButtonClick();
        QApplication::processEvents();
    }
}
BENCHMARK(CalculateAndRedrawEverything)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// One click on an arrow of the Norton window, 5 poles: search, ladder, response and both plots.
void NortonArrowWithSearch(benchmark::State& state) {
    const auto window = ShownWindow();
    window->findChild<QLineEdit*>("NumPolesBox")->setText("5");
    window->findChild<QAction*>("NortonMenu")->trigger();
    QWidget* const norton = window->findChild<QWidget*>("TNortonForm");
    const std::array<QAbstractButton*, 2> arrows = {norton->findChild<QAbstractButton*>("A3Up"),
                                                    norton->findChild<QAbstractButton*>("A3Down")};
    std::size_t turn = 0;
    for (auto _ : state) {
        arrows[turn++ % 2]->click();
        QApplication::processEvents();
    }
}
BENCHMARK(NortonArrowWithSearch)->Unit(benchmark::kMillisecond);

void WorstCaseOf1000Runs(benchmark::State& state) {
    const auto window = ShownWindow();
    window->findChild<QLineEdit*>("WorstCaseSimsBox")->setText("1000");
    window->findChild<QCheckBox*>("WorstCaseBox")->click();
    for (auto _ : state) {
        window->CalcButtonClick();
        QApplication::processEvents();
    }
}
BENCHMARK(WorstCaseOf1000Runs)->Unit(benchmark::kMillisecond);

// A marker set over those runs, and cleared: annotations alone are drawn anew.
void MarkerInAWorstCaseOf1000Runs(benchmark::State& state) {
    const auto window = ShownWindow();
    window->findChild<QLineEdit*>("WorstCaseSimsBox")->setText("1000");
    window->findChild<QCheckBox*>("WorstCaseBox")->click();
    window->FinishDrawing();
    const std::array<QAction*, 2> commands = {window->findChild<QAction*>("FreqMarkerMenu"),
                                              window->findChild<QAction*>("ClearMarkersMenu")};
    std::size_t turn = 0;
    for (auto _ : state) {
        commands[turn++ % 2]->trigger();
        QApplication::processEvents();
    }
}
BENCHMARK(MarkerInAWorstCaseOf1000Runs)->Unit(benchmark::kMillisecond);

void WindowToFirstPicture(benchmark::State& state) {
    NeedApplication();
    for (auto _ : state)
        ShownWindow();
}
BENCHMARK(WindowToFirstPicture)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ladderwise
