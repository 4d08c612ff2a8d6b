// Measured files in the window: how they come in, what is drawn of them, what is kept of them.
#include <QClipboard>
#include <QComboBox>
#include <QMimeData>
#include <QPlainTextEdit>

#include "WindowFixture.h"
#include "exchange/Touchstone.h"
#include "files/DiskFile.h"

using namespace ladderwise;

/// A window whose dialogs give the files that a test names.
class MeasuredFixture : public WindowFixture {
public:
    MeasuredFixture() {
        const auto name = [](const FileDialogTexts&) {
            return QDir::current().filePath("d.tk_ldfilt");
        };
        Window->SetFileDialogs({name,
                                name,
                                [](const QString&) { return UnsavedAnswer::Discard; },
                                {},
                                [](const QString&) { return ChangedAnswer::Cancel; },
                                {},
                                [this](const FileDialogTexts&) { return Chosen; }});
    }

    /// An attenuator between 50 ohm from 150 to 250 MHz, with return loss 40 dB at port 1 and 30 dB
    /// at port 2.
    static QString Pad(const char* file, double dB) {
        QString text = "# MHz S DB R 50\n";
        for (const int f : {150, 180, 200, 250})
            text += QString("%1 -40 0 %2 0 %2 0 -30 0\n").arg(f).arg(dB);
        WriteWholeFile(file, text.toStdString());
        return QDir::current().filePath(file);
    }

    void Drop(const QStringList& paths, QWidget* target = nullptr) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls << QUrl::fromLocalFile(path);
        data.setUrls(urls);
        QWidget* const at = target ? target : Find("PlotArea");
        const QPoint middle = at->rect().center();
        QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(at, &enter);
        QDropEvent drop(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        if (enter.isAccepted()) QApplication::sendEvent(at, &drop);
        Settle();
        Window->FinishDrawing();
    }

    /// Teal, the first colour, is found on this row of the plot from .. to these frequencies (MHz);
    /// 0 to 0: nowhere.
    std::pair<double, double> TealAt(double dB) const {
        const QImage image = Find("PlotArea")->grab().toImage();
        const PlotContent content = Window->Content();
        const QRect frame = FrameOf(image);
        const double y = frame.top() + (content.Design.MagTopRef - dB) / 100.0 * frame.height();
        double first = 0.0, last = 0.0;
        for (int x = frame.left() + 1; x < frame.right(); ++x)
            for (int row = qRound(y) - 1; row <= qRound(y) + 1; ++row) {
                const QColor at = image.pixelColor(x, row);
                if (at.red() > 110 || at.green() < at.red() + 60 ||
                    std::abs(at.green() - at.blue()) > 20)
                    continue;
                const double share = double(x - frame.left()) / frame.width();
                const FilterDesign& design = content.Design;
                last = design.SweepF1 * std::pow(design.SweepF2 / design.SweepF1, share) / 1e6;
                if (first == 0.0) first = last;
            }
        return {first, last};
    }
    bool DrawnAt(double dB) const {
        const auto [from, to] = TealAt(dB);
        return std::fabs(from - 150.0) < 2.0 && std::fabs(to - 250.0) < 2.0;
    }
    /// No trace begins there; the name of another may stand to its right.
    bool NothingAt(double dB) const {
        const double from = TealAt(dB).first;
        return from == 0.0 || from > 160.0;
    }

    QWidget* Open() {
        Trigger("MeasuredDataMenu");
        return Find("MeasuredWindow");
    }
    QString Remarks() const { return Find<QPlainTextEdit>("MeasuredRemarks")->toPlainText(); }

    QStringList Chosen;

private:
    /// The black frame of the plot. Traces lie over it here and there: its upper and lower lines
    /// are the outermost ones that are black in three places.
    static QRect FrameOf(const QImage& image) {
        const auto black = [&](int x, int y) {
            return image.rect().contains(x, y) && image.pixelColor(x, y) == QColor(Qt::black);
        };
        const int middle = image.height() / 3 + 7;
        int left = 0, right = image.width() - 1, top = middle, bottom = middle;
        while (left < right && !black(left, middle))
            ++left;
        while (right > left && !black(right, middle))
            --right;
        for (int y = 0; y < image.height(); ++y) {
            if (!black(left + 3, y) || !black(left + 100, y) || !black(right - 9, y)) continue;
            top = std::min(top, y);
            bottom = y;
        }
        return {QPoint(left, top), QPoint(right - 1, bottom - 1)};
    }
};

