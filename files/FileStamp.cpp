// Stamps of files.
#include "files/FileStamp.h"

#include <QCryptographicHash>

#include "files/Directories.h"
#include "files/DiskFile.h"

namespace ladderwise {

FileStamp StampOf(std::string_view bytes) {
    const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(view);
    return {bytes.size(), hash.result().toStdString()};
}

FileChange FileChangedSince(const std::string& path, const FileStamp& stamp) {
    if (!FileExists(path)) return FileChange::Gone;
    // One byte more than there was: a longer file must not pass for the old one.
    const FileContent file = ReadRegularFile(path, stamp.Size + 1);
    if (!file.Error.empty()) return FileChange::Changed;
    const FileStamp now = StampOf(file.Bytes);
    return now.Size == stamp.Size && now.Digest == stamp.Digest ? FileChange::None
                                                                : FileChange::Changed;
}

}  // namespace ladderwise
