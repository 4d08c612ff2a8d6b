// Places for unsaved work, and when it is written.
#include "app/Recovery.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <utility>

#include "files/Directories.h"
#include "files/DiskFile.h"

namespace ladderwise {

namespace {

/// Not started anew by every change: of two seconds of work nothing is ever lost, however busy they
/// were.
constexpr int WriteAfter = 1500;  ///< ms
constexpr int MostPlaces = 64;    ///< programs at a time, and works that wait for an answer
constexpr const char* LockEnding = ".lock";
constexpr const char* WorkEnding = ".work";

/// What a write that was cut off has left beside a place.
void DeleteLeftOvers(const std::string& path) {
    const QFileInfo file(QString::fromStdString(path + WorkEnding));
    for (const QString& name : file.dir().entryList({file.fileName() + ".*"}, QDir::Files))
        file.dir().remove(name);
}

std::optional<UnsavedWork> WorkAt(const std::string& path) {
    const FileContent file = ReadRegularFile(path + WorkEnding, MaxUnsavedWorkBytes);
    return file.Error.empty() ? DecodeWork(file.Bytes) : std::nullopt;
}

}  // namespace

Recovery::Recovery(const DesignDocument& document) : document(document) {
    due.setSingleShot(true);
    due.setInterval(WriteAfter);
    connect(&due, &QTimer::timeout, this, &Recovery::Write);
}

/// Those in use by nobody, up to the first that was never used.
std::vector<Recovery::Place> Recovery::FreePlaces(const std::string& folder) const {
    std::vector<Place> free;
    for (int i = 1; i <= MostPlaces; ++i) {
        const std::string path = folder + "/unsaved-" + std::to_string(i);
        HeldFile hold(path + LockEnding);
        if (!hold) continue;
        DeleteLeftOvers(path);
        free.push_back({path, std::move(hold)});
        if (!FileExists(path + WorkEnding)) break;
    }
    return free;
}

std::optional<UnsavedWork> Recovery::Start(const std::string& folder, const Offer& offer) {
    if (folder.empty()) return {};
    struct Found {
        UnsavedWork Work;
        Place* At;
    };
    std::vector<Place> free = FreePlaces(folder);
    std::vector<Found> found;
    for (Place& at : free)
        if (auto work = WorkAt(at.Path)) found.push_back({std::move(*work), &at});
    std::sort(found.begin(), found.end(),
              [](const Found& a, const Found& b) { return a.Work.Time > b.Work.Time; });
    for (Found& one : found) {
        const RecoveryAnswer answer = offer ? offer(one.Work) : RecoveryAnswer::Later;
        if (answer == RecoveryAnswer::Delete) RemoveFile(one.At->Path + WorkEnding);
        if (answer != RecoveryAnswer::Accept) continue;
        // Its place is this program's from now on: it is never without a copy on the disk.
        place = std::move(*one.At);
        return std::move(one.Work);
    }
    for (Place& at : free)
        if (!place && !FileExists(at.Path + WorkEnding)) place = std::move(at);
    return {};
}

void Recovery::NoteChange() {
    sessionEnded = false;  // somebody is still at work: the logout was called off
    if (place && !due.isActive()) due.start();
}

void Recovery::Write() {
    due.stop();
    if (!place) return;
    const std::string path = place->Path + WorkEnding;
    if (!document.HasUnsavedWork()) {
        written.clear();
        RemoveFile(path);
        return;
    }
    UnsavedWork work = document.Kept();
    std::string text = EncodeWork(work);
    if (text == written) return;
    work.Time = QDateTime::currentSecsSinceEpoch();
    // A folder that can no longer be written must not stop anybody's work.
    if (WriteWholeFile(path, EncodeWork(work)).empty()) written = std::move(text);
}

void Recovery::Finish() {
    due.stop();
    if (place) RemoveFile(place->Path + WorkEnding);
    place.reset();
}

}  // namespace ladderwise
