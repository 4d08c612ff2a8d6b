// What the main window shows, from its pixels: cursor and read-outs, lit symbols and cells, the
// scrolled ladder, a worst case, legends, marks of boxes. Texts are found by their ink.
#include <QMenu>
#include <QScrollBar>

#include "tests/Picture.h"
#include "tests/window/WindowFixture.h"

using namespace ladderwise;

static const QColor paper(234, 234, 234);

/// The main window with the start-up low-pass, 200 MHz from 20 MHz to 2 GHz, and its picture. The
/// plot stands from x = 60 to 60 less than the picture's width.
class PictureFixture : public WindowFixture {
public:
    QWidget* const View = Find("BitMap");
    const int Left = 60, Right = View->width() - 60;
    const int Top = Find("PanelView")->height() + 35;

    Picture Shown() const {
        Window->FinishDrawing();
        return Picture(View->grab().toImage(), Find("FontLabel")->font(), paper);
    }
    /// How many pixels of a rectangle are not what they were.
    int Changes(const QImage& before, const QRect& rect) const {
        const QImage now = View->grab().toImage();
        int count = 0;
        for (int y = rect.top(); y <= rect.bottom(); ++y)
            for (int x = rect.left(); x <= rect.right(); ++x)
                count += now.pixel(x, y) != before.pixel(x, y);
        return count;
    }
    void Hover(QPoint at) const {
        QTest::mouseMove(View, at);
        QMouseEvent move(QEvent::MouseMove, at, View->mapToGlobal(at), Qt::NoButton, {}, {});
        QApplication::sendEvent(View, &move);
    }
    void HoverCell(int row, int column) const {
        const QPoint at = Grid->visualItemRect(Grid->item(row, column)).center();
        QMouseEvent move(QEvent::MouseMove, at, Grid->viewport()->mapToGlobal(at), Qt::NoButton, {},
                         {});
        QApplication::sendEvent(Grid->viewport(), &move);
    }
    int XOf(double f) const { return Left + qRound((Right - Left) * std::log10(f / 20e6) / 2); }
    int Bottom() const {
        const Picture picture = Shown();
        int y = Grid->y() - 96 - 12;
        while (picture.Ink(QRect(Left + 40, y, 300, 1)) < 290)
            --y;
        return y;
    }
};

class PictureTest : public QObject {
    Q_OBJECT

private slots:
    void TheCursorTellsWhatIsUnderIt() {
        PictureFixture f;
        const Picture before = f.Shown();
        f.Hover({f.XOf(400e6), f.Top + 100});
        const Picture with = f.Shown();
        const QColor crosshair(64, 64, 64);
        QVERIFY(with.Ink(QRect(f.XOf(400e6) - 2, f.Top, 5, 200), crosshair) > 80);
        QVERIFY(with.Ink(QRect(f.Left, f.Top + 98, 500, 5), crosshair) > 200);
        // 10 log10(1 + 2^6) = 18.13 dB an octave above; a pixel is 0.4 %, which is 0.1 dB.
        const QRect head(f.Left, f.Top - 35, 900, 35);
        const QList<QRect> level = with.Find("Mag -18.", Qt::red, head);
        QCOMPARE(level.size(), 1);
        QVERIFY(before.Find("Mag -18.", Qt::red, head).isEmpty());
        QCOMPARE(with.Find("399.8 MHz", Qt::black, head).size(), 1);
        QVERIFY(with.Find("3 Pole", Qt::black, head).isEmpty());
        // A ring on the trace: -18.13 dB of 100 dB in the plot's height from 10 dB on.
        const int y = f.Top + qRound((f.Bottom() - f.Top) * 0.2813);
        QVERIFY(with.Ink(QRect(f.XOf(400e6) - 6, y - 6, 13, 13), Qt::red, 120) >
                before.Ink(QRect(f.XOf(400e6) - 6, y - 6, 13, 13), Qt::red, 120) + 8);
        f.View->setFocus();
        QTest::keyClick(f.View, Qt::Key_Right, Qt::ControlModifier);
        QVERIFY(f.Shown().Find("Mag -19.", Qt::red, head).size() == 1);  // ten points on
        for (int i = 0; i < 12; ++i)
            QTest::keyClick(f.View, Qt::Key_Left, Qt::ControlModifier);
        QVERIFY(f.Shown().Find("Mag -18.", Qt::red, head).isEmpty());
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(f.View, &leave);
        QCOMPARE(f.View->grab().toImage().size(), f.View->size());
        QCOMPARE(f.Shown().Find("3 Pole Butterworth LPF").size(), 1);
    }

