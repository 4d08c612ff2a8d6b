// The main window by real events: what it shows at start, boxes, menus, control states, the layout
// of plot and grid, and the status line.
#include <QLabel>
#include <QProgressBar>
#include <QRadioButton>
#include <QScrollBar>
#include <set>

#include "display/PlotFrame.h"
#include "display/PlotLayout.h"
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
    void init() { FailOnToolkitWarnings(); }

    void StartsWithAButterworthLowPass() {
        WindowFixture f;
        QCOMPARE(f.Window->windowTitle(), "Ladderwise");
        QCOMPARE(PlotTitle(f.Design()), "3 Pole Butterworth LPF");
        QCOMPARE(f.Grid->columnCount(), 4);
        // C = 1 / (2 pi F0 R) and L = 2 R / (2 pi F0), F0 = 200 MHz, R = 50 ohm
        const char* const cells[4][4] = {{"    Ind", "", "79.6E-9", ""},
                                         {"    Cap ", "15.9E-12", "", "15.9E-12"},
                                         {"    Ind", "", "", ""},
                                         {"    Cap ", "", "", ""}};
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 4; ++column)
                QCOMPARE(f.Cell(row, column), cells[row][column]);
        QCOMPARE(f.Status(), "3 Pole Butterworth LPF, 3 elements");
        QVERIFY(!f.Find("StripScrollBar")->isVisible());
        QCOMPARE(LeftEdgeOfFrame(f), 60);
        QCOMPARE(DifferenceFromFresh(f.State()), QString());
    }

    void EveryControlHasItsName() {
        WindowFixture f;
        const QString names =
            "F0Box F0UpDown BandWidthBox BandWidthUpDown BWMHzButton BWPercentButton "
            "NumPolesBox NumPolesUpDown PolesLabel RippleBox RippleUpDown "
            "RippleLabel EllipticAttenBox EllipticAttenUpDown EllipticAttenLabel "
            "RSBox RLBox PercentChangeBox TrapTypeBox EllipticFormUpDown "
            "EllipticPanel ScaleBox CalcButton IdealPartsButton RealPartsButton "
            "DeEmbedButton StdValuesBox WorstCaseBox ToleranceLabel IndQLabel "
            "IndCLabel CapRLabel CapLLabel PlotMag1dBBox PlotMagBox PlotPhaseBox "
            "PlotGDBox PlotPulseBox PlotReturnLossBox PlotReferenceBox "
            "AutoScaleCheckBox SetRefButton ExchangeRefButton BitMap MainPanel "
            "ValueGrid FontLabel ReminderLabel SamplingFrequencyBox IndQBox IndCBox "
            "CapRBox CapLBox WorstCaseSimsBox TenPercentCap FivePercentCap "
            "TwoPercentCap OnePercentCap TenPercentInd FivePercentInd TwoPercentInd "
            "OnePercentInd";
        for (const QString& name : names.split(' '))
            QVERIFY2(f.Window->findChild<QWidget*>(name), qPrintable(name));
        const std::pair<const char*, const char*> entries[] = {
            {"LowPassMenu", "Low Pass"},
            {"HighPassMenu", "High Pass"},
            {"NotchMenu", "Notch"},
            {"BandPassMenu", "Band Pass Canonical"},
            {"DirectCoupledMenu", "Band Pass  Direct Coupled"},
            {"NortonMenu", "Band Pass  Norton"},
            {"LowPassPrototypeMenu", "Low Pass Prototype ( F0 = 1/2Pi  Hz)"},
            {"BesselFreqMenu", "Bessel (Freq) "},
            {"GaussMenu", "Gauss to 3 dB"},
            {"CoefficientsFileMenu", "Coefficients File (*.csv)"},
            {"FormCLCMenu", "Form = CLC"},
            {"EllipticAMenu", "Elliptic A  (R Load  > R Source)"},
            {"EllipticEMenu", "Elliptic E  (R Load  = R Source)"},
            {"ThreeOctavesMenu", "3 Octaves"},
            {"PartDefinitionsMenu", "Part Definitions"},
            {"SetRefPeakMenu", "Set Ref at BPF Peak"},
            {"MouseReadOutMenu", "Here for File Read Save"},
            {"PrevFile0Menu", "1"},
            {"PrevFile3Menu", "4"}};
        for (const auto& [name, caption] : entries) {
            const QAction* const action = f.Find<QAction>(name);
            QCOMPARE(action->text().remove('&'), caption);
        }
        for (auto* const action : f.Window->findChildren<QAction*>())
            QVERIFY2(action->isEnabled() || !action->isVisible() ||
                         action->toolTip().startsWith("Will "),
                     qPrintable(action->objectName()));
    }

    void TabReachesEveryEnabledControl() {
        WindowFixture f;
        f.Trigger("BandPassMenu");
        f.Trigger("ChebyshevMenu");
        f.Find("F0Box")->setFocus();
        std::set<QWidget*> reached;
        for (int i = 0; i < 60; ++i) {
            reached.insert(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        for (auto* const control : f.Find("MainPanel")->findChildren<QWidget*>()) {
            const auto* const radio = qobject_cast<QRadioButton*>(control);
            const bool wanted = control->isVisible() && control->isEnabled() &&
                                (control->focusPolicy() & Qt::TabFocus) &&
                                (!radio || radio->isChecked());
            QVERIFY2(!wanted || reached.count(control), qPrintable(control->objectName()));
        }
        QVERIFY(reached.count(f.Grid));
    }

    void TypedTextIsReadAndCleaned() {
        constexpr const char* plain = "BandPassMenu";
        constexpr const char* elliptic = "EllipticDMenu";
        const struct {
            const char* Menu;
            const char* Box;
            const char* Typed;
            const char* Shown;
            double Value;
            bool Replaced;
            Getter Get;
        } cases[] = {{plain, "F0Box", "100", "100", 100, false, F0},
                     {plain, "F0Box", " 1.5e2 ", "150", 150, false, F0},
                     {plain, "F0Box", "145.825", "146", 145.825, false, F0},
                     {plain, "F0Box", "12 MHz", "1", 1, true, F0},
                     {plain, "F0Box", "1,5", "1", 1, true, F0},
                     {plain, "F0Box", "", "1", 1, true, F0},
                     {plain, "F0Box", "0", "0.001", 1e-3, true, F0},
                     {plain, "F0Box", "1e9", "100000", 1e5, true, F0},
                     {plain, "F0Box", "100000", "100000", 1e5, false, F0},
                     {plain, "NumPolesBox", "7", "7", 7, false, Poles},
                     {plain, "NumPolesBox", "2.5", "3", 3, true, Poles},
                     {plain, "NumPolesBox", "0", "1", 1, true, Poles},
                     {plain, "NumPolesBox", "99999999999", "3", 3, true, Poles},
                     {plain, "NumPolesBox", "11", "10", 10, true, Poles},
                     {plain, "BandWidthBox", "12.345", "12.3", 12.345, false, BandWidth},
                     {plain, "BandWidthBox", "wide", "20", 20, true, BandWidth},
                     {plain, "BandWidthBox", "0.1", "1", 1, true, BandWidth},
                     {plain, "BandWidthBox", "1e3", "398", 398, true, BandWidth},
                     {plain, "RSBox", "75", "75", 75, false, Source},
                     {plain, "RSBox", "-5", "0.001", 1e-3, true, Source},
                     {plain, "RLBox", "1e12", "1000000", 1e6, true, Load},
                     {plain, "PercentChangeBox", "rubbish", "5.0", 200, true, F0},
                     {plain, "PercentChangeBox", "2.55", "2.55", 200, false, F0},
                     {plain, "RLBox", "nan", "50", 50, true, Load},
                     {elliptic, "RippleBox", "2", "1", 1, true, Ripple},
                     {elliptic, "RippleBox", "?", "0.2", 0.2, true, Ripple},
                     {elliptic, "EllipticAttenBox", "62.5", "62.5", 62.5, false, Atten},
                     {elliptic, "EllipticAttenBox", "inf", "40", 40, true, Atten},
                     {elliptic, "TrapTypeBox", "3", "3", 3, false, Trap},
                     {elliptic, "TrapTypeBox", "7", "4", 4, true, Trap}};
        for (const auto& c : cases) {
            WindowFixture f;
            for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Tab}) {
                f.Trigger("BandPassMenu");
                f.Trigger(c.Menu);
                f.Window->CalcButtonClick();
                f.Enter(c.Box, c.Typed, end);
                const QString shown = QString("%1 \"%2\": %3, %4")
                                          .arg(c.Box, c.Typed, f.Text(c.Box))
                                          .arg(c.Get(f.Design()), 0, 'g', 17);
                QVERIFY2(f.Text(c.Box) == c.Shown && Near(c.Get(f.Design()), c.Value),
                         qPrintable(shown));
                QVERIFY2((f.Colour(c.Box) == SilverColour) == c.Replaced, qPrintable(shown));
                const QString note = QString("\"%1\" was replaced by").arg(c.Typed);
                QVERIFY2(f.Status().contains(note) == c.Replaced, qPrintable(f.Status()));
                f.Window->CalcButtonClick();
                QVERIFY2(f.IsNormal(c.Box), qPrintable(shown));
                QVERIFY2(Near(c.Get(f.Design()), c.Value), qPrintable(shown));
            }
        }
    }

    void ReplacementStaysVisibleAfterOneAction() {
        // Whatever the user does to leave a box with bad text, it is read once and seen as
        // replaced.
        WindowFixture f;
        const std::pair<const char*, std::function<void()>> actions[] = {
            {"Calc clicked", [&] { f.Click("CalcButton"); }},
            {"trace clicked", [&] { f.Check("PlotPhaseBox"); }},
            {"parts clicked", [&] { f.Check("RealPartsButton"); }},
            {"menu entry", [&] { f.Trigger("HighPassMenu"); }},
            {"F7", [&] { QTest::keyClick(f.Find("F0Box"), Qt::Key_F7); }},
            {"F4", [&] { QTest::keyClick(f.Find("F0Box"), Qt::Key_F4); }}};
        for (const auto& [what, act] : actions) {
            f.Enter("F0Box", "rubbish", Qt::Key_unknown);
            act();
            WindowFixture::Settle();
            QVERIFY2(f.Colour("F0Box") == SilverColour, what);
            QVERIFY2(f.Status().contains("\"rubbish\" was replaced by 1."), what);
        }
        // F4 to Bessel disables the box that it is pressed in.
        f.Trigger("ChebyshevMenu");
        f.Enter("RippleBox", "rubbish", Qt::Key_unknown);
        QTest::keyClick(f.Find("RippleBox"), Qt::Key_F4);
        QVERIFY(!f.Find("RippleBox")->isEnabled());
        QCOMPARE(f.Colour("RippleBox"), SilverColour);
    }

    void ExactValueStaysBehindThreeDigits() {
        WindowFixture f;
        f.Enter("F0Box", "145.825");
        for (int i = 0; i < 3; ++i) {
            f.Click("CalcButton");
            QCOMPARE(f.Text("F0Box"), "146");
            QCOMPARE(f.Design().F0, 145.825e6);
            QVERIFY(f.Find("F0Box")->toolTip().contains("145.825 MHz"));
        }
        f.Click("F0UpDownUp");
        QCOMPARE(f.Text("F0Box"), "147");
        QVERIFY(Near(f.Design().F0, 146.825e6));
    }

    void EvenChebyshevMovesTheLoad() {
        WindowFixture f;
        f.Trigger("ChebyshevMenu");
        QVERIFY(f.IsNormal("RLBox"));
        f.Enter("NumPolesBox", "4");
        QCOMPARE(f.Colour("RLBox"), YellowColour);
        // R Load / R Source < (sqrt(1 + e^2) - e)^2 with e^2 = 10^(ripple / 10) - 1
        const double e2 = std::pow(10.0, 0.02) - 1;
        const double ratio = std::pow(std::sqrt(1 + e2) - std::sqrt(e2), 2);
        QVERIFY(std::abs(f.Design().RLoad - 50 * ratio * 0.9999) < 1e-9);
        QVERIFY2(f.Status().contains("R Load was moved to 32.495 ohm"), qPrintable(f.Status()));
        const double moved = f.Design().RLoad;
        f.Click("CalcButton");
        QVERIFY(f.IsNormal("RLBox"));
        QCOMPARE(f.Design().RLoad, moved);
        QCOMPARE(DifferenceFromFresh(f.State()), QString());
    }

    void UnequalTerminationsForceTheForm() {
        WindowFixture f;
        f.Enter("RLBox", "25");
        QVERIFY(!f.Design().FormCLC);
        QVERIFY(f.Find<QAction>("FormLCLMenu")->isChecked());
        QVERIFY(!f.Find<QAction>("FormCLCMenu")->isChecked());
        QCOMPARE(f.Status(), "The terminations ask for the form LCL.");
        f.Enter("RLBox", "50");
        QVERIFY2(!f.Design().FormCLC, "a forced form persists");
        f.Trigger("FormCLCMenu");
        QVERIFY(f.Find<QAction>("FormCLCMenu")->isChecked());
        QCOMPARE(f.Cell(1, 1), "15.9E-12");
        const std::pair<const char*, double> loads[] = {
            {"EllipticAMenu", 100}, {"EllipticBMenu", 25}, {"GaussMenu", 50}};
        for (const auto& [menu, load] : loads) {
            f.Trigger(menu);
            QCOMPARE(f.Design().RLoad, load);
        }
    }

    void LowPassPrototypeKeepsItsFrequency() {
        WindowFixture f;
        f.Check("RealPartsButton");
        f.Check("StdValuesBox");
        f.Trigger("LowPassPrototypeMenu");
        for (int i = 0; i < 3; ++i) {
            QVERIFY(Near(f.Design().F0, 0.15915));
            QVERIFY(f.IsNormal("F0Box"));
            f.Click("CalcButton");
        }
        QCOMPARE(f.Design().RSource, 1.0);
        QVERIFY(f.Find<QRadioButton>("IdealPartsButton")->isChecked());
        QVERIFY(!f.Design().StdLCValues);
        QVERIFY(f.Find<QAction>("LowPassPrototypeMenu")->isChecked());
        QVERIFY(!f.Find<QAction>("LowPassMenu")->isChecked());
        const double g[] = {1, 2, 1};  // of a 3-pole Butterworth
        for (int k = 1; k <= 3; ++k)
            QVERIFY(std::abs(f.Design().Elements[k].Value(k % 2) / g[k - 1] - 1) < 1e-4);
        f.Trigger("HighPassMenu");
        QCOMPARE(f.Design().F0, 1e3);
        QCOMPARE(f.Colour("F0Box"), SilverColour);
    }

    void BandWidthBoxChangesItsUnit() {
        WindowFixture f;
        f.Trigger("BandPassMenu");
        f.Enter("BandWidthBox", "33.333");
        f.Check("BWPercentButton");
        QCOMPARE(f.Text("BandWidthBox"), "16.7");
        QVERIFY(Near(f.Design().BandWidth, 33.333e6));
        f.Enter("F0Box", "100");  // the percentage stays, the bandwidth follows
        QVERIFY(Near(f.Design().BandWidth, 16.6665e6));
        f.Check("BWMHzButton");
        QCOMPARE(f.Text("BandWidthBox"), "16.7");
        QVERIFY(Near(f.Design().BandWidth, 16.6665e6));
    }

    void ControlsFollowPassAndResponse() {
        const struct {
            const char* Pass;
            const char* Response;
            bool BandWidth, Ripple, Atten, TrapPanel;
        } cases[] = {{"LowPassMenu", "ButterworthMenu", false, false, false, false},
                     {"HighPassMenu", "ChebyshevMenu", false, true, false, false},
                     {"BandPassMenu", "GaussMenu", true, false, false, false},
                     {"NotchMenu", "EllipticCMenu", true, true, true, true},
                     {"LowPassMenu", "EllipticDMenu", false, true, true, true},  // as it was
                     {"LowPassMenu", "PapoulisMenu", false, false, false, false},
                     {"LowPassMenu", "EllipticDMenu", false, true, true, false},
                     {"BandPassMenu", "EllipticAMenu", true, true, true, true},
                     {"BandPassMenu", "BesselFreqMenu", true, false, false, false},
                     {"DirectCoupledMenu", "ChebyshevMenu", true, true, false, false},
                     {"NortonMenu", "ButterworthMenu", true, false, false, false}};
        WindowFixture f;
        for (const auto& c : cases) {
            f.Trigger(c.Pass);
            f.Trigger(c.Response);
            const auto expect = [&](bool enabled, std::initializer_list<const char*> names) {
                for (const char* const name : names)
                    QVERIFY2(f.Find(name)->isEnabled() == enabled,
                             qPrintable(QString(c.Pass) + " " + c.Response + " " + name));
            };
            expect(c.BandWidth,
                   {"BandWidthBox", "BandWidthUpDown", "BWMHzButton", "BWPercentButton"});
            expect(c.Ripple, {"RippleBox", "RippleUpDown", "RippleLabel"});
            expect(c.Atten, {"EllipticAttenBox", "EllipticAttenUpDown", "EllipticAttenLabel"});
            expect(false, {"PlotReferenceBox", "ExchangeRefButton"});
            QCOMPARE(f.Find("EllipticPanel")->isVisible(), c.TrapPanel);
            QCOMPARE(f.Find<QLabel>("PolesLabel")->text().remove('&'),
                     QString(c.Atten ? "N Traps" : "N Poles"));
            QVERIFY(f.Find<QAction>(c.Pass)->isChecked());
            QVERIFY(f.Find<QAction>(c.Response)->isChecked());
        }
    }

    void EllipticAndCoupledBandPassExclude() {
        WindowFixture f;
        for (const char* const pass : {"DirectCoupledMenu", "NortonMenu"}) {
            f.Trigger("LowPassMenu");
            f.Trigger("EllipticCMenu");
            f.Trigger(pass);
            QCOMPARE(f.Design().ResponseType, ResponseType::Chebyshev);
            QVERIFY(f.TakeMessages().isEmpty());
            f.Trigger("EllipticEMenu");
            QCOMPARE(f.Design().ResponseType, ResponseType::Butterworth);
            QVERIFY(f.Find<QAction>("ButterworthMenu")->isChecked());
            QCOMPARE(f.TakeMessages(),
                     QStringList(
                         "Program Info: Direct Coupled and Norton Transform filters can't use an "
                         "Elliptic prototype. \nUsing a Butterworth prototype instead. \nIf you "
                         "want an Elliptic Bandpass, choose Band Pass Canonical. \nThen choose "
                         "an Elliptic prototype."));
        }
    }

    void GroupDelayScale() {
        WindowFixture f;
        QVERIFY(!f.Find("AutoScaleCheckBox")->isVisible());
        f.Check("PlotGDBox");
        QVERIFY(f.Find("AutoScaleCheckBox")->isVisible());
        QVERIFY(!f.Find("ScaleBox")->isVisible());
        QCOMPARE(LeftEdgeOfFrame(f), 85);
        const double computed = f.Design().GDFullScale;
        f.Check("AutoScaleCheckBox");
        const QWidget* const box = f.Find("ScaleBox");
        QVERIFY(box->isVisible());
        const int plotTop = f.Find("PanelView")->height() + 35;
        QCOMPARE(box->geometry(),
                 QRect(1, plotTop - box->height() / 2, 83, box->sizeHint().height()));
        f.Check("PlotMagBox");
        QCOMPARE(LeftEdgeOfFrame(f), 60);
        QCOMPARE(box->width(), 58);
        f.Enter("ScaleBox", "5e-9");
        QCOMPARE(f.Design().GDFullScale, 5e-9);
        QVERIFY(f.IsNormal("ScaleBox"));
        for (const auto& [typed, factor] : {std::pair("1", 100.0), {"0", 0.01}, {"x", 1.0}}) {
            f.Enter("ScaleBox", typed);
            QVERIFY2(std::abs(f.Design().GDFullScale / (factor * computed) - 1) < 0.05, typed);
            QCOMPARE(f.Colour("ScaleBox"), SilverColour);
            QVERIFY(f.Status().contains("was replaced by"));
        }
        f.Check("AutoScaleCheckBox");
        QCOMPARE(f.Design().GDFullScale, computed);
        QVERIFY2(!f.Status().contains("replaced"), qPrintable(f.Status()));
        f.Check("PlotGDBox");
        QVERIFY(!f.Find("ScaleBox")->isVisible());
    }

    void StatusTellsOfEmptyLadders() {
        WindowFixture f;
        for (const char* const menu : {"EllipticCMenu", "DirectCoupledMenu", "NortonMenu"}) {
            f.Trigger("LowPassMenu");
            f.Trigger("ButterworthMenu");
            f.Trigger(menu);
            if (f.Design().NumElements > 0) continue;  // a version that builds it
            QVERIFY2(f.Status().startsWith("The ladder is empty: this version builds no "), menu);
            QCOMPARE(f.Grid->columnCount(), 1);
            for (const Qt::Key key :
                 {Qt::Key_F1, Qt::Key_F3, Qt::Key_F5, Qt::Key_F6, Qt::Key_Return})
                QTest::keyClick(f.Grid, key);
        }
    }

    void LongLaddersScroll() {
        WindowFixture f;
        f.Window->setMinimumSize(0, 0);
        for (const QSize size : {QSize(700, 600), QSize(300, 200), QSize(60, 40), QSize(2400, 1500),
                                 QSize(1280, 800), QSize(700, 600)}) {
            f.Window->resize(size);
            f.Enter("NumPolesBox", "10");
            WindowFixture::Settle();
            const int client = f.Find("Client")->width();
            const auto* const bar = f.Find<QScrollBar>("StripScrollBar");
            const int gridWidth = 65 * 10 + 67;
            QCOMPARE(f.Grid->width(), gridWidth);
            QCOMPARE(bar->isVisible(), 50 + gridWidth > client);
            QCOMPARE(bar->maximum(), std::max(0, 50 + gridWidth - client));
            QCOMPARE(f.Find("BitMap")->size(), f.Find("Client")->size());
        }
        auto* const bar = f.Find<QScrollBar>("StripScrollBar");
        QVERIFY(bar->isVisible());
        bar->setValue(bar->maximum());
        QCOMPARE(f.Grid->geometry().right() + 1, f.Find("Client")->width());
        f.Click("CalcButton");
        QCOMPARE(f.Grid->geometry().right() + 1, f.Find("Client")->width());
        f.Enter("NumPolesBox", "3");
        QVERIFY(!bar->isVisible());
        QCOMPARE(f.Grid->x(), 50);
    }

    void CellsReachedByKeysComeIntoView() {
        WindowFixture f;
        f.Window->setMinimumSize(0, 0);
        f.Window->resize(500, 600);
        f.Enter("NumPolesBox", "10");
        f.Grid->setFocus();
        f.Grid->setCurrentCell(0, 1);
        for (int column = 2; column <= 10; ++column) {
            QTest::keyClick(f.Grid, Qt::Key_Right);
            const QRect cell = f.Grid->visualItemRect(f.Grid->currentItem());
            const int right = f.Grid->x() + cell.right();
            QVERIFY2(right < f.Find("Client")->width(), qPrintable(QString::number(column)));
        }
    }

    void ClosesAndDiesWhileTyping() {
        WindowFixture f;
        f.Enter("F0Box", "123", Qt::Key_unknown);
        f.Trigger("ExitMenu");
        QVERIFY(!f.Window->isVisible());
        f.Window->show();
        f.Window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(f.Window.get()));
        f.Enter("F0Box", "124", Qt::Key_unknown);
        f.Window.reset();
    }

    void AboutBoxNamesTheProgram() {
        WindowFixture f;
        f.ExpectModal("About Ladderwise");
        f.Trigger("AboutMenu");
    }
};

int main(int argc, char** argv) {
    return RunWindowTest<MainWindowTest>(argc, argv);
}
#include "mainwindow_test.moc"
