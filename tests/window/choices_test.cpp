// The window "Which Filter": from limits to a design that keeps them.
#include <QClipboard>
#include <QLabel>

#include "limits/LimitTable.h"
#include "pipeline/LimitMargins.h"
#include "tests/window/WindowFixture.h"

using namespace ladderwise;

namespace {

/// 144 to 148 MHz, at most 1 dB; 45 dB at the second and third harmonic.
const LimitLines transmitter = {{LimitKind::AttenMax, 144e6, 148e6, 1.0},
                                {LimitKind::AttenMin, 288e6, 296e6, 45.0},
                                {LimitKind::AttenMin, 432e6, 444e6, 45.0}};

}  // namespace

class ChoicesTest : public QObject {
    Q_OBJECT

private slots:
    void ARowBecomesTheDesignAndIsUndone() {
        WindowFixture f;
        Paste(f, transmitter);
        f.Trigger("LimitsMenu");
        f.Click("LimitChooseButton");
        QVERIFY(!f.Find("LimitsWindow")->isVisible());
        auto* const table = f.Find<QTableWidget>("ChoicesTable");
        QVERIFY(table->rowCount() >= 3);
        for (int row = 1; row < table->rowCount(); ++row)
            QVERIFY(Number(table, row, "Cost") >= Number(table, row - 1, "Cost"));
        // Practical are 1 pF to 100 nF and 2 nH to 100 uH.
        const std::pair<const char*, double> ranges[] = {
            {"LeastC", 1}, {"MostC", 1e5}, {"LeastL", 2}, {"MostL", 1e5}};
        for (const auto& [name, value] : ranges)
            QCOMPARE(f.Find<QLineEdit>(name)->text().toDouble(), value);
        f.Check("ChoicesWeigh");
        // What is no number is put back in the box's own unit; what is one is asked for.
        f.Enter("LeastL", "-3");
        QCOMPARE(f.Find<QLineEdit>("LeastL")->text(), QString("2"));
        // The thumbnail has the limits' range and a fifth on either side: 120 to 533 MHz, 80 dB
        // deep.
        const QImage small = table->item(0, 0)->icon().pixmap(table->iconSize()).toImage();
        const auto inkAt = [&small](double f, double fromDb, double toDb) {
            const int x = qRound(std::log(f / 120e6) / std::log(532.8 / 120) * small.width());
            int blue = 0;
            for (int y = qRound(fromDb / 80 * small.height());
                 y <= qRound(toDb / 80 * small.height()); ++y)
                for (int near = x - 1; near <= x + 1; ++near) {
                    const QColor ink = small.pixelColor(near, std::min(y, small.height() - 1));
                    blue += ink.blue() > ink.red() + 60;
                }
            return blue;
        };
        // The limits, 45 dB from 288 to 296 MHz and 1 dB from 144 to 148 MHz, are red.
        const auto redAt = [&small](double f, double db) {
            const int x = qRound(std::log(f / 120e6) / std::log(532.8 / 120) * small.width());
            const int y = qRound(db / 80 * small.height());
            int red = 0;
            for (int i = 0; i < 25; ++i) {
                const QColor ink = small.pixelColor(x - 2 + i % 5, std::max(0, y - 2 + i / 5));
                red += ink.red() > ink.blue() + 60;
            }
            return red;
        };
        QVERIFY(redAt(292e6, 45) > 3 && redAt(146e6, 1) > 0);
        QVERIFY(redAt(220e6, 45) == 0 && redAt(292e6, 30) == 0);
        QVERIFY(inkAt(130e6, 0, 6) > 0 && inkAt(130e6, 20, 80) == 0);
        QVERIFY(inkAt(292e6, 43, 80) > 0 && inkAt(292e6, 0, 35) == 0);
        QVERIFY(inkAt(438e6, 43, 80) > 0 && inkAt(438e6, 0, 35) == 0);
        const double cost = Number(table, 0, "Cost");
        f.Enter("LeastL", "50000");  // 50 uH, which no coil here has
        QVERIFY(Number(table, 0, "Cost") > cost + 4.0);
        f.Enter("LeastL", "2");
        QCOMPARE(Number(table, 0, "Cost"), cost);
        const int inductors = static_cast<int>(Number(table, 0, "L"));
        const double margin = Number(table, 0, "Margin dB"), loss = Number(table, 0, "Loss dB");
        const std::string before = DesignTitle(f.Design());
        // Held, the space bar shows the row beside the design, which stays.
        table->setFocus();
        const auto ink = [&] { return f.Find("BitMap")->grab().toImage(); };
        const QImage alone = ink();
        QWidget* const window = table->window();
        const QRect whole = window->geometry();
        QTest::keyPress(table, Qt::Key_Space);
        const QImage beside = ink();
        QVERIFY(beside != alone);
        // The window gives way to the plot, and the arrow keys go on to other rows.
        QWidget* const plot = f.Find("BitMap");
        const QRect seen(plot->mapToGlobal(QPoint()), plot->size());
        QVERIFY(window->geometry().intersected(seen).height() < seen.height() / 4);
        QTest::keyClick(table, Qt::Key_Down);
        QVERIFY(ink() != beside && ink() != alone);
        QTest::keyClick(table, Qt::Key_Up);
        QVERIFY(ink() == beside);
        QCOMPARE(DesignTitle(f.Design()), before);
        // The results are of what the plot shows, and say so.
        const QString told = Results(f);
        QVERIFY2(told.contains("the design in hand|Compared: "), qPrintable(told));
        QVERIFY2(told.contains(QString("|all hold by %1 dB").arg(margin, 0, 'f', 2)),
                 qPrintable(told));
        QTest::keyRelease(table, Qt::Key_Space);
        QVERIFY(ink() == alone);
        QCOMPARE(window->geometry(), whole);
        QVERIFY(!Results(f).contains("Compared"));
        const auto* const words = f.Find<QLabel>("ChoicesTold");
        const QString found = words->text();
        f.Click("ChoicesTake");
        const LimitReport judged = JudgeLimits(f.Design(), transmitter);
        QVERIFY(judged.Met());
        QVERIFY(std::abs(judged.Tightest()->Margin - margin) < 0.011);
        QVERIFY(std::abs(1.0 - judged.Rows[0].Margin - loss) < 0.011);
        int coils = 0;
        for (int slot = 1; slot <= f.Design().NumElements; ++slot)
            for (int row = 0; row < 4; ++row)
                coils +=
                    InfoOf(f.Design().Elements[slot].Type).Values[row] == ValueKind::Inductance &&
                    f.Design().Elements[slot].Value(row) < UnusedValue;
        QCOMPARE(coils, inductors);
        QCOMPARE(words->text(), found);  // the list is still of this need
        QVERIFY(DesignTitle(f.Design()) != before);
        f.Trigger("UndoMenu");
        QCOMPARE(DesignTitle(f.Design()), before);
        f.Check("StdValuesBox");
        QVERIFY2(words->text().startsWith("The list is of other parts"), qPrintable(words->text()));
        f.Check("StdValuesBox");
        QCOMPARE(words->text(), found);
    }

