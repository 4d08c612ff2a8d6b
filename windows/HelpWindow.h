// The help window: three texts with a list of contents, links, search, zoom and printing.
#pragma once

#include <QWidget>
#include <array>

#include "controls/HelpButton.h"
#include "windows/HelpText.h"

class QAction;
class QLabel;
class QLineEdit;
class QTextBrowser;
class QToolBar;
class QTreeWidget;
class QTreeWidgetItem;
class QUrl;

namespace ladderwise {

/// File name of a page in the folder "Help Files".
const char* HelpFileName(HelpPage page);

class HelpWindow : public QWidget, public HelpShower {
    Q_OBJECT

public:
    /// `folder` holds the help files; they are read when the window is first shown.
    HelpWindow(const QString& folder, QWidget* parent);

    void ShowPage(HelpPage page, const QString& bookmark = {}) override;

    /// Goes to the next or the previous place of the text in the find box, over all pages.
    void FindText(bool backward);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QToolBar* BuildTools();
    void LoadPages();
    void FillContents();
    void ShowUrl(const QUrl& url);
    void PageShown(const QUrl& url);
    int CurrentPage() const;
    bool FindOnPage(int page, bool backward, bool fromHere);
    void Zoom(int steps);
    void Print();

    QString folder;
    std::array<HelpText, NumHelpPages> pages;
    bool loaded = false;
    int zoom = 0;  ///< points added to the text's size
    QTextBrowser* browser;
    QTreeWidget* contents;
    QLineEdit* findBox;
    QLabel* findResult;
};

}  // namespace ladderwise
