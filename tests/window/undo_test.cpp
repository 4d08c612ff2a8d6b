// Undo and redo by keys and menu, and unsaved work: what is kept, what is offered to whom.
#include "WindowFixture.h"
#include "files/DiskFile.h"
#include "pipeline/UnsavedWork.h"

using namespace ladderwise;

namespace {

/// A window in a state folder, which answers offers of unsaved work and counts them. Its end
/// without a close is that of a killed program: nothing more is written.
class RecoveryFixture : public WindowFixture {
public:
    RecoveryFixture(const QTemporaryDir& place, RecoveryAnswer answer, const QString& design = {}) {
        const auto noName = [](const FileDialogTexts&) { return QString(); };
        Window->SetFileDialogs({noName, noName,
                                [](const QString&) { return UnsavedAnswer::Cancel; },
                                [this, answer](const UnsavedWork& work) {
                                    Offered << QString::fromStdString(work.Name);
                                    return answer;
                                }});
        Folders folders;
        folders.SettingsFolder = folders.StateFolder = place.path().toStdString();
        Window->Start(folders, design.toStdString());
        Window->FinishDrawing();
    }
    QStringList Offered;
};

/// Where keys go. Undoing a kind of filter closes the window of that kind, and it is up to a window
/// manager, which there is none of here, to make the main window the active one again.
QWidget* KeysGoTo(WindowFixture& f) {
    if (!QApplication::activeWindow()) {
        f.Window->activateWindow();
        WindowFixture::Settle();
    }
    QWidget* const focus = QApplication::focusWidget();
    return focus ? focus : f.Window.get();
}

void Undo(WindowFixture& f) {
    QTest::keyClick(KeysGoTo(f), Qt::Key_Z, Qt::ControlModifier);
    f.Window->FinishDrawing();
}

void Redo(WindowFixture& f) {
    QTest::keyClick(KeysGoTo(f), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    f.Window->FinishDrawing();
}

}  // namespace

class UndoTest : public QObject {
    Q_OBJECT

private slots:
    void EveryKindOfChangeIsUndone() {
        WindowFixture f;
        const auto* const undo = f.Find<QAction>("UndoMenu");
        QVERIFY(!undo->isEnabled());
        const auto edit = [&] { f.EnterCell(1, 1, "20p"); };
        const auto mark = [&] {
            QTest::mouseClick(f.Find("BitMap"), Qt::LeftButton, {}, {300, 200});
            QApplication::activePopupWidget()->close();
            f.Trigger("FreqMarkerMenu");
        };
        const std::pair<QString, std::function<void()>> steps[] = {
            {"N Poles 3 \u2192 4", [&] { f.Enter("NumPolesBox", "4"); }},
            {"Response Butterworth \u2192 Chebyshev", [&] { f.Trigger("ChebyshevMenu"); }},
            {"Ref", [&] { f.Click("SetRefButton"); }},
            {"Marker", mark},
            {"C1 ", edit},
            {"Calculated Values", [&] { f.Click("CalcButton"); }},
            {"C1 24.2 pF \u2192 20.0 pF", [&] { f.Trigger("BringBackMenu"); }},
            {"Low Pass \u2192 Band Pass Norton", [&] { f.Trigger("NortonMenu"); }},
            {"Std LC Values off \u2192 on", [&] { f.Check("StdValuesBox"); }},
            {"Optimize", [&] { f.Check("OptimizeCButton"); }},
        };
        std::vector<QImage> pictures;
        for (const auto& [name, act] : steps) {
            f.Find("F0Box")->setFocus();  // the same picture but for what is done
            WindowFixture::Settle();
            pictures.push_back(f.Find("BitMap")->grab().toImage());
            act();
            f.TakeMessages();
            QVERIFY2(undo->text().contains(name), qPrintable(undo->text() + ": " + name));
        }
        f.Find("F0Box")->setFocus();
        for (std::size_t i = std::size(steps); i-- > 0;) {
            Undo(f);
            WindowFixture::Settle();
            QVERIFY2(f.Find("BitMap")->grab().toImage() == pictures[i], qPrintable(steps[i].first));
            QVERIFY(f.Find<QAction>("RedoMenu")->text().contains(steps[i].first));
        }
        QVERIFY(!undo->isEnabled() && !f.Window->isWindowModified());
        QCOMPARE(f.Difference(), QString());
        for (std::size_t i = 1; i < std::size(steps); ++i) {
            Redo(f);
            WindowFixture::Settle();
            QVERIFY2(f.Find("BitMap")->grab().toImage() == pictures[i], qPrintable(steps[i].first));
        }
    }

