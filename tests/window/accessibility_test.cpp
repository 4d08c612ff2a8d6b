// Every window as it is seen and reached: texts by their ink, controls off each other, names for a
// screen reader, the Tab key, mnemonics.
#include <QAccessible>
#include <QActionGroup>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>

#include "tests/Picture.h"
#include "tests/window/WindowFixture.h"
#include "windows/AboutWindow.h"

using namespace ladderwise;

namespace {

/// What is wrong with the mnemonics of captions: missing, or given to two different ones.
QStringList FaultyMnemonics(const QStringList& captions) {
    QStringList faults;
    QMap<QString, QString> owners;
    for (const QString& caption : captions) {
        const QString key = QKeySequence::mnemonic(caption).toString();
        if (key.isEmpty() || owners.value(key, caption) != caption)
            faults << owners[key] + " and " + caption;
        owners[key] = caption;
    }
    return faults;
}

/// Labels, frames, entries and headers that say nothing, and buttons that Enter might press unseen.
QStringList EmptyTextsOf(const QWidget* control) {
    QStringList faults;
    const auto expect = [&](bool said, const char* what) {
        if (!said) faults << control->objectName() + " has an empty " + what;
    };
    const auto* const label = qobject_cast<const QLabel*>(control);
    // Those that have a name tell what there is to tell.
    if (label && label->objectName().isEmpty())
        expect(!label->text().isEmpty() || !label->pixmap(Qt::ReturnByValue).isNull(), "label");
    if (const auto* const group = qobject_cast<const QGroupBox*>(control))
        expect(!group->title().isEmpty(), "title");
    const auto* const list = qobject_cast<const QComboBox*>(control);
    for (int i = 0; list && i < list->count(); ++i)
        expect(!list->itemText(i).isEmpty(), "entry");
    const auto* const table = qobject_cast<const QTableWidget*>(control);
    for (int i = 0; table && table->horizontalHeader()->isVisible() && i < table->columnCount();
         ++i)
        expect(!table->model()->headerData(i, Qt::Horizontal).toString().isEmpty(), "header");
    const auto* const button = qobject_cast<const QPushButton*>(control);
    const bool taken = button && button->autoDefault() && !button->isDefault();
    if (taken && button->window()->inherits("QDialog") &&
        !button->parentWidget()->inherits("QDialogButtonBox"))
        faults << button->objectName() + " takes Enter";
    return faults;
}

QStringList FaultsOf(QWidget* window) {
    WindowFixture::Activate(window);
    if (!window->focusWidget()) QTest::keyClick(window, Qt::Key_Tab);
    QSet<QWidget*> reached;
    for (int i = 0; i < 40; ++i) {
        reached << QApplication::focusWidget();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QStringList faults, captions;
    if (window->windowTitle().isEmpty()) faults << "no title";
    for (auto* const control : window->findChildren<QWidget*>()) {
        const QWidget* const parent = control->parentWidget();
        const bool toolkits = control->objectName().startsWith("qt_") ||
                              parent->inherits("QLineEdit") || parent->inherits("QTableView");
        if (control->window() != window || toolkits) continue;
        const bool usable = control->isVisible() && control->isEnabled();
        const auto* const button = qobject_cast<QAbstractButton*>(control);
        const auto* const label = qobject_cast<QLabel*>(control);
        const bool stop = control->focusPolicy() & Qt::TabFocus;
        const auto* const told = QAccessible::queryAccessibleInterface(control);
        if ((stop || button) && told->text(QAccessible::Name).isEmpty())
            faults << control->objectName() + " has no name";
        // A tool tip counts as a name, but is not to be seen.
        if (button && !button->inherits("QToolButton") && button->text().isEmpty())
            faults << control->objectName() + " has no caption";
        if (stop && usable && !reached.contains(control))
            faults << "no Tab to " + control->objectName();
        const bool captioned = button && !button->text().isEmpty() &&
                               !QString(button->text()).remove('&').startsWith("Close");
        if (usable && (captioned || qobject_cast<QLineEdit*>(control)) &&
            !parent->inherits("QDialogButtonBox") && control->toolTip().isEmpty())
            faults << control->objectName() + " has no tip";
        faults += EmptyTextsOf(control);
        // Headers are either all plain or all explained.
        const auto* const table = qobject_cast<QTableWidget*>(control);
        const auto explained = [table](int column) {
            const auto* const header = table->horizontalHeaderItem(column);
            return header && !header->toolTip().isEmpty();
        };
        for (int column = 1; table && column < table->columnCount(); ++column)
            if (explained(column) != explained(0))
                faults << control->objectName() + ": no tip at a header";
        if (usable && label && label->buddy()) captions << label->text();
        if (usable && button && !button->text().isEmpty() && !parent->inherits("QToolBar"))
            captions << button->text();
        if (const auto* const bar = qobject_cast<QMenuBar*>(control))
            for (const QAction* const menu : bar->actions())
                captions << menu->text();
    }
    return faults + FaultyMnemonics(captions);
}

QString TextOf(const QWidget* control) {
    if (const auto* const label = qobject_cast<const QLabel*>(control)) return label->text();
    if (const auto* const button = qobject_cast<const QAbstractButton*>(control))
        return button->text();
    const auto* const edit = qobject_cast<const QLineEdit*>(control);
    return edit && !edit->hasFocus() ? edit->text() : QString();
}

/// What a window does not show of what its controls hold, and which of them lie on each other.
/// `scrolled`: what stands above or below the part in view is left out.
QStringList FaultsSeen(QWidget* window, bool scrolled = false) {
    QStringList faults;
    const QImage image = window->grab().toImage();
    for (auto* const control : window->findChildren<QWidget*>()) {
        if (control->window() != window || !control->isVisibleTo(window)) continue;
        const QRect area(control->mapTo(window, QPoint()), control->size());
        const auto role =
            qobject_cast<QLineEdit*>(control) ? QPalette::Text : control->foregroundRole();
        const Picture picture(image, control->font(), control->palette().color(QPalette::Base));
        const QString text = TextOf(control).remove('&').trimmed();
        const QWidget* const parent = control->parentWidget();
        for (auto* const other :
             parent->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            if (parent->layout() && !other->isWindow() && other > control &&
                other->isVisibleTo(window) && other->geometry().intersects(control->geometry()))
                faults << control->objectName() + " shares room with " + other->objectName();
        if (text.isEmpty() || !control->isEnabled()) continue;
        const QRect inView = control->visibleRegion().boundingRect();
        if (scrolled && inView.size() != control->size()) continue;
        const QColor ground = control->palette().color(control->backgroundRole());
        if (std::abs(control->palette().color(role).lightness() - ground.lightness()) < 90)
            faults << control->objectName() + " is hard to read";
        if (!picture.HasInkOf(text, control->palette().color(role), area))
            faults << control->objectName() + " does not show " + text;
        for (auto* const other :
             control->parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            if (other > control && other->isVisibleTo(window) && !TextOf(other).isEmpty() &&
                other->geometry().intersects(control->geometry()))
                faults << control->objectName() + " lies on " + other->objectName();
    }
    return faults;
}

/// A control or the object name of each window, and the command that shows it.
const std::pair<const char*, const char*> windows[] = {
    {"Client", "LowPassMenu"},
    {"TDCForm", "DirectCoupledMenu"},
    {"TNortonForm", "NortonMenu"},
    {"PartDefinitionsWindow", "PartDefinitionsMenu"},
    {"OptionsForm", "OptionsWindowMenu"},
    {"SharesWindow", "PartSharesMenu"},
    {"MeasuredWindow", "MeasuredDataMenu"},
    {"LimitsWindow", "LimitsMenu"},
    {"ChoicesWindow", "ChoicesMenu"},
    {"BoardWindow", "BoardMenu"},
    {"MathErrForm", "MathErrMenu"},
    {"HelpWindow", "HelpWindowMenu"}};

}  // namespace

class AccessibilityTest : public QObject {
    Q_OBJECT

private slots:
    void EveryWindowIsUsedByKeys() {
        WindowFixture f;
        for (const auto& [name, command] : windows) {
            f.Trigger(command);
            QWidget* const window = f.Find(name)->window();
            QCOMPARE(name + FaultsOf(window).join(", "), QString(name));
            QCOMPARE(name + FaultsSeen(window).join(", "), QString(name));
            if (window == f.Window.get()) continue;
            // Escape closes it, from whichever control; it comes back to where it was.
            window->move(std::max(0, window->x() - 30), std::max(0, window->y() - 30));
            const QPoint place = window->pos();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
            QVERIFY2(!window->isVisible(), name);
            f.Trigger(command);
            QVERIFY2(window->isVisible(), name);
            QCOMPARE(window->pos(), place);
            for (auto* const button : window->findChildren<QAbstractButton*>()) {
                const QString text = button->text().remove('&');
                if (text != "Close" && text != "Exit") continue;
                QTest::mouseClick(button, Qt::LeftButton);
                QVERIFY2(!window->isVisible(), name);
                f.Trigger(command);
            }
        }
        AboutWindow about(f.Window.get());
        about.show();
        QCOMPARE(FaultsOf(&about).join(", "), QString());
        for (const auto* const menu : f.Window->findChildren<QMenu*>()) {
            QStringList captions;
            for (const QAction* const entry : menu->actions()) {
                if (!entry->isSeparator() && entry->isVisible()) captions << entry->text();
                const bool aSwitch =
                    QStringList{"FixSeedMenu", "PartValuesMenu"}.contains(entry->objectName());
                const bool choice = entry->isCheckable() && !aSwitch;
                QCOMPARE(entry->actionGroup() && entry->actionGroup()->isExclusive(), choice);
            }
            QCOMPARE(FaultyMnemonics(captions).join(", "), QString());
        }
    }

    void LargeLettersFit() {
        const QFont usual = QApplication::font();
        QFont large = usual;
        large.setPointSize(15);
        QApplication::setFont(large);
        const auto back = qScopeGuard([&] { QApplication::setFont(usual); });
        WindowFixture f;
        for (const auto& [name, command] : windows) {
            f.Trigger(command);
            f.Find(name)->window()->resize(1900,
                                           1400);  // the screenless platform has a small screen
            QCoreApplication::processEvents();
            QCOMPARE(name + FaultsSeen(f.Find(name)->window(), true).join(", "), QString(name));
        }
    }

    // Boxes of every colour on a dark desktop.
    void DarkColoursAreReadable() {
        QPalette dark(QColor(50, 50, 50), QColor(45, 45, 45));
        dark.setColor(QPalette::Base, QColor(30, 30, 30));
        const QPalette light = QApplication::palette();
        QApplication::setPalette(dark);
        const auto back = qScopeGuard([&] { QApplication::setPalette(light); });
        WindowFixture f;
        f.Trigger("PartDefinitionsMenu");
        f.Enter("IndQBox", "rubbish");
        f.Enter("F0Box", "rubbish");
        QCOMPARE(f.Colour("F0Box"), SilverColour);
        f.Window->setFocus();
        for (const char* const window : {"Client", "PartDefinitionsWindow"})
            QCOMPARE(FaultsSeen(f.Find(window)->window()).join(", "), QString());
        for (const char* const model : {"InductorPicture", "CapacitorPicture"}) {
            const QImage image = f.Find(model)->grab().toImage();
            int light = 0, black = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x) {
                    light += image.pixelColor(x, y).lightness() > 150;
                    black += image.pixelColor(x, y).lightness() < 30;
                }
            QVERIFY2(light > 200 && 3 * light < image.width() * image.height(), model);
            QCOMPARE(black, 0);
        }
    }
};

QTEST_MAIN(AccessibilityTest)
#include "accessibility_test.moc"