    void SymbolsAndCellsLightTogether() {
        PictureFixture f;
        const QRect slot(50 + 2 * 64, f.Grid->y() - 96, 64, 96), whole(f.View->rect());
        const QImage dark = f.View->grab().toImage();
        const QColor cell = f.Grid->item(0, 2)->background().color();
        f.Hover(slot.topLeft() + QPoint(32, 20));
        QVERIFY(f.Changes(dark, slot) > 300);
        QCOMPARE(f.Changes(dark, whole), f.Changes(dark, slot));
        QVERIFY(f.Grid->item(0, 2)->background().color() != cell);
        QVERIFY(f.Grid->item(1, 1)->background().color() == cell);
        f.Hover({600, f.Grid->y() - 20});
        QCOMPARE(f.Changes(dark, whole), 0);
        QCOMPARE(f.Grid->item(0, 2)->background().color(), cell);
        // And the other way round.
        f.HoverCell(0, 2);
        QVERIFY(f.Changes(dark, slot) > 300);
        QCOMPARE(f.Changes(dark, whole), f.Changes(dark, slot));
        // Of two parts in a slot the symbol of the one pointed at.
        f.Trigger("EllipticCMenu");
        f.Hover({600, f.Top + 100});
        const QImage trap = f.View->grab().toImage();
        const auto symbols = [&](int row) {
            f.HoverCell(row, 2);
            const QImage lit = f.View->grab().toImage();
            QRegion changed;
            for (int y = slot.top(); y <= slot.bottom(); ++y)
                for (int x = slot.left(); x <= slot.right(); ++x)
                    if (lit.pixel(x, y) != trap.pixel(x, y)) changed += QRect(x, y, 1, 1);
            return changed.boundingRect();
        };
        const QRect capacitor = symbols(1), coil = symbols(0);
        QVERIFY2(coil.width() > 20 && capacitor.width() > 10 && coil.bottom() < capacitor.bottom(),
                 qPrintable(QString::number(coil.width())));
        const QColor unlit = f.Grid->item(0, 1)->background().color();
        QCOMPARE(f.Grid->item(1, 2)->background().color(), unlit);
        QVERIFY(f.Grid->item(0, 2)->background().color() != unlit);
    }

    // The boxes that choose the traces carry the traces' colours, and the cell that keys act upon a
    // frame.
    void ColoursAndFramesLeadTheEye() {
        PictureFixture f;
        const std::pair<const char*, QColor> boxes[] = {{"PlotMagBox", QColor(255, 0, 0)},
                                                        {"PlotMag1dBBox", QColor(128, 0, 0)},
                                                        {"PlotReturnLossBox", QColor(240, 0, 240)},
                                                        {"PlotPhaseBox", QColor(0, 0, 255)},
                                                        {"PlotGDBox", QColor(0, 96, 0)}};
        for (const auto& [name, colour] : boxes) {
            auto* const box = f.Find<QAbstractButton>(name);
            const Picture seen(box->grab().toImage(), box->font());
            QVERIFY2(seen.Ink(seen.Rect(), colour, 8) > 30, name);
            QVERIFY2(seen.Ink(seen.Rect(), QColor(160, 160, 160), 8) > 20, name);  // its outline
        }
        f.Grid->setFocus();
        f.Grid->setCurrentCell(1, 1);
        const QRect cell = f.Grid->visualItemRect(f.Grid->item(1, 1));
        const auto frameInk = [&] {
            const Picture seen(f.Grid->viewport()->grab().toImage(), f.Grid->font());
            const QColor highlight = f.Grid->palette().color(QPalette::Highlight);
            return seen.Ink(QRect(cell.left(), cell.top(), 4, cell.height()), highlight, 8);
        };
        QVERIFY(frameInk() >= cell.height() - 4);
        f.Grid->setCurrentCell(0, 2);
        QCOMPARE(frameInk(), 0);
        // Ind and Cap before the rows.
        const Picture grid(f.Grid->viewport()->grab().toImage(), f.Grid->font());
        for (const int row : {0, 1})
            QVERIFY(grid.Ink(f.Grid->visualItemRect(f.Grid->item(row, 0)).adjusted(3, 3, -3, -3),
                             Qt::black, 120) > 15);
    }

