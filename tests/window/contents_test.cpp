// What each window shows after each of its inputs: fields that a choice enables, tables as they are
// copied, keys, places of the help, texts about what would be exported.
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBrowser>

#include "tests/Picture.h"
#include "tests/window/WindowFixture.h"
#include "windows/HelpText.h"

using namespace ladderwise;

/// Lines of what was copied, tabs between the cells, as the table shows them from a column on.
static QString TableText(const QTableWidget* table, int from) {
    QString text;
    for (int row = -1; row < table->rowCount(); ++row) {
        QStringList cells;
        for (int column = from; column < table->columnCount(); ++column)
            cells << (row < 0 ? table->horizontalHeaderItem(column) : table->item(row, column))
                         ->text();
        text += cells.join('\t') + '\n';
    }
    return text;
}

static void Paste(WindowFixture& f, const QString& limits) {
    QApplication::clipboard()->setText(limits);
    f.Click("LimitPasteButton");
}

class ContentsTest : public QObject {
    Q_OBJECT

private slots:
    void KeysOpenWindowsAndTheirHelpIsAboutThem() {
        WindowFixture f;
        const std::pair<Qt::Key, const char*> keys[] = {{Qt::Key_F9, "LimitsWindow"},
                                                        {Qt::Key_F10, "ChoicesWindow"},
                                                        {Qt::Key_F11, "BoardWindow"}};
        for (const auto& [key, name] : keys) {
            WindowFixture::Activate(f.Window.get());
            QTest::keyClick(f.Window.get(), key);
            QVERIFY2(f.Find(name)->isVisible(), name);
            f.Find(name)->close();
        }
        // The commands that show the windows, and a word of the heading above the place.
        const std::tuple<const char*, const char*, const char*> windows[] = {
            {"PartDefinitionsMenu", "PartHelpButton", "art"},
            {"OptionsWindowMenu", "OptionsHelpButton", "lot"},
            {"PartSharesMenu", "SharesHelpButton", "hich part"},
            {"MeasuredDataMenu", "MeasuredHelpButton", "easur"},
            {"LimitsMenu", "LimitHelpButton", "imit"},
            {"ChoicesMenu", "ChoicesHelp", "hich filter"},
            {"BoardMenu", "BoardHelpButton", "oard"},
            {"DirectCoupledMenu", "DCHelpButton", "irect"},
            {"NortonMenu", "NortonHelpButton", "orton"}};
        for (const auto& [command, button, word] : windows) {
            f.Trigger(command);
            f.Click(button);
            QVERIFY2(f.Find("HelpWindow")->isVisible(), button);
            const QUrl at = f.Find<QTextBrowser>("HelpText")->source();
            const HelpText page = LoadHelpText(LADDERWISE_HELP_FOLDER, at.fileName());
            QString heading = page.Title;
            if (at.fileName() == "StartFilt.rtf") {
                QVERIFY2(!at.fragment().isEmpty(), button);
                heading = page.Html.section("<a name=\"" + at.fragment() + "\"></a>", 1);
                heading = heading.section("</h", 0, 0);
            }
            QVERIFY2(heading.contains(word), qPrintable(heading + " for " + button));
            f.Find("HelpWindow")->close();
        }
    }

