// The help window with the texts that are delivered: links, search and contents, and what it shows
// where texts are missing or broken; the printed page; the About window.
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPrinter>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTextTable>
#include <QTreeWidget>
#include <QtTest>

#include "files/RtfReader.h"
#include "tests/window/WindowFixture.h"
#include "windows/AboutWindow.h"
#include "windows/HelpWindow.h"
#include "windows/PrintScreen.h"

using namespace ladderwise;

namespace {

const QString delivered = LADDERWISE_HELP_FOLDER;

HelpText Page(int page) {
    return LoadHelpText(delivered, HelpFileName(static_cast<HelpPage>(page)));
}

template <typename T>
T* Find(const QObject& window, const char* name) {
    T* const found = window.findChild<T*>(name);
    if (!found) qFatal("no control named %s", name);
    return found;
}

QString Plain(QString text) {
    text = text.remove('&').remove("...").simplified();
    return text.endsWith('.') ? text.chopped(1) : text;
}

/// What a window and its children show on menus, buttons, labels and frames, and the names that
/// screen readers say for boxes.
QStringList TextsIn(const QObject& window) {
    QStringList texts;
    for (const auto* const action : window.findChildren<QAction*>())
        texts << Plain(action->text());
    for (const auto* const button : window.findChildren<QAbstractButton*>())
        texts << Plain(button->text());
    for (const auto* const label : window.findChildren<QLabel*>())
        texts << Plain(label->text());
    for (const auto* const box : window.findChildren<QLineEdit*>())
        texts << Plain(box->accessibleName());
    for (const auto* const choice : window.findChildren<QComboBox*>())
        for (int i = 0; i < choice->count(); ++i)
            texts << choice->itemText(i);
    for (const auto* const group : window.findChildren<QGroupBox*>())
        texts << Plain(group->title());
    for (const auto* const menu : window.findChildren<QMenu*>())
        texts << Plain(menu->title());
    return texts;
}

/// The names that a help file prints bold, but for headings and the first rows of tables.
QStringList BoldNames(const QString& file) {
    QFile help(delivered + '/' + file);
    if (!help.open(QIODevice::ReadOnly)) qFatal("no file %s", qPrintable(file));
    QStringList names;
    for (const RtfBlock& block : ReadRtf(help.readAll().toStdString()).Blocks) {
        if (block.Kind == RtfBlockKind::Heading || block.Level > 0) continue;
        for (const std::vector<RtfRun>& cell : block.Cells)
            for (const RtfRun& run : cell)
                if (run.Bold) names += Plain(QString::fromStdString(run.Text)).split(", ");
    }
    return names;
}

}  // namespace

class HelpTest : public QObject {
    Q_OBJECT

private slots:
    void EveryLinkLeadsToAPlace() {
        QStringList places;
        for (int page = 0; page < NumHelpPages; ++page) {
            const HelpText text = Page(page);
            QVERIFY2(text.Problem.isEmpty(), qPrintable(text.Problem));
            const QString file = HelpFileName(static_cast<HelpPage>(page));
            places << file;
            static const QRegularExpression name("<a name=\"([^\"]+)\"");
            for (auto found = name.globalMatch(text.Html); found.hasNext();)
                places << file + '#' + found.next().captured(1);
            QVERIFY(text.Headings.size() > 4);
        }
        for (int page = 0; page < NumHelpPages; ++page) {
            static const QRegularExpression link("href=\"([^\"]+)\"");
            for (auto found = link.globalMatch(Page(page).Html); found.hasNext();) {
                const QString target = found.next().captured(1);
                const QString from = HelpFileName(static_cast<HelpPage>(page));
                const QString full = target.startsWith('#') ? from + target : target;
                QVERIFY2(places.contains(full), qPrintable(from + " to " + target));
            }
        }
    }

