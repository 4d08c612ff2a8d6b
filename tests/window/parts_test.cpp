// The part-definitions window, part models, standard values and the worst case, by real events.
#include <QLabel>
#include <QProgressBar>
#include <QRadioButton>
#include <QScreen>

#include "analysis/PartDefinitionsWindow.h"
#include "analysis/PartValues.h"
#include "tests/window/WindowFixture.h"

using namespace ladderwise;

namespace {

/// The main window with the part-definitions window opened from its menu.
class PartsFixture : public WindowFixture {
public:
    PartsFixture() {
        Parts = Find<PartDefinitionsWindow>("PartDefinitionsWindow");
        Trigger("PartDefinitionsMenu");
        Parts->activateWindow();
        const auto active = [this] { return QApplication::activeWindow() == Parts; };
        if (!QTest::qWaitFor(active)) QTest::qFail("not active", __FILE__, __LINE__);
    }
    PartDefinitionsWindow* Parts;
};

bool IsStandard(double value, int stride) {
    const double decade = std::pow(10.0, std::floor(std::log10(value) + 1e-12));
    for (int i = 0; i < NumStandardValues; i += stride)
        if (std::abs(value / decade / StandardValues[i] - 1) < 1e-9) return true;
    return false;
}

}  // namespace

class PartsTest : public QObject {
    Q_OBJECT

private slots:
    void init() { FailOnToolkitWarnings(); }

    void OpensBesideItsOwnerOnScreen() {
        PartsFixture f;
        QCOMPARE(f.Parts->windowTitle(), "L and C Model Definitions");
        QVERIFY(f.Parts->isVisible() && !f.Parts->isModal());
        QCOMPARE(f.Parts->parentWidget(), f.Window.get());
        const QRect screen = f.Window->screen()->availableGeometry();
        for (const QPoint at : {QPoint(0, 0), QPoint(-300, -400), QPoint(90, 40),
                                screen.bottomRight() - QPoint(50, 50)}) {
            f.Window->move(at);
            f.Trigger("PartDefinitionsMenu");
            QVERIFY2(
                screen.contains(f.Parts->frameGeometry()) || f.Parts->height() > screen.height(),
                qPrintable(QDebug::toString(f.Parts->geometry())));
        }
        f.Window->move(0, 0);
        QStringList texts;
        for (const auto* const label : f.Parts->findChildren<QLabel*>())
            texts << label->text();
        for (const char* const text :
             {"The simulator uses the same Q for all the inductors and calculates R as shown.  f "
              "is "
              "the simulation frequency. Specify Q at F0.",
              "The capacitor parasitics are constant with frequency. 0.2 Ohms and .25 nH are "
              "typical values for commercial grade capacitors.",
              "If the Adjust For Parasitics option is checked, the program accounts for the "
              "parasitic C and L in the calculation of the element values. It has the effect of "
              "reducing all component values. The parasitic resistance is not accounted for "
              "however.",
              "The Percent settings are used in the Monte Carlo analysis and also control the part "
              "values when the Std Value Box is checked.",
              "Number of Monte Carlo Simulations <= 1000"})
            QVERIFY2(texts.contains(text), text);
        const QString initial[] = {f.Text("IndQBox"), f.Text("IndCBox"), f.Text("CapRBox"),
                                   f.Text("CapLBox"), f.Text("WorstCaseSimsBox")};
        const char* const expected[] = {"35", ".25", "0.25", ".5", "100"};
        for (int i = 0; i < 5; ++i)
            QCOMPARE(initial[i], expected[i]);
        f.Click("PartExitButton");
        QVERIFY(!f.Parts->isVisible());
        f.Trigger("PartDefinitionsMenu");
        f.Window->close();
        QVERIFY2(!f.Parts->isVisible(), "it goes with its owner");
    }

