// The help window.
#include "windows/HelpWindow.h"

#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QScreen>
#include <QScrollBar>
#include <QSplitter>
#include <QStyle>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolBar>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>
#include <functional>
#include <memory>

#include "windows/PrintPreview.h"

namespace ladderwise {

namespace {

constexpr const char* fileNames[NumHelpPages] = {"StartFilt.rtf", "DCFilt.rtf", "Transform.rtf"};
constexpr int ZoomLimit = 16;       ///< points, up; half of it down
constexpr int ContentsWidth = 270;  ///< pixels
constexpr int UrlRole = Qt::UserRole;

/// A browser whose pages come from memory.
class HelpBrowser : public QTextBrowser {
public:
    HelpBrowser(std::function<QString(const QString&)> pageHtml, QWidget* parent)
        : QTextBrowser(parent), pageHtml(std::move(pageHtml)) {}

    QVariant loadResource(int type, const QUrl& name) override {
        return type == QTextDocument::HtmlResource ? QVariant(pageHtml(name.path())) : QVariant();
    }

private:
    std::function<QString(const QString&)> pageHtml;
};

int PageOf(const QString& fileName) {
    for (int page = 0; page < NumHelpPages; ++page)
        if (fileName.compare(QLatin1String(fileNames[page]), Qt::CaseInsensitive) == 0) return page;
    return -1;
}

QUrl UrlOf(int page, const QString& anchor) {
    QUrl url(QString::fromLatin1(fileNames[page]));
    if (!anchor.isEmpty()) url.setFragment(anchor);
    return url;
}

}  // namespace

const char* HelpFileName(HelpPage page) {
    return fileNames[static_cast<int>(page)];
}

HelpWindow::HelpWindow(const QString& folder, QWidget* parent)
    : QWidget(parent, Qt::Window), folder(folder) {
    setObjectName("HelpWindow");
    setWindowTitle("Ladderwise Help");
    browser = new HelpBrowser(
        [this](const QString& name) {
            const int page = PageOf(name);
            return page < 0 ? QString("<h2>There is no page of this name.</h2>") : pages[page].Html;
        },
        this);
    browser->setObjectName("HelpText");
    browser->setAccessibleName("Help text");
    browser->document()->setDocumentMargin(14);
    contents = new QTreeWidget(this);
    contents->setObjectName("HelpContents");
    contents->setAccessibleName("Contents of the help");
    contents->setHeaderHidden(true);
    auto* const split = new QSplitter(this);
    split->addWidget(contents);
    split->addWidget(browser);
    split->setStretchFactor(1, 1);
    split->setChildrenCollapsible(false);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(BuildTools());
    layout->addWidget(split, 1);
    const QSize room = screen()->availableSize() - QSize(60, 80);
    resize(QSize(960, 680).boundedTo(room));
    split->setSizes({ContentsWidth, width() - ContentsWidth});
    const auto follow = [this](QTreeWidgetItem* item) { ShowUrl(item->data(0, UrlRole).toUrl()); };
    connect(contents, &QTreeWidget::itemClicked, this, follow);
    connect(contents, &QTreeWidget::itemActivated, this, follow);
    connect(browser, &QTextBrowser::sourceChanged, this, &HelpWindow::PageShown);
}

QToolBar* HelpWindow::BuildTools() {
    auto* const tools = new QToolBar(this);
    tools->setObjectName("HelpTools");
    tools->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto add = [&](const char* name, const char* text, const char* tip, QKeySequence keys,
                         auto&& act) {
        auto* const action = tools->addAction(QString::fromUtf8(text));
        action->setObjectName(QString::fromLatin1(name));
        action->setShortcut(keys);
        const QString hint = keys.toString(QKeySequence::NativeText);
        action->setToolTip(hint.isEmpty() ? QString(tip) : QString("%1 (%2)").arg(tip, hint));
        connect(action, &QAction::triggered, this, act);
        addAction(action);
        tools->widgetForAction(action)->setAccessibleName(tip);
        return action;
    };
    auto* const back = add("HelpBack", "&Back", "To the page before", QKeySequence::Back,
                           [this] { browser->backward(); });
    auto* const forward = add("HelpForward", "F&orward", "To the page after", QKeySequence::Forward,
                              [this] { browser->forward(); });
    back->setIcon(style()->standardIcon(QStyle::SP_ArrowBack));
    forward->setIcon(style()->standardIcon(QStyle::SP_ArrowForward));
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(browser, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(browser, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    tools->addSeparator();
    findBox = new QLineEdit(tools);
    findBox->setObjectName("HelpFindBox");
    findBox->setAccessibleName("Find in all pages");
    findBox->setPlaceholderText("Find in all pages");
    findBox->setToolTip("Lists the pages with these words");
    findBox->setClearButtonEnabled(true);
    findBox->setMaximumWidth(240);
    tools->addWidget(findBox);
    connect(findBox, &QLineEdit::returnPressed, this, [this] { FindText(false); });
    add("HelpFindNext", "&Next", "The next place", QKeySequence::FindNext,
        [this] { FindText(false); });
    add("HelpFindPrevious", "Pre&vious", "The place before", QKeySequence::FindPrevious,
        [this] { FindText(true); });
    findResult = new QLabel(tools);
    findResult->setObjectName("HelpFindResult");
    findResult->setMinimumWidth(fontMetrics().horizontalAdvance(" not found "));
    tools->addWidget(findResult);
    tools->addSeparator();
    add("HelpZoomIn", "A+", "Larger text", QKeySequence::ZoomIn, [this] { Zoom(1); });
    add("HelpZoomOut", "A\u2212", "Smaller text", QKeySequence::ZoomOut, [this] { Zoom(-1); });
    tools->addSeparator();
    add("HelpPrint", "&Print...", "Prints this page", QKeySequence::Print, [this] { Print(); });
    auto* const find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, this, [this] {
        findBox->setFocus();
        findBox->selectAll();
    });
    addAction(find);
    return tools;
}

void HelpWindow::LoadPages() {
    if (loaded) return;
    loaded = true;
    for (int page = 0; page < NumHelpPages; ++page)
        pages[page] = LoadHelpText(folder, QString::fromLatin1(fileNames[page]));
    FillContents();
}

void HelpWindow::FillContents() {
    for (int page = 0; page < NumHelpPages; ++page) {
        auto* const top = new QTreeWidgetItem(contents);
        const bool fine = pages[page].Problem.isEmpty();
        top->setText(0, fine ? pages[page].Title : QString::fromLatin1(fileNames[page]));
        top->setData(0, UrlRole, UrlOf(page, {}));
        for (const HelpHeading& heading : pages[page].Headings) {
            if (heading.Level != 2) continue;  // 1 is the title, deeper ones stand in the text
            auto* const item = new QTreeWidgetItem(top);
            item->setText(0, heading.Text);
            item->setToolTip(0, heading.Text);
            item->setData(0, UrlRole, UrlOf(page, heading.Anchor));
        }
    }
}

void HelpWindow::ShowUrl(const QUrl& url) {
    browser->setSource(url, QTextDocument::HtmlResource);
}

void HelpWindow::ShowPage(HelpPage page, const QString& bookmark) {
    LoadPages();
    ShowUrl(UrlOf(static_cast<int>(page), bookmark));
    if (isMinimized()) showNormal();
    show();
    raise();
    activateWindow();
    browser->setFocus();
}

void HelpWindow::PageShown(const QUrl& url) {
    const int page = PageOf(url.path());  // the browser's own source is still the one before
    if (page < 0) return;
    setWindowTitle(pages[page].Title + " - Ladderwise Help");
    for (int k = 0; k < contents->topLevelItemCount(); ++k)
        contents->topLevelItem(k)->setExpanded(k == page);
}

int HelpWindow::CurrentPage() const {
    return PageOf(browser->source().path());
}

bool HelpWindow::FindOnPage(int page, bool backward, bool fromHere) {
    const QString text = findBox->text();
    if (!fromHere) {
        if (!pages[page].Plain.contains(text, Qt::CaseInsensitive)) return false;
        if (page != CurrentPage()) ShowUrl(UrlOf(page, {}));
        browser->moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
    }
    return browser->find(text, backward ? QTextDocument::FindBackward : QTextDocument::FindFlags());
}

void HelpWindow::FindText(bool backward) {
    findResult->clear();
    if (findBox->text().isEmpty()) return;
    const int here = std::max(0, CurrentPage()), step = backward ? NumHelpPages - 1 : 1;
    bool found = FindOnPage(here, backward, true);
    for (int k = 1; k <= NumHelpPages && !found; ++k)
        found = FindOnPage((here + k * step) % NumHelpPages, backward, false);
    findResult->setText(found ? "" : " not found");
    // What stands around a place that was found is to be seen as well.
    QScrollBar* const bar = browser->verticalScrollBar();
    bar->setValue(bar->value() + browser->cursorRect().center().y() - browser->height() / 3);
}

void HelpWindow::Zoom(int steps) {
    if (zoom + steps > ZoomLimit || zoom + steps < -ZoomLimit / 4) return;
    zoom += steps;
    QTextCursor top = browser->cursorForPosition({});
    browser->zoomIn(steps);
    // The text at the top of the window stays there.
    QScrollBar* const bar = browser->verticalScrollBar();
    bar->setValue(bar->value() + browser->cursorRect(top).top());
}

void HelpWindow::Print() {
    const std::unique_ptr<QTextDocument> paper(browser->document()->clone());
    PrintWithPreview(this, windowTitle(), QPageLayout::Portrait,
                     [&paper](QPrinter& printer) { paper->print(&printer); });
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

}  // namespace ladderwise
