// What the window tests share: a shown main window that listens for messages and modal windows,
// hands that type, click and turn the wheel, and the comparison with a fresh calculation.
#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QLineEdit>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QWheelEvent>
#include <QtTest>
#include <cmath>
#include <cstring>
#include <memory>

#include "app/BitMapView.h"
#include "app/MainWindow.h"
#include "resources/Resources.h"

namespace ladderwise {

inline const QColor SilverColour(192, 192, 192);
inline const QColor YellowColour(255, 255, 0);

/// Equal to within the last bits.
inline bool Near(double a, double b) {
    return std::abs(a - b) <= 1e-12 * std::abs(b);
}

/// The value behind a box, in the box's unit.
using Getter = double (*)(const FilterDesign&);
inline double F0(const FilterDesign& d) {
    return d.F0 * 1e-6;
}
inline double Poles(const FilterDesign& d) {
    return d.NumPoles;
}
inline double Ripple(const FilterDesign& d) {
    return d.RippleDb;
}
inline double BandWidth(const FilterDesign& d) {
    return d.BandWidth * 1e-6;
}
inline double Percent(const FilterDesign& d) {
    return d.BandWidth / d.F0 * 100;
}
inline double Atten(const FilterDesign& d) {
    return d.EllipticAtten;
}
inline double Trap(const FilterDesign& d) {
    return d.TrapType;
}
inline double Source(const FilterDesign& d) {
    return d.RSource;
}
inline double Load(const FilterDesign& d) {
    return d.RLoad;
}

/// A main window on screen. Messages that no test took, and modal windows that nobody expected,
/// fail the test when the fixture ends.
class WindowFixture {
public:
    WindowFixture() {
        Window->SetMessageCallback([this](const std::string& caption, const std::string& text) {
            messages << QString::fromStdString(caption + ": " + text);
        });
        QObject::connect(&watchdog, &QTimer::timeout, [this] { CloseModalWindow(); });
        watchdog.start(20);
        Window->show();
        Window->activateWindow();
        if (!QTest::qWaitForWindowActive(Window.get())) Fail("the window did not become active");
        Grid = Find<QTableWidget>("ValueGrid");
    }
    ~WindowFixture() {
        if (!messages.isEmpty()) Fail("unexpected message: " + messages.join(" | "));
        if (!modals.isEmpty()) Fail("unexpected modal window: " + modals.join(" | "));
        if (QApplication::overrideCursor()) Fail("a cursor was left behind");
    }

    const Calculation& State() const { return Window->State(); }
    const FilterDesign& Design() const { return State().Design; }

    /// A control by its object name; a missing one ends the program, as no test can go on.
    template <typename T = QWidget>
    T* Find(const QString& name) const {
        T* const found = Window->findChild<T*>(name);
        if (!found) qFatal("no control named %s", qPrintable(name));
        return found;
    }

    void Trigger(const char* action) { Find<QAction>(action)->trigger(); }

    /// A real click in the middle of a button.
    void Click(const QString& button, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(Find(button), Qt::LeftButton, modifiers);
    }

    /// A click on the indicator of a check box or radio button, wherever its caption ends.
    void Check(const QString& button) {
        QWidget* const target = Find(button);
        QTest::mouseClick(target, Qt::LeftButton, {}, {8, target->height() / 2});
    }

    /// Types over what stands in a box.
    void Enter(const QString& box, const QString& text, Qt::Key end = Qt::Key_Return) {
        auto* const edit = Find<QLineEdit>(box);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
        if (end != Qt::Key_unknown) QTest::keyClick(edit, end);
    }

    QString Text(const QString& box) const { return Find<QLineEdit>(box)->text(); }
    QColor Colour(const QString& box) const { return Find(box)->palette().color(QPalette::Base); }
    bool IsNormal(const QString& box) const {
        return Colour(box) == QApplication::palette().color(QPalette::Base);
    }
    QString Status() const { return Find<ElidedLabel>("StatusLabel")->Text(); }
    QString Cell(int row, int column) const { return Grid->item(row, column)->text(); }