    // A symmetrical ladder: what C1 has C3 has too. The shares make one, and stand at the symbols.
    void SharesStandAtTheSymbols() {
        PictureFixture f;
        const auto barOf = [&f](int slot) {
            const QRect right(50 + 64 * slot + 52, f.Grid->y() - 36, 12, 36);
            return f.Shown().Ink(right, QColor(196, 96, 0));
        };
        f.Trigger("PartDefinitionsMenu");
        f.Check("TwoPercentInd");
        QCOMPARE(barOf(1), 0);
        f.Trigger("PartSharesMenu");
        const auto* const table = f.Find<QTableWidget>("SharesTable");
        const auto shares = [&] {
            QMap<QString, double> found;
            for (int row = 0; row < table->rowCount(); ++row)
                found[table->item(row, 0)->text()] =
                    table->item(row, 3)->text().section(' ', 0, 0).toDouble();
            return found;
        };
        const auto before = shares();
        QCOMPARE(before["C1"], before["C3"]);
        QVERIFY(std::abs(before["C1"] + before["L2"] + before["C3"] - 100.0) < 0.2);
        QVERIFY(barOf(1) > 15 && barOf(2) > 100);
        QCOMPARE(barOf(3), barOf(1));
        QVERIFY(std::abs(double(barOf(1)) / barOf(2) - before["C1"] / before["L2"]) < 0.05);
        // Half the tolerance makes half the deviation, and a quarter of its square.
        f.Check("OnePercentInd");
        f.Find("PartDefinitionsWindow")->close();
        const auto after = shares();
        const double ratio = (before["L2"] / before["C1"]) / (after["L2"] / after["C1"]);
        QVERIFY2(std::abs(ratio - 4.0) < 0.3, qPrintable(QString::number(ratio)));
        f.Find("SharesWindow")->close();
        QCOMPARE(barOf(1), 0);
    }

    void TheLadderScrollsWithItsCells() {
        PictureFixture f;
        f.Trigger("DirectCoupledMenu");
        f.Find("TDCForm")->close();
        f.Enter("NumPolesBox", "10");
        f.Find("F0Box")->setFocus();
        auto* const bar = f.Find<QScrollBar>("StripScrollBar");
        QVERIFY(bar->isVisible());
        for (const int position : {0, 200, 70, bar->maximum()}) {
            bar->setValue(position);
            const Picture names = f.Shown();
            const QRect strip(0, f.Grid->y() - 100, f.View->width(), 100);
            for (const int slot : {4, 8, 12}) {
                // The parallel resonators of the type stand in every second slot.
                const int x = 50 + 64 * slot - position;
                const int cellX = f.Grid->x() + f.Grid->columnViewportPosition(slot);
                QVERIFY2(std::abs(cellX - x) <= 4, qPrintable(QString::number(cellX)));
                const QRect own = QRect(x, strip.top(), 64, 100) & strip;
                if (own.width() == 64) QVERIFY(names.Ink(own) > 150);
            }
            // The names of the rows stay, at the left edge of the window.
            QWidget* const headers = f.Find("RowHeaders");
            const bool away = position > 50;
            QCOMPARE(headers->isVisible(), away);
            QVERIFY(!away || headers->mapTo(f.Find("Client"), QPoint()).x() == 0);
            // The ground below the load ends the ladder, once.
            const int load = 50 + 64 * 22 + 14 - position;
            if (load + 10 < strip.right() - 40)
                QVERIFY(names.Ink(QRect(load + 8, strip.top() + 80, 30, 15)) < 10);
        }
        // The text of the tab runs upwards: higher than wide.
        QWidget* const tab = f.Find("ResultsTab");
        QVERIFY(tab->isVisible());
        const Picture ends(tab->grab().toImage(), tab->font(),
                           tab->palette().color(QPalette::Button));
        const QRect middle =
            tab->rect().adjusted(4, tab->height() / 2 - 12, -4, 12 - tab->height() / 2);
        QVERIFY(ends.Ink(middle.translated(0, -18), Qt::black, 90) > 5);
        QVERIFY(ends.Ink(middle.translated(0, 18), Qt::black, 90) > 5);
        // Back where it was, nothing of the other places is left.
        bar->setValue(0);
        const QImage fresh = f.View->grab().toImage();
        f.Click("CalcButton");
        f.Find("F0Box")->setFocus();
        QCOMPARE(f.View->grab().toImage(), fresh);
    }

    void AWorstCaseIsDrawnWithoutBeingAskedFor() {
        PictureFixture f;
        const QRect area(f.XOf(300e6), f.Top + 60, 150, 150);  // the trace runs through it
        const QImage before = f.View->grab().toImage();
        const int line = Picture(before, {}, paper).Ink(area, Qt::red, 120);
        QVERIFY(line > 100);
        QWidget* const box = f.Find("WorstCaseBox");
        QTest::mouseClick(box, Qt::LeftButton, {}, {8, box->height() / 2});
        QTRY_VERIFY(f.Changes(before, area) > line);
        QTest::mouseClick(box, Qt::LeftButton, {}, {8, box->height() / 2});
        QTRY_COMPARE(f.Changes(before, area), 0);
    }

