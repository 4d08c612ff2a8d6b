// Standard values chosen while one types, parts that are held, and boards that pass, by real
// events.
#include <QClipboard>
#include <QComboBox>
#include <QMenu>
#include <QRegularExpression>

#include "boards/Yield.h"
#include "controls/FittedCells.h"
#include "limits/LimitTable.h"
#include "pipeline/LimitMargins.h"
#include "schematic/ValueGridContent.h"
#include "tests/window/WindowFixture.h"

using namespace ladderwise;

namespace {

/// A Chebyshev low-pass for 30 MHz that its nearest values of 5 % do not make well.
class BoardsFixture : public WindowFixture {
public:
    BoardsFixture() {
        const auto name = [](const FileDialogTexts&) {
            return QDir::current().filePath("d.tk_ldfilt");
        };
        Window->SetFileDialogs({name,
                                name,
                                [](const QString&) { return UnsavedAnswer::Discard; },
                                {},
                                [](const QString&) { return ChangedAnswer::Cancel; }});
        Trigger("ChebyshevMenu");
        Enter("NumPolesBox", "5");
        Enter("F0Box", "30");
        Trigger("PartDefinitionsMenu");
        Check("FivePercentInd");
        Find("PartDefinitionsWindow")->close();
        Activate(Window.get());
        Settle();
        Check("StdValuesBox");
    }

    void SetLimits(const LimitLines& limits) {
        QApplication::clipboard()->setText(QString::fromStdString(LimitTableText(limits)));
        Trigger("LimitsMenu");
        Click("LimitPasteButton");
        Find("LimitsWindow")->close();
        Activate(Window.get());
    }

    /// By keys, as far as the search is not waited for.
    void ChooseMethod(const QString& caption) const {
        auto* const menu = Find<QComboBox>("StdMethodBox");
        menu->setFocus();
        const int steps = menu->findText(caption) - menu->currentIndex();
        for (int i = 0; i < std::abs(steps); ++i)
            QTest::keyClick(menu, steps > 0 ? Qt::Key_Down : Qt::Key_Up);
    }

    /// What is shown, whatever is still being searched for.
    const FilterDesign& Shown() const { return Window->State().Design; }
    bool Tells(const QString& text) const { return Results().contains(text); }

    /// The entry of the grid's menu on a cell.
    void UseGridMenu(int row, int column, const QString& entry) {
        QTimer::singleShot(0, Window.get(), [entry] {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (!menu) return;
            for (QAction* const action : menu->findChildren<QAction*>())
                if (action->text() == entry) action->trigger();
            menu->close();
        });
        emit Grid->customContextMenuRequested(
            Grid->visualItemRect(Grid->item(row, column)).center());
        Window->FinishDrawing();
    }
    /// As the results say it.
    double PassedPercent() const {
        const QRegularExpression share("([\\d.]+) % \\(");
        return share.match(Results()).captured(1).toDouble();
    }
    bool IsHeld(int row, int column) const {
        return Grid->item(row, column)->data(HeldRole).toBool();
    }
};

const LimitLines lowPass = {{LimitKind::AttenMax, 0.0, 27e6, 0.45},
                            {LimitKind::AttenMin, 60e6, 300e6, 37.0}};

ElementList WholeChoice(const Calculation& state, StdMethod method) {
    FilterDesign exact = state.Design;
    exact.Elements = state.ExactElements;
    StandardTask task;
    task.Method = method;
    return ChooseStandardParts(exact, state.IdealElements, task).Chosen;
}

}  // namespace

class BoardsTest : public QObject {
    Q_OBJECT

private slots:
    void TheNearestValuesAreShownUntilOthersAreChosen() {
        BoardsFixture f;
        const ElementList nearest = f.Design().Elements;
        f.ChooseMethod("together");
        QVERIFY(SameLadder(f.Shown().Elements, nearest));
        QVERIFY2(f.Tells("standard values\teach the nearest, until"), qPrintable(f.Results()));
        QTRY_VERIFY_WITH_TIMEOUT(f.Tells("standard values\tchosen together"), 60000);
        const ElementList chosen = f.Shown().Elements;
        QVERIFY(!SameLadder(chosen, nearest));
        QVERIFY(SameLadder(chosen, WholeChoice(f.Window->State(), StdMethod::Together)));
        QCOMPARE(f.Cell(1, 1), QString::fromStdString(CellOf(chosen[1], 1).Text));
        QVERIFY(!HasEdits(f.Shown()));
        // One step, and forth again without a search.
        f.Trigger("UndoMenu");
        QVERIFY(SameLadder(f.Shown().Elements, nearest) && !f.Tells("standard values"));
        f.Trigger("RedoMenu");
        QVERIFY(SameLadder(f.Shown().Elements, chosen) && f.Tells("chosen together"));
        // Its own way of being on outlives the switch.
        f.Check("StdValuesBox");
        QVERIFY(SameLadder(f.Shown().Elements, f.Window->State().IdealElements));
        f.Check("StdValuesBox");
        QVERIFY(SameLadder(f.Shown().Elements, chosen));
    }

