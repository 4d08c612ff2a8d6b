// The main window by real events: what it shows at start, the wiring of every box, menu entry,
// radio button and check box, colours, the layout of plot and grid, and the status line.
#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QScrollBar>
#include <functional>

#include "display/PlotFrame.h"
#include "numbers/Formatfunctions.h"
#include "tests/window/WindowFixture.h"

using namespace ladderwise;

namespace {

/// The first black pixel from the left in the middle of the plot: its frame.
int LeftEdgeOfFrame(const WindowFixture& f) {
    const QImage image = f.Find("BitMap")->grab().toImage();
    const int y = f.Find("PanelView")->height() + 60;
    for (int x = 0; x < image.width(); ++x)
        if (image.pixelColor(x, y) == QColor(Qt::black)) return x;
    return -1;
}

}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

private slots:
    void StartsWithAButterworthLowPass() {
        WindowFixture f;
        QCOMPARE(f.Window->windowTitle(), QString("3 Pole Butterworth LPF \u2014 Ladderwise"));
        // A Butterworth by its closed form: 10 log10(1 + (f / F0)^6).
        QCOMPARE(f.Status(), QString());
        QCOMPARE(f.Results(),
                 "loss at Fo\t3.01 dB\nleast loss\t0.00 dB at 0 Hz\n-3 dB edge\t200.00 MHz\n"
                 "return loss at least\t18.13 dB up to 100.00 MHz\n"
                 "attenuation at 2 Fo\t18.13 dB\nattenuation at 3 Fo\t28.63 dB\n");
        // C = 1 / (2 pi F0 R) and L = 2 R / (2 pi F0), F0 = 200 MHz, R = 50 ohm
        QCOMPARE(f.Cell(0, 0) + f.Cell(0, 1) + f.Cell(0, 2) + f.Cell(0, 3), "    Ind79.6E-9");
        QCOMPARE(f.Cell(1, 1) + f.Cell(1, 2) + f.Cell(1, 3), "15.9E-1215.9E-12");
        QCOMPARE(f.Grid->columnCount(), 4);
        QVERIFY(!f.Find("StripScrollBar")->isVisible());
        QCOMPARE(LeftEdgeOfFrame(f), 60);
        QCOMPARE(f.Difference(), QString());
    }

    void ResultsAreSeenAndCopied() {
        WindowFixture f;
        auto* const table = f.Find<QTableWidget>("ResultsTable");
        const auto inkOf = [&](int row, int column) {
            const QImage image = table->viewport()->grab().toImage();
            const QRect cell = table->visualItemRect(table->item(row, column));
            int ink = 0;
            for (int y = cell.top(); y <= cell.bottom(); ++y)
                for (int x = cell.left(); x <= cell.right(); ++x)
                    ink += image.rect().contains(x, y) && image.pixelColor(x, y).lightness() < 100;
            return ink;
        };
        for (int row = 0; row < table->rowCount(); ++row)
            for (int column = 0; column < 2; ++column) {
                const QString text = table->item(row, column)->text();
                QVERIFY2(inkOf(row, column) > 15, qPrintable(text));
                QVERIFY2(table->columnWidth(column) > table->fontMetrics().horizontalAdvance(text),
                         qPrintable(text));
            }
        const auto copied = [&] {
            QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
            return QApplication::clipboard()->text();
        };
        table->setCurrentCell(1, 0);
        table->clearSelection();
        QCOMPARE(copied(), f.Results());
        table->item(0, 1)->setSelected(true);
        QCOMPARE(copied(), "3.01 dB\n");
        table->clearSelection();
        // 18.13 dB = 10 log10(1 + 2^6)
        QVERIFY2(f.Results().contains("18.13 dB\n"), qPrintable(f.Results()));
        QVERIFY(!f.Results().contains("M1 "));
        auto* const bitMap = f.Find("BitMap");  // F0 stands in the middle of the plot
        QTest::mouseClick(bitMap, Qt::LeftButton, {}, {bitMap->width() / 2, 300});
        f.Find("MarkerPopupMenu")->close();
        f.Trigger("FreqMarkerMenu");
        const QRegularExpression marker("\nM1 (199|200)[.0-9]* MHz, Mag\t-(2.9|3.0)[0-9] dB\n");
        QVERIFY2(f.Results().contains(marker), qPrintable(f.Results()));
        // More rows than the panel is high stand beside each other where the room is there, and
        // are scrolled up and down, never sideways, where it is not.
        for (int i = 0; i < 4; ++i) {
            QTest::mouseClick(bitMap, Qt::LeftButton, {}, {200 + 90 * i, 300});
            f.Find<QMenu>("MarkerPopupMenu")->close();
            f.Trigger("FreqMarkerMenu");
        }
        for (const int width : {1800, 900}) {
            f.Window->resize(width, 760);
            QCoreApplication::processEvents();
            QVERIFY(table->isVisible());
            bool all = true;
            for (const auto* const item : table->findItems("", Qt::MatchContains)) {
                if (!item) continue;  // below the last one
                const QRect cell = table->visualItemRect(item), view = table->viewport()->rect();
                QVERIFY2(cell.left() >= 0 && cell.right() <= view.right() + 1,
                         qPrintable(item->text()));
                all = all && cell.bottom() <= view.bottom();
            }
            QCOMPARE(all, width == 1800);
            table->clearSelection();
            QCOMPARE(copied().count("\nM"), 5);
        }
    }

    void ResultsFoldWhereTheLadderTakesTheRoom() {
        WindowFixture f;
        auto* const tab = f.Find<QAbstractButton>("ResultsTab");
        auto* const figures = f.Find<QLabel>("FiguresLabel");
        const auto open = [&] { return f.Find("ResultsTable")->isVisible(); };
        QVERIFY(open() && !tab->isVisible() && !figures->isVisible());
        f.Trigger("DirectCoupledMenu");
        f.Enter("NumPolesBox", "10");
        QVERIFY(!open() && tab->isVisible());
        QVERIFY2(figures->isVisible() && figures->text().contains(", -3 dB edges "),
                 qPrintable(figures->text()));
        // Scrolled to its end the ladder shows its load, and all of the load's text.
        auto* const bar = f.Find<QScrollBar>("StripScrollBar");
        bar->setValue(bar->maximum());
        const QImage image = f.Find("BitMap")->grab().toImage();
        const int right = tab->mapTo(f.Find("Client"), QPoint()).x(), y = f.Grid->y() - 50;
        const auto inkIn = [&](const QRect& rect) {
            int ink = 0;
            for (int x = rect.left(); x <= rect.right(); ++x)
                for (int row = rect.top(); row <= rect.bottom(); ++row)
                    ink += image.pixelColor(x, row).lightness() < 100;
            return ink;
        };
        QVERIFY(inkIn({right - 57, y, 50, 20}) > 20);
        QCOMPARE(inkIn({right - 6, y, 6, 20}), 0);
        f.Click("ResultsTab");
        QVERIFY(open() && !figures->isVisible());
        f.Enter("NumPolesBox", "3");
        QVERIFY(open() && !tab->isVisible());
    }

    void RowsThatNoPartUsesLeaveTheirRoomToThePlot() {
        WindowFixture f;
        const auto rows = [&] { return f.Grid->height() / f.Grid->rowHeight(0); };
        QCOMPARE(rows(), 2);
        const int top = f.Grid->y();
        f.Trigger("EllipticAMenu");
        f.Trigger("BandPassMenu");
        QCOMPARE(rows(), 4);
        QVERIFY(f.Grid->y() < top && f.Grid->visualItemRect(f.Grid->item(3, 0)).height() > 10);
        f.Trigger("LowPassMenu");
        QCOMPARE(rows(), 2);
        QCOMPARE(f.Grid->y(), top);
    }

    void ControlsKeepTheNamesOfStoredDesigns() {
        WindowFixture f;
        const QString names =  // those that no other test reaches
            "SetRefButton ExchangeRefButton FontLabel ReminderLabel SamplingFrequencyBox "
            "PlotReferenceBox MouseReadOutMenu PrevFile0Menu PrevFile3Menu CoefficientsFileMenu "
            "SetRefPeakMenu OpenMenu SaveMenu PrintMenu OptionsWindowMenu HelpWindowMenu";
        for (const QString& name : names.split(' '))
            QVERIFY2(f.Window->findChild<QObject*>(name), qPrintable(name));
        f.ExpectModal("About Ladderwise");
        f.Trigger("AboutMenu");
    }

    void EveryChoiceReachesTheCalculation() {
        WindowFixture f;
        f.Trigger("PartDefinitionsMenu");
        for (const ChoiceTable& table : ChoiceTables()) {
            const bool here = table.Id < ChoiceId::TankType && table.Form != ConsoleForm::Hidden;
            for (const ChoiceRow& row : table.Rows) {
                if (!here || !*row.Component || row.Word == QString("coefficients")) continue;
                const QString control = row.Component;
                control.endsWith("Menu") ? f.Trigger(control) : f.Check(control);
                QVERIFY2(f.InUse(table.Name) == row.Word && f.Checked(control), row.Component);
                QCOMPARE(f.Difference(), QString());
            }
        }
        for (const char* const trace : {"PlotPhaseBox", "PlotMag1dBBox", "PlotReturnLossBox"})
            f.Check(trace);
        QCOMPARE(f.InUse("traces"), "mag1,mag10,phase,rl");
        f.Check("PlotGDBox");
        f.Check("PlotMagBox");
        QCOMPARE(f.InUse("traces"), "mag1,phase,gd,rl");
        QCOMPARE(f.Find<QLabel>("ToleranceLabel")->text(), "C 1%    L 1%");
        f.Check("RealPartsButton");
        f.Trigger("LowPassPrototypeMenu");  // takes ideal parts, not snapped
        QVERIFY(f.Checked("LowPassPrototypeMenu") && !f.Checked("LowPassMenu"));
        QVERIFY(f.Checked("IdealPartsButton") && !f.Checked("StdValuesBox"));
        f.Trigger("BandPassMenu");
        QCOMPARE(f.Colour("F0Box"), SilverColour);
        f.Enter("F0Box", "200");
        f.Enter("BandWidthBox", "33.333");
        f.Check("BWPercentButton");
        f.Enter("F0Box", "100");  // the percentage stays, the bandwidth follows
        f.Check("BWMHzButton");
        QCOMPARE(f.InUse("bw"), "16666500");
    }

    void TypedTextIsReadAndCleaned() {
        // clang-format off
        const struct { const char *Box, *Name, *Typed, *Shown, *InUse; bool Replaced; } cases[] = {
            {"F0Box", "f0", "145.825", "146", "145825000", false}, {"NumPolesBox", "poles", "11", "10", "10", true},
            {"BandWidthBox", "bw", "0.1", "1", "1000000", true}, {"RSBox", "r-source", "75", "75", "75", false},
            {"RLBox", "r-load", "1e12", "1000000", "1000000", true}, {"RippleBox", "ripple", "2", "1", "1", true},
            {"EllipticAttenBox", "atten", "inf", "40", "40", true}, {"TrapTypeBox", "trap", "7", "4", "4", true},
            {"IndQBox", "ind-q", "good", "35", "35", true}, {"IndCBox", "ind-c", "", ".25", "2.5e-13", true},
            {"CapRBox", "cap-r", "1e9", "1.0E6", "1000000", true}, {"WorstCaseSimsBox", "runs", "0", "1", "1", true},
            {"CapLBox", "cap-l", ".75", ".75", "7.5e-10", false}, {"F0Box", "f0", "145825k", "146", "145825000", false},
            {"BandWidthBox", "bw", " 12 mhz", "12", "12000000", false}, {"RSBox", "r-source", "1 kohm", "1000", "1000", false},
            {"RippleBox", "ripple", "0.5 dB", "0.5", "0.5", false}, {"IndCBox", "ind-c", "2f", "0.002", "2e-15", false}};
        // clang-format on
        for (const auto& c : cases) {
            WindowFixture f;
            f.Trigger("BandPassMenu");
            // Elliptic traps enable every box but would force the load
            if (c.Box != QString("RLBox")) f.Trigger("EllipticDMenu");
            f.Trigger("PartDefinitionsMenu");
            for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Tab}) {
                f.Enter(c.Box, c.Typed, end);
                const QString note = QString(": %1").arg(c.Shown);
                const QString what = f.Text(c.Box) + " in " + c.Box + ", in use " + f.InUse(c.Name);
                QVERIFY2(f.Text(c.Box) == c.Shown && f.InUse(c.Name) == c.InUse, qPrintable(what));
                QVERIFY2((f.Colour(c.Box) == SilverColour) == c.Replaced, qPrintable(what));
                QVERIFY2(f.Status().contains(" used.") == c.Replaced, qPrintable(what));
                QVERIFY2(!c.Replaced || f.Status().contains(note), qPrintable(what));
                f.Click("CalcButton");  // the exact value stays behind three digits
                QVERIFY2(f.IsNormal(c.Box) && f.InUse(c.Name) == c.InUse, qPrintable(what));
            }
        }
    }

    void DecimalCommaReachesEveryText() {
        SetSystemFormatSettings({','});
        const auto point = qScopeGuard([] { SetSystemFormatSettings({'.'}); });
        WindowFixture f;
        f.Check("PlotGDBox");
        for (const char* const typed : {"145,825", "145.825"}) {
            f.Enter("F0Box", typed);
            QCOMPARE(f.InUse("f0"), "145825000");
            QVERIFY(f.IsNormal("F0Box"));
            QVERIFY(f.Find("F0Box")->toolTip().contains("In use: 145,825 MHz"));
        }
        QTest::keyClick(f.Find("F0Box"), Qt::Key_Up);
        QCOMPARE(f.InUse("f0"), "146825000");
        QCOMPARE(f.Cell(0, 2), "108E-9");  // 2 x 50 ohm / (2 pi 146.825 MHz)
        QVERIFY2(f.Grid->item(1, 1)->toolTip().contains(','), "the exact value of the cell");
        f.EnterCell(0, 2, "12,5n");
        QCOMPARE(f.Design().Elements[2].V1, 12.5e-9);
        QCOMPARE(f.Cell(0, 2), "12,5E-9");
        f.Check("AutoScaleCheckBox");
        f.Enter("ScaleBox", "2,5e-9");
        QCOMPARE(f.Design().GDFullScale, 2.5e-9);
    }

    void ReplacementStaysVisibleAfterOneAction() {
        // Whatever the user does to leave a box with bad text, it is read once and seen as
        // replaced.
        WindowFixture f;
        QWidget* const parts = f.Find("PartDefinitionsWindow");
        f.Trigger("PartDefinitionsMenu");
        const auto key = [&](const char* box, Qt::Key k) { QTest::keyClick(f.Find(box), k); };
        const struct {
            const char *Box, *What;
            std::function<void()> Act;
        } actions[] = {{"F0Box", "Calc clicked", [&] { f.Click("CalcButton"); }},
                       {"F0Box", "trace clicked", [&] { f.Check("PlotPhaseBox"); }},
                       {"F0Box", "menu entry", [&] { f.Trigger("HighPassMenu"); }},
                       {"F0Box", "menu by keys: Sweep, Linear",
                        [&] {
                            QTest::keyClick(f.Window.get(), Qt::Key_7, Qt::AltModifier);
                            QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_L);
                        }},
                       {"F0Box", "F7", [&] { key("F0Box", Qt::Key_F7); }},
                       {"F0Box", "F4", [&] { key("F0Box", Qt::Key_F4); }},
                       {"IndQBox", "its Calc clicked", [&] { f.Click("PartCalcButton"); }},
                       {"IndQBox", "tolerance clicked", [&] { f.Check("TwoPercentCap"); }},
                       {"IndQBox", "Enter", [&] { key("IndQBox", Qt::Key_Return); }}};
        for (const auto& [box, what, act] : actions) {
            f.Enter(box, "rubbish", Qt::Key_unknown);
            act();
            WindowFixture::Settle();
            QVERIFY2(f.Colour(box) == SilverColour && parts->isVisible(), what);
            QVERIFY2(f.Status().contains("\"rubbish\" is no number: "), what);
        }
        // F4 to Bessel disables the box that it is pressed in.
        f.Trigger("ChebyshevMenu");
        f.Enter("RippleBox", "rubbish", Qt::Key_unknown);
        key("RippleBox", Qt::Key_F4);
        QVERIFY(!f.Find("RippleBox")->isEnabled());
        QCOMPARE(f.Colour("RippleBox"), SilverColour);
    }

    void TabReachesEveryEnabledControl() {
        WindowFixture f;
        f.Trigger("BandPassMenu");
        f.Trigger("ChebyshevMenu");
        f.Find("F0Box")->setFocus();
        QStringList reached;
        for (int i = 0; i < 60; ++i) {
            reached << QApplication::focusWidget()->objectName();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        const QString wanted =
            "F0Box BandWidthBox BWMHzButton NumPolesBox RSBox RLBox RippleBox CalcButton "
            "IdealPartsButton PercentChangeBox StdValuesBox WorstCaseBox PlotMagBox "
            "PlotMag1dBBox PlotReturnLossBox PlotPhaseBox PlotGDBox ValueGrid";
        const QStringList order = wanted.split(' ');
        for (const QString& name : order)
            QVERIFY2(reached.contains(name), qPrintable(name));
        // From box to box as they are read.
        QStringList inOrder;
        for (const QString& name : reached)
            if (order.contains(name) && !inOrder.contains(name)) inOrder << name;
        QCOMPARE(inOrder, order);
    }

    void TerminationsMoveTheLoadAndTheForm() {
        WindowFixture f;
        f.Enter("RLBox", "25");
        QVERIFY(f.Checked("FormLCLMenu") && !f.Checked("FormCLCMenu"));
        QVERIFY(f.Status().startsWith("The terminations ask for the form LCL."));
        f.Trigger("ChebyshevMenu");
        f.Enter("RLBox", "50");
        f.Enter("NumPolesBox", "4");
        QCOMPARE(f.Colour("RLBox"), QColor(255, 255, 0));
        QVERIFY2(f.Status().contains("R Load was moved to 32.495 ohm"), qPrintable(f.Status()));
        f.Click("CalcButton");
        QVERIFY(f.IsNormal("RLBox"));
        // Not the user's value until it is: the mark outlives the reason.
        f.Enter("NumPolesBox", "5");
        QVERIFY2(f.Status().contains("50 ohm was asked for"), qPrintable(f.Status()));
        f.Enter("RLBox", "32.5");
        QVERIFY2(!f.Status().contains("asked for"), qPrintable(f.Status()));
        f.Trigger("BesselFreqMenu");
        QVERIFY2(f.Status().contains("32.5 ohm was asked for"), qPrintable(f.Status()));
    }

    void ControlsFollowPassAndResponse() {
        // An elliptic low-pass leaves the trap panel as it was.
        // clang-format off
        const struct { const char *Pass, *Response; bool BandWidth, Ripple, Atten, Panel; } cases[] = {
            {"LowPassMenu", "ButterworthMenu", false, false, false, false},
            {"HighPassMenu", "ChebyshevMenu", false, true, false, false},
            {"BandPassMenu", "GaussMenu", true, false, false, false},
            {"NotchMenu", "EllipticCMenu", true, true, true, true},
            {"LowPassMenu", "EllipticDMenu", false, true, true, true},
            {"LowPassMenu", "PapoulisMenu", false, false, false, false},
            {"LowPassMenu", "EllipticDMenu", false, true, true, false},
            {"NortonMenu", "ButterworthMenu", true, false, false, false}};
        // clang-format on
        WindowFixture f;
        for (const auto& c : cases) {
            f.Trigger(c.Pass);
            f.Trigger(c.Response);
            const auto expect = [&](bool enabled, const QString& names) {
                for (const QString& name : names.split(' '))
                    QVERIFY2(f.Find(name)->isEnabled() == enabled,
                             qPrintable(QString(c.Pass) + " " + c.Response + " " + name));
            };
            expect(c.BandWidth, "BandWidthBox BandWidthUpDown BWMHzButton BWPercentButton");
            expect(c.Ripple, "RippleBox RippleUpDown RippleLabel");
            expect(c.Atten, "EllipticAttenBox EllipticAttenUpDown EllipticAttenLabel");
            QCOMPARE(f.Find("EllipticPanel")->isVisible(), c.Panel);
            QCOMPARE(f.Find<QLabel>("PolesLabel")->text(), c.Atten ? "&N Traps" : "&N Poles");
        }
    }

    void GroupDelayScale() {
        WindowFixture f;
        QVERIFY(!f.Find("AutoScaleCheckBox")->isVisible());
        f.Check("PlotGDBox");
        QVERIFY(f.Find("AutoScaleCheckBox")->isVisible() && !f.Find("ScaleBox")->isVisible());
        QCOMPARE(LeftEdgeOfFrame(f), 85);
        const double computed = f.Design().GDFullScale;
        f.Check("AutoScaleCheckBox");
        const QWidget* const box = f.Find("ScaleBox");
        const int height = box->sizeHint().height();
        const int middle = f.Find("PanelView")->height() + 35;  // at the top of the plot
        QVERIFY(box->isVisible());
        QCOMPARE(box->geometry(), QRect(1, middle - height / 2, 83, height));
        f.Check("PlotMagBox");
        QCOMPARE(LeftEdgeOfFrame(f), 60);
        QCOMPARE(box->width(), 58);
        f.Enter("ScaleBox", "5e-9");
        QCOMPARE(f.Design().GDFullScale, 5e-9);
        QVERIFY(f.IsNormal("ScaleBox"));
        f.Enter("ScaleBox", "x");
        QCOMPARE(f.Colour("ScaleBox"), SilverColour);
        QVERIFY(f.Status().contains("\"x\" is no number"));
        f.Check("AutoScaleCheckBox");
        QCOMPARE(f.Design().GDFullScale, computed);
        QVERIFY2(!f.Status().contains("no number"), qPrintable(f.Status()));
    }

    void LongLaddersScroll() {
        WindowFixture f;
        f.Window->setMinimumSize(0, 0);
        f.Enter("NumPolesBox", "10");
        auto* const bar = f.Find<QScrollBar>("StripScrollBar");
        const auto* const client = f.Find("Client");
        for (const auto& [width, height] : {std::pair(60, 40), {2400, 1500}, {500, 600}}) {
            f.Window->resize(width, height);
            WindowFixture::Settle();
            const int ladder = 50 + 64 * 11 + 78;  // with the load and its text
            const bool folded = client->width() - ladder < 300;
            const int end = ladder + (folded ? f.Find("ResultsTab")->width() : 0);
            QCOMPARE(f.Grid->width(), 65 * 10 + 67);
            QCOMPARE(bar->isVisible(), end > client->width());
            QCOMPARE(bar->maximum(), std::max(0, end - client->width()));
            QCOMPARE(f.Find("BitMap")->size(), client->size());
        }
        f.Grid->setFocus();
        f.Grid->setCurrentCell(0, 1);
        for (int column = 2; column <= 10; ++column) {  // by keys, and always in view
            QTest::keyClick(f.Grid, Qt::Key_Right);
            const QRect cell = f.Grid->visualItemRect(f.Grid->currentItem());
            QVERIFY(f.Grid->x() + cell.right() < client->width());
        }
        for (int column = 9; column >= 1; --column) {  // and back, beside the row headers
            QTest::keyClick(f.Grid, Qt::Key_Left);
            const QRect cell = f.Grid->visualItemRect(f.Grid->currentItem());
            QVERIFY(f.Grid->x() + cell.left() >= 50);
        }
        QCOMPARE(bar->value(), 0);
        bar->setValue(bar->maximum());
        f.Click("CalcButton");
        QCOMPARE(f.Grid->x(), 50 - bar->maximum());
        f.Enter("NumPolesBox", "3");
        QVERIFY(!bar->isVisible());
        QCOMPARE(f.Grid->x(), 50);
    }

    void MarkersComeFromTheMenuOfThePlot() {
        WindowFixture f;
        auto* const bitMap = f.Find("BitMap");
        auto* const menu = f.Find<QMenu>("MarkerPopupMenu");
        const int left = LeftEdgeOfFrame(f), width = bitMap->width() - 60 - left;
        const auto markAt = [&](int x, const char* command) {
            QTest::mouseClick(bitMap, Qt::LeftButton, {},
                              {left + x, f.Find("PanelView")->height() + 35 + 60});
            QVERIFY(menu->isVisible());
            menu->close();
            f.Trigger(command);
        };
        for (int n = 1; n <= 20; ++n)
            markAt(10 * n, "FreqMarkerMenu");
        QCOMPARE(f.Window->Markers().FreqMarkerCount, 19);
        QCOMPARE(f.Window->Markers().FreqMarkers[19], f.Design().SweepFreqs[200 * 1024 / width]);
        QVERIFY(!f.Find<QAction>("SetRefPeakMenu")->isEnabled());
        f.Trigger("BandPassMenu");
        markAt(width / 2, "SetRefPeakMenu");
        QVERIFY(f.Window->Markers().RefAtPeak);
        f.Trigger("LowPassMenu");
        QVERIFY(!f.Window->Markers().HasReference());
        markAt(width / 2, "SetRefCursorMenu");
        f.Check("PlotPhaseBox");
        QVERIFY(f.Window->Markers().HasReference());
        QTest::keyClick(bitMap, Qt::Key_Right);
        f.Trigger("ClearMarkersMenu");
        QCOMPARE(f.Window->Markers().FreqMarkerCount, 0);
        QCOMPARE(f.Difference(), QString());
    }

    void AMarkerKeepsThePictureOfAWorstCase() {
        WindowFixture f;
        const auto lowerHalf = [&f] {  // below legend and labels, where the runs spread
            const QImage image = f.Find("BitMap")->grab().toImage();
            return image.copy(60, image.height() / 2, image.width() - 120, 100);
        };
        const auto inkOf = [](const QImage& image) {
            int red = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    red += image.pixelColor(x, y).red() - image.pixelColor(x, y).green() > 40;
            return red;
        };
        const int oneLine = inkOf(lowerHalf());
        QVERIFY(oneLine > 100);
        f.Check("WorstCaseBox");
        const QImage before = lowerHalf();
        const std::uint32_t seed = f.State().WorstCase.Seed;
        QVERIFY2(inkOf(before) > 2 * oneLine, "a spread of runs, not one line");
        QTest::mouseClick(f.Find("BitMap"), Qt::LeftButton, {},
                          {200, f.Find("PanelView")->height() + 95});
        f.Find<QMenu>("MarkerPopupMenu")->close();
        f.Trigger("FreqMarkerMenu");
        const QImage after = lowerHalf();
        // The marker's dotted line is new; the runs are the very same.
        QCOMPARE(f.State().WorstCase.Seed, seed);
        QVERIFY(after != before);
        QCOMPARE(after.copy(200, 0, after.width() - 200, after.height()),
                 before.copy(200, 0, before.width() - 200, before.height()));
        f.Trigger("ClearMarkersMenu");
        QCOMPARE(lowerHalf(), before);
    }

    void ExchangingTheReferenceTwiceReturnsEverything() {
        WindowFixture f;
        QVERIFY(!f.Find("ExchangeRefButton")->isEnabled());
        f.Enter("F0Box", "145.825");
        f.Trigger("BandPassMenu");
        f.Check("PlotPhaseBox");
        f.Click("SetRefButton");
        QVERIFY(f.Checked("PlotReferenceBox"));
        const QImage alone = f.Find("BitMap")->grab().toImage();
        f.Trigger("ChebyshevMenu");
        f.Enter("F0Box", "150");
        f.Check("PlotPhaseBox");
        const DesignInputs second = f.State().Inputs;
        f.Click("ExchangeRefButton");
        QCOMPARE(f.Text("F0Box") + f.InUse("response"), "146butterworth");
        QVERIFY(f.Checked("PlotPhaseBox"));
        QCOMPARE(f.Design().F0, 145.825e6);
        QCOMPARE(f.Difference(), QString());
        f.Click("ExchangeRefButton");
        QCOMPARE(f.State().Inputs.Choices, second.Choices);
        QCOMPARE(f.Design().F0, 150e6);
        QVERIFY(!f.Checked("PlotPhaseBox"));
        QVERIFY(f.Find("BitMap")->grab().toImage() != alone);
    }

    // A shortcut leaves the focus, and what was typed, in its box.
    void ReferenceIsOneStateAndItsFiguresStandBesideTheDesigns() {
        WindowFixture f;
        const auto figures = [&f] {
            f.Window->FinishDrawing();
            return f.Results();
        };
        f.Enter("F0Box", "150", Qt::Key_unknown);
        f.Find<QAbstractButton>("SetRefButton")->click();
        QCOMPARE(f.Design().F0, 150e6);
        QVERIFY(figures().contains("Fo\t150.0000 MHz\t150.0000 MHz\n"));
        f.Enter("F0Box", "300");
        f.Trigger("HighPassMenu");
        // Butterworth of three poles: 10 log10(1 + 2^6) = 18.13 dB an octave off F0.
        for (const char* const row :
             {"Design\t3 Pole Butterworth HPF\t3 Pole Butterworth LPF\n",
              "Fo\t300.0000 MHz\t150.0000 MHz\n", "-3 dB edge\t300.00 MHz\t150.00 MHz\n",
              "attenuation at 2 Fo\t0.07 dB\t18.13 dB\n", "attenuation at Fo / 2\t18.13 dB\t\n"})
            QVERIFY2(figures().contains(row), qPrintable(figures()));
        f.Enter("F0Box", "500", Qt::Key_unknown);
        f.Find<QAbstractButton>("ExchangeRefButton")->click();
        QCOMPARE(f.Design().F0, 150e6);
        QVERIFY2(figures().contains("Fo\t150.0000 MHz\t500.0000 MHz\n"), qPrintable(figures()));
        f.Check("PlotReferenceBox");
        QVERIFY(!figures().contains("Design\t"));
        QCOMPARE(f.Difference(), QString());
    }

    void ReferenceLeavesAClosedWindowClosed() {
        WindowFixture f;
        f.Trigger("DirectCoupledMenu");
        auto* const window = f.Find("TDCForm");
        QVERIFY(window->isVisible());
        window->close();
        f.Click("SetRefButton");
        f.Enter("F0Box", "250");
        f.Click("ExchangeRefButton");
        QVERIFY(!window->isVisible());
        f.Trigger("LowPassMenu");
        f.Click("ExchangeRefButton");  // the type comes back, and its window with it
        QVERIFY(window->isVisible());
    }

    void ClosesAndDiesWhileTyping() {
        WindowFixture f;
        f.Enter("F0Box", "123", Qt::Key_unknown);
        f.Trigger("ExitMenu");
        QVERIFY(!f.Window->isVisible());
        f.Window->show();
        f.Enter("F0Box", "124", Qt::Key_unknown);
        f.Window.reset();
    }
};

QTEST_MAIN(MainWindowTest)
#include "mainwindow_test.moc"
