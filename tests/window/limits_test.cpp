// Limits in the window: typed, pasted, dragged, judged, undone, kept.
#include <QClipboard>
#include <QComboBox>
#include <QLabel>

#include "WindowFixture.h"
#include "app/PlotArea.h"
#include "files/DiskFile.h"
#include "pipeline/LimitMargins.h"

using namespace ladderwise;

/// A window with the limits' window, whose dialogs give one file name.
class LimitsFixture : public WindowFixture {
public:
    LimitsFixture() {
        const auto name = [](const FileDialogTexts& texts) {
            return QDir::current().filePath(texts.Extension == "csv" ? "l.csv" : "d.tk_ldfilt");
        };
        Window->SetFileDialogs({name, name, [](const QString&) { return UnsavedAnswer::Discard; },
                                [](const UnsavedWork&) { return RecoveryAnswer::Accept; },
                                [](const QString&) { return ChangedAnswer::Cancel; }});
        Trigger("LimitsMenu");
        Table = Find<QTableWidget>("LimitTable");
    }

    const LimitLines& Limits() const { return Window->Limits(); }
    void Paste(const QString& text) {
        QApplication::clipboard()->setText(text);
        Click("LimitPasteButton");
    }
    void TypeCell(int row, int column, const QString& text) {
        QLineEdit* const editor = OpenCell(row, column, Table);
        QVERIFY(editor);
        TypeOver(editor, text, Qt::Key_Return);
        Settle();
    }
    QString Result(int row) const { return Table->item(row, 5)->text(); }
    QString Message() const { return Find<QLabel>("LimitMessage")->text(); }

    /// Where an edge lies in the view.
    QPoint EdgeOf(std::size_t limit, double share) const {
        const auto* const area = Find<PlotArea>("PlotArea");
        for (const LimitEdge& edge : area->LimitEdges())
            if (edge.Limit == limit)
                return {edge.Left + qRound(share * (edge.Right - edge.Left)), edge.Y};
        return {};
    }
    QWidget* View() const { return Find("BitMap"); }
    void MoveTo(QPoint at, bool held) const {
        QMouseEvent move(QEvent::MouseMove, at, View()->mapToGlobal(at), Qt::NoButton,
                         held ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(View(), &move);
    }

    QTableWidget* Table;
};

/// What has to be there for the results to hold `text`.
#define SHOWS(f, text) QVERIFY2((f).Results().contains(text), qPrintable((f).Results()))

class LimitsTest : public QObject {
    Q_OBJECT

private slots:
    void RowsAreTypedAndNothingTypedIsLost() {
        LimitsFixture f;
        f.Click("LimitAddButton");
        QCOMPARE(f.Table->rowCount(), 1);
        auto* const first = f.Table->viewport()->findChild<QLineEdit*>();  // open for typing
        QVERIFY(first);
        f.TypeOver(first, "400", Qt::Key_Return);
        f.Settle();
        QCOMPARE(f.Table->item(0, 1)->text(), QString("400"));
        f.TypeCell(0, 3, "18");
        QVERIFY(f.Limits().empty() && f.Result(0) == "a number is missing");
        f.Enter("F0Box", "100");  // whatever else is done
        f.Enter("F0Box", "200");
        QCOMPARE(f.Table->item(0, 3)->text(), "18");
        f.TypeCell(0, 2, "400");
        QCOMPARE(f.Limits(), LimitLines({{LimitKind::AttenMin, 400e6, 400e6, 18.0}}));
        // A Butterworth response of third order: 10 log10(1 + 2^6) = 18.13 dB.
        QCOMPARE(f.Result(0), "holds by 0.13 dB at 400 MHz");
        SHOWS(f, "limits\tholds by 0.13 dB at 400 MHz");
        QVERIFY(f.Window->isWindowModified());
        f.Table->item(0, 0)->setText("return loss at least");  // as its list of kinds does
        f.Settle();
        QCOMPARE(f.Limits()[0].Kind, LimitKind::ReturnLossMin);
        f.Trigger("UndoMenu");
        QCOMPARE(f.Limits()[0].Kind, LimitKind::AttenMin);
        // What is no limit leaves the one in force, and is still there after other changes.
        f.TypeCell(0, 3, "-3x");
        QVERIFY2(f.Result(0).contains("no number; still atten \u2265 18 dB"),
                 qPrintable(f.Result(0)));
        f.Paste("atten-max\t0\t100\t0,5");
        QCOMPARE(f.Limits().size(), 2u);
        QCOMPARE(f.Table->item(0, 3)->text(), "-3x");
        f.TypeCell(0, 3, "18.125");
        QVERIFY2(f.Result(0).startsWith("holds by less than 0.01 dB (0.0"),
                 qPrintable(f.Result(0)));
        f.Trigger("UndoMenu");
        QCOMPARE(f.Limits()[0].Value, 18.0);
        QCOMPARE(f.Table->item(0, 3)->text(), "18");
        // A cell that is still open counts when the design is saved.
        QLineEdit* const open = f.OpenCell(0, 3, f.Table);
        open->selectAll();
        QTest::keyClicks(open, "17");
        f.Window->resize(1200, 740);  // draws everything anew
        f.Settle();
        f.Trigger("SaveMenu");
        QCOMPARE(f.Limits()[0].Value, 17.0);
        QVERIFY(!f.Window->isWindowModified());
        f.Table->selectRow(0);
        f.Click("LimitRemoveButton");
        QCOMPARE(f.Limits().size(), 1u);
        f.Trigger("OpenMenu");
        QCOMPARE(f.Limits().size(), 2u);
        QCOMPARE(f.Limits()[0].Value, 17.0);
    }

