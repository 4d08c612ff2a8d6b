// The Norton window by real events: shown for its pass type only, menu, spin buttons, search.
#include <QLabel>
#include <QScreen>

#include "tests/window/WindowFixture.h"

using namespace ladderwise;

class NortonTest : public QObject {
    Q_OBJECT

private slots:
    void IsThereForItsPassTypeOnly() {
        WindowFixture f;
        QWidget* const norton = f.Find("TNortonForm");
        QVERIFY(!norton->isVisible());
        f.Trigger("NortonMenu");
        QCOMPARE(norton->windowTitle(), "Norton TransForm");
        QVERIFY(norton->isVisible() && !norton->isModal());
        QVERIFY(f.Window->screen()->availableGeometry().contains(norton->frameGeometry()));
        norton->findChild<QAction*>("ExitMenu")->trigger();
        QVERIFY(!norton->isVisible());
        f.Trigger("NortonMenu");
        f.Trigger("BandPassMenu");
        QVERIFY(!norton->isVisible());
    }

    void SearchesWhenAsked() {
        WindowFixture f;
        f.Trigger("NortonMenu");
        QVERIFY(f.Checked("AutoOptimizeBox") && f.Checked("OptimizeLButton"));
        QCOMPARE(f.Text("KBox"), "2.00");  // the main window's calculation searches nothing
        const auto* const note = f.Find("TNortonForm")->findChild<QLabel*>("SearchNote");
        QVERIFY2(note->text().startsWith("K 2.00 is not optimised"), qPrintable(note->text()));
        QVERIFY(f.Status().startsWith(note->text()));
        f.Trigger("PiIndMenu");
        QCOMPARE(f.Text("KBox"), "12.82");
        QCOMPARE(note->text(), QString());
        f.Check("OptimizeCButton");
        QCOMPARE(f.Text("KBox"), "7.08");
        f.Click("A1Up");
        QCOMPARE(f.Text("ABox") + " " + f.Text("KBox"), "2.00 7.66");
        QCOMPARE(f.Difference(), QString());
        f.Check("AutoOptimizeBox");
        const QString before = f.Text("KBox");
        f.Check("OptimizeLButton");
        QCOMPARE(f.Text("KBox"), before);
        f.Click("OptimizeButton");
        QVERIFY(f.Text("KBox") != before);
        QCOMPARE(f.Difference(), QString());
        QVERIFY2(f.Results().startsWith("loss at Fo\t0.00 dB\n"), qPrintable(f.Results()));
    }

    void SpinButtonsFollowTheSearchAndThePoles() {
        WindowFixture f;
        f.Trigger("NortonMenu");
        const auto shown = [&] {
            QStringList names;
            for (const char* const name : {"A1", "K2", "M3"})
                if (f.Find(name)->isVisible()) names << name;
            return names.join(' ');
        };
        QCOMPARE(shown(), "A1");
        f.Check("AutoOptimizeBox");
        QCOMPARE(shown(), "A1 K2");
        f.Enter("NumPolesBox", "5");
        QCOMPARE(shown(), "A1 K2 M3");
        QCOMPARE(f.Text("MBox"), "1.001");
        f.Click("M1Up");
        f.Click("K2Down");
        QCOMPARE(f.Text("MBox") + " " + f.Text("KBox"), "2.00 1.90");
        f.Enter("KBox", "9.5", Qt::Key_Up);
        QCOMPARE(f.Text("KBox"), "9.60");
        f.Enter("MBox", "60");
        QVERIFY2(f.Status().contains("cannot be built"), qPrintable(f.Status()));
        QCOMPARE(f.Difference(), QString());
    }
};

QTEST_MAIN(NortonTest)
#include "norton_test.moc"
