// Spin buttons, stepping keys, wheel, function keys and the value grid, by real events.
#include <functional>

#include "analysis/PartValues.h"
#include "files/Formatfunctions.h"
#include "tests/window/WindowFixture.h"

using namespace ladderwise;

namespace {

/// A way to step a box.
struct Means {
    const char* Name;
    std::function<void(WindowFixture&, const QString& box, bool up, Qt::KeyboardModifiers)> Step;
};

const Means allMeans[] = {
    {"arrows",
     [](WindowFixture& f, const QString& box, bool up, Qt::KeyboardModifiers modifiers) {
         // "F0Box" has "F0UpDown"; the trap type's arrows have a name of their own
         const QString name = box == "TrapTypeBox" ? "EllipticForm" : box.chopped(3);
         f.Click(name + (up ? "UpDownUp" : "UpDownDown"), modifiers);
     }},
    {"keys",
     [](WindowFixture& f, const QString& box, bool up, Qt::KeyboardModifiers modifiers) {
         QTest::keyClick(f.Find(box), up ? Qt::Key_Up : Qt::Key_Down, modifiers);
     }},
    {"wheel", [](WindowFixture& f, const QString& box, bool up, Qt::KeyboardModifiers modifiers) {
         WindowFixture::Wheel(f.Find(box), up ? 1 : -1, modifiers);
     }}};

/// What a function key must make of a ladder when a cell is selected.
ElementList AfterKey(const FilterDesign& design, Qt::Key key, int slot, int row) {
    ElementList expected = design.Elements;
    const auto& kinds = InfoOf(expected[slot].Type).Values;
    const int partnerRow = row ^ 1;
    const auto isPart = [&](int r) {
        return kinds[r] == ValueKind::Inductance || kinds[r] == ValueKind::Capacitance;
    };
    const auto snapped = [&](int r, double value) {
        return SnapValue(design.PartModel, r % 2 ? PartKind::Capacitor : PartKind::Inductor, value);
    };
    if (!isPart(row)) return expected;  // no lines are reached here
    double& value = expected[slot].Value(row);
    double& partner = expected[slot].Value(partnerRow);
    const double old = value;
    if (key == Qt::Key_F1) value = old / 1.05;
    if (key == Qt::Key_F2) value = old * 1.05;
    if (key == Qt::Key_F3 || key == Qt::Key_F5 || key == Qt::Key_F6) value = snapped(row, old);
    if ((key == Qt::Key_F5 || key == Qt::Key_F6) && isPart(partnerRow)) {
        partner = old * partner / value;
        if (key == Qt::Key_F6) partner = snapped(partnerRow, partner);
    }
    return expected;
}

}  // namespace

class StepsTest : public QObject {
    Q_OBJECT

private slots:
    void init() { FailOnToolkitWarnings(); }

    void EveryBoxSteps() {
        const struct {
            const char* Box;
            const char* Start;
            double Step, CtrlStep, Value;
            const char* Shown[3];  ///< after one step up, and with Ctrl up and down
            Getter Get;
            const char* Before = nullptr;  ///< a button to check first
        } cases[] = {
            {"RippleBox", "0.2", 0.01, 0.1, 0.2, {"0.21", "0.3", "0.1"}, Ripple},
            {"F0Box", "200", 1, 10, 200, {"201", "210", "190"}, F0},
            {"F0Box", "1234.5", 1, 10, 1234.5, {"1240", "1240", "1220"}, F0},
            {"BandWidthBox", "40", 0.1, 1, 40, {"40.1", "41", "39"}, BandWidth},
            {"BandWidthBox", "20", 0.1, 1, 20, {"20.1", "21", "19"}, Percent, "BWPercentButton"},
            {"EllipticAttenBox", "50", 1, 10, 50, {"51", "60", "40"}, Atten},
            {"NumPolesBox", "5", 1, 1, 5, {"6", "6", "4"}, Poles},
            {"TrapTypeBox", "2", 1, 1, 2, {"3", "3", "1"}, Trap}};
        WindowFixture f;
        f.Trigger("BandPassMenu");
        f.Trigger("EllipticDMenu");  // every box is enabled
        for (const auto& c : cases) {
            if (c.Before) f.Check(c.Before);
            for (const Means& means : allMeans) {
                const auto step = [&](bool up, bool ctrl, double value, const char* shown) {
                    f.Enter(c.Box, c.Start);
                    means.Step(f, c.Box, up, ctrl ? Qt::ControlModifier : Qt::NoModifier);
                    const QString what = QString("%1 %2: %3, %4")
                                             .arg(c.Box, means.Name, f.Text(c.Box))
                                             .arg(c.Get(f.Design()), 0, 'g', 17);
                    QVERIFY2(Near(c.Get(f.Design()), value), qPrintable(what));
                    QVERIFY2(!shown || f.Text(c.Box) == shown, qPrintable(what));
                    QVERIFY2(f.IsNormal(c.Box), qPrintable(what));
                };
                step(true, false, c.Value + c.Step, c.Shown[0]);
                step(false, false, c.Value - c.Step, nullptr);
                step(true, true, c.Value + c.CtrlStep, c.Shown[1]);
                step(false, true, c.Value - c.CtrlStep, c.Shown[2]);
            }
        }
        QCOMPARE(f.Design().EllipticStopFreq, 1.2 * f.Design().F0);
    }