/// "board.s2p": the design in hand with one coil off, measured from a frequency to a multiple of
/// it.
static void WriteBoard(const WindowFixture& f, int slot, double factor, double from, double span) {
    FilterDesign board = f.Design();
    board.Elements[slot].V1 *= factor;
    std::vector<double> freqs(200);
    for (std::size_t i = 0; i < freqs.size(); ++i)
        freqs[i] = from * std::pow(span, static_cast<double>(i) / 199.0);
    WriteWholeFile("board.s2p", TouchstoneText(board, freqs, {}));
}

class MeasuredTest : public QObject {
    Q_OBJECT

private slots:
    void DroppedFilesAreDrawnUndoneAndRefused() {
        MeasuredFixture f;
        QVERIFY(f.NothingAt(-25));
        f.Drop({f.Pad("pad.s2p", -25.0)});
        QVERIFY(f.DrawnAt(-25));
        QVERIFY(f.Window->isWindowModified());
        f.Trigger("UndoMenu");
        QVERIFY(f.NothingAt(-25) && f.Window->Measured().empty());
        QVERIFY(!f.Window->isWindowModified());
        f.Trigger("RedoMenu");
        QVERIFY(f.DrawnAt(-25));
        // One file that cannot be used hinders no other, and changes nothing.
        WriteWholeFile("bad.s2p", "# Hz\n1 0 0 1 0 1 0\n");
        f.Drop({QDir::current().filePath("bad.s2p"), f.Pad("two.s2p", -35.0),
                QDir::current().filePath("gone.S1P"), QDir::current().filePath("pad.s2p")},
               f.Open());
        const QStringList said = f.TakeMessages();
        QCOMPARE(said.size(), 2);
        QVERIFY2(said[0].contains("bad.s2p: line 2: 7 numbers") && said[0].contains("gone.S1P"),
                 qPrintable(said[0]));
        QVERIFY2(said[1].endsWith("pad.s2p is shown already."), qPrintable(said[1]));
        QCOMPARE(f.Window->Measured().size(), 2u);
        // The newest is what is looked at; reading again leaves the choice.
        auto* const table = f.Find<QTableWidget>("MeasuredTable");
        QCOMPARE(table->currentRow(), 1);
        QVERIFY(table->item(1, 0)->isSelected());
        table->selectRow(0);
        f.Click("MeasuredReadAgainButton");
        QVERIFY(table->item(0, 0)->isSelected() && !table->item(1, 0)->isSelected());
        // A design among them is no measured file, and several designs are nothing.
        f.Drop({QDir::current().filePath("pad.s2p"), QDir::current().filePath("d.tk_ldfilt")});
        QCOMPARE(f.Window->Measured().size(), 2u);
    }

