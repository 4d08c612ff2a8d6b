// Design files, recent files, coefficients files and settings in the main window.
#include <QLabel>
#include <QMessageBox>
#include <functional>

#include "WindowFixture.h"
#include "files/DiskFile.h"
#include "files/FileReadSave.h"
#include "windows/OptionsWindow.h"

using namespace ladderwise;

namespace {

/// A window whose dialogs are answered by the test.
class FilesFixture : public WindowFixture {
public:
    FilesFixture() {
        Window->SetFileDialogs({[this](const FileDialogTexts& texts) { return Asked(texts); },
                                [this](const FileDialogTexts& texts) { return Asked(texts); },
                                [this](const QString&) {
                                    ++Questions;
                                    return Answer;
                                }});
    }
    QString Path(const char* name) const { return QDir::current().filePath(name); }
    void SaveAs(const QString& name) {
        NextName = name;
        Trigger("SaveAsMenu");
    }
    void Open(const QString& name) {
        NextName = name;
        Trigger("OpenMenu");
    }

    QString NextName;
    FileDialogTexts LastTexts;
    UnsavedAnswer Answer = UnsavedAnswer::Cancel;
    int Questions = 0;

private:
    QString Asked(const FileDialogTexts& texts) {
        LastTexts = texts;
        return NextName;
    }
};

}  // namespace

class FilesTest : public QObject {
    Q_OBJECT

private slots:
    void SavesOpensAndAsks() {
        FilesFixture f;
        QVERIFY(!f.Window->isWindowModified());
        f.Trigger("ChebyshevMenu");
        f.Enter("F0Box", "145.825");
        QVERIFY(f.Window->isWindowModified());
        f.SaveAs(f.Path("a.tk_ldfilt"));
        QCOMPARE(f.LastTexts.Title, "Save Design to File:");
        QVERIFY(f.LastTexts.Start.endsWith("/3 Pole Chebyshev LPF.tk_ldfilt"));
        QVERIFY(!f.Window->isWindowModified());
        QVERIFY(f.Window->windowTitle().endsWith("a.tk_ldfilt"));
        QVERIFY(f.Find<QAction>("PrevFile0Menu")->text().endsWith("a.tk_ldfilt"));
        const ElementList saved = f.Design().Elements;
        // Typed and not yet read counts too.
        f.Enter("F0Box", "7", Qt::Key_unknown);
        f.Open(f.Path("a.tk_ldfilt"));
        QCOMPARE(f.Questions, 1);
        QCOMPARE(f.InUse("f0"), "7000000");
        f.Answer = UnsavedAnswer::Discard;
        f.Trigger("PrevFile0Menu");
        QCOMPARE(f.Questions, 2);
        QVERIFY(SameLadder(f.Design().Elements, saved));
        QVERIFY(f.Checked("ChebyshevMenu") && !f.Window->isWindowModified());
        QCOMPARE(f.Text("F0Box"), "146");
        // Closing: Cancel keeps the window, Save saves.
        f.Trigger("HighPassMenu");
        f.Answer = UnsavedAnswer::Cancel;
        QVERIFY(!f.Window->close());
        f.Answer = UnsavedAnswer::Save;
        QVERIFY(f.Window->close());
        const auto record = DecodeRecord(ReadWholeFile("a.tk_ldfilt", 9999).Bytes);
        QCOMPARE(QString::fromStdString(record->Text("PassItem")), "HighPassMenu");
    }

    void WhatIsNoDesignChangesNothing() {
        FilesFixture f;
        QCOMPARE(WriteWholeFile("bad.tk_ldfilt", std::string(3448, 'x')), std::string());
        f.Open(f.Path("bad.tk_ldfilt"));
        QCOMPARE(f.TakeMessages(),
                 QStringList{"Program Info: Open File operation failed due to an incompatibility "
                             "with this program."});
        QVERIFY(!f.Find<QAction>("PrevFile0Menu")->isVisible());
        QCOMPARE(f.Window->windowTitle(), u"3 Pole Butterworth LPF \u2014 Ladderwise"_qs);
        f.NextName.clear();
        f.Window->OpenDesign("/none.tk_ldfilt");
        QCOMPARE(f.TakeMessages(),
                 QStringList{"Program Info: This file doesn't exist. \n\n/none.tk_ldfilt"});
        QCOMPARE(f.LastTexts.Title, "Open Design File:");
        f.SaveAs("/dev/null/x");
        QCOMPARE(f.TakeMessages(), QStringList{"Program Info: Save File operation failed."});
    }

