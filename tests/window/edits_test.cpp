// What was typed or tuned stays: entries that are not read yet, values edited by hand, the design
// file of two windows, the ways to leave, drops and keys.
#include <QMimeData>
#include <QWindow>

#include "WindowFixture.h"
#include "files/DiskFile.h"

using namespace ladderwise;

/// A window whose dialogs the test answers, saving to "d.tk_ldfilt".
class EditsFixture : public WindowFixture {
public:
    EditsFixture() {
        const auto name = [](const FileDialogTexts&) {
            return QDir::current().filePath("d.tk_ldfilt");
        };
        Window->SetFileDialogs({name,
                                name,
                                [this](const QString&) {
                                    ++Questions;
                                    if (WhileAsked) WhileAsked();
                                    return Answer;
                                },
                                {},
                                [this](const QString&) {
                                    ++Warnings;
                                    return OnChange;
                                }});
    }
    void Tune() { EnterCell(0, 2, "100n"); }
    bool Tuned() const { return qFuzzyCompare(Design().Elements[2].Value(0), 100e-9); }
    bool Modified() const { return Window->isWindowModified(); }

    /// What a file manager does over a widget.
    template <typename Event>
    bool Drag(QWidget* target, const QMimeData& data) {
        const QPointF at = QRectF(target->rect()).center();
        std::unique_ptr<QDropEvent> event;
        if constexpr (std::is_same_v<Event, QDropEvent>)
            event = std::make_unique<QDropEvent>(at, Qt::CopyAction, &data, Qt::LeftButton,
                                                 Qt::NoModifier);
        else
            event = std::make_unique<Event>(at.toPoint(), Qt::CopyAction, &data, Qt::LeftButton,
                                            Qt::NoModifier);
        event->ignore();
        QApplication::sendEvent(target, event.get());
        return event->isAccepted();
    }

    /// A click on the X of the title bar, as the platform reports it.
    bool ClickX() {
        QCloseEvent event;
        QApplication::sendEvent(Window->windowHandle(), &event);
        return event.isAccepted();
    }

    std::function<void()> WhileAsked;
    UnsavedAnswer Answer = UnsavedAnswer::Discard;
    ChangedAnswer OnChange = ChangedAnswer::Cancel;
    int Questions = 0;
    int Warnings = 0;
};

