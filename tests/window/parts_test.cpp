// The part-definitions window, part models, standard values and the worst case, by real events.
#include <QLabel>
#include <QPlainTextEdit>
#include <QScreen>
#include <random>

#include "analysis/BoardDraws.h"
#include "analysis/Circuitanalysis.h"
#include "analysis/PartValues.h"
#include "display/Annotations.h"
#include "display/ReadOuts.h"
#include "numbers/Matherrmain.h"
#include "tests/window/WindowFixture.h"

using namespace ladderwise;

class PartsTest : public QObject {
    Q_OBJECT

private slots:
    void OpensBesideItsOwnerOnScreen() {
        WindowFixture f;
        auto* const parts = f.Find("PartDefinitionsWindow");
        f.Trigger("PartDefinitionsMenu");
        QCOMPARE(parts->windowTitle(), "L and C Model Definitions");
        QVERIFY(parts->isVisible() && !parts->isModal());
        QStringList labels;
        for (const char* const name : {"IndQLabel", "IndCLabel", "CapRLabel", "CapLLabel"})
            labels << f.Find<QLabel>(name)->text();
        QCOMPARE(labels.join('|'),
                 "Ind Qo =  35|Ind C  =   0.25 pF|Cap Ro = 0.25 ohm|Cap L  =  0.5 nH");
        const QRect screen = f.Window->screen()->availableGeometry();
        for (const QPoint at : {QPoint(0, 0), QPoint(-300, -400), QPoint(90, 40),
                                screen.bottomRight() - QPoint(50, 50)}) {
            f.Window->move(at);
            f.Trigger("PartDefinitionsMenu");
            QVERIFY(screen.contains(parts->frameGeometry()) || parts->height() > screen.height());
        }
        f.Click("PartExitButton");
        QVERIFY(!parts->isVisible());
        f.Trigger("PartDefinitionsMenu");
        f.Window->close();
        QVERIFY2(!parts->isVisible(), "it goes with its owner");
    }

    void TheBandsAreOfTheWorstCaseInHand() {
        WindowFixture f;
        f.Trigger("PartDefinitionsMenu");
        f.Enter("WorstCaseSimsBox", "61");
        f.Check("WorstCaseBox");
        // The range of all runs at F0, by their draws and the reference analysis.
        const auto range = [&f] {
            const Calculation& work = f.State();
            const auto design = std::make_unique<FilterDesign>(work.Design);
            design->NominalElements = design->Elements;
            std::mt19937 generator(work.WorstCase.Seed);
            double low = 1e9, high = -1e9;
            for (int run = 0; run < work.WorstCase.Runs; ++run) {
                RandomiseParts(*design, generator);
                const double f0 = design->SweepFreqs[NumSweepPoints / 2];
                const double level =
                    20.0 * std::log10(std::abs(AnalysePoint(*design, design->F0, f0).Transfer));
                low = std::min(low, level), high = std::max(high, level);
            }
            return QString("all runs: %1 \u2026 %2 dB").arg(low, 0, 'f', 2).arg(high, 0, 'f', 2);
        };
        const auto read = [&f] {
            QString text;
            const PlotContent content = f.Window->Content();
            const MarkedSweep sweep = SweepOf(content, {}, {});
            for (const auto& trace :
                 ReadCursor(NumSweepPoints / 2, 0, sweep, content.Layers, {}, content.Bands.get())
                     .Traces)
                text += QString::fromStdString(trace.Text.Text);
            return text;
        };
        f.State();
        QVERIFY2(read().contains(range()), qPrintable(read() + " / " + range()));
        f.Enter("RLBox", "70");
        QVERIFY2(!read().contains("all runs") || read().contains(range()), qPrintable(read()));
        f.State();
        const QString changed = range();
        QVERIFY2(read().contains(changed), qPrintable(read() + " / " + changed));
        f.Check("OverlayRunsButton");
        f.State();
        QVERIFY2(!read().contains("all runs"), qPrintable(read()));
        f.Trigger("UndoMenu");
        f.State();
        QVERIFY2(read().contains(changed), qPrintable(read() + " / " + changed));
    }

    void WorstCaseRunsAndReturns() {
        WindowFixture f;
        f.Trigger("PartDefinitionsMenu");
        const ElementList nominal = f.Design().Elements;
        f.Check("PlotPulseBox");
        QVERIFY(ShownTraces(f.State()).Pulse && f.State().Quantities.Pulse[256] > 0.7);
        const QImage before = f.Find("BitMap")->grab().toImage();
        f.Check("WorstCaseBox");
        const auto& result = f.State().WorstCase;
        for (const char* const runs : {"1", "37", "1000"}) {
            f.Enter("WorstCaseSimsBox", runs);
            QVERIFY(f.Results().contains(QString("worst case\t%1 runs, seed %2\npass-band loss\t")
                                             .arg(runs)
                                             .arg(result.Seed)));
            QVERIFY(SameLadder(f.Design().Elements, nominal));
            QVERIFY(!f.Find("WorstCaseProgress")->isVisible() && !QApplication::overrideCursor());
            QVERIFY(!f.Find("PlotPulseBox")->isEnabled());
            QVERIFY(!ShownTraces(f.State()).Pulse);
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
        QVERIFY(result.Runs == 0 && !f.Results().contains("worst case"));
    }

    void MathErrorsAreCountedAndListed() {
        WindowFixture f;
        auto* const button = f.Find("MathErrorButton");
        auto* const window = f.Find("MathErrForm");
        QVERIFY(!button->isVisible() && !window->isVisible());
        GuardedSqrt(-4.0);
        f.Click("CalcButton");
        QVERIFY(button->isVisible() && !window->isVisible());
        f.Click("MathErrorButton");
        const auto text = [&] { return window->findChild<QPlainTextEdit*>()->toPlainText(); };
        QVERIFY(window->isVisible() && window->windowTitle() == "Math Err");
        QCOMPARE(text(), QString("type=DOMAIN   name=sqrt   arg1=-4   arg2=0\n"
                                 "Math Error was Corrected. ReturnValue =2"));
        GuardedLog(0.0);
        f.Click("CalcButton");
        QVERIFY(text().endsWith("ReturnValue =1E99") && text().startsWith("type=DOMAIN"));
        f.Click("Button1");
        QVERIFY(!window->isVisible());
        f.Trigger("MathErrMenu");
        QVERIFY(window->isVisible());
    }
};

QTEST_MAIN(PartsTest)
#include "parts_test.moc"
