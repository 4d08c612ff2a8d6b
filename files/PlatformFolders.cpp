// What the operating system says about folders, and the limits that it sets.
#include "files/PlatformFolders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QSocketNotifier>
#endif

namespace ladderwise {

namespace {

std::string Text(const QString& path) {
    return QDir::fromNativeSeparators(path).toStdString();
}

std::string Place(QStandardPaths::StandardLocation location) {
    return Text(QStandardPaths::writableLocation(location));
}

#ifdef Q_OS_WIN
std::intptr_t TryHold(const std::string& path) {
    // Shared with nobody.
    const std::wstring name = QDir::toNativeSeparators(QString::fromStdString(path)).toStdWString();
    const HANDLE file = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    return reinterpret_cast<std::intptr_t>(file);  // INVALID_HANDLE_VALUE is -1
}

void LetGo(std::intptr_t handle) {
    CloseHandle(reinterpret_cast<HANDLE>(handle));
}
#else
constexpr int UsersOnly = 0600;

std::intptr_t TryHold(const std::string& path) {
    const QByteArray name = QFile::encodeName(QString::fromStdString(path));
    const int file = open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, UsersOnly);
    if (file < 0 || flock(file, LOCK_EX | LOCK_NB) == 0) return file;
    close(file);
    return -1;
}

void LetGo(std::intptr_t handle) {
    close(static_cast<int>(handle));
}

/// From a signal's handler, which can do nothing but write, to the event loop.
int signalPipe[2] = {-1, -1};

extern "C" void PassSignalOn(int signal) {
    const auto number = static_cast<char>(signal);
    if (write(signalPipe[1], &number, 1) != 1) _exit(EXIT_FAILURE);
}
#endif

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
    places.State = Place(QStandardPaths::GenericDataLocation);  // local to the machine
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
    // The XDG Base Directory Specification; a relative path there counts as none.
    const QString state = qEnvironmentVariable("XDG_STATE_HOME");
    places.State = Text(state.startsWith('/') ? state : QDir::homePath() + "/.local/state");
#endif
    return places;
}

HeldFile::HeldFile(const std::string& path) : handle(TryHold(path)) {}

HeldFile::HeldFile(HeldFile&& other) noexcept : handle(std::exchange(other.handle, NoHandle)) {}

HeldFile& HeldFile::operator=(HeldFile&& other) noexcept {
    std::swap(handle, other.handle);
    return *this;
}

HeldFile::~HeldFile() {
    if (handle != NoHandle) LetGo(handle);
}

void KeepBeforeTermination(std::function<void()> keep) {
#ifdef Q_OS_WIN
    static_cast<void>(keep);
#else
    if (pipe(signalPipe) != 0) return;
    for (const int end : signalPipe)
        fcntl(end, F_SETFD, FD_CLOEXEC);
    auto* const notifier =
        new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [keep = std::move(keep)] {
        char signal = 0;
        if (read(signalPipe[0], &signal, 1) != 1) return;
        keep();
        std::signal(signal, SIG_DFL);
        std::raise(signal);
    });
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        struct sigaction action = {};
        action.sa_handler = PassSignalOn;
        // A second one does not wait for the event loop.
        action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
        // What its starter lets it ignore (nohup) stays ignored.
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
    }
#endif
}

void UseCallersTerminal() {
#ifdef Q_OS_WIN
    // Output that goes into a file or a pipe stays there.
    if (GetFileType(GetStdHandle(STD_OUTPUT_HANDLE)) != FILE_TYPE_UNKNOWN) return;
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
