// The window program.
#include <QApplication>
#include <QIcon>
#include <QLocale>

#include "app/MainWindow.h"
#include "numbers/Formatfunctions.h"
#include "resources/Resources.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("Ladderwise");
    QApplication::setApplicationVersion(LADDERWISE_VERSION);
    ladderwise::InitResources();
    QIcon icon(":/icons/ladderwise.png");
    icon.addFile(":/icons/ladderwise-64.png");
    QApplication::setWindowIcon(icon);
    const QString point = QLocale::system().decimalPoint();
    ladderwise::SetSystemFormatSettings({point == "," ? ',' : '.'});
    ladderwise::MainWindow window;
    window.show();
    return QApplication::exec();
}