    void TypedTextIsSteppedWithoutEnter() {
        WindowFixture f;
        f.Enter("F0Box", "145.825", Qt::Key_unknown);
        f.Click("F0UpDownDown");
        QVERIFY(Near(f.Design().F0, 144.825e6));
    }

    void WheelNeedsTheFocus() {
        WindowFixture f;
        f.Find("RSBox")->setFocus();
        f.Wheel(f.Find("F0Box"), 3);
        QCOMPARE(f.Design().F0, 200e6);
        f.Find("F0Box")->setFocus();
        f.Wheel(f.Find("F0Box"), 3);
        QCOMPARE(f.Design().F0, 203e6);
        for (const char* const box : {"RSBox", "PercentChangeBox"}) {  // no arrows: nothing to step
            const QString text = f.Text(box);
            f.Find(box)->setFocus();
            f.Wheel(f.Find(box), 1);
            QTest::keyClick(f.Find(box), Qt::Key_Up);
            QCOMPARE(f.Text(box), text);
        }
    }

    void StepsStopAtTheBounds() {
        const struct {
            const char* Pass;
            const char* Box;
            const char* Start;
            bool Up;
            const char* Shown;
            bool Replaced;
        } cases[] = {{"BandPassMenu", "NumPolesBox", "10", true, "10", true},
                     {"BandPassMenu", "NumPolesBox", "1", false, "1", true},
                     {"BandPassMenu", "RippleBox", "1", true, "1", true},
                     {"BandPassMenu", "F0Box", "0.5", false, "0.001", true},
                     {"NortonMenu", "NumPolesBox", "3", true, "5", false},
                     {"NortonMenu", "NumPolesBox", "5", true, "5", false},
                     {"NortonMenu", "NumPolesBox", "4", true, "5", false},
                     {"NortonMenu", "NumPolesBox", "4", false, "3", false},
                     {"NortonMenu", "NumPolesBox", "9", false, "3", false}};
        WindowFixture f;
        f.Trigger("ChebyshevMenu");
        for (const auto& c : cases)
            for (const Means& means : allMeans) {
                f.Trigger(c.Pass);
                f.Enter("F0Box", "200");
                f.Enter(c.Box, c.Start);
                means.Step(f, c.Box, c.Up, Qt::NoModifier);
                const QString what =
                    QString("%1 %2 %3: %4").arg(c.Pass, c.Box, means.Name, f.Text(c.Box));
                QVERIFY2(f.Text(c.Box) == c.Shown, qPrintable(what));
                QVERIFY2((f.Colour(c.Box) == SilverColour) == c.Replaced, qPrintable(what));
            }
        f.Enter("NumPolesBox", "4");
        QCOMPARE(f.Design().NumPoles, 4);  // Norton keeps a typed 4
        f.Trigger("BandPassMenu");
        f.Trigger("EllipticAMenu");
        for (const bool up : {true, false}) {
            for (int i = 0; i < 6; ++i)
                f.Click(up ? "EllipticFormUpDownUp" : "EllipticFormUpDownDown");
            QCOMPARE(f.Design().TrapType, up ? 4 : 1);
            QVERIFY(f.IsNormal("TrapTypeBox"));
        }
    }

