// What the window tests share: a shown main window that listens for messages and modal windows,
// hands that type, click and turn the wheel, and the comparison with a fresh calculation.
#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QWheelEvent>
#include <QtTest>
#include <cmath>
#include <functional>
#include <memory>

#include "app/MainWindow.h"
#include "app/ResultsPanel.h"
#include "choosing/PartsChoice.h"
#include "controls/BitMapView.h"
#include "controls/ElidedLabel.h"
#include "pipeline/NamedSettings.h"
#include "resources/Resources.h"

namespace ladderwise {

inline const QColor SilverColour(192, 192, 192);

/// Equal to the last bit, or both not a number.
inline bool SameNumber(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

template <typename Numbers>
bool SameNumbers(const Numbers& a, const Numbers& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameNumber);
}

inline bool SameLadder(const ElementList& a, const ElementList& b) {
    bool same = true;
    for (int slot = 0; slot < NumSlots; ++slot)
        for (int row = 0; row < 4; ++row)
            same = same && a[slot].Type == b[slot].Type &&
                   SameNumber(a[slot].Value(row), b[slot].Value(row));
    return same;
}

inline bool SameResponse(const SweepResponse& a, const SweepResponse& b) {
    return SameNumbers(a.TransferRe, b.TransferRe) && SameNumbers(a.TransferIm, b.TransferIm) &&
           SameNumbers(a.ReflectionDb, b.ReflectionDb);
}

/// Where a state just calculated differs from what a fresh calculation makes of the same boxes and
/// choices; empty if nowhere.
inline QString DifferenceFromFresh(const Calculation& state, const LimitLines& limits) {
    const auto fresh = std::make_unique<Calculation>();
    fresh->Inputs = state.Inputs;
    fresh->ArrangeParts = [&limits](Calculation& calculation) {
        return PartsChoice().Arrange(calculation, limits, true);
    };
    fresh->FixedSeed = state.WorstCase.Seed;
    Calculate(*fresh, nullptr);
    const FilterDesign &a = state.Design, &b = fresh->Design;
    const std::pair<const char*, bool> same[] = {
        {"sweep", SameNumbers(a.SweepFreqs, b.SweepFreqs)},
        {"ladder", a.NumElements == b.NumElements && SameLadder(a.Elements, b.Elements)},
        {"response", SameResponse(a.Response, b.Response)},
        {"worst-case runs", state.WorstCase.Runs == fresh->WorstCase.Runs},
        {"worst-case extremes", SameNumbers(state.WorstCase.LowDb, fresh->WorstCase.LowDb)}};
    QStringList found;
    for (const auto& [what, is] : same)
        if (!is) found << what;
    return found.join(", ");
}

/// A main window on screen, in a folder of its own. Warnings of the toolkit fail the test at once;
/// messages that no test took, and modal windows that nobody expected, fail it when the fixture
/// ends.
class WindowFixture {
public:
    WindowFixture() {
        // All but QtTest's own about keys that nobody wanted, and what the screenless platform and
        // its few fonts cannot do.
        QTest::failOnWarning(
            QRegularExpression("^(?!\\s*(Keyboard event not accepted|Mouse event occurs outside|"
                               "OpenType support missing|This plugin does not support))"));
        InitResources();
        QDir::setCurrent(folder.path());
        Window = std::make_unique<MainWindow>();
        Window->SetMessageCallback([this](const std::string& caption, const std::string& text) {
            messages << QString::fromStdString(caption + ": " + text);
        });
        // No file is chosen, and no change is worth saving, unless a test answers otherwise.
        const auto noName = [](const FileDialogTexts&) { return QString(); };
        Window->SetFileDialogs({noName,
                                noName,
                                [](const QString&) { return UnsavedAnswer::Discard; },
                                {},
                                [](const QString&) { return ChangedAnswer::Cancel; }});
        QObject::connect(&watchdog, &QTimer::timeout, [this] {
            QWidget* const modal = QApplication::activeModalWidget();
            if (!modal || driving) return;
            if (modal->windowTitle() != expectedModal) modals << modal->windowTitle();
            const QScopedValueRollback<bool> busy(driving, true);
            const auto drive = std::exchange(driver, {});
            if (drive && modal->windowTitle() == expectedModal) drive(modal);
            modal->close();
        });
        watchdog.start(20);
        Window->resize(1240, 760);  // the screenless platform has a small screen
        Window->show();
        Activate(Window.get());
        Grid = Find<QTableWidget>("ValueGrid");
    }
    ~WindowFixture() {
        Window.reset();
        if (!messages.isEmpty()) Fail("unexpected message: " + messages.join(" | "));
        if (!modals.isEmpty()) Fail("unexpected modal window: " + modals.join(" | "));
        if (QApplication::overrideCursor()) Fail("a cursor was left behind");
    }

    const Calculation& State() const {
        Window->FinishDrawing();  // a worst case waits for the event loop
        return Window->State();
    }
    const FilterDesign& Design() const { return State().Design; }