    // What the help prints bold is the name of a control, or one of a few words of its own.
    void EveryControlNamedExists() {
        const QStringList ownWords = {"Fo is where the loss is 3 dB",
                                      "Silver",
                                      "Yellow",
                                      "Tolerances",
                                      "The seed",
                                      "read-out reference",
                                      "Design files",
                                      "Coefficients files",
                                      "Ctrl+B",
                                      "Ctrl+Z",
                                      "Ctrl+Shift+Z",
                                      "Work that was not saved",
                                      "Loss and bandwidth",
                                      "Delay",
                                      "Differences",
                                      "Print",
                                      "negative value",
                                      "A",
                                      "K",
                                      "Hold This Value",
                                      "Tolerance of This Part",
                                      "6 dB Freq",
                                      "6 dB BW",
                                      "Min"};
        WindowFixture f;
        QStringList texts = TextsIn(*f.Window);
        f.Trigger("EllipticCMenu");
        texts += TextsIn(*f.Window);
        int found = 0;
        for (int page = 0; page < NumHelpPages; ++page)
            for (const QString& name : BoldNames(HelpFileName(static_cast<HelpPage>(page)))) {
                const bool shown =
                    std::any_of(texts.begin(), texts.end(), [&name](const QString& text) {
                        return text == name || text.startsWith(name + ' ');
                    });
                found += shown;
                QVERIFY2(shown || ownWords.contains(name), qPrintable("no control: " + name));
            }
        QVERIFY(found > 40);
    }

    void SearchGoesOverAllPagesAndAround() {
        HelpWindow help(delivered, nullptr);
        help.ShowPage(HelpPage::Transform);
        const auto* const browser = Find<QTextBrowser>(help, "HelpText");
        QCOMPARE(Find<QTreeWidget>(help, "HelpContents")->topLevelItemCount(), NumHelpPages);
        for (int page = 0; page < NumHelpPages; ++page) {
            const auto* const entry = Find<QTreeWidget>(help, "HelpContents")->topLevelItem(page);
            QStringList entries, headings;
            for (int k = 0; k < entry->childCount(); ++k)
                entries << entry->child(k)->text(0);
            for (const HelpHeading& heading : Page(page).Headings)
                if (heading.Level == 2) headings << heading.Text;
            QCOMPARE(entries, headings);
            QVERIFY(entries.size() > 3);
        }
        const auto find = [&](const char* text, bool backward) {
            Find<QLineEdit>(help, "HelpFindBox")->setText(text);
            help.FindText(backward);
            return browser->source().fileName() + ' ' + browser->textCursor().selectedText();
        };
        QCOMPARE(find("Fo is WHERE", false), "StartFilt.rtf Fo is where");
        const int first = browser->textCursor().position();
        QCOMPARE(find("Fo is where", false), "StartFilt.rtf Fo is where");  // once around
        QCOMPARE(browser->textCursor().position(), first);
        QCOMPARE(find("alternate match", true), "DCFilt.rtf Alternate Match");
        find("no such words", false);
        QCOMPARE(Find<QLabel>(help, "HelpFindResult")->text(), " not found");
        help.ShowPage(HelpPage::Start, "keys");
        QVERIFY(help.windowTitle().startsWith("Designing filters"));
        QVERIFY(browser->verticalScrollBar()->value() > 0);
    }

    void TextGrowsAndShrinksWithinLimits() {
        HelpWindow help(delivered, nullptr);
        help.ShowPage(HelpPage::Start);
        const auto size = [&] { return Find<QTextBrowser>(help, "HelpText")->font().pointSize(); };
        const int usual = size();
        const auto after = [&](const char* action, int presses) {
            for (int k = 0; k < presses; ++k)
                Find<QAction>(help, action)->trigger();
            return size();
        };
        QCOMPARE(after("HelpZoomIn", 1), usual + 1);
        QCOMPARE(after("HelpZoomOut", 1), usual);
        QCOMPARE(after("HelpZoomIn", 99), usual + 16);
        QCOMPARE(after("HelpZoomOut", 99), usual - 4);
    }

