// Every window for people without a mouse or without a screen: names for a screen reader, the keys
// that reach a control, and mnemonics that mean one thing each.
#include <QAccessible>
#include <QActionGroup>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QToolButton>

#include "tests/window/WindowFixture.h"
#include "windows/AboutWindow.h"

using namespace ladderwise;

namespace {

QString NameOf(QWidget* widget) {
    QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(widget);
    return told ? told->text(QAccessible::Name) : QString();
}

/// Visible in `window` itself, and no part of a control of the toolkit.
bool IsOurs(const QWidget* widget, const QWidget* window) {
    return widget->isVisible() && widget->window() == window &&
           !widget->objectName().startsWith("qt_") &&
           !(widget->parentWidget() && widget->parentWidget()->inherits("QLineEdit"));
}

/// Mnemonics among captions, each with what is wrong with it: missing, or given to two captions.
QStringList FaultyMnemonics(const QStringList& captions) {
    QStringList faults;
    QMap<QString, QString> owners;
    for (const QString& caption : captions) {
        const QString key = QKeySequence::mnemonic(caption).toString();
        if (key.isEmpty()) faults << "none: " + caption;
        if (owners.value(key, caption) != caption) faults << owners[key] + " = " + caption;
        owners[key] = caption;
    }
    return faults;
}

QStringList CaptionsOf(const QWidget* window) {
    QStringList captions;
    for (const auto* const button : window->findChildren<QAbstractButton*>())
        if (IsOurs(button, window) && button->isEnabled() && !button->text().isEmpty() &&
            !button->parentWidget()->inherits("QToolBar"))  // they have shortcuts
            captions << button->text();
    for (const auto* const label : window->findChildren<QLabel*>())
        if (IsOurs(label, window) && label->buddy() && label->isEnabled())
            captions << label->text();
    for (const auto* const group : window->findChildren<QGroupBox*>())
        if (IsOurs(group, window) && group->title().contains('&')) captions << group->title();
    for (const auto* const bar : window->findChildren<QMenuBar*>())
        for (const QAction* const menu : bar->actions())
            if (IsOurs(bar, window)) captions << menu->text();
    return captions;
}

/// What the Tab key reaches, from what has the focus at first until it comes round.
QList<QWidget*> Reached(QWidget* window) {
    WindowFixture::Activate(window);
    if (!window->focusWidget()) QTest::keyClick(window, Qt::Key_Tab);
    QList<QWidget*> reached;
    for (int i = 0; i < 80 && QApplication::focusWidget(); ++i) {
        if (!reached.contains(QApplication::focusWidget())) reached << QApplication::focusWidget();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    return reached;
}

QStringList FaultsOf(QWidget* window) {
    QStringList faults = FaultyMnemonics(CaptionsOf(window));
    const QList<QWidget*> reached = Reached(window);
    for (auto* const control : window->findChildren<QWidget*>()) {
        const bool focusable = control->focusPolicy() & Qt::TabFocus;
        if (!IsOurs(control, window)) continue;
        if ((focusable || qobject_cast<QToolButton*>(control)) && NameOf(control).isEmpty())
            faults << "no name: " + control->objectName();
        if (focusable && control->isEnabled() && !reached.contains(control) &&
            !control->focusProxy())
            faults << "no key reaches " + control->objectName();
    }
    for (const QWidget* const control : reached)
        qInfo() << window->objectName() << control->objectName();
    return faults;
}

}  // namespace

class AccessibilityTest : public QObject {
    Q_OBJECT

private slots:
    void EveryWindowCanBeUsedByKeys() {
        const struct {
            const char *Window, *Command, *Button;
        } windows[] = {{"MainForm", "LowPassMenu", "PlotGDBox"},
                       {"TDCForm", "DirectCoupledMenu", "PlotGDBox"},
                       {"TNortonForm", "NortonMenu", "PlotGDBox"},
                       {"PartDefinitionsWindow", "PartDefinitionsMenu", ""},
                       {"OptionsForm", "OptionsWindowMenu", ""},
                       {"MathErrForm", "MathErrMenu", ""},
                       {"HelpWindow", "HelpWindowMenu", ""}};
        WindowFixture f;
        for (const auto& w : windows) {
            f.Trigger(w.Command);
            QWidget* const window =
                w.Window == QString("MainForm") ? f.Window.get() : f.Find(w.Window);
            QCOMPARE(window->objectName() + ": " + FaultsOf(window).join(", "),
                     w.Window + QString(": "));
        }
        AboutWindow about(f.Window.get());
        about.show();
        QCOMPARE(FaultsOf(&about).join(", "), QString());
    }

    void EveryControlOfAnEllipticBandPass() {
        WindowFixture f;  // everything enabled: mnemonics are twice there, in turn
        f.Trigger("BandPassMenu");
        f.Trigger("EllipticCMenu");
        f.Check("PlotGDBox");
        f.Check("AutoScaleCheckBox");
        f.Click("SetRefButton");
        QStringList faults = FaultsOf(f.Window.get());
        faults.removeIf([](const QString& fault) { return fault.contains(" = "); });
        QCOMPARE(faults.join(", "), QString());
    }

    void EveryMenuEntryHasItsKey() {
        WindowFixture f;
        for (const auto* const menu : f.Window->findChildren<QMenu*>()) {
            QStringList captions;
            for (const QAction* const entry : menu->actions()) {
                if (!entry->isSeparator() && entry->isVisible()) captions << entry->text();
                const bool choice = entry->isCheckable() && entry->objectName() != "FixSeedMenu";
                QCOMPARE(entry->actionGroup() && entry->actionGroup()->isExclusive(), choice);
            }
            QCOMPARE(menu->objectName() + FaultyMnemonics(captions).join(", "), menu->objectName());
        }
    }
};

QTEST_MAIN(AccessibilityTest)
#include "accessibility_test.moc"
