// Commands as they are reached: by their keys and from the menus, with what opens or happens then.
#include <QMenu>
#include <QMenuBar>

#include "WindowFixture.h"
#include "files/DiskFile.h"

using namespace ladderwise;

namespace {

/// What is wrong with the entries of a menu and its submenus: none, or no text, or a key or a text
/// that another has.
QStringList FaultsIn(const QMenu& menu, QMap<QKeySequence, QString>& keys) {
    QStringList faults, texts;
    for (const QAction* const entry : menu.actions()) {
        if (entry->isSeparator() || !entry->isVisible()) continue;
        const QString text = entry->text().remove('&').trimmed();
        if (text.isEmpty() || texts.contains(text))
            faults << QString("%1: '%2'").arg(menu.objectName(), text);
        texts << text;
        for (const QKeySequence& key : entry->shortcuts()) {
            if (keys.contains(key)) faults << key.toString() + " of " + text + ", " + keys[key];
            keys[key] = text;
        }
        if (entry->menu()) faults << FaultsIn(*entry->menu(), keys);
    }
    if (texts.isEmpty() && menu.isEnabled()) faults << menu.objectName() + " is empty";
    return faults;
}

}  // namespace

class CommandsTest : public QObject {
    Q_OBJECT

private slots:
    void keysOpenDialogs() {
        WindowFixture f;
        const std::pair<Qt::Key, const char*> modal[] = {
            {Qt::Key_E, "Export"}, {Qt::Key_P, "Print - 3 Pole Butterworth LPF"}};
        for (const auto& [key, title] : modal) {
            bool opened = false;
            WindowFixture::Activate(f.Window.get());
            f.ExpectModal(title, [&](QWidget*) { opened = true; });
            QTest::keyClick(f.Window.get(), key, Qt::ControlModifier);
            QVERIFY2(opened, title);
        }
    }

    void menusOpenWhatTheyAreNamedFor() {
        WindowFixture f;
        const std::pair<const char*, const char*> entries[] = {
            {"MeasuredDataMenu", "Measured Data"},
            {"PartDefinitionsMenu", "L and C Model Definitions"},
            {"PartSharesMenu", "Which Part Matters"},
            {"OptionsWindowMenu", "Options"},
            {"HelpWindowMenu", "Ladderwise Help"},
            {"MathErrMenu", "Math Err"}};
        for (const auto& [entry, title] : entries) {
            const auto named = [wanted = QString(title)] {
                for (QWidget* const window : QApplication::topLevelWidgets())
                    if (window->isVisible() && window->windowTitle().contains(wanted))
                        return window;
                return static_cast<QWidget*>(nullptr);
            };
            QVERIFY2(!named(), title);
            bool wasModal = false;
            f.ExpectModal(title, [&](QWidget*) { wasModal = true; });
            f.Trigger(entry);
            QWidget* const opened = named();
            QVERIFY2(opened || wasModal, title);
            if (opened) opened->close();
            QVERIFY2(!named(), title);
        }
    }

    void keysAskForFiles() {
        WindowFixture f;
        QStringList asked;
        const auto ask = [&asked](const char* what) {
            return [&asked, what](const FileDialogTexts& texts) {
                asked << what + QString(" ") + texts.Extension;
                return QString();
            };
        };
        f.Window->SetFileDialogs({ask("open"),
                                  ask("save"),
                                  [](const QString&) { return UnsavedAnswer::Discard; },
                                  {},
                                  [](const QString&) { return ChangedAnswer::Cancel; }});
        const Qt::KeyboardModifiers control = Qt::ControlModifier;
        QTest::keyClick(f.Window.get(), Qt::Key_O, control);
        QTest::keyClick(f.Window.get(), Qt::Key_S, control);
        QTest::keyClick(f.Window.get(), Qt::Key_S, control | Qt::ShiftModifier);
        QCOMPARE(asked.join(", "), "open tk_ldfilt, save tk_ldfilt, save tk_ldfilt");
    }

    void everyEntryHasATextOfItsOwn() {
        WindowFixture f;
        QMap<QKeySequence, QString> keys;
        for (const QAction* const menu : f.Window->menuBar()->actions()) {
            const QStringList faults = FaultsIn(*menu->menu(), keys);
            QVERIFY2(faults.isEmpty(), qPrintable(faults.join("; ")));
        }
        QVERIFY(keys.size() >= 10);
    }

    /// What stands beside a design and is not the program's own is left alone, and it says so.
    void aCompanionOfSomebodyElseStays() {
        for (const char* const bytes : {"somebody's notes", "{\"their\": 1}", "{"}) {
            WindowFixture f;
            WriteWholeFile("d.tk_ldfilt.json", bytes);
            f.Window->SetFileDialogs(
                {[](const FileDialogTexts&) { return QString(); },
                 [](const FileDialogTexts&) { return QDir::current().filePath("d.tk_ldfilt"); },
                 [](const QString&) { return UnsavedAnswer::Discard; },
                 {},
                 [](const QString&) { return ChangedAnswer::Overwrite; }});
            f.EnterCell(1, 1, "47p");
            f.Trigger("SaveAsMenu");
            QVERIFY(QFile::exists("d.tk_ldfilt"));
            QCOMPARE(ReadWholeFile("d.tk_ldfilt.json", 99).Bytes, bytes);
            QVERIFY2(f.Status().contains("the values edited by hand"), qPrintable(f.Status()));
        }
    }
};

QTEST_MAIN(CommandsTest)
#include "commands_test.moc"
