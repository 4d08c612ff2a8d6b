// Spin buttons, stepping keys, wheel, function keys and the value grid, by real events.
#include "tests/window/WindowFixture.h"

using namespace ladderwise;

namespace {

enum Means { Arrows, Keys, Wheel };

void Step(WindowFixture& f, Means means, const QString& box, bool up,
          Qt::KeyboardModifiers modifiers = {}) {
    // "F0Box" has "F0UpDown"; the trap type's arrows have a name of their own
    const QString arrows = box == "TrapTypeBox" ? "EllipticForm" : box.chopped(3);
    if (means == Arrows) f.Click(arrows + (up ? "UpDownUp" : "UpDownDown"), modifiers);
    if (means == Keys) QTest::keyClick(f.Find(box), up ? Qt::Key_Up : Qt::Key_Down, modifiers);
    if (means == Wheel) f.Wheel(f.Find(box), up ? 1 : -1, modifiers);
}

}  // namespace

class StepsTest : public QObject {
    Q_OBJECT

private slots:
    void EveryBoxSteps() {
        // Typed without Enter, stepped up and back down, then the same with Ctrl: what is in use
        // after each. Going back finds the exact value behind the digits shown.
        // clang-format off
        const struct { const char *Box, *Name, *Typed, *Up, *Shown, *Back, *CtrlUp; } cases[] = {
            {"RippleBox", "ripple", "0.2", "0.21", "0.21", "0.2", "0.3"},
            {"F0Box", "f0", "145.825", "146825000", "147", "145825000", "155825000"},
            {"BandWidthBox", "bw", "12.345", "12445000", "12.4", "12345000", "13345000"},
            {"EllipticAttenBox", "atten", "50", "51", "51", "50", "60"},
            {"NumPolesBox", "poles", "5", "6", "6", "5", "6"}, {"TrapTypeBox", "trap", "2", "3", "3", "2", "3"},
            {"BandWidthBox", "bw-percent", "20", "20.1", "20.1", "20", "21"}};
        // clang-format on
        WindowFixture f;
        f.Trigger("BandPassMenu");
        f.Trigger("EllipticDMenu");  // every box is enabled
        for (const auto& c : cases) {
            if (c.Name == QString("bw-percent")) f.Check("BWPercentButton");
            for (const Means means : {Arrows, Keys, Wheel}) {
                f.Enter(c.Box, c.Typed, Qt::Key_unknown);
                Step(f, means, c.Box, true);
                QCOMPARE(f.Text(c.Box), c.Shown);
                QCOMPARE(f.InUse(c.Name), c.Up);
                QVERIFY(f.IsNormal(c.Box));
                Step(f, means, c.Box, false);
                QCOMPARE(f.InUse(c.Name), c.Back);
                Step(f, means, c.Box, true, Qt::ControlModifier);
                QCOMPARE(f.InUse(c.Name), c.CtrlUp);
                Step(f, means, c.Box, false, Qt::ControlModifier);
                QCOMPARE(f.InUse(c.Name), c.Back);
            }
        }
        f.Find("RSBox")->setFocus();
        f.Wheel(f.Find("F0Box"), 3);  // without the focus
        QCOMPARE(f.InUse("f0"), "145825000");
        QVERIFY(f.Find("F0Box")->toolTip().contains("In use: 145.825 MHz"));
    }

