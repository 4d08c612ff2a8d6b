// The window program.
#include <QApplication>
#include <QFontMetrics>
#include <QIcon>
#include <QLocale>
#include <QMessageBox>
#include <QPalette>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "app/MainWindow.h"
#include "files/Directories.h"
#include "files/PlatformFolders.h"
#include "numbers/Formatfunctions.h"
#include "resources/Resources.h"

namespace {

/// Exit codes of a program that ends by itself. The toolkit ends it with 1 when the display goes.
constexpr int ExitNoFolders = 4;
constexpr int ExitNoMemory = 2;
constexpr int ExitNoWindow = 3;  ///< no window was ever shown

QtMessageHandler toolkitHandler = nullptr;

bool shown = false;  ///< the window has been there

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

int ShowWindow(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("Ladderwise");
    QApplication::setApplicationVersion(LADDERWISE_VERSION);
    if (!QFontMetrics(QApplication::font()).inFont(QLatin1Char('0'))) {
        std::fputs("ladderwise: no font is installed, and a window needs one\n", stderr);
        return ExitNoWindow;
    }
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
    window.show();
    shown = true;
    window.Start(*folders, design);
    return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::puts("ladderwise " LADDERWISE_VERSION);
        return EXIT_SUCCESS;
    }
    ladderwise::OutliveFileLimits();
    toolkitHandler = qInstallMessageHandler(EndOnFatalMessage);
    try {
        return ShowWindow(argc, argv);
    } catch (const std::bad_alloc&) {
        std::fputs("ladderwise: not enough memory\n", stderr);
        return ExitNoMemory;
    }
}