    /// What the last calculation used of an input: numbers in SI units to 12 digits, or a word.
    QString InUse(const char* name) const {
        for (const SettingInUse& setting : SettingsInUse(State())) {
            if (setting.Name != name) continue;
            const auto* const number = std::get_if<double>(&setting.Value);
            if (number) return QString::number(*number, 'g', 12);
            return QString::fromStdString(std::get<std::string>(setting.Value));
        }
        qFatal("no input named %s", name);
    }

    /// Why the state differs from a fresh calculation of the same inputs; empty if it does not.
    QString Difference() const { return DifferenceFromFresh(State(), Window->Limits()); }

    /// A control by its object name; a missing one ends the program, as no test can go on.
    template <typename T = QWidget>
    T* Find(const QString& name) const {
        T* const found = Window->findChild<T*>(name);
        if (!found) qFatal("no control named %s", qPrintable(name));
        return found;
    }

    bool Checked(const QString& name) const {
        return Find<QObject>(name)->property("checked").toBool();
    }
    static void Activate(QWidget* window) {
        window->activateWindow();
        const auto active = [window] { return QApplication::activeWindow() == window; };
        if (!QTest::qWaitFor(active)) Fail("the window did not become active");
    }
    void Trigger(const QString& action) {
        Find<QAction>(action)->trigger();
        Window->FinishDrawing();
    }

    /// A real click in the middle of a button.
    void Click(const QString& button, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(Find(button), Qt::LeftButton, modifiers);
        Window->FinishDrawing();
    }

    /// A click on the indicator of a check box or radio button, wherever its caption ends.
    void Check(const QString& button) {
        QWidget* const target = Find(button);
        QTest::mouseClick(target, Qt::LeftButton, {}, {8, target->height() / 2});
        Window->FinishDrawing();
    }

    /// Types over what stands in an edit, and presses a key to end it.
    static void TypeOver(QLineEdit* edit, const QString& text, Qt::Key end) {
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
        if (end != Qt::Key_unknown) QTest::keyClick(edit, end);
    }
    void Enter(const QString& box, const QString& text, Qt::Key end = Qt::Key_Return) {
        auto* const edit = Find<QLineEdit>(box);
        Activate(edit->window());
        edit->setFocus();
        TypeOver(edit, text, end);
        Window->FinishDrawing();
    }

    QString Text(const QString& box) const { return Find<QLineEdit>(box)->text(); }
    QColor Colour(const QString& box) const { return Find(box)->palette().color(QPalette::Base); }
    bool IsNormal(const QString& box) const {
        return Colour(box) == QApplication::palette().color(QPalette::Base);
    }
    QString Status() const { return Find<ElidedLabel>("StatusLabel")->Text(); }
    /// The panel of results: a line each, tabs between the cells.
    QString Results() const { return Find<ResultsPanel>("ResultsPanel")->SelectedText(); }
    QString Cell(int row, int column) const { return Grid->item(row, column)->text(); }

    /// Double-clicks a cell and gives the editor that opens, or null.
    QLineEdit* OpenCell(int row, int column, QTableWidget* grid = nullptr) {
        if (!grid) grid = Grid;
        const QPoint at = grid->visualItemRect(grid->item(row, column)).center();
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, at);
        return grid->viewport()->findChild<QLineEdit*>();
    }

    /// Types into a cell of the value grid.
    void EnterCell(int row, int column, const QString& text, Qt::Key end = Qt::Key_Return) {
        QLineEdit* const editor = OpenCell(row, column);
        if (!editor) return Fail("the cell opened no editor");
        TypeOver(editor, text, end);
        Settle();
    }

    /// Lets everything happen that waits for the event loop, closed cell editors' deletion
    /// included.
    static void Settle() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    /// Turns the wheel over a widget, whether it has the focus or not.
    static void Wheel(QWidget* target, int notches, Qt::KeyboardModifiers modifiers = {}) {
        const QPointF at = QRectF(target->rect()).center();
        QWheelEvent event(at, target->mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(target, &event);
    }

    QStringList TakeMessages() { return std::exchange(messages, {}); }
    /// The modal window of this title is closed when it appears, after `drive` has used it.
    void ExpectModal(const QString& title, std::function<void(QWidget*)> drive = {}) {
        expectedModal = title;
        driver = std::move(drive);
    }

    std::unique_ptr<MainWindow> Window;
    QTableWidget* Grid = nullptr;

private:
    static void Fail(const QString& reason) { QTest::qFail(qPrintable(reason), __FILE__, 0); }

    QTemporaryDir folder;
    // Windows removes no folder in which the program is.
    const QScopeGuard<std::function<void()>> back{
        [was = QDir::currentPath()] { QDir::setCurrent(was); }};
    QTimer watchdog;
    QStringList messages;
    QStringList modals;
    QString expectedModal;
    std::function<void(QWidget*)> driver;
    bool driving = false;
};

}  // namespace ladderwise
