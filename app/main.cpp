// The window program.
#include <QApplication>
#include <QFontMetrics>
#include <QIcon>
#include <QLocale>
#include <QMessageBox>
#include <QPalette>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string_view>

#include "app/MainWindow.h"
#include "files/Directories.h"
#include "files/PlatformFolders.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/SavedDesigns.h"
#include "resources/Resources.h"

namespace {

/// Exit codes of a program that ends by itself. The toolkit ends it with 1 when the display goes.
constexpr int ExitNoFolders = 4;
constexpr int ExitNoMemory = 2;
constexpr int ExitFaultyTables = 70;  ///< an error of the program itself
constexpr int ExitNoWindow = 3;       ///< no window was ever shown

QtMessageHandler toolkitHandler = nullptr;

bool shown = false;    ///< the window has been there
bool started = false;  ///< with its first calculation

/// The toolkit aborts where it finds no display; a program that was never there need not crash.
void EndOnFatalMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type != QtFatalMsg || shown) return toolkitHandler(type, context, text);
    std::fprintf(stderr, "ladderwise: %s\n", qPrintable(text));
    std::_Exit(ExitNoWindow);
}

/// Some dark themes leave the hints in empty boxes black.
void ReadablePlaceholders() {
    QPalette colours = QApplication::palette();
    QColor hint = colours.color(QPalette::Text);
    hint.setAlphaF(0.5F);
    colours.setColor(QPalette::PlaceholderText, hint);
    QApplication::setPalette(colours);
}

void ShowError(const std::string& caption, const std::string& text) {
    QMessageBox(QMessageBox::NoIcon, QString::fromStdString(caption), QString::fromStdString(text))
        .exec();
}

constexpr const char* UsageText =
    "usage: ladderwise [DESIGN]\n"
    "  DESIGN      a design file (*.tk_ldfilt) to open\n"
    "  --help      this text\n"
    "  --version   the version\n"
    "Designs without a window: ladderwise-cli --help\n";

/// Answers what needs no window, before any display is asked for.
bool AnswerOnTerminal(int argc, char** argv) {
    const std::string_view word = argc > 1 ? argv[1] : "";
    const bool help = word == "--help" || word == "-h";
    if (!help && word != "--version") return false;
    ladderwise::UseCallersTerminal();
    std::fputs(help ? UsageText : "ladderwise " LADDERWISE_VERSION "\n", stdout);
    return true;
}

/// True if every input and choice can be saved. Asked in programs built for debugging, where it
/// says what a new row of a table still lacks; others have passed the tests, which ask too.
bool EveryInputIsSaved() {
#ifndef NDEBUG
    const std::string fault =
        ladderwise::RecordFault(ladderwise::InputRows(), ladderwise::ChoiceTables());
    if (!fault.empty()) std::fprintf(stderr, "ladderwise: %s\n", fault.c_str());
    return fault.empty();
#else
    return true;
#endif
}

int RunWindow(const QApplication& application) {
    ReadablePlaceholders();
    ladderwise::InitResources();
    QIcon icon(":/icons/ladderwise.png");
    icon.addFile(":/icons/ladderwise-64.png");
    QApplication::setWindowIcon(icon);
    const QString point = QLocale::system().decimalPoint();
    ladderwise::SetSystemFormatSettings({point == "," ? ',' : '.'});
    // Taken before the folder of the designs becomes the current one.
    const std::string design =
        ladderwise::FullPath(QApplication::arguments().value(1).toStdString());
    const auto folders = ladderwise::EnterFolders(ShowError);
    if (!folders) return ExitNoFolders;
    ladderwise::MainWindow window;
    // Input that waits behind the request to close may still open a menu or a box, which would
    // count as a window and keep the program alive: it ends with its main window, whatever is open.
    QObject::connect(&window, &ladderwise::MainWindow::Closed, &application,
                     [] { QApplication::exit(EXIT_SUCCESS); });
    ladderwise::KeepBeforeTermination([&window] { window.KeepWork(); });
    window.Remember(*folders);
    window.show();
    shown = true;
    window.Start(*folders, design);
    started = true;
    return QApplication::exec();
}

int ShowWindow(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setApplicationName("Ladderwise");
    QApplication::setApplicationVersion(LADDERWISE_VERSION);
    if (!QFontMetrics(QApplication::font()).inFont(QLatin1Char('0'))) {
        std::fputs("ladderwise: no font is installed, and a window needs one\n", stderr);
        return ExitNoWindow;
    }
    try {
        return RunWindow(application);
    } catch (const std::bad_alloc&) {
        // What start-up had allocated is free again, so that the box can be shown.
        if (!started) ShowError("Error", "Memory not Allocated in Main Init");
        throw;
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (AnswerOnTerminal(argc, argv)) return EXIT_SUCCESS;
    if (!EveryInputIsSaved()) return ExitFaultyTables;
    ladderwise::OutliveFileLimits();
    toolkitHandler = qInstallMessageHandler(EndOnFatalMessage);
    try {
        return ShowWindow(argc, argv);
    } catch (const std::bad_alloc&) {
        std::fputs("ladderwise: not enough memory\n", stderr);
        return ExitNoMemory;
    }
}
