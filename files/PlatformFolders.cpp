// What the operating system says about folders, and the limits that it sets.
#include "files/PlatformFolders.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>
#include <csignal>
#include <cstdio>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace ladderwise {

namespace {

std::string Text(const QString& path) {
    return QDir::fromNativeSeparators(path).toStdString();
}

std::string Place(QStandardPaths::StandardLocation location) {
    return Text(QStandardPaths::writableLocation(location));
}

}  // namespace

SystemPlaces AskSystem() {
    SystemPlaces places;
    const QString executable = QCoreApplication::applicationDirPath();
    places.Executable = Text(executable);
    places.Documents = Place(QStandardPaths::DocumentsLocation);
#ifdef Q_OS_WIN
    for (std::size_t i = 0; i < FolderVariables.size(); ++i) {
        const QByteArray name(FolderVariables[i]);  // "%TEMP%"
        places.Variables[i] = Text(qEnvironmentVariable(name.mid(1, name.size() - 2).constData()));
    }
    places.Documents = places.Of(FolderVariable::UserProfile) + "/Documents";
    places.SharedData = places.Executable;
#else
    const std::string shared = Text(QDir::cleanPath(executable + "/../share"));
    places.Variables = {Text(QDir::homePath()),
                        Text(QDir::tempPath()),
                        Place(QStandardPaths::GenericConfigLocation),
                        places.Executable,
                        shared,
                        shared,
                        Text(QDir::rootPath())};
    places.SharedData = shared + "/ladderwise";
#endif
    return places;
}

void UseCallersTerminal() {
#ifdef Q_OS_WIN
    if (!AttachConsole(ATTACH_PARENT_PROCESS)) return;
    std::freopen("CONOUT$", "w", stdout);
    std::freopen("CONOUT$", "w", stderr);
#endif
}

void OutliveFileLimits() {
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

}  // namespace ladderwise
