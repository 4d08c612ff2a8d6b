// The export dialog, used as a user does: what it saves is what the console writes of the same
// design, and what it cannot save it says.
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>

#include "WindowFixture.h"
#include "files/DiskFile.h"
#include "files/PlatformFolders.h"
#include "windows/ExportDialog.h"

using namespace ladderwise;

namespace {

class ExportFixture : public WindowFixture {
public:
    ExportFixture() {
        Window->SetFileDialogs({{},
                                [this](const FileDialogTexts& texts) {
                                    LastTexts = texts;
                                    return NextName;
                                },
                                [](const QString&) { return UnsavedAnswer::Discard; },
                                {},
                                {},
                                [this](const QStringList& files) {
                                    Replaced << files;
                                    return MayReplace;
                                }});
    }

    /// Opens the dialog at a kind, lets `use` set its options, and saves to `name`, if any.
    void Export(int kind, const std::function<void(QWidget*)>& use, const QString& name = {}) {
        ExpectModal("Export", [=, this](QWidget* dialog) {
            dialog->findChild<QListWidget*>("ExportKindList")->setCurrentRow(kind);
            use(dialog);
            NextName = name;
            if (!name.isEmpty()) Button(dialog, "ExportSaveButton")->click();
        });
        Trigger("ExportMenu");
    }

    static QPushButton* Button(QWidget* dialog, const char* name) {
        return dialog->findChild<QPushButton*>(name);
    }
    static void Pick(QWidget* dialog, const char* combo, int entry) {
        dialog->findChild<QComboBox*>(combo)->setCurrentIndex(entry);
    }
    static void Type(QWidget* dialog, const char* box, const QString& text) {
        TypeOver(dialog->findChild<QLineEdit*>(box), text, Qt::Key_unknown);
    }
    static QString Said(QWidget* dialog) {
        return dialog->findChild<ElidedLabel*>("ExportReason")->Text();
    }

    QString NextName;
    FileDialogTexts LastTexts;
    QStringList Replaced;
    bool MayReplace = false;
};

QByteArray Content(const QString& file) {
    QFile content(file);
    return content.open(QIODevice::ReadOnly) ? content.readAll()
                                             : QByteArray("no file " + file.toUtf8());
}

void RunConsole(const QString& arguments) {
    QProcess console;
    console.start(LADDERWISE_CLI, arguments.split(' '));
    QVERIFY(console.waitForFinished() && console.exitCode() == 0);
}

}  // namespace