    void WhatCannotBeDoneSaysSo() {
        WindowFixture f;
        f.Trigger("ChoicesMenu");
        QVERIFY(f.Find<QLabel>("ChoicesTold")->text().startsWith("Without limits"));
        // 200 dB a tenth above the pass band.
        Paste(f,
              {{LimitKind::AttenMax, 1e6, 100e6, 0.1}, {LimitKind::AttenMin, 102e6, 200e6, 150.0}});
        f.Click("ChoicesSearch");
        QVERIFY(f.Find<QLabel>("ChoicesTold")->text().startsWith("No filter meets"));
    }

private:
    static void Paste(WindowFixture& f, const LimitLines& limits) {
        QApplication::clipboard()->setText(QString::fromStdString(LimitTableText(limits)));
        f.Trigger("LimitsMenu");
        f.Click("LimitPasteButton");
        f.Find("LimitsWindow")->close();
    }
    static QString Results(WindowFixture& f) {
        auto* const table = f.Find<QTableWidget>("ResultsTable");
        QString text;
        for (int row = 0; row < table->rowCount(); ++row)
            for (int column = 0; column < table->columnCount(); ++column)
                if (table->item(row, column)) text += table->item(row, column)->text() + "|";
        return text;
    }
    static double Number(const QTableWidget* table, int row, const QString& column) {
        for (int i = 0; i < table->columnCount(); ++i)
            if (table->horizontalHeaderItem(i)->text() == column)
                return table->item(row, i)->text().toDouble();
        qFatal("no column %s", qPrintable(column));
    }
};

QTEST_MAIN(ChoicesTest)
#include "choices_test.moc"