    void RadioButtonsSetTolerances() {
        PartsFixture f;
        const auto label = [&] { return f.Find<QLabel>("ToleranceLabel")->text(); };
        QCOMPARE(label(), "C 5%    L 10%");
        const struct {
            const char* Name;
            const char* Percent;
            double Fraction;
            int Step;
        } choices[] = {{"Ten", "10%", 0.1, 8},
                       {"Two", "2%", 0.02, 2},
                       {"One", "1%", 0.01, 1},
                       {"Five", "5%", 0.05, 4}};
        QString ind = "10%";
        for (const auto& cap : choices) {
            f.Check(QString("%1PercentCap").arg(cap.Name));
            QCOMPARE(label(), QString("C %1    L %2").arg(cap.Percent, ind));
            QCOMPARE(f.Design().PartModel.CapTolerance, cap.Fraction);
            QCOMPARE(f.Design().PartModel.CapSeriesStep, cap.Step);
            f.Check(QString("%1PercentInd").arg(cap.Name));
            ind = cap.Percent;
            QCOMPARE(label(), QString("C %1    L %2").arg(cap.Percent, ind));
            QCOMPARE(f.Design().PartModel.IndTolerance, cap.Fraction);
            QCOMPARE(f.Design().PartModel.IndSeriesStep, cap.Step);
        }
    }

    void BoxesAreReadAndCleaned() {
        const struct {
            const char* Box;
            const char* Typed;
            const char* Label;  ///< of the main window, and what it shows then
            const char* Shown;
            bool Replaced;
        } cases[] = {{"IndQBox", "100", "IndQLabel", "Ind Qo =  100", false},
                     {"IndQBox", "good", "IndQLabel", "Ind Qo =  35", true},
                     {"IndQBox", "-1", "IndQLabel", "Ind Qo =  0.1", true},
                     {"IndCBox", "1.5", "IndCLabel", "Ind C  =   1.5 pF", false},
                     {"IndCBox", "", "IndCLabel", "Ind C  =   0.25 pF", true},
                     {"CapRBox", "0", "CapRLabel", "Cap Ro = 0 ohm", false},
                     {"CapRBox", "1e9", "CapRLabel", "Cap Ro = 1000000 ohm", true},
                     {"CapLBox", ".75", "CapLLabel", "Cap L  =  0.75 nH", false},
                     {"CapLBox", "-2", "CapLLabel", "Cap L  =  0 nH", true},
                     {"WorstCaseSimsBox", "0", nullptr, "", true},
                     {"WorstCaseSimsBox", "1001", nullptr, "", true},
                     {"WorstCaseSimsBox", "12", nullptr, "", false}};
        PartsFixture f;
        for (const auto& c : cases) {
            const std::pair<const char*, std::function<void()>> ends[] = {
                {"Enter", [&] { QTest::keyClick(f.Find(c.Box), Qt::Key_Return); }},
                {"Tab", [&] { QTest::keyClick(f.Find(c.Box), Qt::Key_Tab); }},
                {"Calc", [&] { f.Click("PartCalcButton"); }},
                {"tolerance", [&] { f.Check("TwoPercentCap"); }}};
            for (const auto& [end, act] : ends) {
                f.Enter(c.Box, c.Typed, Qt::Key_unknown);
                act();
                const QString what = QString("%1 \"%2\" %3").arg(c.Box, c.Typed, end);
                QVERIFY2((f.Colour(c.Box) == SilverColour) == c.Replaced, qPrintable(what));
                QVERIFY2(f.Parts->isVisible(), qPrintable(what));
                if (c.Label) QVERIFY2(f.Find<QLabel>(c.Label)->text() == c.Shown, qPrintable(what));
                f.Enter(c.Box, "1");
            }
        }
    }