    void ListsAreCopiedAsTheyStand() {
        WindowFixture f;
        f.Trigger("BandPassMenu");
        f.Trigger("PartSharesMenu");
        auto* const shares = f.Find<QTableWidget>("SharesTable");
        QCOMPARE(shares->rowCount(), 6);
        f.Click("SharesCopyButton");
        QCOMPARE(QApplication::clipboard()->text(), TableText(shares, 0));
        for (int row = 0; row < 6; ++row)
            for (const int column : {0, 1})
                QVERIFY(!shares->item(row, column)->text().isEmpty());
        // Without limits, edges and F0 can be chosen; each has shares that make one.
        auto* const places = f.Find<QComboBox>("SharesPlace");
        QVERIFY(places->isEnabled() && places->count() > 1);
        for (int i = 0; i < places->count(); ++i) {
            QVERIFY(!places->itemText(i).isEmpty());
            places->setCurrentIndex(i);
            QVERIFY(!f.Find<QLabel>("SharesSpread")->text().isEmpty());
            double sum = 0.0;
            for (int row = 0; row < shares->rowCount(); ++row)
                sum += shares->item(row, 3)->text().section(' ', 0, 0).toDouble();
            QVERIFY2(std::abs(sum - 100.0) < 0.6, qPrintable(QString::number(sum)));
        }
        places->setCurrentIndex(1);
        f.Enter("F0Box", "210");  // the place that was chosen stays
        QCOMPARE(places->currentIndex(), 1);
        f.Find("SharesWindow")->close();
        f.Trigger("LimitsMenu");
        Paste(f, "atten-max\t144\t148\t1\natten-min\t288\t296\t40\n");
        f.Find("LimitsWindow")->close();
        f.Trigger("ChoicesMenu");
        QCOMPARE(f.Find<QLabel>("ChoicesNeed")->text(), "2 limits");
        QVERIFY(!f.Find("ChoicesProgress")->isVisible());
        auto* const choices = f.Find<QTableWidget>("ChoicesTable");
        QVERIFY(choices->rowCount() > 2 && f.Find("ChoicesTake")->isEnabled());
        f.Click("ChoicesCopy");
        QCOMPARE(QApplication::clipboard()->text(), TableText(choices, 1));
        const int best = choices->rowCount();
        f.Check("ChoicesFolded");
        QVERIFY(choices->rowCount() > best);
        f.Check("ChoicesFolded");
        QCOMPARE(choices->rowCount(), best);
        // A column of numbers sorts by them.
        choices->sortByColumn(2, Qt::DescendingOrder);
        for (int row = 1; row < choices->rowCount(); ++row)
            QVERIFY(choices->item(row, 2)->text().toInt() <=
                    choices->item(row - 1, 2)->text().toInt());
        QVERIFY(!f.Find("InductorCost")->isVisible());
        f.Check("ChoicesWeigh");
        QVERIFY(f.Find("InductorCost")->isVisible());
        f.Trigger("BoardMenu");
        QVERIFY(f.Find<QLabel>("BoardTold")->text().startsWith("There is no measured file yet"));
        for (const char* const button : {"BoardPutButton", "BoardCopyButton", "BoardFile"})
            QVERIFY2(!f.Find(button)->isEnabled(), button);
        QCOMPARE(f.Find<QComboBox>("BoardTurned")->currentText(), "any part");
    }