    void OnlyTheFirstRowsOfTablesAreHeadings() {
        int headed = 0;
        for (int page = 0; page < NumHelpPages; ++page) {
            QTextDocument document;
            document.setHtml(Page(page).Html);
            for (QTextFrame* const frame : document.rootFrame()->childFrames()) {
                const auto* const table = qobject_cast<QTextTable*>(frame);
                if (!table) continue;
                const auto isBold = [&](int row, int column) {
                    QTextCursor cursor = table->cellAt(row, column).firstCursorPosition();
                    cursor.movePosition(QTextCursor::NextCharacter);
                    return cursor.charFormat().fontWeight() >= QFont::Bold;
                };
                const int last = table->columns() - 1;
                headed += isBold(0, last);
                for (int row = 1; row < table->rows(); ++row)
                    QVERIFY(!isBold(row, last));
            }
        }
        QVERIFY(headed > 3);
    }

    void MissingAndForeignFilesSayWhatToDo() {
        const QTemporaryDir folder;
        const std::pair<const char*, const char*> files[] = {{"StartFilt.rtf", "plain text"},
                                                             {"DCFilt.rtf", "{\\rtf1 {\\pict "}};
        for (const auto& [name, content] : files) {
            QFile file(folder.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) > 0);
        }
        HelpWindow help(folder.path(), nullptr);
        const auto* const browser = Find<QTextBrowser>(help, "HelpText");
        for (int page = 0; page < NumHelpPages; ++page) {
            help.ShowPage(static_cast<HelpPage>(page));
            const QString text = browser->toPlainText();
            QVERIFY2(text.contains("cannot be shown") && text.contains(folder.path()) &&
                         text.contains(HelpFileName(static_cast<HelpPage>(page))),
                     qPrintable(text));
        }
    }

    void OpensFromTheMenuAndFromAWindowAtItsPage() {
        WindowFixture f;
        auto* const help = f.Find<HelpWindow>("HelpWindow");
        f.Trigger("HelpWindowMenu");
        QVERIFY(help->isVisible());
        QTest::keyClick(help, Qt::Key_A);
        QVERIFY(help->isVisible());
        QTest::keyClick(help, Qt::Key_Escape);
        QVERIFY(!help->isVisible());
        f.Trigger("PartDefinitionsMenu");
        f.Click("PartHelpButton");
        QVERIFY(help->isVisible());
        QCOMPARE(f.Find<QTextBrowser>("HelpText")->source(), QUrl("StartFilt.rtf#parts"));
        const QImage before = f.Find("BitMap")->grab().toImage();
        f.ExpectModal("Print - 3 Pole Butterworth LPF");
        f.Trigger("PrintMenu");
        QCOMPARE(f.Find("BitMap")->grab().toImage(), before);
    }

    void PrintedPageAndAboutWindow() {
        const QTemporaryDir folder;
        QPrinter printer;
        printer.setOutputFileName(folder.filePath("page.pdf"));
        const auto calculation = std::make_unique<Calculation>();
        Calculate(*calculation, {});
        PaintPage(printer, {ContentOf(calculation->Design, {}, calculation->Quantities, {}), {}},
                  {"Date", ""});
        QFile pdf(folder.filePath("page.pdf"));
        QVERIFY(pdf.open(QIODevice::ReadOnly) && pdf.readAll().startsWith("%PDF"));
        QCoreApplication::setApplicationVersion("9.8");
        InitResources();
        const AboutWindow about(nullptr);
        QVERIFY(AboutWindow::BuildText().contains(" 9.8\nBuilt with "));
        QVERIFY(Find<QPlainTextEdit>(about, "AboutLicence")->toPlainText().contains("AS IS"));
    }
};

QTEST_MAIN(HelpTest)
#include "help_test.moc"