    void StepsStopAtTheBounds() {
        // clang-format off
        const struct { const char *Pass, *Box, *Typed; bool Up; const char* Shown; bool Replaced; } cases[] = {
            {"BandPassMenu", "NumPolesBox", "10", true, "10", true}, {"BandPassMenu", "RippleBox", "1", true, "1", true},
            {"BandPassMenu", "NumPolesBox", "1", false, "1", true}, {"BandPassMenu", "F0Box", "0.5", false, "0.001", true},
            {"BandPassMenu", "TrapTypeBox", "4", true, "4", false}, {"BandPassMenu", "TrapTypeBox", "1", false, "1", false},
            {"NortonMenu", "NumPolesBox", "3", true, "5", false}, {"NortonMenu", "NumPolesBox", "5", true, "5", false},
            {"NortonMenu", "NumPolesBox", "4", true, "5", false}, {"NortonMenu", "NumPolesBox", "9", false, "3", false}};
        // clang-format on
        WindowFixture f;
        for (const auto& c : cases) {
            f.Trigger(c.Pass);
            f.Trigger(c.Pass == QString("NortonMenu") ? "ChebyshevMenu" : "EllipticAMenu");
            f.Enter(c.Box, c.Typed);
            Step(f, Arrows, c.Box, c.Up);
            const QString what = QString("%1 %2: %3").arg(c.Box, c.Typed, f.Text(c.Box));
            QVERIFY2(f.Text(c.Box) == c.Shown, qPrintable(what));
            QVERIFY2((f.Colour(c.Box) == SilverColour) == c.Replaced, qPrintable(what));
        }
        f.TakeMessages();
        f.Enter("NumPolesBox", "4");
        QCOMPARE(f.Design().NumPoles, 3);  // Norton takes 3 or 5
        QCOMPARE(f.Text("NumPolesBox"), "3");
    }

    void PicturesChooseTheTrapForm() {
        WindowFixture f;
        f.Trigger("BandPassMenu");
        for (const bool shunt : {false, true}) {
            f.Trigger(shunt ? "EllipticEMenu" : "EllipticCMenu");
            f.Click("TrapForm3");
            QCOMPARE(f.Text("TrapTypeBox"), "3");
            QVERIFY(f.Design().Elements[shunt ? 3 : 2].Type ==
                    (shunt ? ElementType::ShuntElliptic3 : ElementType::SeriesElliptic3));
            QVERIFY(f.Find("EllipticPanel")->height() <= 96);  // no higher than the schematic
        }
    }

    void KeysCycleResponseAndSweep() {
        WindowFixture f;
        // Whatever has the focus: the window sees function keys before its controls.
        QWidget* const targets[] = {f.Find("F0Box"), f.Grid, f.Find("CalcButton"), f.Window.get()};
        for (int i = 0; i <= 12; ++i) {
            QCOMPARE(static_cast<int>(f.Design().ResponseType), i % 12);
            QCOMPARE(f.Find("EllipticAttenBox")->isEnabled(), i >= 7 && i < 12);
            QCOMPARE(f.Difference(), QString());
            QTest::keyClick(targets[i % 4], Qt::Key_F4);
        }
        QTest::keyClick(f.Grid, Qt::Key_F7);
        QVERIFY(f.Checked("ChebyshevMenu") && !f.Checked("ButterworthMenu"));
        QVERIFY(f.Checked("TwoDecadesMenu") && !f.Checked("OneDecadeMenu"));
        f.Trigger("NortonMenu");
        f.Trigger("LinearChebyshevMenu");
        QTest::keyClick(f.Grid, Qt::Key_F4);  // to Elliptic A, which a Norton band-pass cannot be
        QVERIFY(f.Checked("ButterworthMenu"));
        QCOMPARE(f.TakeMessages().size(), 1);
    }