    void ASearchNeitherTakesWhatIsTypedNorMixesDesigns() {
        BoardsFixture f;
        f.ChooseMethod("together");
        auto* const box = f.Find<QLineEdit>("F0Box");
        box->setFocus();
        WindowFixture::TypeOver(box, "71.3", Qt::Key_unknown);
        QTest::qWait(400);
        QCOMPARE(box->text(), "71.3");
        QTest::keyClick(box, Qt::Key_Return);
        QCOMPARE(f.Shown().F0, 71.3e6);
        QTRY_VERIFY_WITH_TIMEOUT(f.Tells("standard values\tchosen together"), 60000);
        QVERIFY(
            SameLadder(f.Shown().Elements, WholeChoice(f.Window->State(), StdMethod::Together)));
        // A value typed while a search runs is one in the values that it comes to.
        f.Enter("F0Box", "30");
        f.Enter("NumPolesBox", "6");
        f.ChooseMethod("with pairs");
        f.EnterCell(1, 1, "100p");
        const ElementList& exact = *f.Design().CalculatedElements;
        QVERIFY(SameLadder(exact, WholeChoice(f.State(), StdMethod::Pairs)));
        QCOMPARE(f.Design().Elements[1].V2, 100e-12);
        // What is bought: one part of the edited value, two for the others.
        f.UseGridMenu(1, 1, "Copy &Parts Table");
        const QString bought = QApplication::clipboard()->text();
        QVERIFY2(bought.contains("\nC1\t100") && !bought.contains("C1a"), qPrintable(bought));
        const QRegularExpression twice("\nC3a\t[^\t]+\t(\\S+)\nC3b\t[^\t]+\t(\\S+)\n");
        const QRegularExpressionMatch parts = twice.match(bought);
        QVERIFY2(parts.hasMatch(), qPrintable(bought));
        const double larger = parts.captured(1).toDouble(), smaller = parts.captured(2).toDouble();
        QVERIFY(larger >= smaller && smaller > 0.0);
        QVERIFY(std::abs((larger + smaller) / f.Design().Elements[3].V2 - 1.0) < 1e-5);
        const std::string title = DesignTitle(f.Design());
        f.Trigger("SaveMenu");
        f.Trigger("ButterworthMenu");
        f.Trigger("OpenMenu");
        QCOMPARE(DesignTitle(f.Design()), title);
        QVERIFY(SameLadder(exact, *f.Design().CalculatedElements));
    }

    void TheHighestYieldFollowsTheLimits() {
        BoardsFixture f;
        f.SetLimits(lowPass);
        YieldTask task;
        task.Limits = lowPass;
        const auto said = [&task](BoardsFixture& window) {
            const YieldResult now = YieldOf(window.Shown(), task);
            return QString("boards that pass\t%1 % (")
                .arg(100.0 * now.Share(), 0, 'f', now.Passed == now.Boards ? 0 : 1);
        };
        QVERIFY2(f.Tells(said(f)), qPrintable(f.Results()));
        QVERIFY(f.Tells("of the failures\t100 % at "));
        const double before = YieldOf(f.Shown(), task).Share();
        f.ChooseMethod("highest yield");
        f.Window->FinishDrawing();
        QVERIFY2(f.Tells(said(f)) && f.Tells("with the nearest values\t"), qPrintable(f.Results()));
        QVERIFY(YieldOf(f.Shown(), task).Share() > before + 0.1);
        const ElementList chosen = f.Shown().Elements;
        // Other limits ask for other values; one step, named after them.
        f.SetLimits({{LimitKind::ReturnLossMin, 1e6, 27e6, 13.0}});
        task.Limits = f.Window->Limits();
        QCOMPARE(task.Limits.size(), 3u);
        QVERIFY2(f.Tells(said(f)), qPrintable(f.Results()));
        QVERIFY(!SameLadder(f.Shown().Elements, chosen));
        f.Trigger("UndoMenu");
        QVERIFY(SameLadder(f.Shown().Elements, chosen));
    }