    void TheLegendLiesWithinThePlotOrBelowIt() {
        PictureFixture f;
        const char* const boxes[] = {"PlotMag1dBBox", "PlotPhaseBox", "PlotGDBox",
                                     "PlotReturnLossBox"};
        for (const char* const box : boxes)
            f.Check(box);
        const auto place = [&](const char* text) {
            const QList<QRect> found = f.Shown().Find(text);
            return found.size() == 1 ? found.front() : QRect();
        };
        QRect mag = place("Mag 10 dB/div"), phase = place("Phase 36\u00b0/div");
        QVERIFY(!mag.isEmpty() && mag.bottom() < f.Bottom() && mag.top() > f.Top);
        QCOMPARE(mag.left(), phase.left());
        QVERIFY(mag.bottom() <= phase.top() + 1);
        // Every trace's colour stands before its name.
        const std::pair<const char*, QColor> names[] = {
            {"Mag 10 dB/div", Qt::red},
            {"Mag 1 dB/div", QColor(128, 0, 0)},
            {"Phase 36\u00b0/div", Qt::blue},
            {"Return loss 10 dB/div", QColor(240, 0, 240)}};
        const Picture within = f.Shown();
        for (const auto& [name, colour] : names)
            QVERIFY2(within.Ink(place(name).translated(-26, 0).intersected(
                                    QRect(0, 0, place(name).left() - 4, 9999)),
                                colour, 40) > 30,
                     name);
        f.Check("PlotPulseBox");  // the sixth
        mag = place("Mag 10 dB/div");
        phase = place("Phase 36\u00b0/div");
        QVERIFY(mag.top() > f.Bottom() && mag.bottom() < f.Grid->y() - 90);
        QCOMPARE(mag.top(), phase.top());
        QVERIFY(mag.right() < phase.left());
        QVERIFY(!f.Shown().Find("0 s", QColor(255, 128, 0)).isEmpty());  // the axis of the pulse
    }

    void MarkersHaveLinesAndNumbers() {
        PictureFixture f;
        QTest::mouseClick(f.View, Qt::LeftButton, {}, {f.XOf(400e6), f.Top + 60});
        f.Find<QMenu>("MarkerPopupMenu")->close();
        const Picture before = f.Shown();
        const QRect column(f.XOf(400e6) - 2, f.Top + 150, 5, 150);
        f.Trigger("FreqMarkerMenu");
        const Picture with = f.Shown();
        QVERIFY(with.Ink(column, QColor(96, 96, 96)) > 35);
        QVERIFY(before.Ink(column, QColor(96, 96, 96)) < 10);
        QCOMPARE(before.Find("M1").size(), 0);
        QVERIFY(with.Find("M1", QColor(96, 96, 96)).size() + with.Find("M1").size() > 0);
        QVERIFY(!with.Find("-18.", Qt::red).isEmpty());
        f.Trigger("DbMarkerMenu");
        const int y = f.Top + 60;
        QVERIFY(f.Shown().Ink(QRect(f.Left, y - 2, 400, 5), Qt::red) > 100);
        f.Trigger("ClearMarkersMenu");
        QVERIFY(f.Shown().Ink(column, QColor(96, 96, 96)) < 10);
        QVERIFY(f.Shown().Find("-18.", Qt::red).isEmpty());
    }

    void TrapFormsShowTheirPicturesAndTheOneInUse() {
        PictureFixture f;
        f.Trigger("BandPassMenu");
        for (const char* const family : {"EllipticCMenu", "EllipticEMenu"}) {
            f.Trigger(family);
            for (int form = 1; form <= 4; ++form) {
                f.Enter("TrapTypeBox", QString::number(form));
                for (int other = 1; other <= 4; ++other) {
                    auto* const button =
                        f.Find<QAbstractButton>("TrapForm" + QString::number(other));
                    QCOMPARE(button->isChecked(), other == form);
                    const QImage image = button->grab().toImage();
                    int ink = 0;
                    for (int i = 0; i < image.width() * image.height(); ++i)
                        ink += image.pixelColor(i % image.width(), i / image.width()).lightness() <
                               110;
                    QVERIFY(ink > 20);
                }
            }
        }
    }
};

QTEST_MAIN(PictureTest)
#include "picture_test.moc"