    void KeysCycleResponseAndSweep() {
        const char* const responses[] = {"ButterworthMenu",     "ChebyshevMenu", "BesselFreqMenu",
                                         "BesselDelayMenu",     "PapoulisMenu",  "GaussMenu",
                                         "LinearChebyshevMenu", "EllipticAMenu", "EllipticBMenu",
                                         "EllipticCMenu",       "EllipticDMenu", "EllipticEMenu"};
        const char* const sweeps[] = {"OneDecadeMenu", "TwoDecadesMenu", "LinearMenu",
                                      "OneOctaveMenu", "TwoOctavesMenu", "ThreeOctavesMenu"};
        WindowFixture f;
        // Whatever has the focus: the window sees function keys before its controls.
        QWidget* const targets[] = {f.Find("F0Box"), f.Grid, f.Find("CalcButton"), f.Window.get()};
        for (int i = 0; i <= 12; ++i) {
            QVERIFY2(f.Find<QAction>(responses[i % 12])->isChecked(), responses[i % 12]);
            QCOMPARE(f.Find("EllipticAttenBox")->isEnabled(), i >= 7 && i < 12);
            QCOMPARE(DifferenceFromFresh(f.State()), QString());
            QTest::keyClick(targets[i % 4], Qt::Key_F4);
        }
        for (int i = 0; i <= 6; ++i) {
            QVERIFY2(f.Find<QAction>(sweeps[i % 6])->isChecked(), sweeps[i % 6]);
            QTest::keyClick(targets[i % 4], Qt::Key_F7);
        }
        f.Trigger("NortonMenu");
        f.Trigger("LinearChebyshevMenu");
        QTest::keyClick(f.Grid, Qt::Key_F4);  // to Elliptic A, which a Norton band-pass cannot be
        QCOMPARE(f.Design().ResponseType, ResponseType::Butterworth);
        QCOMPARE(f.TakeMessages().size(), 1);
    }

    void KeysChangeTheSelectedValue() {
        WindowFixture f;
        for (const char* const response : {"ButterworthMenu", "EllipticCMenu", "EllipticEMenu"})
            for (const char* const pass :
                 {"LowPassMenu", "HighPassMenu", "BandPassMenu", "NotchMenu"}) {
                f.Trigger(response);
                f.Trigger(pass);
                for (int slot = 1; slot <= f.Design().NumElements; ++slot)
                    for (int row = 0; row < 4; ++row)
                        for (const Qt::Key key : {Qt::Key_F1, Qt::Key_F2, Qt::Key_F3, Qt::Key_F5,
                                                  Qt::Key_F6, Qt::Key_F8})
                            PressOnCell(f, key, slot, row);
            }
    }

    void PercentChangeSetsTheStep() {
        WindowFixture f;
        const double c = f.Design().Elements[1].V2;
        f.Enter("PercentChangeBox", "50");
        f.Grid->setCurrentCell(1, 0);  // the label column counts as the first element
        QTest::keyClick(f.Grid, Qt::Key_F2);
        QCOMPARE(f.Grid->currentColumn(), 1);
        QVERIFY(Near(f.Design().Elements[1].V2, 1.5 * c));
        for (const Qt::Key key : {Qt::Key_F1, Qt::Key_F4, Qt::Key_F7, Qt::Key_F8}) {
            f.Enter("PercentChangeBox", "many", Qt::Key_unknown);
            QTest::keyClick(f.Find("PercentChangeBox"), key);
            if (key == Qt::Key_F1) QVERIFY(Near(f.Design().Elements[1].V2, 1.5 * c / 1.05));
            QCOMPARE(f.Colour("PercentChangeBox"), SilverColour);
            QVERIFY(f.Status().contains("\"many\" was replaced by 5.0"));
        }
    }