    void TypingIsUndoneFirst() {
        WindowFixture f;
        f.Enter("F0Box", "145.825");
        f.Enter("F0Box", "77", Qt::Key_unknown);
        Undo(f);  // of the box
        for (int i = 0; i < 3 && f.Text("F0Box") != "146"; ++i)
            Undo(f);
        QCOMPARE(f.Text("F0Box"), "146");
        QCOMPARE(f.InUse("f0"), "145825000");
        Undo(f);  // of the design
        QCOMPARE(f.InUse("f0"), "200000000");
        Redo(f);
        QCOMPARE(f.InUse("f0"), "145825000");
        // By the menu, at once.
        f.Enter("F0Box", "77", Qt::Key_unknown);
        f.Trigger("UndoMenu");
        QCOMPARE(f.Text("F0Box"), "146");
        QCOMPARE(f.InUse("f0"), "145825000");
    }

    void UnsavedWorkIsOfferedAfterAnEndWithoutClosing() {
        QTemporaryDir place;
        {
            RecoveryFixture f(place, RecoveryAnswer::Accept);
            f.Enter("NumPolesBox", "5");
            f.Click("SetRefButton");
            f.Trigger("ChebyshevMenu");
            f.EnterCell(1, 1, "20p");
            f.Enter("F0Box", "145.825", Qt::Key_unknown);  // typed, not entered
            f.Window->KeepWork();
            // Another program at the same time is offered nothing, and has work of its own.
            RecoveryFixture other(place, RecoveryAnswer::Accept);
            QCOMPARE(other.Offered, QStringList());
            other.Enter("NumPolesBox", "7");
            other.Window->KeepWork();
        }
        {
            RecoveryFixture f(place, RecoveryAnswer::Later);
            QCOMPARE(f.Offered.size(), 2);
            QVERIFY(f.Window->close());
        }
        RecoveryFixture one(place, RecoveryAnswer::Accept), two(place, RecoveryAnswer::Accept);
        QCOMPARE(one.Offered.size() + two.Offered.size(), 2);
        RecoveryFixture& f = one.Design().NumPoles == 5 ? one : two;
        QCOMPARE(one.Design().NumPoles + two.Design().NumPoles, 12);
        QVERIFY(f.Window->isWindowModified() && f.Checked("ChebyshevMenu"));
        QCOMPARE(f.InUse("f0"), "145825000");
        QVERIFY(f.Checked("PlotReferenceBox"));
        f.Trigger("BringBackMenu");
        QCOMPARE(f.Cell(1, 1), "20.0E-12");
    }

    // What another program has saved meanwhile is not overwritten without a question.
    void ARecoveredDesignKnowsWhatItsFileHeld() {
        QTemporaryDir place;
        const std::string path = place.filePath("d.tk_ldfilt").toStdString();
        int questions = 0;
        const auto answer = [&](RecoveryFixture& f) {
            f.Window->SetFileDialogs(
                {[](const FileDialogTexts&) { return QString(); },
                 [&](const FileDialogTexts&) { return place.filePath("d.tk_ldfilt"); },
                 [](const QString&) { return UnsavedAnswer::Cancel; },
                 {},
                 [&](const QString&) {
                     ++questions;
                     return ChangedAnswer::Cancel;
                 }});
        };
        {
            RecoveryFixture f(place, RecoveryAnswer::Accept);
            answer(f);
            f.Trigger("SaveAsMenu");
            f.Enter("NumPolesBox", "5");
            f.Window->KeepWork();
        }
        QCOMPARE(WriteWholeFile(path, "of another program"), std::string());
        RecoveryFixture f(place, RecoveryAnswer::Accept);
        QCOMPARE(f.Offered.size(), 1);
        answer(f);
        f.Trigger("SaveMenu");
        QCOMPARE(questions, 1);
        QCOMPARE(ReadWholeFile(path, 100).Bytes, std::string("of another program"));
    }

    void NothingIsOfferedAfterANormalEnd() {
        QTemporaryDir place;
        {
            RecoveryFixture f(place, RecoveryAnswer::Accept);
            f.Enter("NumPolesBox", "5");
            f.Window->KeepWork();
            QVERIFY(!f.Window->close());  // the question was cancelled
            QCOMPARE(QDir(place.path()).entryList({"*.work"}).size(), 1);
            f.Window->SetFileDialogs(
                {{}, {}, [](const QString&) { return UnsavedAnswer::Discard; }});
            QVERIFY(f.Window->close());
        }
        RecoveryFixture f(place, RecoveryAnswer::Delete);
        QCOMPARE(f.Offered, QStringList());
        f.Enter("NumPolesBox", "6");
        f.Window->KeepWork();
        f.Window->EndSession();  // asks nothing and keeps what there is
        QVERIFY(f.Window->close());
        QCOMPARE(QDir(place.path()).entryList({"*.work"}).size(), 1);
    }
};

QTEST_MAIN(UndoTest)
#include "undo_test.moc"
