// The main window: help, the About window and print screen.
#include <algorithm>

#include "app/MainWindow.h"
#include "design/ChoiceNames.h"
#include "windows/AboutWindow.h"
#include "windows/HelpWindow.h"
#include "windows/PrintScreen.h"

namespace ladderwise {

namespace {

constexpr int LoadWidth = 60;       ///< pixels that the load takes right of the last element
constexpr double PaperRatio = 3.0;  ///< points of paper for one of the screen, each way

}  // namespace

void MainWindow::BuildHelp() {
    const std::string folder = FindRunTimeFolder(AskSystem()) + "/Help Files";
    help = new HelpWindow(QString::fromStdString(folder), this);
}

void MainWindow::ShowHelp() {
    help->ShowPage(HelpPage::Start);
}

void MainWindow::ShowAbout() {
    AboutWindow(this).exec();
}

void MainWindow::PrintPage() {
    FinishDrawing();
    // Paper has no scroll bar: the page is as wide as the ladder is long.
    const QSize onScreen = client->size();
    const int whole = ValueGridLeft + ValueGridWidth(ShownElements(calculation.Design)) + LoadWidth;
    client->setMinimumWidth(whole);
    client->resize(std::max(whole, onScreen.width()), onScreen.height());
    // Paper is finer than the screen: the plot is drawn anew for it, and once more afterwards.
    SizePlot(PaperRatio);
    AskForRepeat(calculation);
    PlotPrepared();
    PrintScreen(this, *client, QString::fromStdString(DesignTitle(calculation.Design)),
                QString::fromStdString(currentFile));
    client->setMinimumWidth(0);
    client->resize(onScreen);
    ResizePlot();
}

}  // namespace ladderwise