    void OptionsActOnTheTrace() {
        MeasuredFixture f;
        f.Check("PlotReturnLossBox");
        f.Chosen = {f.Pad("pad.s2p", -25.0)};
        f.Open();
        f.Click("MeasuredAddButton");
        QVERIFY(f.DrawnAt(-25) && f.DrawnAt(-40) && f.NothingAt(-30));
        f.Click("MeasuredSwapped");
        QVERIFY(f.DrawnAt(-30) && f.NothingAt(-40));
        // 1.25 ns there and back is a quarter turn of the phase at 200 MHz, but no level.
        f.Enter("MeasuredSourceCable", "1.25 ns");
        QCOMPARE(f.Window->Measured()[0].SourceDelay, 1.25e-9);
        QCOMPARE(f.Text("MeasuredSourceCable"), "1250");
        f.Enter("MeasuredSourceCable", "long");
        QCOMPARE(f.Text("MeasuredSourceCable"), "1250");
        QVERIFY(f.DrawnAt(-30));
        // Into 200 ohm an attenuator's output is reflected by 0.6 (its own 30 dB move this by less
        // than 0.3 dB).
        f.Check("PlotReturnLossBox");
        f.Enter("RLBox", "200");
        QVERIFY(f.NothingAt(-25) && f.DrawnAt(-25.0 + 10.0 * std::log10(0.64)));
        QVERIFY2(
            f.Remarks().contains("from 50 \u03a9 to the design's terminations of 50 \u03a9 and "
                                 "200 \u03a9"),
            qPrintable(f.Remarks()));
        f.Enter("RLBox", "50");
        auto* const table = f.Find<QTableWidget>("MeasuredTable");
        table->item(0, 0)->setCheckState(Qt::Unchecked);
        QVERIFY(f.Window->Measured()[0].Hidden && f.NothingAt(-25));
        table->item(0, 0)->setCheckState(Qt::Checked);
        QVERIFY(f.DrawnAt(-25));
        // Measured again, and then not there any more.
        f.Pad("pad.s2p", -33.0);
        f.Click("MeasuredReadAgainButton");
        QVERIFY(f.DrawnAt(-33) && f.NothingAt(-25));
        QVERIFY(QFile::remove("pad.s2p"));
        f.Click("MeasuredReadAgainButton");
        QVERIFY(f.TakeMessages().join("").contains("cannot read"));
        QVERIFY(f.NothingAt(-33) && f.Remarks().contains("cannot read"));
        f.Click("MeasuredRemoveButton");
        QVERIFY(f.Window->Measured().empty() && table->rowCount() == 0);
    }

    void TheListIsKeptBesideTheDesign() {
        MeasuredFixture f;
        QDir::current().mkdir("data");
        f.Drop({f.Pad("data/pad.s2p", -25.0), f.Pad("two.s2p", -35.0)});
        f.Trigger("SaveMenu");
        QVERIFY(!f.Window->isWindowModified());
        const std::string text = ReadWholeFile("d.tk_ldfilt.json", 9999).Bytes;
        QVERIFY2(text.find("\"file\": \"data/pad.s2p\"") != text.npos, text.c_str());
        // Hidden is a change too, and one that undoing takes back.
        f.Open();
        f.Find<QTableWidget>("MeasuredTable")->item(1, 0)->setCheckState(Qt::Unchecked);
        QVERIFY(f.Window->isWindowModified());
        f.Trigger("UndoMenu");
        QVERIFY(!f.Window->isWindowModified());
        // One gone and one damaged: what can be opened is.
        QVERIFY(QFile::remove("two.s2p"));
        f.Trigger("OpenMenu");
        QVERIFY(f.TakeMessages().join("").contains("two.s2p"));
        QVERIFY(f.DrawnAt(-25) && !f.Window->isWindowModified());
        QCOMPARE(f.Window->Measured().size(), 2u);
        WriteWholeFile("two.s2p", "# Hz\n1 x 0\n");
        f.Trigger("OpenMenu");
        QVERIFY(f.TakeMessages().join("").contains("two.s2p: line 2: \"x\" is no number"));
        f.Trigger("SaveMenu");  // the list loses nothing by it
        QCOMPARE(ReadWholeFile("d.tk_ldfilt.json", 9999).Bytes, text);
        // A damaged list costs a notice, and the design is open without it.
        WriteWholeFile("d.tk_ldfilt.json", "{");
        f.Trigger("OpenMenu");
        QVERIFY2(f.Status().contains("d.tk_ldfilt.json"), qPrintable(f.Status()));
        QVERIFY(f.Window->Measured().empty() && f.NothingAt(-25));
    }

    void AKilledProgramLosesNoneOfIt() {
        const QTemporaryDir place;
        Folders folders;
        folders.SettingsFolder = folders.StateFolder = place.path().toStdString();
        QString pad;
        {
            MeasuredFixture f;
            f.Window->Start(folders, "");
            pad = place.filePath("pad.s2p");
            f.Pad(qPrintable(pad), -25.0);
            f.Drop({pad});
            f.Open();
            f.Click("MeasuredSwapped");
            f.Window->KeepWork();
        }
        MeasuredFixture f;
        f.Window->SetFileDialogs({{},
                                  {},
                                  [](const QString&) { return UnsavedAnswer::Discard; },
                                  [](const UnsavedWork&) { return RecoveryAnswer::Accept; }});
        f.Window->Start(folders, "");
        QVERIFY(f.DrawnAt(-25) && f.Window->Measured()[0].PortsSwapped);
        QVERIFY(f.Window->isWindowModified());
    }