class ExportTest : public QObject {
    Q_OBJECT

private slots:
    void SavesWhatTheConsoleWrites() {
        using F = ExportFixture;
        const auto nothing = [](QWidget*) {};
        const auto range = [](QWidget* dialog, const QString& page) {
            F::Pick(dialog, qPrintable("Export" + page + "RangeBox"), 1);
            F::Type(dialog, qPrintable("Export" + page + "FromBox"), "12.5");
            F::Type(dialog, qPrintable("Export" + page + "ToBox"), "900");
            F::Type(dialog, qPrintable("Export" + page + "PointsBox"), "77");
            F::Pick(dialog, qPrintable("Export" + page + "SpacingBox"), 1);
        };
        const QString own = " --from 12.5 --to 900 --points 77 --spacing logarithmic";
        const struct {
            int Kind;
            std::function<void(QWidget*)> Use;
            QString File, Arguments;
        } cases[] = {
            {0, nothing, "a.s2p", "--touchstone a.s2p"},
            {0, [](QWidget* d) { F::Type(d, "ExportReferenceBox", "75"); }, "b.s2p",
             "--touchstone b.s2p --reference 75"},
            {0,
             [&](QWidget* d) {
                 F::Pick(d, "ExportVersionBox", 1);
                 range(d, "Touchstone");
             },
             "c.s2p", "--touchstone c.s2p --touchstone-version 2" + own},
            {1, [&](QWidget* d) { range(d, "Netlist"); }, "a.cir",
             "--netlist a.cir --netlist-for ngspice" + own},
            {1,
             [](QWidget* d) {
                 F::Pick(d, "ExportNetlistRangeBox", 0);
                 F::Pick(d, "ExportSimulatorBox", 1);
                 d->findChild<QAbstractButton*>("ExportSubcircuitCheck")->click();
             },
             "b.cir", "--netlist b.cir --netlist-for ltspice --subckt"},
            {2, nothing, "a.asc", "--schematic a.asc"},
            {3, [](QWidget* d) { F::Pick(d, "ExportSweepSeparatorBox", 1); }, "a.csv",
             "--csv a.csv --csv-separator ;"},
            {4, [](QWidget* d) { F::Pick(d, "ExportPartsSeparatorBox", 0); }, "b.csv",
             "--parts-list b.csv"},
            {5, nothing, "a.png", "--plot a.png --picture both"},
            {5,
             [](QWidget* d) {
                 F::Pick(d, "ExportPartsBox", 1);
                 F::Pick(d, "ExportBackgroundBox", 1);
                 F::Pick(d, "ExportFormatBox", 1);
                 F::Type(d, "ExportWidthBox", "297");
                 F::Type(d, "ExportHeightBox", "210");
                 F::Pick(d, "ExportUnitBox", 1);
             },
             "a.svg", "--plot a.svg --picture schematic --white --size 297x210mm"},
        };
        ExportFixture f;
        f.Trigger("ChebyshevMenu");
        f.Enter("F0Box", "145.825", Qt::Key_unknown);  // typed and not yet read
        QDir().mkdir("console");
        for (const auto& c : cases) {
            f.Export(c.Kind, c.Use, QDir::current().filePath(c.File));
            const QByteArray saved = Content(c.File);
            QVERIFY(QFile::remove(c.File));
            RunConsole("--set response=chebyshev --set f0=145.825 " + c.Arguments);
#ifdef Q_OS_WIN
            const bool fontsDiffer = c.Kind == 5;  // the console has the system's own there
            if (fontsDiffer) continue;
#endif
            QVERIFY2(saved == Content(c.File) && !saved.isEmpty(), qPrintable(c.Arguments));
            QVERIFY(QFile::remove(c.File));
        }
        QCOMPARE(f.LastTexts.Start, QDir::currentPath() + "/3 Pole Chebyshev LPF.svg");
        // Kind and options are those of the last time; what will be saved is seen before.
        f.Export(5, [](QWidget* d) {
            const QImage seen = d->findChild<QWidget*>("ExportPicture")->grab().toImage();
            int ink = 0;
            for (int at = 0; at < seen.width() * seen.height(); ++at)
                ink += qGray(seen.pixel(at % seen.width(), at / seen.width())) < 128;
            QVERIFY2(ink > 300, "symbols and names of three parts");
            QCOMPARE(d->findChild<QComboBox*>("ExportFormatBox")->currentIndex(), 1);
            QCOMPARE(d->findChild<QLineEdit*>("ExportWidthBox")->text(), "297");
        });
    }

