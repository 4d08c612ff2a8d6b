// Whole files to and from the disk.
#include "files/DiskFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryFile>
#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

namespace ladderwise {

namespace {

/// The name as the toolkit keeps it; nothing if it could not be turned back into the same bytes.
std::optional<QString> NameOf(const std::string& path) {
    const QString name = QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()));
    if (name.isEmpty() || name.contains(QChar(u'\0'))) return std::nullopt;
    if (name.toStdString() != path) return std::nullopt;
    return name;
}

/// A place and what the links there lead to, one after the other; of links that lead in a circle
/// as many as a system follows.
std::vector<QFileInfo> LinksFrom(const QFileInfo& place) {
    constexpr std::size_t MostLinks = 40;
    std::vector<QFileInfo> links{place};
    while (links.size() <= MostLinks && links.back().isSymLink())
        links.emplace_back(links.back().symLinkTarget());
    return links;
}

/// True if the name lies among the names of open streams: /dev/fd is a link to /proc/self/fd, and
/// what lies there (/dev/stdout) is somebody's stream even where it ends in a regular file.
bool LiesAmongStreams(const QFileInfo& place) {
    const QString folder = place.dir().canonicalPath();
    return folder == QLatin1String("/proc") || folder.startsWith(QLatin1String("/proc/")) ||
           folder == QLatin1String("/dev/fd");
}

/// True for what must never be replaced by a regular file: devices, pipes, sockets and open
/// streams, also behind a link.
bool IsStream(const QFileInfo& target) {
    if (target.exists() && !target.isFile() && !target.isDir()) return true;
    const std::vector<QFileInfo> links = LinksFrom(target);
    return std::any_of(links.begin(), links.end(), LiesAmongStreams);
}

/// Why a file device failed, in the system's words.
std::string ReasonOf(const QFileDevice& file) {
    const std::string words = file.errorString().toStdString();
    return file.error() == QFileDevice::ResourceError ? "the disk is full (" + words + ")" : words;
}

/// Why no file can be created at `target`.
std::string ReasonNotOpened(const QFileInfo& target, const QFileDevice& file) {
    const QFileInfo folder(target.absolutePath());
    const std::string folderName = folder.filePath().toStdString();
    if (target.isDir()) return "it is a folder";
    if (!folder.exists()) return "there is no folder " + folderName;
    if (!folder.isDir()) return folderName + " is no folder";
    if (target.exists() && !target.isWritable()) return "the file is write-protected";
    if (file.error() == QFileDevice::ResourceError) return ReasonOf(file);
    return "the folder " + folderName + " cannot be written (" + file.errorString().toStdString() +
           ")";
}

/// Writes to the last byte. After a short write the rest is tried too, which tells its reason.
bool WriteAll(QIODevice& device, std::string_view bytes) {
    while (!bytes.empty()) {
        const qint64 written = device.write(bytes.data(), static_cast<qint64>(bytes.size()));
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// Writes into a device or pipe as it stands.
std::string WriteToStream(const QFileInfo& target, std::string_view bytes) {
    QFile file(target.filePath());
    // What a stream redirected into a regular file already holds is not cut off.
    const auto place = target.isFile() ? QIODevice::Append : QIODevice::WriteOnly;
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered | place)) return ReasonOf(file);
    return WriteAll(file, bytes) ? std::string() : ReasonOf(file);
}

/// Writes a complete file under a temporary name beside `path`, which then takes its place.
std::string SaveInPlace(const QFileInfo& target, const QString& path, std::string_view bytes) {
    QSaveFile file(path);
    // Unbuffered, because QSaveFile::commit overlooks an error in writing its last buffer.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return ReasonNotOpened(target, file);
    if (WriteAll(file, bytes) && file.commit()) return {};
    return ReasonOf(file);
}

/// QSaveFile's temporary name is the file's own and a suffix, which the longest names have no room
/// for: these are written under a short name first.
std::string ReplaceLongNamed(const QFileInfo& end, std::string_view bytes) {
    QTemporaryFile place(end.absolutePath() + QStringLiteral("/ladderwise-XXXXXX"));
    if (!place.open()) return ReasonNotOpened(end, place);
    const QString shortName = place.fileName();
    place.remove();  // what QSaveFile creates has the permissions of a new file
    if (std::string reason = SaveInPlace(end, shortName, bytes); !reason.empty()) return reason;
    if (end.exists()) QFile::setPermissions(shortName, end.permissions());
    std::error_code fault;
    std::filesystem::rename(shortName.toStdU16String(), end.absoluteFilePath().toStdU16String(),
                            fault);
    if (!fault) return {};
    QFile::remove(shortName);
    return fault.message();
}

/// Writes a complete file beside the target and renames it.
std::string ReplaceFile(const QFileInfo& target, std::string_view bytes) {
    constexpr qsizetype LongestName = 255;  // bytes, on all file systems in common use
    constexpr qsizetype Suffix = 7;         // ".XXXXXX"
    const QFileInfo end = LinksFrom(target).back();
    if (end.isSymLink()) return "the link leads in a circle";
    const qsizetype length = QFile::encodeName(end.fileName()).size();
    if (length > LongestName - Suffix && length <= LongestName && !end.isDir())
        return ReplaceLongNamed(end, bytes);
    return SaveInPlace(target, target.filePath(), bytes);
}

}  // namespace

std::string WriteWholeFile(const std::string& path, std::string_view bytes) {
    const std::string failed = "cannot write " + path + ": ";
    const auto name = NameOf(path);
    if (!name) return failed + "this is no valid file name";
    const QFileInfo target(*name);
    const std::string reason =
        IsStream(target) ? WriteToStream(target, bytes) : ReplaceFile(target, bytes);
    return reason.empty() ? reason : failed + reason;
}

FileContent ReadWholeFile(const std::string& path, std::size_t limit) {
    const std::string failed = "cannot read " + path + ": ";
    const auto name = NameOf(path);
    if (!name) return {{}, failed + "this is no valid file name"};
    QFile file(*name);
    if (!file.open(QIODevice::ReadOnly)) return {{}, failed + file.errorString().toStdString()};
    FileContent content;
    // A read from a pipe gives what is there at the moment, so several may be needed.
    while (content.Bytes.size() < limit) {
        const QByteArray piece = file.read(static_cast<qint64>(limit - content.Bytes.size()));
        if (piece.isEmpty()) break;
        content.Bytes.append(piece.constData(), static_cast<std::size_t>(piece.size()));
    }
    if (file.error() != QFileDevice::NoError)
        return {{}, failed + file.errorString().toStdString()};
    return content;
}

FileContent ReadRegularFile(const std::string& path, std::size_t limit) {
    const auto name = NameOf(path);
    const QFileInfo file(name.value_or(QString()));
    if (name && file.exists() && !file.isFile())
        return {{},
                "cannot read " + path + (file.isDir() ? ": it is a folder" : ": it is no file")};
    return ReadWholeFile(path, limit);
}

std::string RemoveFile(const std::string& path) {
    const std::string failed = "cannot remove " + path + ": ";
    const auto name = NameOf(path);
    if (!name) return failed + "this is no valid file name";
    QFile file(*name);
    return !file.exists() || file.remove() ? "" : failed + file.errorString().toStdString();
}

}  // namespace ladderwise