    void PartModelsChangeTheResponse() {
        PartsFixture f;
        f.Trigger("NotchMenu");
        const SweepResponse ideal = f.Design().Response;
        const ElementList elements = f.Design().Elements;
        f.Enter("IndQBox", "12");
        f.Enter("CapLBox", "2");
        QVERIFY2(SameResponse(f.Design().Response, ideal), "ideal parts have no parasitics");
        f.Check("RealPartsButton");
        const SweepResponse real = f.Design().Response;
        QVERIFY(!SameResponse(real, ideal));
        for (int slot = 1; slot <= 3; ++slot)
            QVERIFY(SameElement(f.Design().Elements[slot], elements[slot]));
        f.Enter("IndQBox", "13");
        QVERIFY(!SameResponse(f.Design().Response, real));
        f.Check("DeEmbedButton");
        const double w0 = TwoPi * f.Design().F0;
        for (int slot = 1; slot <= 3; ++slot) {
            // 1 / L and 1 / C grow by w0^2 times the parasitic C and L
            const CircuitElement& now = f.Design().Elements[slot];
            QVERIFY(std::abs((1 / now.V1 - 1 / elements[slot].V1) / (w0 * w0 * 0.25e-12) - 1) <
                    1e-9);
            QVERIFY(std::abs((1 / now.V2 - 1 / elements[slot].V2) / (w0 * w0 * 2e-9) - 1) < 1e-9);
        }
        f.Check("IdealPartsButton");
        QVERIFY(SameResponse(f.Design().Response, ideal));
        QCOMPARE(DifferenceFromFresh(f.State()), QString());
    }

    void StandardValuesSnap() {
        PartsFixture f;
        f.Trigger("BandPassMenu");
        for (const auto& [percent, stride] :
             {std::pair("Ten", 8), {"Five", 4}, {"Two", 2}, {"One", 1}}) {
            f.Check(QString("%1PercentCap").arg(percent));
            f.Check(QString("%1PercentInd").arg(percent));
            QVERIFY(!IsStandard(f.Design().Elements[1].V1, stride));
            f.Check("StdValuesBox");
            for (int slot = 1; slot <= 3; ++slot) {
                QVERIFY2(IsStandard(f.Design().Elements[slot].V1, stride), percent);
                QVERIFY2(IsStandard(f.Design().Elements[slot].V2, stride), percent);
            }
            QCOMPARE(DifferenceFromFresh(f.State()), QString());
            f.Check("StdValuesBox");
        }
    }

    void WorstCaseRunsAndReturns() {
        PartsFixture f;
        f.Check("PlotReturnLossBox");
        const ElementList nominal = f.Design().Elements;
        const SweepResponse response = f.Design().Response;
        const QImage before = f.Find("BitMap")->grab().toImage();
        f.Check("WorstCaseBox");
        QCOMPARE(f.State().WorstCase.Runs, 100);
        for (const char* const runs : {"1", "37", "1000"}) {
            f.Enter("WorstCaseSimsBox", runs);
            const WorstCaseResult& result = f.State().WorstCase;
            QCOMPARE(QString::number(result.Runs), runs);
            QVERIFY(f.Status().startsWith(QString("Worst case of %1 runs (seed %2): pass-band loss")
                                              .arg(runs)
                                              .arg(result.Seed)));
            for (int slot = 0; slot < NumSlots; ++slot)
                QVERIFY(SameElement(f.Design().Elements[slot], nominal[slot]));
            QVERIFY(SameResponse(f.Design().Response, response));
            QVERIFY(!f.Find("WorstCaseProgress")->isVisible());
            QVERIFY(!QApplication::overrideCursor());
            QVERIFY(!f.Find("PlotPulseBox")->isEnabled());
            QCOMPARE(DifferenceFromFresh(f.State()), QString());
        }
        QVERIFY2(f.Find("BitMap")->grab().toImage() != before, "the overlay is on the plot");
        const auto seed = f.State().WorstCase.Seed;
        f.Window->resize(f.Window->size() + QSize(40, 30));
        WindowFixture::Settle();
        QCOMPARE(f.State().WorstCase.Seed, seed);  // the same runs in a picture of another size
        QCOMPARE(f.State().WorstCase.Runs, 1000);
        f.Click("CalcButton");
        QVERIFY(f.State().WorstCase.Seed != seed);
        f.Check("WorstCaseBox");
        QCOMPARE(f.State().WorstCase.Runs, 0);
        QVERIFY(!f.Status().contains("Worst case"));
        QVERIFY(!f.Find("PlotPulseBox")->isEnabled());
    }
};

int main(int argc, char** argv) {
    return RunWindowTest<PartsTest>(argc, argv);
}
#include "parts_test.moc"
