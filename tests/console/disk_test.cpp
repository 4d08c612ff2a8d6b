// Whole files on the disk: the old file or the new one, devices and links left as they are.
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "files/DiskFile.h"

using namespace ladderwise;

namespace {

constexpr std::size_t limit = 1000;

std::string In(const QTemporaryDir& folder, const char* name) {
    return folder.filePath(QString::fromLatin1(name)).toStdString();
}

}  // namespace

TEST(DiskFile, WritesReplacesAndFollowsLinks) {
    const QTemporaryDir folder;
    const std::string file = In(folder, "a"), link = In(folder, "link");
    ASSERT_EQ(WriteWholeFile(file, "first"), "");
    ASSERT_TRUE(QFile::link(QString::fromStdString(file), QString::fromStdString(link)));
    const std::string bytes("second\0\r\n\xff", 10);
    EXPECT_EQ(WriteWholeFile(link, bytes), "");
    EXPECT_EQ(ReadWholeFile(file, limit).Bytes, bytes);
    EXPECT_EQ(ReadWholeFile(file, 3).Bytes, "sec");
    EXPECT_TRUE(QFileInfo(QString::fromStdString(link)).isSymLink());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
}

TEST(DiskFile, RefusesWithAReason) {
    const QTemporaryDir folder;
    ASSERT_EQ(WriteWholeFile(In(folder, "file"), "x"), "");
    const std::pair<std::string, const char*> cases[] = {
        {"", "this is no valid file name"},
        {folder.path().toStdString() + "/a\xff", "this is no valid file name"},
        {std::string("a\0b", 3), "this is no valid file name"},
        {folder.path().toStdString(), "it is a folder"},
        {In(folder, "none/b"), "there is no folder"},
        {In(folder, "file/b"), "is no folder"},
    };
    for (const auto& [path, reason] : cases) {
        const std::string error = WriteWholeFile(path, "x");
        EXPECT_NE(error.find(reason), std::string::npos) << error;
    }
    EXPECT_EQ(ReadWholeFile(In(folder, "none"), limit).Error.rfind("cannot read ", 0), 0u);
    EXPECT_NE(ReadWholeFile(folder.path().toStdString(), limit).Error, "");
}

TEST(DiskFile, DevicesAreWrittenToAndStay) {
    const QString full = QStringLiteral("/dev/full");
    if (!QFile::exists(full)) GTEST_SKIP() << "no such devices here";
    const QTemporaryDir folder;
    const QString link = folder.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(full, link));
    for (const QString& name : {full, link})
        EXPECT_NE(WriteWholeFile(name.toStdString(), "x").find("the disk is full"),
                  std::string::npos);
    EXPECT_EQ(WriteWholeFile("/dev/null", "x"), "");
    EXPECT_FALSE(QFileInfo(QStringLiteral("/dev/null")).isFile());
    EXPECT_EQ(ReadWholeFile("/dev/zero", limit).Bytes.size(), limit);
}