    void SaysWhyNothingIsWritten() {
        using F = ExportFixture;
        F f;
        f.Export(0, [](QWidget* d) {
            QPushButton* const save = F::Button(d, "ExportSaveButton");
            QVERIFY(save->isEnabled() && F::Said(d).isEmpty());
            F::Type(d, "ExportReferenceBox", "abc");
            QTRY_VERIFY(!save->isEnabled() && !F::Button(d, "ExportCopyButton")->isEnabled());
            QCOMPARE(F::Said(d), "Reference: \"abc\" is no number above 0.");
            QVERIFY(d->findChild<QPlainTextEdit*>("ExportText")->toPlainText().isEmpty());
            F::Type(d, "ExportReferenceBox", "50");
            F::Pick(d, "ExportTouchstoneRangeBox", 1);
            F::Type(d, "ExportTouchstoneToBox", "1");
            QTRY_COMPARE(F::Said(d), "The frequencies end above their start.");
            F::Type(d, "ExportTouchstoneToBox", "1000");
            QTRY_VERIFY(save->isEnabled());
            QVERIFY(d->findChild<QLabel*>("ExportExtent")
                        ->text()
                        .startsWith("1001 points, 20.00 MHz to 1.000 GHz, 20"));
        });
        f.Export(5, [](QWidget* d) {
            F::Pick(d, "ExportUnitBox", 1);
            F::Type(d, "ExportWidthBox", "3");
            QTRY_VERIFY(!F::Button(d, "ExportSaveButton")->isEnabled());
            QVERIFY2(F::Said(d).contains(" mm wide and high"), qPrintable(F::Said(d)));
            F::Type(d, "ExportWidthBox", "200");
            F::Type(d, "ExportHeightBox", "100");
            F::Pick(d, "ExportUnitBox", 0);
        });
        // A file that is there is replaced only if the user wants it; a failing write says so.
        QVERIFY(WriteWholeFile("there.s2p", "old").empty());
        const auto nothing = [](QWidget*) {};
        f.Export(0, nothing, "there.s2p");
        QCOMPARE(f.Replaced, QStringList{QDir::current().absoluteFilePath("there.s2p")});
        QCOMPARE(Content("there.s2p"), QByteArray("old"));
        f.MayReplace = true;
        f.Export(0, nothing, "there.s2p");
        QVERIFY(Content("there.s2p").startsWith("! Ladderwise"));
        f.Export(0, nothing, QDir::current().filePath("no folder/a.s2p"));
        QVERIFY(f.TakeMessages().join("").startsWith("Error: cannot write "));
    }

    void RunsOfTheWorstCaseAndCopies() {
        using F = ExportFixture;
        F f;
        f.Check("WorstCaseBox");
        const std::vector<double> low = f.State().WorstCase.LowDb;
        f.EnterCell(0, 2, "100E-9");  // a ladder edited by hand has no worst case
        f.Export(0, [](QWidget* d) {
            QVERIFY(!d->findChild<QAbstractButton*>("ExportRunsCheck")->isEnabled());
            F::Button(d, "ExportCopyButton")->click();
        });
        QVERIFY(QApplication::clipboard()->text().contains("edited"));
        f.Click("CalcButton");
        const auto withRuns = [](QWidget* d) {
            d->findChild<QAbstractButton*>("ExportRunsCheck")->click();
            F::Type(d, "ExportRunsBox", "2");
        };
        f.Export(0, withRuns, "w.s2p");
        QVERIFY(Content("w-run2.s2p").contains("worst-case run 2"));
        QVERIFY(!QFile::exists("w-run3.s2p"));
        QVERIFY(Content("w.s2p") != Content("w-run1.s2p"));
        f.Trigger("CopyPictureMenu");
        const QImage copied = QApplication::clipboard()->image();
        QCOMPARE(copied.size(), QSize(1280, 800));
        int red = 0, dark = 0;
        for (int at = 0; at < 1280 * 800; ++at) {
            const QRgb pixel = copied.pixel(at % 1280, at / 1280);
            const bool isRed = qGreen(pixel) < 60 && qBlue(pixel) < 60;
            red += isRed && qRed(pixel) > 120;
            dark += isRed && qRed(pixel) > 35 && qRed(pixel) < 105;
        }
        // One trace has some 1800 pixels, and none that is dark.
        QVERIFY2(red > 4000, "the worst case lies over the copied plot");
        QVERIFY2(dark > 1000, "and its bands over it");
        QVERIFY(QApplication::clipboard()->mimeData()->hasFormat("image/svg+xml"));
        QCOMPARE(f.State().WorstCase.Runs, 100);
        QCOMPARE(f.Difference(), QString());
    }
};

QTEST_MAIN(ExportTest)
#include "export_test.moc"
