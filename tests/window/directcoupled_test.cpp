// The direct-coupled window by real events.
#include <QLabel>
#include <QMenu>

#include "tests/window/WindowFixture.h"

using namespace ladderwise;

class DirectCoupledTest : public QObject {
    Q_OBJECT

    /// The value cell of a tank as it shows.
    static QTableWidgetItem* Tank(WindowFixture& f, int tank) {
        return f.Find<QTableWidget>("TankValue")->item(tank - 1, 1);
    }

private slots:
    void ShowsWhileThePassTypeIsChosen() {
        WindowFixture f;
        auto* const window = f.Find("TDCForm");
        QVERIFY(!window->isVisible());
        for (int round = 0; round < 2; ++round) {
            f.Trigger("DirectCoupledMenu");
            QVERIFY(window->isVisible() && !window->isModal());
            QCOMPARE(window->windowTitle(), "Direct Coupled Filters");
            QVERIFY(window->screen()->availableGeometry().contains(window->frameGeometry()));
            f.Trigger("NotchMenu");
            QVERIFY(!window->isVisible());
        }
        f.Trigger("DirectCoupledMenu");
        f.Click("CloseButton");
        QVERIFY(!window->isVisible());
        f.Click("CalcButton");
        QVERIFY2(!window->isVisible(), "closed by hand it stays closed");
    }

    void EveryTankAndInverter() {
        WindowFixture f;
        f.Trigger("DirectCoupledMenu");
        for (const char* const menu : {"TankTypeMenu", "InverterTypeMenu"})
            for (QAction* const entry : f.Find<QMenu>(menu)->actions()) {
                QVERIFY(!entry->icon().isNull());
                entry->trigger();
                QVERIFY(entry->isChecked());
                QCOMPARE(f.Difference(), QString());
            }
        const std::tuple<const char*, const char*, InverterType, const char*> table[] = {
            {"ShuntLCTankMenu_2", "TLINInverterMenu_3", InverterType::SeriesLine, "TLIN"},
            {"SeriesLCTankMenu_1", "InductorInverterMenu_1", InverterType::ShuntInductor, ""},
            {"TLOCTLSCTankMenu_9", nullptr, InverterType::SeriesInductor, "TLSC TLOC"},
            {"ShuntIndTLOCTankMenu_7", "CapacitorInverterMenu_2", InverterType::SeriesCapacitor,
             "TLOC"},
            {"ShuntTappedCTankMenu_5", nullptr, InverterType::SeriesCapacitor, "Factor"},
            {"SeriesLCTankMenu_1", nullptr, InverterType::ShuntCapacitor, ""},
            {"ShuntCapTLSCTankMenu_8", "TLINInverterMenu_3", InverterType::SeriesLine,
             "TLIN TLSC"}};
        for (const auto& [tank, inverter, type, boxes] : table) {
            f.Trigger(tank);
            if (inverter) f.Trigger(inverter);
            QCOMPARE(f.Design().DirectCoupled.InverterType, type);
            QStringList enabled;
            for (const char* const box : {"TLIN", "TLSC", "TLOC", "Factor"})
                if (f.Find(QString(box) + "Box")->isEnabled()) enabled << box;
            QCOMPARE(enabled.join(' '), QString(boxes));
        }
        // A line needs shunt tanks; of the two choices the last one stays.
        f.Trigger("SeriesLCTankMenu_1");
        QVERIFY(f.Checked("InductorInverterMenu_1"));
        f.Trigger("TLINInverterMenu_3");
        QVERIFY(f.Checked("ShuntLCTankMenu_2"));
    }