    void KeysChangeTheSelectedValue() {
        // E12 for inductors, E24 for capacitors; F5 keeps the product of a resonator, F6 rounds
        // that too.
        WindowFixture f;
        f.Trigger("BandPassMenu");
        f.Enter("BandWidthBox", "20");
        // C1 = 1 / (2 pi 50 ohm 20 MHz) = 159.15 pF, L1 C1 = 1 / (2 pi)^2 / (210 x 190 MHz^2)
        const double c = 159.154943e-12, product = 1 / (TwoPi * TwoPi * 210e6 * 190e6);
        const std::tuple<Qt::Key, double, double> cases[] = {
            {Qt::Key_F1, product / c, c / 1.05}, {Qt::Key_F2, product / c, c * 1.05},
            {Qt::Key_F3, product / c, 160e-12},  {Qt::Key_F5, product / 160e-12, 160e-12},
            {Qt::Key_F6, 3.9e-9, 160e-12},       {Qt::Key_F8, product / c, c}};
        for (const auto& [key, l1, c1] : cases) {
            f.Click("CalcButton");
            f.Grid->setCurrentCell(1, 1);
            QTest::keyClick(f.Grid, key);
            const CircuitElement& tank = f.Design().Elements[1];
            QVERIFY2(std::abs(tank.V1 / l1 - 1) < 1e-8, qPrintable(QString::number(tank.V1)));
            QVERIFY2(std::abs(tank.V2 / c1 - 1) < 1e-8, qPrintable(QString::number(tank.V2)));
            QVERIFY(f.Grid->currentColumn() == 1 && f.Grid->currentRow() == 1);
        }
    }

    void PercentChangeSetsTheStep() {
        WindowFixture f;
        const double c = f.Design().Elements[1].V2;
        f.Enter("PercentChangeBox", "50");
        f.Grid->setCurrentCell(1, 0);  // the label column counts as the first element
        QTest::keyClick(f.Grid, Qt::Key_F2);
        QCOMPARE(f.Grid->currentColumn(), 1);
        QCOMPARE(f.Design().Elements[1].V2, 1.5 * c);
        for (const Qt::Key key : {Qt::Key_F1, Qt::Key_F4, Qt::Key_F7, Qt::Key_F8}) {
            f.Enter("PercentChangeBox", "many", Qt::Key_unknown);
            QTest::keyClick(f.Find("PercentChangeBox"), key);
            if (key == Qt::Key_F1) QCOMPARE(f.Design().Elements[1].V2, 1.5 * c / 1.05);
            QCOMPARE(f.Colour("PercentChangeBox"), SilverColour);
            QVERIFY(f.Status().contains("\"many\" is no number: 5.0"));
        }
    }

    void TypedCellsAreSimulated() {
        WindowFixture f;
        const ElementList nominal = f.Design().Elements;
        const SweepResponse before = f.Design().Response;
        const std::pair<const char*, double> typed[] = {
            {" 0.022 nF ", 22e-12}, {"-5p", -5e-12}, {"0", 0}};
        for (const auto& [text, value] : typed) {
            f.EnterCell(1, 3, text);
            QVERIFY2(std::abs(f.Design().Elements[3].V2 - value) < 1e-24, text);
            QVERIFY2(!SameResponse(f.Design().Response, before), text);
            QCOMPARE(f.Status().contains("is "), value <= 0);
            QTest::keyClick(f.Grid, Qt::Key_Return);  // Enter on the grid leaves it as it stands
            QVERIFY2(std::abs(f.Design().Elements[3].V2 - value) < 1e-24, text);
        }
        f.EnterCell(0, 2, "100n");
        for (const char* const rubbish : {"1,5p", " "}) {
            f.EnterCell(0, 2, rubbish);
            QCOMPARE(f.Design().Elements[2].V1, 100e-9);
            QCOMPARE(f.Grid->item(0, 2)->background().color(), SilverColour);
            QCOMPARE(f.Cell(0, 2), rubbish);  // stays to be mended
        }
        f.EnterCell(1, 1, "10p", Qt::Key_F2);  // a function key ends the editing and acts
        QCOMPARE(f.Design().Elements[1].V2, 10.5e-12);
        QVERIFY(!f.Grid->viewport()->findChild<QLineEdit*>());
        f.Click("CalcButton");
        QVERIFY(SameLadder(f.Design().Elements, nominal));
        QVERIFY(f.Grid->item(0, 2)->background().color() != SilverColour);
        QVERIFY2(!f.OpenCell(0, 1), "a shunt C has no L");
    }
};

QTEST_MAIN(StepsTest)
#include "steps_test.moc"