    void TablesArePastedCopiedAndFiled() {
        LimitsFixture f;
        f.Paste(
            "What\tFrom\tTo\tHow much\tRemark\r\nAttenuation at least\t288\t296\t45,5\tmine\r\n"
            "delay-variation-max\t1,8\t2\t3\t\r\n");
        const LimitLines pasted = {{LimitKind::AttenMin, 288e6, 296e6, 45.5},
                                   {LimitKind::DelayVariationMax, 1.8e6, 2e6, 3e-9}};
        QCOMPARE(f.Limits(), pasted);
        f.Paste("atten-min\t5\t4\t3");
        QVERIFY2(f.Message().contains("line 1: it ends below its beginning"),
                 qPrintable(f.Message()));
        f.Click("LimitSaveButton");
        QCOMPARE(ReadWholeFile("l.csv", 999).Bytes,
                 "kind,from_mhz,to_mhz,value\natten-min,288,296,45.5\n"
                 "delay-variation-max,1.8,2,3\n");
        f.Click("LimitCopyButton");
        f.Table->selectAll();
        f.Click("LimitRemoveButton");
        QVERIFY(f.Limits().empty() && !f.Results().contains("limits"));
        f.Click("LimitPasteButton");
        QCOMPARE(f.Limits(), pasted);
        f.Trigger("UndoMenu");
        f.Click("LimitOpenButton");
        QCOMPARE(f.Limits(), pasted);
        WriteWholeFile("l.csv", "kind,from_mhz,to_mhz,value\natten,1,2,3\n");
        f.Click("LimitOpenButton");
        QVERIFY(f.TakeMessages().join("").contains("l.csv: line 2: \"atten\" is none of"));
        QCOMPARE(f.Limits(), pasted);
    }

    void PresetsComeFromTheDesignInHand() {
        LimitsFixture f;
        f.Trigger("ChebyshevMenu");
        f.Enter("RippleBox", "0.5");
        f.Enter("LimitAttenuation", "20");
        f.Find<QLineEdit>("LimitOperating")->clear();
        f.Click("LimitPresetAdd");
        QCOMPARE(f.Limits().size(), 3u);
        // It keeps its own promise, to the edge of the ripple.
        QCOMPARE(f.Limits()[0].Value, 0.5);
        QCOMPARE(f.Limits()[1].From, 400e6);
        QVERIFY2(f.Result(0).startsWith("holds by less than 0.01 dB"), qPrintable(f.Result(0)));
        f.Find<QComboBox>("LimitTask")->setFocus();
        QTest::keyClick(f.Find("LimitTask"), Qt::Key_Down);
        f.Enter("LimitBandFrom", "144");
        f.Enter("LimitBandTo", "143");
        f.Click("LimitPresetInstead");
        QVERIFY2(f.Message().contains("ends below"), qPrintable(f.Message()));
        f.Enter("LimitBandTo", "148");
        f.Enter("LimitLoss", "1");
        f.Click("LimitPresetInstead");
        QCOMPARE(f.Limits(), LimitLines({{LimitKind::AttenMax, 144e6, 148e6, 1.0},
                                         {LimitKind::AttenMin, 288e6, 296e6, 20.0},
                                         {LimitKind::AttenMin, 432e6, 444e6, 20.0}}));
        f.Trigger("UndoMenu");
        QCOMPARE(f.Limits()[0].Value, 0.5);
    }