    /// Types into a cell of the value grid after a double click on it, and presses Enter.
    void EnterCell(int row, int column, const QString& text) {
        const QPoint at = Grid->visualItemRect(Grid->item(row, column)).center();
        QTest::mouseClick(Grid->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(Grid->viewport(), Qt::LeftButton, {}, at);
        auto* const editor = Grid->viewport()->findChild<QLineEdit*>();
        if (!editor) return Fail("the cell opened no editor");
        editor->selectAll();
        QTest::keyClick(editor, Qt::Key_Delete);
        QTest::keyClicks(editor, text);
        QTest::keyClick(editor, Qt::Key_Return);
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
    void ExpectModal(const QString& title) { expectedModal = title; }

    std::unique_ptr<MainWindow> Window = std::make_unique<MainWindow>();
    QTableWidget* Grid = nullptr;

private:
    static void Fail(const QString& reason) { QTest::qFail(qPrintable(reason), __FILE__, 0); }

    void CloseModalWindow() {
        QWidget* const modal = QApplication::activeModalWidget();
        if (!modal) return;
        if (modal->windowTitle() != expectedModal) modals << modal->windowTitle();
        modal->close();
    }

    QTimer watchdog;
    QStringList messages;
    QStringList modals;
    QString expectedModal;
};

/// Equal to the last bit, or both not a number.
inline bool SameNumber(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

inline bool SameElement(const CircuitElement& a, const CircuitElement& b) {
    bool same = a.Type == b.Type;
    for (int row = 0; row < 4; ++row)
        same = same && SameNumber(a.Value(row), b.Value(row));
    return same;
}

template <typename Numbers>
bool SameNumbers(const Numbers& a, const Numbers& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameNumber);
}

inline bool SameResponse(const SweepResponse& a, const SweepResponse& b) {
    return SameNumbers(a.TransferRe, b.TransferRe) && SameNumbers(a.TransferIm, b.TransferIm) &&
           SameNumbers(a.ReflectionDb, b.ReflectionDb);
}

/// What a fresh calculation makes of the same boxes and choices.
inline std::unique_ptr<Calculation> FreshFrom(const Calculation& state) {
    auto fresh = std::make_unique<Calculation>();
    fresh->Inputs = state.Inputs;
    fresh->Design.PassType = state.Design.PassType;
    fresh->Design.ResponseType = state.Design.ResponseType;
    fresh->Design.FormCLC = state.Design.FormCLC;
    fresh->Design.SweepType = state.Design.SweepType;
    fresh->FixedSeed = state.WorstCase.Seed;
    ReadInputs(fresh->Inputs, fresh->Design, nullptr);
    Calculate(*fresh, nullptr, nullptr);
    return fresh;
}

/// Where a state just calculated differs from a fresh calculation; empty if nowhere.
inline QString DifferenceFromFresh(const Calculation& state) {
    const auto fresh = FreshFrom(state);
    const FilterDesign& a = state.Design;
    const FilterDesign& b = fresh->Design;
    QStringList found;
    const auto require = [&](bool same, const char* what) {
        if (!same) found << what;
    };
    require(a.NumElements == b.NumElements, "element count");
    require(a.FormCLC == b.FormCLC && a.ResponseType == b.ResponseType, "form or response");
    require(a.F0 == b.F0 && a.BandWidth == b.BandWidth, "F0 or bandwidth");
    require(a.RSource == b.RSource && a.RLoad == b.RLoad, "terminations");
    require(a.NumPoles == b.NumPoles && a.RippleDb == b.RippleDb, "poles or ripple");
    require(a.EllipticAtten == b.EllipticAtten && a.TrapType == b.TrapType, "elliptic inputs");
    require(SameNumbers(a.SweepFreqs, b.SweepFreqs), "sweep");
    for (int slot = 0; slot < NumSlots; ++slot)
        if (!SameElement(a.Elements[slot], b.Elements[slot])) found << QString("slot %1").arg(slot);
    require(SameResponse(a.Response, b.Response), "response");
    require(state.WorstCase.Runs == fresh->WorstCase.Runs, "worst-case runs");
    require(SameNumbers(state.WorstCase.LowDb, fresh->WorstCase.LowDb), "worst-case extremes");
    return found.join(", ");
}

/// Any warning of the toolkit fails the test, except QtTest's own about keys that nobody wanted and
/// what the screenless platform and its few fonts cannot do.
inline void FailOnToolkitWarnings() {
    QTest::failOnWarning(
        QRegularExpression("^(?!\\s*(Keyboard event not accepted|Mouse event occurs outside|"
                           "OpenType support missing|This plugin does not support))"));
}

/// The main program of a window test: screenless unless told otherwise, in a folder of its own.
template <typename Test>
int RunWindowTest(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    InitResources();
    QTemporaryDir folder;
    QDir::setCurrent(folder.path());
    Test test;
    return QTest::qExec(&test, argc, argv);
}

}  // namespace ladderwise
