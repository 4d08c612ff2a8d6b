// Whole files on the disk: the old file or the new one, devices and links left as they are.
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "files/Directories.h"
#include "files/DiskFile.h"
#include "files/FileStamp.h"
#include "files/SettingsFile.h"

using namespace ladderwise;

namespace {

constexpr std::size_t limit = 1000;

/// Windows has shortcuts for links, rights of another kind and no names of open streams.
#ifdef Q_OS_WIN
constexpr bool HasLinks = false;
#else
constexpr bool HasLinks = true;
#endif

std::string In(const QTemporaryDir& folder, const char* name) {
    return folder.filePath(QString::fromLatin1(name)).toStdString();
}

}  // namespace

TEST(DiskFile, WritesReplacesAndFollowsLinks) {
    if (!HasLinks) GTEST_SKIP() << "no links";
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

TEST(DiskFile, ReplacesRegularFilesWhereverTheyLieAndHoweverLongTheirName) {
    if (!HasLinks) GTEST_SKIP() << "no links";
    const QTemporaryDir usual, memory("/dev/shm/ladderwise-XXXXXX");
    for (const QTemporaryDir* const folder : {&usual, &memory}) {
        if (!folder->isValid()) continue;  // no such folder here
        for (const int length : {8, 248, 249, 255}) {
            const std::string name(static_cast<std::size_t>(length), 'n');
            const std::string file = In(*folder, name.c_str()), link = In(*folder, "link");
            ASSERT_EQ(WriteWholeFile(file, "first, and longer"), "") << length;
            QFile::link(name.c_str(), link.c_str());
            QFile::setPermissions(file.c_str(), QFile::ReadOwner | QFile::WriteOwner);
            for (const std::string& path : {file, link, file})
                EXPECT_EQ(WriteWholeFile(path, path), "") << length;
            EXPECT_EQ(ReadWholeFile(link, limit).Bytes, file);
            EXPECT_EQ(QFile::permissions(file.c_str()) & (QFile::ReadGroup | QFile::ReadOther), 0);
            EXPECT_EQ(QDir(folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
            QFile::remove(file.c_str());
            QFile::remove(link.c_str());
        }
        EXPECT_NE(WriteWholeFile(In(*folder, std::string(256, 'n').c_str()), "x"), "");
    }
}

TEST(DiskFile, OpenStreamsAreWrittenOnEvenIntoARegularFile) {
    if (!HasLinks) GTEST_SKIP() << "no links";
    const QTemporaryDir folder;
    QFile open(folder.filePath("log"));
    ASSERT_TRUE(open.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    open.write("one ");
    for (const char* const place : {"/proc/self/fd/", "/dev/fd/"}) {
        const std::string stream = place + std::to_string(open.handle());
        if (!QFile::exists(stream.c_str())) GTEST_SKIP() << "streams have no names here";
        EXPECT_EQ(WriteWholeFile(stream, "two "), "");
    }
    EXPECT_EQ(ReadWholeFile(In(folder, "log"), limit).Bytes, "one two two ");
}

TEST(FileStamp, TellsWhatOthersWroteFromWhatStands) {
    const QTemporaryDir folder;
    const std::string file = In(folder, "a");
    ASSERT_EQ(WriteWholeFile(file, "mine"), "");
    const FileStamp stamp = StampOf("mine");
    EXPECT_EQ(FileChangedSince(file, stamp), FileChange::None);
    for (const char* const other : {"ours", "min", "mine and more", ""}) {
        ASSERT_EQ(WriteWholeFile(file, other), "");
        EXPECT_EQ(FileChangedSince(file, stamp), FileChange::Changed) << other;
    }
    ASSERT_EQ(WriteWholeFile(file, "mine"), "");  // written anew, but the same
    EXPECT_EQ(FileChangedSince(file, stamp), FileChange::None);
    QFile::remove(file.c_str());
    EXPECT_EQ(FileChangedSince(file, stamp), FileChange::Gone);
    QDir().mkdir(file.c_str());
    EXPECT_EQ(FileChangedSince(file, stamp), FileChange::Changed);
    EXPECT_NE(ReadRegularFile(file, limit).Error.find("it is a folder"), std::string::npos);
}

TEST(SettingsFile, TwoInstancesKeepWhatBothDid) {
    const QTemporaryDir folder;
    const std::string file = In(folder, "Settings.txt");
    EXPECT_FALSE(ReadSettingsFile(file, {}));
    ProgramSettings before;
    before.Threshold = "20";
    for (const char* const path : {"/gone", "/old"})
        before.Recent.Add(path);
    ASSERT_EQ(WriteSettingsFile(file, before, {}), "");
    const ProgramSettings read = *ReadSettingsFile(file, {});
    ProgramSettings one = read, other = read;
    one.Recent.Add("/a");
    one.Recent.Remove("/gone");
    one.Threshold = "35.5";
    other.Recent.Add("/b");
    other.Recent.Add("/c");
    ASSERT_EQ(WriteSettingsFile(file, one, read), "");
    ASSERT_EQ(WriteSettingsFile(file, other, read), "");
    const auto both = ReadSettingsFile(file, {});
    ASSERT_TRUE(both);
    EXPECT_EQ(both->Recent.Paths(), (std::vector<std::string>{"/c", "/b", "/a", "/old"}));
    EXPECT_EQ(both->Threshold, "35.5");
    // A damaged file gives nothing to merge.
    ASSERT_EQ(WriteWholeFile(file, "1 , x , y\n"), "");
    ASSERT_EQ(WriteSettingsFile(file, other, read), "");
    EXPECT_EQ(ReadSettingsFile(file, {})->Recent.Paths().back(), "/gone");
}

TEST(DiskFile, RefusesWithAReason) {
    const QTemporaryDir folder;
    ASSERT_EQ(WriteWholeFile(In(folder, "file"), "x"), "");
    if (HasLinks) {
        ASSERT_TRUE(QFile::link(folder.filePath("circle"), folder.filePath("circle")));
    }
    const std::pair<std::string, const char*> cases[] = {
        {In(folder, HasLinks ? "circle" : "none/b"),
         HasLinks ? "in a circle" : "there is no folder"},
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

TEST(Directories, AreFoundCreatedAndRequired) {
    const QTemporaryDir root;
    const std::string home = In(root, "home"), program = In(root, "program");
    SystemPlaces places;
    places.Variables[0] = home;
    places.Executable = program;
    places.SharedData = In(root, "share");
    places.Documents = home + "/Documents";
    QDir(root.path()).mkdir("home");
    std::string message;
    const auto report = [&](const std::string&, const std::string& text) { message = text; };
    EXPECT_FALSE(FindFolders(places, report));
    EXPECT_EQ(message.rfind("Error. The RunTime Files directory is missing. \nYou must", 0), 0u);
    QDir(root.path()).mkpath("share/RunTime Files");
    auto folders = FindFolders(places, report);
    ASSERT_TRUE(folders);
    EXPECT_EQ(folders->RunTimeFolder, In(root, "share/RunTime Files"));
    EXPECT_EQ(folders->DesignFolder, home + "/Documents/Tarnwick/Ladderwise/Files");
    QDir(root.path()).mkpath("program/RunTime Files");
    QDir(root.path()).mkpath("home/My Documents");
    folders = FindFolders(places, report);
    EXPECT_EQ(folders->RunTimeFolder, program + "/RunTime Files");
    EXPECT_EQ(folders->SettingsFolder, program);
    EXPECT_EQ(folders->DesignFolder, home + "/My Documents/Tarnwick/Ladderwise/Files");
    // A file where a level should be: the documents cannot be used.
    QDir(home.c_str()).rename("My Documents/Tarnwick/Ladderwise/Files", "old");
    ASSERT_EQ(WriteWholeFile(folders->DesignFolder, "x"), "");
    EXPECT_EQ(FindFolders(places, report)->DesignFolder, program + "/Files");
    places.Variables[1] = std::string(VariableBufferSize, 'x');
    EXPECT_FALSE(FindFolders(places, report));
    EXPECT_EQ(message, "Buffer too small to expand  %TEMP% \nThe application will be closed.");
}
