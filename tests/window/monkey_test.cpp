// Random clicking and typing over all controls: no crash, no hang, no toolkit warning, and in the
// end the design that a fresh calculation makes of the same boxes.
//
// LADDERWISE_MONKEY_EVENTS sets the number of events, LADDERWISE_MONKEY_SEED repeats a run.
#include <QScrollBar>
#include <random>

#include "tests/window/WindowFixture.h"
#include "windows/PartDefinitionsWindow.h"

using namespace ladderwise;

namespace {

constexpr unsigned DefaultEvents = 2000;
constexpr unsigned EventsBetweenChecks = 50;

// clang-format off
const char* const texts[] = {
    "", "1", "50", "200", "0.5", "-3", "1e3", "1E-9", "1e308", "-1e308", "1e999", "nan", "inf", "abc", "1,5",
    "1.5", " 7 ", "0x10", "1e", "+", "10", "3", "4", "9", "2", "25", "100", "33.3", "145.825", "0", "22p",
    "4.7n", "1.0 uH", "1e-30", "1e47", "1e50", "50.0", "12E-12"};
// clang-format on

/// Does one random thing after another to a window.
class Monkey {
public:
    Monkey(WindowFixture& fixture, std::uint32_t seed) : f(fixture), random(seed) {
        const QRegularExpression named(
            "^(?!qt_|AboutMenu|PrintMenu|SetSeedMenu|Help|.*HelpButton).");
        actions = f.Window->findChildren<QAction*>(named);
        buttons = f.Window->findChildren<QAbstractButton*>(named);
        f.ExpectModal("Export");
    }