class EditsTest : public QObject {
    Q_OBJECT

private slots:
    void OnlyWhatACalculationReadsDiscardsEdits() {
        EditsFixture f;
        const auto marked = [&f] {
            const auto* const tuned = f.Grid->item(0, 2);
            return tuned->background() != f.Grid->item(1, 1)->background() &&
                   tuned->toolTip().endsWith("edited by hand");
        };
        QVERIFY(!marked());
        f.Tune();
        QVERIFY(f.Tuned() && marked());
        for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Tab}) {
            f.Enter("PercentChangeBox", end == Qt::Key_Tab ? "20" : "10", end);
            QVERIFY2(f.Tuned(), qPrintable(f.Text("PercentChangeBox")));
        }
        f.Grid->setCurrentCell(0, 2);
        QTest::keyClick(f.Grid, Qt::Key_F2);
        QCOMPARE(f.Design().Elements[2].Value(0), 120e-9);
        f.Enter("PercentChangeBox", "7", Qt::Key_unknown);  // unread
        f.Trigger("SaveAsMenu");
        QCOMPARE(f.Design().Elements[2].Value(0), 120e-9);
        f.Enter("F0Box", "200");  // what stood there
        auto* const box = f.Find<QLineEdit>("NumPolesBox");
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Return);
        QCOMPARE(f.Design().Elements[2].Value(0), 120e-9);
        f.Enter("F0Box", "201");
        QVERIFY(!qFuzzyCompare(f.Design().Elements[2].Value(0), 120e-9) && !marked());
    }

    void ATypedBandwidthIsReadBeforeItsUnitChanges() {
        EditsFixture f;
        f.Trigger("BandPassMenu");
        f.Enter("BandWidthBox", "50", Qt::Key_unknown);
        f.Check("BWPercentButton");
        QCOMPARE(f.Text("BandWidthBox"), "25");
        QCOMPARE(f.InUse("bw"), "50000000");
        f.Enter("F0Box", "400", Qt::Key_unknown);
        f.Check("BWMHzButton");
        QCOMPARE(f.InUse("bw"), "100000000");
        f.Enter("BandWidthBox", "5000", Qt::Key_unknown);  // more than twice F0
        f.Check("BWPercentButton");
        QCOMPARE(f.Text("BandWidthBox"), "199");
        QCOMPARE(f.Colour("BandWidthBox"), SilverColour);
    }

    void AGreyedBandwidthStaysAsTyped() {
        EditsFixture f;
        f.Enter("F0Box", "1.6");
        QVERIFY(!f.Find("BandWidthBox")->isEnabled());
        QCOMPARE(f.Text("BandWidthBox"), "40");
        f.Trigger("SaveAsMenu");
        f.Enter("F0Box", "200");
        f.Trigger("OpenMenu");
        QCOMPARE(f.Text("BandWidthBox"), "40");
        f.Trigger("BandPassMenu");  // a part again: what fits 1.6 MHz
        QCOMPARE(f.Text("BandWidthBox"), "3.18");
        QCOMPARE(f.Colour("BandWidthBox"), SilverColour);
        f.Trigger("LowPassMenu");
        f.Enter("F0Box", "100");
        f.Trigger("BandPassMenu");
        QCOMPARE(f.InUse("f0"), "100000000");
    }

    void EditsAreSavedBesideTheDesign() {
        EditsFixture f;
        f.Trigger("SaveAsMenu");
        f.Tune();
        QVERIFY(f.Modified());
        f.Trigger("SaveMenu");
        QVERIFY(!f.Modified());
        QVERIFY(QFile::exists("d.tk_ldfilt.json"));
        f.Enter("F0Box", "150");
        QVERIFY(!f.Tuned());
        f.Trigger("OpenMenu");
        QVERIFY(f.Tuned() && !f.Modified());
        QCOMPARE(f.InUse("f0"), "200000000");
        // Recalculated, the design is not the one in the file.
        f.Click("CalcButton");
        QVERIFY(!f.Tuned() && f.Modified());
        f.Trigger("SaveMenu");
        QVERIFY(!f.Modified() && !QFile::exists("d.tk_ldfilt.json"));
        // Where the companion cannot be written, its part is not saved, and the status says so.
        f.Tune();
        QDir().mkpath("d.tk_ldfilt.json/x");
        f.OnChange = ChangedAnswer::Overwrite;
        f.Trigger("SaveMenu");
        QVERIFY(f.Modified());
        QVERIFY2(f.Status().contains("not the values edited by hand"), qPrintable(f.Status()));
    }

    void AFileChangedMeanwhileIsAskedAbout() {
        EditsFixture a;
        a.Trigger("SaveAsMenu");
        const std::string mine = ReadWholeFile("d.tk_ldfilt", 9999).Bytes;
        a.Enter("F0Box", "150");
        a.Trigger("SaveMenu");
        QCOMPARE(a.Warnings, 0);
        QCOMPARE(WriteWholeFile("d.tk_ldfilt", mine), std::string());  // 200 MHz, by another
        a.Enter("F0Box", "170");
        a.Trigger("SaveMenu");
        QCOMPARE(a.Warnings, 1);
        QVERIFY(a.Modified() && ReadWholeFile("d.tk_ldfilt", 9999).Bytes == mine);
        a.OnChange = ChangedAnswer::Overwrite;
        a.Trigger("SaveMenu");
        QVERIFY(!a.Modified() && ReadWholeFile("d.tk_ldfilt", 9999).Bytes != mine);
        WriteWholeFile("d.tk_ldfilt.json", R"({"ladderwise_companion": 1, "other": 2})");
        a.OnChange = ChangedAnswer::Reload;
        a.Enter("F0Box", "180");
        a.Trigger("SaveMenu");
        QCOMPARE(a.Warnings, 3);
        QCOMPARE(a.InUse("f0"), "170000000");
        a.Enter("F0Box", "190");
        a.Trigger("SaveMenu");  // and what is not known in the companion stays
        QCOMPARE(a.Warnings, 3);
        QVERIFY(ReadWholeFile("d.tk_ldfilt.json", 999).Bytes.find("other") != std::string::npos);
    }

    void BringingBackBringsTheInputsToo() {
        EditsFixture f;
        f.Tune();
        f.Enter("NumPolesBox", "4");
        f.Trigger("BandPassMenu");
        QCOMPARE(f.Design().NumElements, 4);
        f.Trigger("OneOctaveMenu");
        f.Trigger("BringBackMenu");
        QVERIFY(f.Tuned());
        QCOMPARE(f.Text("NumPolesBox"), "3");
        QVERIFY(f.Checked("LowPassMenu") && f.Checked("OneOctaveMenu"));
        QVERIFY(DesignTitle(f.Design()).starts_with("3 Pole Butterworth LPF"));
        QVERIFY(!f.Find("BandWidthBox")->isEnabled());
        f.Click("CalcButton");  // the boxes are those of the ladder
        QCOMPARE(f.Difference(), QString());
        QCOMPARE(f.Design().NumElements, 3);
    }

    void OneKeyBringsTheLoadBack() {
        EditsFixture f;
        f.Trigger("ChebyshevMenu");
        f.Enter("NumPolesBox", "6");
        f.Enter("NumPolesBox", "7");
        QVERIFY(f.Text("RLBox") != "50");
        QVERIFY2(f.Status().contains("Ctrl+L"), qPrintable(f.Status()));
        QTest::keyClick(f.Window.get(), Qt::Key_L, Qt::ControlModifier);
        QCOMPARE(f.Text("RLBox"), "50");
        QCOMPARE(f.InUse("r-load"), "50");
        QVERIFY(!f.Find<QAction>("BringBackLoadMenu")->isEnabled());
    }

    void AQuestionThatStandsIsTheOnlyWayOut() {
        for (const bool exitFirst : {true, false}) {
            EditsFixture f;
            f.Trigger("HighPassMenu");
            int closed = 0;
            QObject::connect(f.Window.get(), &MainWindow::Closed, [&] { ++closed; });
            f.Answer = UnsavedAnswer::Cancel;
            f.WhileAsked = [&] {
                if (exitFirst)
                    QVERIFY(!f.ClickX());
                else
                    f.Find<QAction>("ExitMenu")->trigger();
            };
            if (exitFirst)
                f.Trigger("ExitMenu");
            else
                QVERIFY(!f.ClickX());
            QCOMPARE(f.Questions, 1);
            QCOMPARE(closed, 0);
            QVERIFY(f.Window->isVisible() && f.Window->windowHandle()->isVisible());
            f.WhileAsked = {};
            f.Answer = UnsavedAnswer::Discard;
            f.Trigger("ExitMenu");
            QCOMPARE(closed, 1);
        }
    }

    void EscapeTakesBackWhatWasTyped() {
        EditsFixture f;
        f.Enter("F0Box", "145.825");
        f.Enter("F0Box", "7", Qt::Key_Escape);
        QCOMPARE(f.Text("F0Box"), "146");
        f.Click("CalcButton");
        QCOMPARE(f.InUse("f0"), "145825000");
    }

    void AMenuGivesTheFocusBackToAllOfTheNumber() {
        EditsFixture f;
        auto* const box = f.Find<QLineEdit>("F0Box");
        box->setFocus();
        QTest::keyClick(f.Window.get(), Qt::Key_F, Qt::AltModifier);
        for (int i = 0; i < 2; ++i)
            if (QWidget* const popup = QApplication::activePopupWidget())
                QTest::keyClick(popup, Qt::Key_Escape);
        if (QApplication::focusWidget() != box)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QTRY_COMPARE(QApplication::focusWidget(), box);
        QTest::keyClicks(box, "145");
        QCOMPARE(box->text(), "145");
    }

    void FunctionKeysWorkFromTheOtherWindows() {
        EditsFixture f;
        f.Trigger("DirectCoupledMenu");
        const auto before = f.Design().SweepType;
        QWidget* const window = f.Find("TDCForm");
        f.Activate(window);
        auto* const box = window->findChild<QLineEdit*>();
        box->setFocus();
        QTest::keyClick(box, Qt::Key_F7);
        QVERIFY(f.Design().SweepType != before);
    }

    void ADroppedDesignIsOpened() {
        EditsFixture f;
        f.Trigger("SaveAsMenu");
        f.Enter("F0Box", "150");
        const QString path = QDir::current().filePath("d.tk_ldfilt");
        QMimeData addressed, named;  // some programs give paths as a text alone
        addressed.setUrls({QUrl::fromLocalFile(path)});
        addressed.setText(path);
        named.setText(path + "\n");
        QWidget* const box = f.Find("F0Box");
        for (const bool cancelled : {true, false}) {
            f.Answer = cancelled ? UnsavedAnswer::Cancel : UnsavedAnswer::Discard;
            QMimeData& data = cancelled ? named : addressed;
            QVERIFY(f.Drag<QDragEnterEvent>(box, data));
            QVERIFY(f.Drag<QDropEvent>(box, data));
            QCOMPARE(f.Text("F0Box"), "150");
            f.Settle();
        }
        QCOMPARE(f.Questions, 2);
        QCOMPARE(f.Text("F0Box"), "200");
    }
};

QTEST_MAIN(EditsTest)
#include "edits_test.moc"
