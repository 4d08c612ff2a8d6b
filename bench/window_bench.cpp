// Cost of what a user waits for: one whole calculation with redraw in the window, a worst case, and
// the way from nothing to the first picture.
#include <benchmark/benchmark.h>

#include <QCheckBox>
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

void WindowToFirstPicture(benchmark::State& state) {
    NeedApplication();
    for (auto _ : state)
        ShownWindow();
}
BENCHMARK(WindowToFirstPicture)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ladderwise