    void TypedCellsAreSimulated() {
        const std::pair<const char*, double> typed[] = {
            {"22p", 22e-12},  {"22E-12", 22e-12}, {"22 pF", 22e-12}, {" 0.022 nF ", 22e-12},
            {"1e-11", 1e-11}, {"-5p", -5e-12},    {"0", 0.0}};
        WindowFixture f;
        const ElementList nominal = f.Design().Elements;
        const SweepResponse before = f.Design().Response;
        for (const auto& [text, value] : typed) {
            f.EnterCell(1, 3, text);
            QVERIFY2(std::abs(f.Design().Elements[3].V2 - value) < 1e-24, text);
            QVERIFY2(!SameResponse(f.Design().Response, before), text);
            QVERIFY2(SameElement(f.Design().Elements[2], nominal[2]), text);
            QCOMPARE(f.Status().contains("is "), value <= 0);
            QTest::keyClick(f.Grid, Qt::Key_Return);  // Enter on the grid leaves it as it stands
            QVERIFY2(std::abs(f.Design().Elements[3].V2 - value) < 1e-24,
                     qPrintable(QString("%1: %2").arg(text).arg(f.Design().Elements[3].V2)));
        }
        f.EnterCell(0, 2, "100n");
        for (const char* const rubbish : {"big", "1,5p", "pF", " ", "5 q"}) {
            f.EnterCell(0, 2, rubbish);
            QVERIFY2(Near(f.Design().Elements[2].V1, 100e-9), rubbish);
            QCOMPARE(f.Grid->item(0, 2)->background().color(), SilverColour);
            QCOMPARE(f.Cell(0, 2), "100E-9");
        }
        f.Click("CalcButton");
        for (int slot = 1; slot <= 3; ++slot)
            QVERIFY(SameElement(f.Design().Elements[slot], nominal[slot]));
        QVERIFY(f.Grid->item(0, 2)->background().color() != SilverColour);
        QVERIFY2(!(f.Grid->item(0, 1)->flags() & Qt::ItemIsEditable), "a shunt C has no L");
    }

    void FunctionKeyEndsAnEditedCell() {
        WindowFixture f;
        const QPoint at = f.Grid->visualItemRect(f.Grid->item(1, 1)).center();
        QTest::mouseClick(f.Grid->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(f.Grid->viewport(), Qt::LeftButton, {}, at);
        auto* const editor = f.Grid->viewport()->findChild<QLineEdit*>();
        QVERIFY(editor);
        editor->selectAll();
        QTest::keyClicks(editor, "10p");
        QTest::keyClick(editor, Qt::Key_F2);
        WindowFixture::Settle();
        QVERIFY(Near(f.Design().Elements[1].V2, 10.5e-12));
        QVERIFY(!f.Grid->viewport()->findChild<QLineEdit*>());
    }

private:
    static void PressOnCell(WindowFixture& f, Qt::Key key, int slot, int row) {
        f.Window->CalcButtonClick();
        const ElementList before = f.Design().Elements;
        const ElementList expected = AfterKey(f.Design(), key, slot, row);
        f.Grid->setCurrentCell(row, slot);
        QTest::keyClick(f.Grid, key);
        const QString what = QString("F%1 slot %2 (%3) row %4")
                                 .arg(key - Qt::Key_F1 + 1)
                                 .arg(slot)
                                 .arg(InfoOf(before[slot].Type).Name)
                                 .arg(row);
        for (int k = 0; k < NumSlots; ++k)
            for (int r = 0; r < 4; ++r) {
                const double now = f.Design().Elements[k].Value(r);
                QVERIFY2(Near(now, expected[k].Value(r)), qPrintable(what));
            }
        const CircuitElement& was = before[slot];
        const CircuitElement& is = f.Design().Elements[slot];
        if (key == Qt::Key_F5 && f.Cell(row ^ 1, slot) != "")
            QVERIFY2(Near(is.Value(row) * is.Value(row ^ 1), was.Value(row) * was.Value(row ^ 1)),
                     qPrintable(what));
        QCOMPARE(f.Grid->currentColumn(), slot);
        QCOMPARE(f.Grid->currentRow(), row);
    }
};

int main(int argc, char** argv) {
    return RunWindowTest<StepsTest>(argc, argv);
}
#include "steps_test.moc"