    /// Does something and tells what, for the log of a failed run.
    QString Act() {
        const int choice = Below(13);
        if (choice < 2) return ClickMenu();
        if (choice < 5) return ClickButton();
        if (choice < 8) return UseBox();
        if (choice < 10) return PressKey();
        if (choice < 12) return UseGrid();
        return ChangeWindow();
    }

private:
    int Below(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
    template <typename List>
    auto OneOf(const List& list) {
        return list[Below(static_cast<int>(std::size(list)))];
    }
    Qt::KeyboardModifier Modifier() { return Below(4) ? Qt::NoModifier : Qt::ControlModifier; }

    QString RandomText() {
        if (Below(4)) return QString::fromLatin1(OneOf(texts));
        QString text;
        for (int length = Below(12); length > 0; --length)
            text += QChar(Below(5) ? 32 + Below(95) : 0xA0 + Below(0x2000));
        return text;
    }

    /// As QTest::keyClicks, which knows no characters beyond ASCII.
    static void Type(QWidget* target, const QString& text) {
        for (const QChar letter : text)
            QTest::sendKeyEvent(QTest::Click, target, Qt::Key_unknown, QString(letter), {});
    }

    QString ClickMenu() {
        QAction* const action = OneOf(actions);
        const bool exit = action->objectName() == "ExitMenu";
        // A list of filters takes seconds under a sanitizer, and shares are sampled at every event.
        if (QStringList{"ChoicesMenu", "PartSharesMenu"}.contains(action->objectName()))
            return "too slow";
        if (!action->isEnabled() || !action->isVisible() || (exit && Below(4))) return "no entry";
        action->trigger();
        if (exit) f.Window->show();
        return action->objectName();
    }

    QString ClickButton() {
        QAbstractButton* const button = OneOf(buttons);  // disabled ones too: they must keep quiet
        if (button->isVisible())
            QTest::mouseClick(button, Qt::LeftButton, Modifier(), {8, button->height() / 2});
        return button->objectName();
    }

    QString UseBox() {
        NumberEdit* const box = OneOf(boxes);
        if (!box->isVisible() || !box->isEnabled()) return "hidden box";
        const bool runs = box->objectName() == "WorstCaseSimsBox";
        const QString text = runs && Below(8) ? QString::number(1 + Below(9)) : RandomText();
        if (Below(2)) {
            box->window()->activateWindow();
            QTest::mouseClick(box, Qt::LeftButton);
        }
        if (Below(4)) box->setFocus();
        if (!Below(3)) {
            f.Wheel(box, Below(7) - 3, Modifier());
            return box->objectName() + " wheel";
        }
        if (Below(3)) box->selectAll();
        Type(box, text);
        const int end = Below(5);  // none, Tab, Backtab, Return, Enter
        const Qt::Key keys[] = {{}, Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Return, Qt::Key_Enter};
        if (end > 0) QTest::keyClick(box, keys[end]);
        return QString("%1 \"%2\" end %3").arg(box->objectName(), text, QString::number(end));
    }

    QString PressKey() {
        // Escape to Delete, Home to Page Down, F1 to F9
        const int codes[] = {Qt::Key_Escape + Below(8), Qt::Key_Home + Below(8),
                             Qt::Key_F1 + Below(9), Below(2) ? Qt::Key_5 : Qt::Key_Space};
        const auto key = static_cast<Qt::Key>(OneOf(codes));
        QWidget* const focus = QApplication::focusWidget();
        QTest::keyClick(focus ? focus : f.Window.get(), key, Modifier());
        return "key " + QKeySequence(key).toString();
    }

    QString UseGrid() {
        auto* const bar = f.Find<QScrollBar>("StripScrollBar");
        if (!Below(4)) bar->setValue(Below(bar->maximum() + 1));
        auto* const tanks = f.Find<QTableWidget>("TankValue");
        QTableWidget* const grid = tanks->isVisible() && Below(2) ? tanks : f.Grid;
        QLineEdit* const editor =
            f.OpenCell(Below(grid->rowCount()), Below(grid->columnCount()), grid);
        if (!editor || !Below(4)) return "cell";
        const QString text = RandomText();
        editor->selectAll();
        Type(editor, text);
        if (Below(3)) QTest::keyClick(editor, Below(5) ? Qt::Key_Return : Qt::Key_F5);
        return "cell \"" + text + "\"";
    }

    QString ChangeWindow() {
        const int choice = Below(4);
        if (choice == 0) f.Window->resize(1 + Below(2000), 1 + Below(1400));
        if (choice == 1) OneOf(QList<QWidget*>{parts, f.Window.get()})->activateWindow();
        if (choice == 2) parts->close();
        const QPoint at(Below(f.Find("BitMap")->width()), 400);
        if (choice == 3) QTest::mouseClick(f.Find("BitMap"), Qt::LeftButton, {}, at);
        return QStringList{"resize", "activate", "close the parts window", "plot"}[choice];
    }

    WindowFixture& f;
    std::mt19937 random;
    PartDefinitionsWindow* parts = f.Find<PartDefinitionsWindow>("PartDefinitionsWindow");
    QList<NumberEdit*> boxes = f.Window->findChildren<NumberEdit*>();
    QList<QAction*> actions;
    QList<QAbstractButton*> buttons;
};

}  // namespace

class MonkeyTest : public QObject {
    Q_OBJECT

private slots:
    void SurvivesAndStaysConsistent() {
        const auto setting = [](const char* name, unsigned fallback) {
            return qEnvironmentVariable(name, QString::number(fallback)).toUInt();
        };
        const unsigned events = setting("LADDERWISE_MONKEY_EVENTS", DefaultEvents);
        const unsigned seed =
            setting("LADDERWISE_MONKEY_SEED", 1);  // ./test long: another each time
        qInfo("LADDERWISE_MONKEY_EVENTS=%u LADDERWISE_MONKEY_SEED=%u", events, seed);
        WindowFixture f;
        Monkey monkey(f, seed);
        QStringList log;
        for (unsigned i = 1; i <= events && !QTest::currentTestFailed(); ++i) {
            log << monkey.Act();
            KeepWorstCasesShort(f);
            if (i % 3 == 0) WindowFixture::Settle();  // else the next event comes before
            f.TakeMessages();
            if (i % EventsBetweenChecks == 0 || i == events) CheckState(f);
        }
        if (QTest::currentTestFailed())
            qInfo("failed at event %d: %s", int(log.size()),
                  qPrintable(log.mid(log.size() - 20).join("; ")));
    }

private:
    /// A long worst case may come once; left standing, it would slow every event that follows.
    static void KeepWorstCasesShort(WindowFixture& f) {
        constexpr int MostRuns = 20;
        if (f.Design().PartModel.MonteCarloRuns > MostRuns)
            f.Find<NumberEdit>("WorstCaseSimsBox")->setText(QString::number(MostRuns));
    }

    static void CheckState(WindowFixture& f) {
        f.Window->CalcButtonClick();
        f.TakeMessages();
        QCOMPARE(f.Difference(), QString());
        for (const auto* const box : f.Window->findChildren<NumberEdit*>())
            // The scale's text stays as typed while the response gives none to compare it with.
            QVERIFY2(box->objectName() == "ScaleBox" || !box->text().isEmpty(),
                     qPrintable(box->objectName()));
        QCOMPARE(f.Find("BitMap")->grab().toImage().size(), f.Find("BitMap")->size());
        QCOMPARE(f.Grid->columnCount(), f.Design().NumElements + 1);
        QVERIFY(!f.Results().isEmpty() || !f.Status().isEmpty());
    }
};

QTEST_MAIN(MonkeyTest)
#include "monkey_test.moc"