    void ADragIsOneStepAndEscapeTakesItBack() {
        LimitsFixture f;
        f.Paste("atten-min\t300\t600\t30");
        const double perPixel = 100.0 / f.Find<PlotArea>("PlotArea")->Layout().PlotHeight;
        const QPoint middle = f.EdgeOf(0, 0.5);
        f.MoveTo(middle, false);
        QCOMPARE(f.View()->cursor().shape(), Qt::SizeVerCursor);
        f.MoveTo(f.EdgeOf(0, 1.0), false);
        QCOMPARE(f.View()->cursor().shape(), Qt::SizeHorCursor);
        f.MoveTo(middle - QPoint(0, 40), false);
        QCOMPARE(f.View()->cursor().shape(), Qt::ArrowCursor);
        QTest::mousePress(f.View(), Qt::LeftButton, {}, middle);
        for (int y = 1; y <= 60; ++y)
            f.MoveTo(middle - QPoint(0, y), true);
        // Live: judged and drawn where the mouse is, but not yet a step.
        QCOMPARE(f.Limits()[0].Value, 30.0);
        const double now = 30.0 - 60 * perPixel, loss = 10.0 * std::log10(1.0 + std::pow(1.5, 6));
        QVERIFY(std::abs(f.EdgeOf(0, 0.5).y() - (middle.y() - 60)) <= 1);
        const QString row = f.Results().section("limits\tfails by ", 1).section(' ', 0, 0);
        QVERIFY2(std::fabs(row.toDouble() - (now - loss)) < perPixel, qPrintable(f.Results()));
        QTest::keyClick(f.View(), Qt::Key_Escape);
        SHOWS(f, "limits\tfails by");
        QCOMPARE(f.EdgeOf(0, 0.5), middle);
        f.MoveTo(middle - QPoint(0, 30), true);
        QTest::mouseRelease(f.View(), Qt::LeftButton, {}, middle - QPoint(0, 60));
        QCOMPARE(f.Limits()[0].Value, 30.0);
        // Taken.
        QTest::mousePress(f.View(), Qt::LeftButton, {}, middle);
        for (int y = 1; y <= 60; ++y)
            f.MoveTo(middle - QPoint(0, y), true);
        QTest::mouseRelease(f.View(), Qt::LeftButton, {}, middle - QPoint(0, 60));
        QVERIFY(std::fabs(f.Limits()[0].Value - now) < perPixel);
        QCOMPARE(f.Table->item(0, 3)->text().toDouble(), f.Limits()[0].Value);
        f.Trigger("UndoMenu");
        QCOMPARE(f.Limits()[0].Value, 30.0);
        QCOMPARE(f.EdgeOf(0, 0.5), middle);
        QVERIFY(f.Find<QAction>("RedoMenu")->isEnabled());
        // What goes meanwhile is not dragged any further.
        QTest::mousePress(f.View(), Qt::LeftButton, {}, middle);
        f.MoveTo(middle - QPoint(0, 10), true);
        f.Trigger("UndoMenu");
        f.MoveTo(middle - QPoint(0, 20), true);
        QTest::mouseRelease(f.View(), Qt::LeftButton, {}, middle - QPoint(0, 20));
        QVERIFY(f.Limits().empty());
    }

    void EachIsJudgedAsItStands() {
        LimitsFixture f;
        f.Paste("atten-min\t400\t400\t18\natten-max\t150\t250\t30\n");
        SHOWS(f, "18 dB, 400 MHz\tholds by 0.13 dB at 400 MHz");
        f.Click("SetRefButton");
        // Edited by hand: what is judged is the ladder that is drawn; the reference stays.
        f.EnterCell(1, 1, "30p");
        const LimitMargin edited = JudgeLimits(f.Design(), f.Limits()).Rows[0];
        QVERIFY(std::fabs(edited.Margin - 0.13) > 0.1);
        SHOWS(f, "18 dB, 400 MHz\t" + QString::fromStdString(TextOf(edited)) +
                     "\tholds by 0.13 dB at 400 MHz");
        // At its own frequencies, wherever the design is by now.
        f.Enter("F0Box", "20");
        QVERIFY(f.Results().contains("\tholds by 0.13 dB at 400 MHz\n"));
        QCOMPARE(f.Results().count("holds by 0.13 dB"), 1);
        f.Enter("F0Box", "200");
        SHOWS(f, "18 dB, 400 MHz\tholds by 0.13 dB at 400 MHz\tholds by 0.13 dB");
        // An attenuator of 25 dB, measured from 100 to 200 MHz alone.
        WriteWholeFile("pad.s2p",
                       "# MHz S DB R 50\n100 -40 0 -25 0 -25 0 -40 0\n"
                       "200 -40 0 -25 0 -25 0 -40 0\n");
        f.Window->AddMeasured({QDir::current().filePath("pad.s2p").toStdString()});
        SHOWS(f, "18 dB, 400 MHz, pad\tnot measured there");
        SHOWS(f,
              "30 dB, 150 to 250 MHz, pad\tholds by 5.00 dB at 150 MHz, as far as it is measured");
        SHOWS(f, "limits, pad\t1 of 2 not judged");
    }

    void AKilledProgramLosesNoLimits() {
        const QTemporaryDir place;
        Folders folders;
        folders.SettingsFolder = folders.StateFolder = place.path().toStdString();
        {
            LimitsFixture f;
            f.Window->Start(folders, "");
            f.Paste("atten-min\t400\t400\t18\n");
            f.Window->KeepWork();
        }
        LimitsFixture f;
        f.Window->Start(folders, "");
        QCOMPARE(f.Limits().size(), 1u);
        QVERIFY(f.Window->isWindowModified() && f.Result(0).startsWith("holds"));
    }
};

QTEST_MAIN(LimitsTest)
#include "limits_test.moc"