    void ManyBoardsCanBeStoppedAndTheWorstLookedAt() {
        BoardsFixture f;
        f.SetLimits(lowPass);
        f.Check("WorstCaseBox");  // which asks for boards of its own, again and again
        auto* const stop = f.Find("StopBoardsButton");
        f.Find<QAction>("ManyBoardsMenu")->trigger();
        QTRY_VERIFY(stop->isVisible() && f.Find("BoardsProgress")->isVisible());
        f.Click("StopBoardsButton");
        QVERIFY(!stop->isVisible());
        const QString stopped = f.Results();
        QTest::qWait(150);
        QCOMPARE(f.Results(), stopped);
        const QString worst = stopped.mid(stopped.indexOf("worst board\tfails by ") + 21);
        const double fails = worst.left(worst.indexOf(' ')).toDouble();
        f.Trigger("WorstBoardMenu");
        QVERIFY(HasEdits(f.Design()));
        const LimitReport report = JudgeLimits(f.Design(), lowPass);
        double least = 1e9;
        for (const LimitMargin& row : report.Rows)
            least = std::min(least, row.Margin);
        QVERIFY2(std::abs(least + fails) < 0.02, qPrintable(worst));
        f.Trigger("UndoMenu");
        QVERIFY(!HasEdits(f.Design()));
    }

    void AHeldPartStaysAndIsKept() {
        BoardsFixture f;
        f.ChooseMethod("together");
        f.Window->FinishDrawing();
        const double held = f.Design().Elements[3].V2;
        f.UseGridMenu(1, 3, "&Hold This Value");
        QVERIFY(f.IsHeld(1, 3) && !f.IsHeld(1, 1));
        f.Grid->setFocus();  // which is no typing
        f.Trigger("UndoMenu");
        f.ChooseMethod("nearest");
        f.ChooseMethod("with pairs");
        f.Grid->setFocus();
        QTRY_VERIFY_WITH_TIMEOUT(f.Tells("chosen together, with pairs"), 60000);
        f.ChooseMethod("together");
        f.Window->FinishDrawing();
        f.UseGridMenu(1, 3, "&Hold This Value");
        QVERIFY(f.IsHeld(1, 3));
        f.Enter("F0Box", "33");
        QCOMPARE(f.Design().Elements[3].V2, held);
        const ElementList around = f.Design().Elements;
        f.Trigger("SaveMenu");
        f.Trigger("UndoMenu");
        f.Trigger("UndoMenu");
        QVERIFY(!f.IsHeld(1, 3));
        f.Trigger("OpenMenu");
        QVERIFY(f.IsHeld(1, 3) && SameLadder(f.Design().Elements, around));
        // It goes with its slot.
        f.Enter("NumPolesBox", "2");
        f.Enter("NumPolesBox", "5");
        QVERIFY(!f.IsHeld(1, 3));
        f.Trigger("UndoMenu");
        QVERIFY(f.IsHeld(1, 3));
        f.UseGridMenu(1, 3, "&Hold This Value");
        QVERIFY(!f.IsHeld(1, 3));
    }

    void APartWithAToleranceOfItsOwnCountsWithIt() {
        BoardsFixture f;
        f.SetLimits(lowPass);
        const double before = f.PassedPercent();
        QVERIFY(before > 0.0);
        f.UseGridMenu(1, 3, "0.5 %");
        const double better = f.PassedPercent();
        QVERIFY2(better > before, qPrintable(f.Results()));
        QCOMPARE(f.Grid->item(1, 3)->data(BadgeRole).toString(), "0.5 %");
        f.Trigger("SaveMenu");
        f.Trigger("UndoMenu");
        QCOMPARE(f.PassedPercent(), before);
        f.Trigger("OpenMenu");
        QCOMPARE(f.PassedPercent(), better);
        f.UseGridMenu(1, 3, "As All &Capacitors");
        QCOMPARE(f.PassedPercent(), before);
        QVERIFY(f.Grid->item(1, 3)->data(BadgeRole).toString().isEmpty());
    }
};

QTEST_MAIN(BoardsTest)
#include "boards_test.moc"
