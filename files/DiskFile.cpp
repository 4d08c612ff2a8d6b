// Whole files to and from the disk.
#include "files/DiskFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <optional>

namespace ladderwise {

namespace {

/// The name as the toolkit keeps it; nothing if it could not be turned back into the same bytes.
std::optional<QString> NameOf(const std::string& path) {
    const QString name = QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()));
    if (name.isEmpty() || name.contains(QChar(u'\0'))) return std::nullopt;
    if (name.toStdString() != path) return std::nullopt;
    return name;
}

/// True for what must never be replaced by a regular file. Below /dev and /proc even a regular file
/// is somebody's open stream (/dev/stdout).
bool IsStream(const QFileInfo& target) {
    const QString place = QDir::cleanPath(target.absoluteFilePath());
    return place.startsWith(QLatin1String("/dev/")) || place.startsWith(QLatin1String("/proc/")) ||
           (target.exists() && !target.isFile() && !target.isDir());
}

/// True for a link that leads to a link for ever: QSaveFile would replace it.
bool LeadsInACircle(QFileInfo link) {
    constexpr int MostLinks = 40;  // the system follows no more
    for (int i = 0; i < MostLinks && link.isSymLink(); ++i)
        link = QFileInfo(link.symLinkTarget());
    return link.isSymLink();
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

/// Writes a complete file beside the target and renames it.
std::string ReplaceFile(const QFileInfo& target, std::string_view bytes) {
    if (LeadsInACircle(target)) return "the link leads in a circle";
    QSaveFile file(target.filePath());
    // Unbuffered, because QSaveFile::commit overlooks an error in writing its last buffer.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return ReasonNotOpened(target, file);
    if (WriteAll(file, bytes) && file.commit()) return {};
    return ReasonOf(file);
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

}  // namespace ladderwise