    // The questions about files, each with the answer of each button, Esc among them.
    void QuestionsSayWhatEachButtonDoes() {
        WindowFixture f;
        const FileDialogs dialogs = StandardFileDialogs(f.Window.get());
        const QStringList six{"1", "2", "3", "4", "5", "6"};
        const auto unsaved = [&] { return static_cast<int>(dialogs.AskUnsaved("my design")); };
        const auto changed = [&] { return static_cast<int>(dialogs.AskChanged("my file")); };
        const auto replace = [&] { return int{dialogs.AskReplace(six.first(5))}; };
        const auto one = [&] { return int{dialogs.AskReplace({"my file"})}; };
        const auto more = [&] { return int{dialogs.AskReplace(six)}; };
        const auto recover = [&] {
            UnsavedWork work;
            work.Name = "my design";
            return static_cast<int>(dialogs.AskRecovery(work));
        };
        const struct {
            std::function<int()> Ask;
            const char* Says;
            std::vector<std::pair<const char*, int>> Answers;
        } cases[] = {
            {unsaved,
             "The design \"my design\" has changes that are not saved.",
             {{"Save", 0}, {"Discard", 1}, {"Cancel", 2}, {"", 2}}},
            {changed,
             "The file \"my file\" was changed by another window or program since it was opened or "
             "saved here. Overwrite replaces what it holds now. Reload drops the changes made "
             "here.",
             {{"Overwrite", 0}, {"Reload", 1}, {"Save As...", 2}, {"Cancel", 3}, {"", 3}}},
            {one, "This file exists already. Replace it? my file", {{"Replace", 1}, {"", 0}}},
            {replace, "These files exist already. Replace them? 1 2 3 4 5", {{"Cancel", 0}}},
            {more, "These files exist already. Replace them? 1 2 3 4 5 and 1 more", {{"", 0}}},
            {recover,
             "The design \"my design\" was not saved when the program ended. This is how it stood "
             "on DATE. It has no file yet.",
             {{"Restore", 0}, {"Delete", 1}, {"Ask Later", 2}, {"", 2}}}};
        for (const auto& [ask, says, answers] : cases)
            for (const auto& [caption, answer] : answers) {
                QString said;
                bool pressed = false;
                f.ExpectModal("Ladderwise", [&, caption = caption](QWidget* modal) {
                    auto* const box = qobject_cast<QMessageBox*>(modal);
                    said = (box->text() + ' ' + box->informativeText()).simplified();
                    for (QAbstractButton* const button : box->buttons())
                        if (button->text().remove('&') == caption && !pressed) {
                            pressed = true;
                            button->click();
                        }
                    if (!*caption) QTest::keyClick(box, Qt::Key_Escape);
                });
                QCOMPARE(ask(), answer);
                QCOMPARE(pressed, *caption != 0);
                static const QRegularExpression date("stood on .*?\\. It");
                QCOMPARE(said.replace(date, "stood on DATE. It"), QString(says));
            }
    }

    void CoefficientsFilesAreChosenOrFallBack() {
        FilesFixture f;
        WriteWholeFile("c.csv", "3; 1,5; 2,5; 0,5\n");
        WriteWholeFile("bad.csv", "3,1,2\n");
        f.Trigger("CoefficientsFileMenu");  // cancelled
        QVERIFY(f.Checked("ButterworthMenu") && !f.Checked("CoefficientsFileMenu"));
        f.NextName = f.Path("c.csv");
        f.Trigger("CoefficientsFileMenu");
        QVERIFY(f.Checked("CoefficientsFileMenu"));
        QCOMPARE(f.Design().G[2], 2.5);
        f.SaveAs(f.Path("c.tk_ldfilt"));
        f.Enter("NumPolesBox", "4");  // not in the file
        const QString fallback = "Error: The file read failed. \n Defaulted to Butterworth";
        QCOMPARE(f.TakeMessages(), QStringList{fallback});
        f.NextName = f.Path("bad.csv");
        f.Trigger("CoefficientsFileMenu");
        QCOMPARE(
            f.TakeMessages(),
            (QStringList{"Error: Line 1: order 3 needs 3 values, but the row has 2.", fallback}));
        QFile::remove("c.csv");
        f.Answer = UnsavedAnswer::Discard;
        f.Trigger("PrevFile0Menu");
        QCOMPARE(f.Design().G[2], 2.5);
    }

    void SettingsLastFromRunToRun() {
        Folders folders;
        QTemporaryDir settings;
        folders.SettingsFolder = settings.path().toStdString();
        {
            FilesFixture f;
            f.Window->Start(folders, "");
            f.Trigger("OptionsWindowMenu");
            f.Enter("GDPhaseThresholdBox", "35");
            QCOMPARE(f.InUse("threshold"), "-35");
            f.SaveAs(f.Path("kept.tk_ldfilt"));
            f.Click("CloseButton");
            QVERIFY(f.Window->close());
        }
        FilesFixture f;
        FilesFixture second;
        second.Window->Start(folders, "");
        f.Window->Start(folders,
                        settings.path().toStdString());  // no file: only the status says so
        QVERIFY2(f.Status().endsWith("it is a folder"), qPrintable(f.Status()));
        QCOMPARE(f.InUse("threshold"), "-35");
        QVERIFY(!f.Window->isWindowModified());
        QVERIFY(f.Find<QAction>("PrevFile0Menu")->text().endsWith("kept.tk_ldfilt"));
        // Two instances at once: the file knows what both have used, the last one to end on top.
        f.SaveAs(f.Path("one.tk_ldfilt"));
        second.SaveAs(second.Path("two.tk_ldfilt"));
        QVERIFY(f.Window->close() && second.Window->close());
        FilesFixture third;
        third.Window->Start(folders, "");
        const char* const names[] = {"two", "one", "kept"};
        for (int i = 0; i < 3; ++i)
            QVERIFY(third.Find<QAction>(QString("PrevFile%1Menu").arg(i).toLatin1())
                        ->text()
                        .endsWith(names[i] + QString(".tk_ldfilt")));
    }

    void WindowsComeBackAsTheyWere() {
        Folders folders;
        QTemporaryDir settings;
        folders.SettingsFolder = settings.path().toStdString();
        const QSize size(700, 610), ofHelp(500, 420);
        for (const bool again : {false, true}) {
            FilesFixture f;
            f.Window->Remember(folders);
            f.Window->Start(folders, "");
            if (again) {
                QCOMPARE(f.Window->size(), size);
                QVERIFY(f.Find<QAction>("PartValuesMenu")->isChecked());
            } else {
                f.Window->resize(size);
                f.Trigger("PartValuesMenu");
            }
            f.Trigger("HelpWindowMenu");
            auto* const help = f.Find("HelpWindow");
            if (again) QCOMPARE(help->size(), ofHelp);
            help->resize(ofHelp);
            QVERIFY(f.Window->close());
        }
    }
};

QTEST_MAIN(FilesTest)
#include "files_test.moc"