    // L2 of a low-pass is 8 % high; then it is turned, and the analyser writes its file anew.
    void ABoardIsReadAndReadAgain() {
        MeasuredFixture f;
        f.Enter("F0Box", "14");
        f.Check("RealPartsButton");
        const auto measure = [&f](double factor) { WriteBoard(f, 2, factor, 1.4e6, 100.0); };
        measure(1.08);
        f.Drop({QDir::current().filePath("board.s2p")});
        f.Trigger("BoardMenu");
        const auto* const table = f.Find<QTableWidget>("BoardParts");
        const auto off = [table](int row) {
            return table->item(row, 3)->text().section(' ', 0, 0).toDouble();
        };
        QCOMPARE(table->rowCount(), 3);
        QCOMPARE(table->item(1, 0)->text(), "L2");
        QVERIFY(std::abs(off(1) - 8.0) < 0.2 && std::abs(off(0)) < 0.3 && std::abs(off(2)) < 0.3);
        f.Click("BoardCopyButton");
        const QStringList copied = QApplication::clipboard()->text().split('\n');
        QCOMPARE(copied.size(), 5);  // a line each, the last one ended
        QVERIFY2(copied[0].startsWith("Part\tNominal\t"), qPrintable(copied[0]));
        QVERIFY2(copied[2].startsWith("L2\t") && copied[2].contains("\t+8."),
                 qPrintable(copied[2]));
        const auto* const next = f.Find<QTableWidget>("BoardNext");
        QCOMPARE(next->item(0, 0)->text(), "L2");
        QVERIFY(next->item(0, 1)->text().startsWith('-'));
        const double nominal = f.Design().Elements[2].V1;
        f.Click("BoardPutButton");
        QVERIFY(std::abs(f.Design().Elements[2].V1 / nominal - 1.08) < 0.002);
        f.Trigger("UndoMenu");
        QCOMPARE(f.Design().Elements[2].V1, nominal);
        QCOMPARE(table->rowCount(), 0);  // it was read for another ladder
        f.Click("BoardReadButton");
        measure(1.0);
        QVERIFY(QTest::qWaitFor([&] { return table->rowCount() == 3 && std::abs(off(1)) < 0.2; }));
        f.Find("BoardWindow")->close();
    }

    // A coil of 1 % more detunes its resonator by 1 / sqrt(1.01), and the others not at all.
    void ABoardsResonatorsAreToldInKilohertz() {
        MeasuredFixture f;
        f.Trigger("BandPassMenu");
        f.Enter("F0Box", "14");
        f.Enter("BandWidthBox", "1");
        f.Check("RealPartsButton");
        WriteBoard(f, 1, 1.01, 10e6, 2.0);
        f.Drop({QDir::current().filePath("board.s2p")});
        f.Trigger("BoardMenu");
        const auto* const table = f.Find<QTableWidget>("BoardParts");
        QCOMPARE(table->rowCount(), 6 + 3);
        const double F0 = f.Design().F0 / 1e3;
        const std::pair<const char*, double> tanks[] = {
            {"L1 C2", F0 / std::sqrt(1.01) - F0}, {"L3 C4", 0.0}, {"L5 C6", 0.0}};
        for (int i = 0; i < 3; ++i) {
            const auto cell = [&](int column) { return table->item(6 + i, column)->text(); };
            QCOMPARE(cell(0), tanks[i].first);
            QVERIFY2(cell(3).endsWith(" kHz"), qPrintable(cell(3)));
            const QStringList ends = cell(4).split(' ');
            const double low = ends[0].toDouble(), high = ends[2].toDouble();
            QVERIFY2(low < tanks[i].second && high > tanks[i].second && high - low < 200.0,
                     qPrintable(cell(4)));
            QCOMPARE(high < 0.0, i == 0);
            const double off = cell(3).section(' ', 0, 0).toDouble();
            QVERIFY2(low < off && off < high, qPrintable(cell(3)));
        }
        f.Find("BoardWindow")->close();
    }
};

QTEST_MAIN(MeasuredTest)
#include "measured_test.moc"