    void AllTanksAtOnceAndWhatTheyAreGoodFor() {
        WindowFixture f;
        f.Trigger("DirectCoupledMenu");
        auto* const table = f.Find<QTableWidget>("TankValue");
        Tank(f, 2)->setText("82");
        table->setCurrentCell(1, 1);
        f.Click("SetAllTanksButton");
        for (int tank = 1; tank <= table->rowCount(); ++tank)
            QCOMPARE(Tank(f, tank)->text(), QString("82"));
        QCOMPARE(f.Design().DirectCoupled.TankValues[0], 82.0);
        auto* const note = f.Find<QLabel>("TankNote");
        for (QAction* const entry : f.Find<QMenu>("TankTypeMenu")->actions()) {
            entry->trigger();
            QCOMPARE(note->text(), entry->toolTip());
            const QRect room(0, 0, note->width(), 10000);
            const QRect needed =
                note->fontMetrics().boundingRect(room, Qt::TextWordWrap, note->text());
            QVERIFY2(needed.height() <= note->height(), qPrintable(note->text()));
        }
    }

    void ArrowsAndReadouts() {
        WindowFixture f;
        f.Trigger("DirectCoupledMenu");
        f.Trigger("ShuntTappedLTankMenu_6");
        const std::tuple<const char*, const char*, const char*> steps[] = {
            {"0.2", "FactorUpDownUp", "0.22"},
            {"0.9", "FactorUpDownDown", "0.88"},
            {"x", "", "0.5"}};
        for (const auto& [typed, arrow, shown] : steps) {
            f.Enter("FactorBox", typed);
            if (*arrow) f.Click(arrow);
            QCOMPARE(f.Text("FactorBox"), QString(shown));
            QCOMPARE(f.InUse("factor"), QString(shown));
        }
        f.Trigger("TLINInverterMenu_3");
        f.Click("TLINUpDownDown");
        QCOMPARE(f.Text("TLINBox"), "44.0");
        f.Check("OhmsButton");
        QCOMPARE(f.Find<QLabel>("minLabel1")->text(), "Min R1 = 50.0E0");
        QVERIFY(!f.Find("DistortionLabel2")->isVisible());
        const QColor normal = f.Find("minLabel2")->palette().color(QPalette::WindowText);
        Tank(f, 3)->setText("20");  // below the load
        QCOMPARE(f.Find("minLabel2")->palette().color(QPalette::WindowText),
                 WarningColour(f.Window->palette()));
        QVERIFY(f.Status().contains("Last tank"));
        Tank(f, 3)->setText("2000");
        QCOMPARE(f.Find("minLabel2")->palette().color(QPalette::WindowText), normal);
        QVERIFY(f.Find("DistortionLabel2")->isVisible());
        QVERIFY(f.Status().contains("Last Tank Z is Large"));
    }

    void KeysOfTheTankValues() {
        WindowFixture f;
        f.Trigger("DirectCoupledMenu");
        auto* const grid = f.Find<QTableWidget>("TankValue");
        QCOMPARE(grid->rowCount(), 3);
        WindowFixture::Activate(grid->window());
        grid->setFocus();
        grid->setCurrentCell(1, 0);
        const std::tuple<const char*, Qt::Key, const char*, double> keys[] = {
            {"50", Qt::Key_F2, "52.50", 52.5},        {"50", Qt::Key_F1, "47.62", 50 / 1.05},
            {"20000", Qt::Key_F2, "10500.00", 10500}, {"junk", Qt::Key_Return, "50", 50},
            {"", Qt::Key_Return, "50", 50},           {"0.02", Qt::Key_F2, "0.021", 0.021}};
        for (const auto& [typed, key, shown, used] : keys) {
            Tank(f, 2)->setText(typed);
            QTest::keyClick(grid, key);
            QCOMPARE(Tank(f, 2)->text(), QString(shown));
            QCOMPARE(f.Design().DirectCoupled.TankValues[1], used);
            QCOMPARE(f.Difference(), QString());
        }
        f.Enter("NumPolesBox", "10");
        QCOMPARE(grid->rowCount(), 10);
        QCOMPARE(f.Design().NumElements, 21);
    }
};

QTEST_MAIN(DirectCoupledTest)
#include "directcoupled_test.moc"