    void LimitsAreEditedByKeys() {
        WindowFixture f;
        f.Trigger("LimitsMenu");
        auto* const table = f.Find<QTableWidget>("LimitTable");
        auto* const remove = f.Find("LimitRemoveButton");
        QVERIFY(!remove->isEnabled() && !f.Find("LimitMessage")->isVisible());
        Paste(f, "atten-max\t0\t100\t1\natten-min\t400\t500\t90\nreturn-loss-min\t1\t9\t20\n");
        QCOMPARE(table->rowCount(), 3);
        const char* const shown[][5] = {{"attenuation at most", "0", "100", "1", "dB"},
                                        {"attenuation at least", "400", "500", "90", "dB"},
                                        {"return loss at least", "1", "9", "20", "dB"}};
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 5; ++column) {
                const auto* const item = table->item(row, column);
                QCOMPARE(item->text(), shown[row][column]);
                QCOMPARE(item->flags().testFlag(Qt::ItemIsEditable), column < 4);
                QCOMPARE(item->textAlignment() == int(Qt::AlignRight | Qt::AlignVCenter),
                         column >= 1 && column < 4);
            }
        // What fails is red, and what holds is not.
        const auto isRed = [table](int row) {
            const QColor ink = table->item(row, 5)->foreground().color();
            return ink.red() > ink.green() + 60;
        };
        QVERIFY(!isRed(0) && isRed(1) && !isRed(2));
        QVERIFY(table->item(1, 5)->text().startsWith("fails by "));
        QCOMPARE(table->item(1, 5)->toolTip(), table->item(1, 5)->text());
        const auto key = [table](Qt::Key k, Qt::KeyboardModifiers with = {}) {
            table->setFocus();
            QTest::keyClick(table, k, with);
            WindowFixture::Settle();
        };
        table->clearSelection();
        table->selectRow(2);
        QVERIFY(remove->isEnabled());
        key(Qt::Key_C, Qt::ControlModifier);
        QVERIFY2(QApplication::clipboard()->text().contains("return-loss-min") &&
                     !QApplication::clipboard()->text().contains("atten"),
                 qPrintable(QApplication::clipboard()->text()));
        key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(f.Window->Limits().size(), 4u);
        table->clearSelection();
        table->selectRow(0);
        key(Qt::Key_Delete);
        QCOMPARE(f.Window->Limits().size(), 3u);
        QCOMPARE(f.Window->Limits()[0].Value, 90.0);
        QCOMPARE(table->currentRow(), 0);
        table->clearSelection();
        table->selectRow(2);
        key(Qt::Key_Delete);
        QCOMPARE(table->currentRow(), 1);  // the last one that is left
        key(Qt::Key_Insert);
        QCOMPARE(table->rowCount(), 3);
        QCOMPARE(table->currentRow(), 2);
        if (auto* const open = table->viewport()->findChild<QLineEdit*>())
            WindowFixture::TypeOver(open, "7", Qt::Key_Return);
        WindowFixture::Settle();
        QCOMPARE(table->item(2, 1)->text(), "7");
        // The kind comes from a list in its cell.
        table->setCurrentCell(0, 0);
        table->editItem(table->item(0, 0));
        auto* const kinds = table->viewport()->findChild<QComboBox*>();
        QVERIFY(kinds && kinds->count() == 4);
        QCOMPARE(kinds->currentText(), "attenuation at least");
        kinds->setCurrentIndex(3);
        table->setCurrentCell(1, 1);
        WindowFixture::Settle();
        QCOMPARE(f.Window->Limits()[0].Kind, LimitKind::DelayVariationMax);
        QCOMPARE(table->item(0, 4)->text(), "ns");
        QApplication::clipboard()->setText("rubbish");
        f.Click("LimitPasteButton");
        QVERIFY(f.Find("LimitMessage")->isVisible());
        QVERIFY(f.Find<QLabel>("LimitMessage")->text().startsWith("What was copied is no table"));
    }

    void ReadyMadeLimitsAskForWhatTheyNeed() {
        WindowFixture f;
        f.Trigger("LimitsMenu");
        auto* const task = f.Find<QComboBox>("LimitTask");
        const auto choose = [task](int index) {
            task->setCurrentIndex(index);
            emit task->activated(index);
        };
        const auto enabled = [&f] {
            QStringList names;
            for (const char* const name : {"Operating", "Intermediate", "OscillatorHigh"})
                if (f.Find(QString("Limit") + name)->isEnabled()) names << name;
            return names.join(' ');
        };
        const char* const needed[] = {"Operating", "", "Intermediate OscillatorHigh"};
        for (const int index : {1, 2, 0}) {
            choose(index);
            QCOMPARE(enabled(), needed[index]);
        }
        // A Butterworth low-pass loses 1 dB at F0 (10^0.1 - 1)^(1/6), the end of its band.
        QCOMPARE(f.Text("LimitBandFrom"), "0");
        const double edge = f.Text("LimitBandTo").toDouble();
        const double loss = f.Text("LimitLoss").toDouble();
        const double exact = 200.0 * std::pow(std::pow(10.0, loss / 10.0) - 1.0, 1.0 / 6.0);
        QVERIFY2(edge <= exact * (1 + 1e-9) && edge > exact * 0.9999,
                 qPrintable(f.Text("LimitBandTo")));
        QCOMPARE(f.Text("LimitOperating"), "200");
        // Each field says by its name what is wrong with it.
        choose(2);
        const std::tuple<const char*, const char*, const char*> faults[] = {
            {"LimitBandFrom", "", "Band from is missing"},
            {"LimitBandTo", "x", "band to: no such number"},
            {"LimitLoss", "-1", "Loss at most: no such number"},
            {"LimitIntermediate", "", "IF is missing"},
            {"LimitAttenuation", "inf", "Attenuation: no such number"}};
        const std::pair<const char*, const char*> good[] = {{"LimitBandFrom", "144"},
                                                            {"LimitBandTo", "146"},
                                                            {"LimitLoss", "2"},
                                                            {"LimitIntermediate", "21,4"},
                                                            {"LimitAttenuation", "60"}};
        for (const auto& [field, text, said] : faults) {
            for (const auto& [name, value] : good)
                f.Find<QLineEdit>(name)->setText(value);
            f.Find<QLineEdit>(field)->setText(text);
            f.Click("LimitPresetAdd");
            QVERIFY2(f.Window->Limits().empty(), field);
            QCOMPARE(f.Find<QLabel>("LimitMessage")->text(), said);
        }
        for (const auto& [name, value] : good)
            f.Find<QLineEdit>(name)->setText(value);
        f.Click("LimitPresetAdd");
        QVERIFY(!f.Find("LimitMessage")->isVisible());
        // The image lies twice the IF above the band, and below it with the oscillator below.
        const auto lower = [&f] {
            double least = 1e12;
            for (const LimitLine& line : f.Window->Limits())
                if (line.Kind == LimitKind::AttenMin && line.From > 50e6) least = line.From;
            return std::round(least / 1e5) / 10.0;
        };
        QCOMPARE(lower(), 144.0 + 42.8);
        f.Check("LimitOscillatorHigh");
        f.Click("LimitPresetInstead");
        QCOMPARE(lower(), 144.0 - 42.8);
        // Without an attenuation there is the band alone.
        f.Find<QLineEdit>("LimitAttenuation")->clear();
        f.Click("LimitPresetInstead");
        QCOMPARE(f.Window->Limits().size(), 1u);
        QCOMPARE(f.Window->Limits()[0].Value, 2.0);
    }

    void TheExportSaysWhatItHolds() {
        WindowFixture f;
        f.ExpectModal("Export", [](QWidget* dialog) {
            const auto find = [dialog](const char* name) {
                return dialog->findChild<QWidget*>(name);
            };
            const auto extent = [dialog] {
                return dialog->findChild<QLabel*>("ExportExtent")->text();
            };
            auto* const kinds = dialog->findChild<QListWidget*>("ExportKindList");
            const char* const extents[] = {
                "^1024 points, 20.00 MHz to 1.99[0-9] GHz, [0-9]+ kB$",
                "^[0-9]+ points, 20.00 MHz to [.0-9]+ GHz, ([0-9]+ bytes|[.0-9]+ kB)$",
                "^[0-9]+ points, 20.00 MHz to [.0-9]+ GHz, [.0-9]+ kB$",
                "^1024 points, 20.00 MHz to 1.99[0-9] GHz, [0-9]+ kB$",
                "^3 parts, [0-9]+ bytes$",
                "^1280 x 800 pixels, [.0-9]+ kB$"};
            QCOMPARE(kinds->count(), 6);
            for (int kind = 0; kind < 6; ++kind) {
                QVERIFY(!kinds->item(kind)->text().isEmpty());
                kinds->setCurrentRow(kind);
                QVERIFY2(extent().contains(QRegularExpression(extents[kind])),
                         qPrintable(extent()));
                QCOMPARE(find("ExportPicture")->isVisible(), kind == 5);
                QCOMPARE(find("ExportText")->isVisible(), kind < 5);
                const QString text =
                    dialog->findChild<QPlainTextEdit*>("ExportText")->toPlainText();
                // A long text is cut behind a line, and says so.
                QCOMPARE(text.endsWith("\n..."), kind == 0 || kind == 3);
                QVERIFY(text.size() <= 20'003 && (kind == 5 || text.size() > 30));
                for (auto* const box : dialog->findChildren<QComboBox*>())
                    for (int i = 0; i < box->count(); ++i)
                        QVERIFY2(!box->itemText(i).isEmpty(), qPrintable(box->objectName()));
                for (auto* const label : dialog->findChildren<QLabel*>())
                    QVERIFY(!label->isVisible() || !label->text().isEmpty() ||
                            label->parentWidget()->findChild<NumberEdit*>());
            }
            // The picture is seen whole, in the middle, in a frame.
            const QImage seen = find("ExportPicture")->grab().toImage();
            const int middle = seen.height() / 2;
            int left = 0, right = seen.width() - 1;
            const QRgb around = seen.pixel(0, middle);
            while (left < right && seen.pixel(left, middle) == around)
                ++left;
            while (right > left && seen.pixel(right, middle) == around)
                --right;
            QVERIFY(right - left > seen.width() / 3);
            QVERIFY(std::abs(left + right - seen.width() + 1) <= 3);
            QVERIFY(std::abs((right - left) / 1.6 - seen.height()) < 0.03 * seen.height() ||
                    right - left >= seen.width() - 2);
            const QRgb frame = seen.pixel(left, middle);
            QVERIFY(frame != seen.pixel(left + 3, middle));
            // Touchstone 2.0 has no reference to choose, and a note.
            kinds->setCurrentRow(0);
            auto* const version = dialog->findChild<QComboBox*>("ExportVersionBox");
            auto* const range = dialog->findChild<QComboBox*>("ExportTouchstoneRangeBox");
            const auto notes = [dialog] {
                int count = 0;
                for (const auto* const label : dialog->findChildren<QLabel*>())
                    count += label->isVisible() && label->text().contains("version 2.0");
                return count;
            };
            for (const int two : {1, 0}) {
                version->setCurrentIndex(two);
                QCOMPARE(find("ExportReferenceBox")->isEnabled(), two == 0);
                QCOMPARE(notes(), two);
            }
            for (const int own : {1, 0, 1}) {
                range->setCurrentIndex(own);
                for (const char* const box : {"FromBox", "ToBox", "PointsBox", "SpacingBox"})
                    QCOMPARE(find(qPrintable(QString("ExportTouchstone") + box))->isEnabled(),
                             own == 1);
            }
            QVERIFY(!find("ExportRunsBox")->isEnabled());
            // The arrow keys step a number, never to 0.
            auto* const points = dialog->findChild<QLineEdit*>("ExportTouchstonePointsBox");
            WindowFixture::TypeOver(points, "2", Qt::Key_Up);
            QCOMPARE(points->text(), "3");
            for (int i = 0; i < 4; ++i)
                QTest::keyClick(points, Qt::Key_Down);
            QCOMPARE(points->text(), "1");
            WindowFixture::TypeOver(points, "2.5", Qt::Key_unknown);
            const auto said = [dialog] {
                return dialog->findChild<ElidedLabel*>("ExportReason")->Text();
            };
            QTRY_COMPARE(said(), "Points: \"2.5\" is no whole number above 0.");
            WindowFixture::TypeOver(points, "100002", Qt::Key_unknown);
            QTRY_VERIFY(said().startsWith("There are at most 100001 points here"));
            WindowFixture::TypeOver(points, "5", Qt::Key_unknown);
            QTRY_VERIFY(extent().startsWith("5 points, "));
            dialog->findChild<QPushButton*>("ExportCopyButton")->click();
            QCOMPARE(said(), "Copied to the clipboard.");
        });
        f.Trigger("ExportMenu");
    }

    void NortonStepsAndPicture() {
        WindowFixture f;
        f.Trigger("NortonMenu");
        f.Trigger("PiIndMenu");
        QWidget* const graph = f.Find("Graph");
        const Picture seen(graph->grab().toImage(), graph->font());
        for (const auto& [text, colour] : {std::pair{"Capacitors", QColor(Qt::red)},
                                           {"Inductors", QColor(Qt::blue)},
                                           {"Parts from source to load", QColor(Qt::black)}})
            QCOMPARE(seen.Find(text, colour).size(), 1);
        QCOMPARE(seen.Find("3 Pole Butterworth Norton BPF, ").size(), 1);
        f.Check("AutoOptimizeBox");
        const std::pair<Qt::KeyboardModifiers, double> steps[] = {
            {Qt::NoModifier, 0.1}, {Qt::ControlModifier, 1.0}, {Qt::ShiftModifier, 0.01}};
        for (const char* const box : {"ABox", "KBox"})
            for (const auto& [keys, step] : steps) {
                f.Enter(box, "3");
                QTest::keyClick(f.Find(box), Qt::Key_Up, keys);
                QVERIFY2(std::abs(f.Text(box).toDouble() - 3.0 - step) < 1e-9, box);
                QTest::keyClick(f.Find(box), Qt::Key_Down, keys);
                QVERIFY2(std::abs(f.Text(box).toDouble() - 3.0) < 1e-9, box);
            }
        for (int i = 1; i <= 3; ++i) {
            const double step = std::pow(10.0, 1 - i);
            const QString arrow = "K" + QString::number(i);
            f.Enter("KBox", "3");
            f.Click(arrow + "Up");
            QVERIFY(std::abs(f.Text("KBox").toDouble() - 3.0 - step) < 1e-9);
            QVERIFY(f.Find(arrow)->toolTip().section(' ', -1).toDouble() == step);
        }
    }

    // The forms stand between the wire of the source and the grid, their box left of them.
    void TheTrapPanelStandsBesideTheGrid() {
        WindowFixture f;
        f.Trigger("EllipticCMenu");
        f.Trigger("BandPassMenu");
        const QWidget* const panel = f.Find("EllipticPanel");
        QCOMPARE(panel->geometry().bottom() + 1, f.Grid->y());
        QCOMPARE(panel->x(), f.Grid->x());
        QCOMPARE(panel->width(), 64);
        const QWidget* const entry = f.Find("TrapTypeBox")->parentWidget();
        QCOMPARE(entry->geometry().right() + 1, f.Grid->x());
        QVERIFY(entry->isVisible() && entry->y() == f.Grid->y());
        for (int form = 1; form <= 4; ++form) {
            auto* const button = f.Find<QAbstractButton>("TrapForm" + QString::number(form));
            const QRect place = button->geometry();
            QVERIFY(panel->rect().contains(place));
            QCOMPARE(place.center().x() > panel->width() / 2, form % 2 == 0);
            QCOMPARE(place.center().y() > panel->height() / 2, form > 2);
            QVERIFY(button->toolTip().contains(QString("Trap type %1<").arg(form)));
        }
        f.Trigger("ButterworthMenu");
        QVERIFY(!panel->isVisible() && !entry->isVisible());
    }

    // A ladder longer than the window: the cell that keys have reached is seen whole, on the way
    // there and back.
    void CellsComeIntoViewAsKeysReachThem() {
        WindowFixture f;
        f.Window->resize(700, 700);
        f.Trigger("BandPassMenu");
        f.Enter("NumPolesBox", "10");
        f.Grid->setFocus();
        f.Grid->setCurrentCell(0, 1);
        const int columns = f.Grid->columnCount();
        QVERIFY(columns > 10);
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Left})
            for (int step = 0; step + 2 < columns; ++step) {
                QTest::keyClick(f.Grid, key);
                f.Settle();
                const QRect cell = f.Grid->visualItemRect(f.Grid->currentItem());
                const QPoint at = f.Grid->viewport()->mapTo(f.Window.get(), cell.topLeft());
                const QString place = QString("column %1 at %2").arg(f.Grid->currentColumn());
                QVERIFY2(f.Window->rect().contains(QRect(at, cell.size())),
                         qPrintable(place.arg(at.x())));
            }
        QCOMPARE(f.Grid->currentColumn(), 1);
    }

    void TheGridsMenuHasAWordForEverything() {
        WindowFixture f;
        QStringList texts;
        const auto look = [&](int row, int column) {
            texts.clear();
            QTimer::singleShot(0, f.Window.get(), [&texts] {
                auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                for (const QAction* const action : menu->actions())
                    if (!action->isSeparator())
                        texts << action->text() + (action->isEnabled() ? "" : " (off)");
                for (const QAction* const action :
                     menu->findChild<QMenu*>("ToleranceMenu")->actions())
                    texts << action->text();
                menu->close();
            });
            const QPoint at = f.Grid->visualItemRect(f.Grid->item(row, column)).center();
            emit f.Grid->customContextMenuRequested(at);
        };
        look(0, 2);
        const QStringList expected = {"&Smaller by 5.0 %\tF1",
                                      "&Larger by 5.0 %\tF2",
                                      "S&tandard Value\tF3",
                                      "Standard Value, Keep &Resonance\tF5",
                                      "Standard Values of &Both\tF6",
                                      "Next R&esponse\tF4",
                                      "&Hold This Value",
                                      "T&olerance of This Part",
                                      "&Copy Value",
                                      "Copy &Parts Table",
                                      "As All &Inductors (10 %)",
                                      "10 %",
                                      "&5 %",
                                      "&2 %",
                                      "&1 %",
                                      "0.5 %"};
        QStringList now = texts;
        for (QString& text : now)
            text.remove(" (off)");
        QCOMPARE(now.join('|'), expected.join('|'));
        look(1, 1);
        QCOMPARE(texts.filter("As All &Capacitors (").size(), 1);
        look(0, 1);  // a shunt capacitor has no inductance
        for (const char* const off :
             {"&Smaller by 5.0 %\tF1 (off)", "&Copy Value (off)", "T&olerance of This Part (off)"})
            QVERIFY2(texts.contains(off), off);
    }
};

QTEST_MAIN(ContentsTest)
#include "contents_test.moc"
