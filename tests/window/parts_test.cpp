// The part-definitions window, part models, standard values and the worst case, by real events.
#include <QLabel>
#include <QScreen>
#include <functional>

#include "analysis/PartDefinitionsWindow.h"
#include "tests/window/WindowFixture.h"

using namespace ladderwise;

namespace {

/// The main window with the part-definitions window opened from its menu.
class PartsFixture : public WindowFixture {
public:
    PartsFixture() {
        Trigger("PartDefinitionsMenu");
        Parts->activateWindow();
        const auto active = [this] { return QApplication::activeWindow() == Parts; };
        if (!QTest::qWaitFor(active)) QTest::qFail("not active", __FILE__, __LINE__);
    }
    PartDefinitionsWindow* Parts = Find<PartDefinitionsWindow>("PartDefinitionsWindow");
};

}  // namespace

class PartsTest : public QObject {
    Q_OBJECT

private slots:
    void OpensBesideItsOwnerOnScreen() {
        PartsFixture f;
        QCOMPARE(f.Parts->windowTitle(), "L and C Model Definitions");
        QVERIFY(f.Parts->isVisible() && !f.Parts->isModal());
        QCOMPARE(f.Text("IndCBox") + f.Text("CapLBox"), ".25.5");
        const QRect screen = f.Window->screen()->availableGeometry();
        for (const QPoint at : {QPoint(0, 0), QPoint(-300, -400), QPoint(90, 40),
                                screen.bottomRight() - QPoint(50, 50)}) {
            f.Window->move(at);
            f.Trigger("PartDefinitionsMenu");
            QVERIFY(screen.contains(f.Parts->frameGeometry()) ||
                    f.Parts->height() > screen.height());
        }
        f.Click("PartExitButton");
        QVERIFY(!f.Parts->isVisible());
        f.Trigger("PartDefinitionsMenu");
        f.Window->close();
        QVERIFY2(!f.Parts->isVisible(), "it goes with its owner");
    }

    void BoxesAreReadAndCleaned() {
        // clang-format off
        const struct { const char *Box, *Typed, *Label, *Shown; bool Replaced; } cases[] = {
            {"IndQBox", "100", "IndQLabel", "Ind Qo =  100", false},
            {"IndQBox", "good", "IndQLabel", "Ind Qo =  35", true},
            {"IndCBox", "1.5", "IndCLabel", "Ind C  =   1.5 pF", false},
            {"IndCBox", "", "IndCLabel", "Ind C  =   0.25 pF", true},
            {"CapRBox", "0", "CapRLabel", "Cap Ro = 0 ohm", false},
            {"CapRBox", "1e9", "CapRLabel", "Cap Ro = 1000000 ohm", true},
            {"CapLBox", ".75", "CapLLabel", "Cap L  =  0.75 nH", false},
            {"CapLBox", "-2", "CapLLabel", "Cap L  =  0 nH", true},
            {"WorstCaseSimsBox", "0", "CapLLabel", "Cap L  =  1 nH", true}};
        // clang-format on
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
                QVERIFY2(f.Find<QLabel>(c.Label)->text() == c.Shown, qPrintable(what));
                f.Enter(c.Box, "1");
            }
        }
    }

    void TolerancesAndStandardValues() {
        PartsFixture f;
        f.Trigger("BandPassMenu");
        f.Check("StdValuesBox");
        QString ind = "10";
        for (const auto& [name, percent] :
             {std::pair("Ten", "10"), {"Two", "2"}, {"One", "1"}, {"Five", "5"}}) {
            for (const QString kind : {"Cap", "Ind"}) {
                f.Check(QString("%1Percent%2").arg(name, kind));
                if (kind == "Ind") ind = percent;
                QCOMPARE(f.InUse("cap-tol") + " " + f.InUse("ind-tol"), percent + (" " + ind));
                QCOMPARE(f.Find<QLabel>("ToleranceLabel")->text(),
                         QString("C %1%    L %2%").arg(percent, ind));
                QCOMPARE(f.Difference(), QString());
            }
        }
    }

    void PartModelsChangeTheResponse() {
        PartsFixture f;
        f.Trigger("NotchMenu");
        const SweepResponse ideal = f.Design().Response;
        const ElementList elements = f.Design().Elements;
        f.Enter("IndQBox", "12");
        QVERIFY2(SameResponse(f.Design().Response, ideal), "ideal parts have no parasitics");
        f.Check("RealPartsButton");
        const SweepResponse real = f.Design().Response;
        QVERIFY(!SameResponse(real, ideal) && SameLadder(f.Design().Elements, elements));
        f.Enter("IndQBox", "13");
        QVERIFY(!SameResponse(f.Design().Response, real));
        f.Check("DeEmbedButton");
        QVERIFY(!SameLadder(f.Design().Elements, elements));
        f.Check("IdealPartsButton");
        QVERIFY(SameResponse(f.Design().Response, ideal));
    }

    void WorstCaseRunsAndReturns() {
        PartsFixture f;
        const ElementList nominal = f.Design().Elements;
        const QImage before = f.Find("BitMap")->grab().toImage();
        f.Check("WorstCaseBox");
        const auto& result = f.State().WorstCase;
        for (const char* const runs : {"1", "37", "1000"}) {
            f.Enter("WorstCaseSimsBox", runs);
            QVERIFY(f.Status().startsWith(QString("Worst case of %1 runs (seed %2): pass-band loss")
                                              .arg(runs)
                                              .arg(result.Seed)));
            QVERIFY(SameLadder(f.Design().Elements, nominal));
            QVERIFY(!f.Find("WorstCaseProgress")->isVisible() && !QApplication::overrideCursor());
            QVERIFY(!f.Find("PlotPulseBox")->isEnabled());
            QCOMPARE(f.Difference(), QString());
        }
        QVERIFY2(f.Find("BitMap")->grab().toImage() != before, "the overlay is on the plot");
        const auto seed = result.Seed;
        f.Window->resize(f.Window->size() + QSize(40, 30));
        WindowFixture::Settle();
        QVERIFY(result.Seed == seed && result.Runs == 1000);  // the same runs, another size
        f.Click("CalcButton");
        QVERIFY(result.Seed != seed);
        f.Check("WorstCaseBox");
        QVERIFY(result.Runs == 0 && !f.Status().contains("Worst case"));
    }
};

QTEST_MAIN(PartsTest)
#include "parts_test.moc"
