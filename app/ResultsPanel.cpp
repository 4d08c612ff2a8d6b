// Table and tab.
#include "app/ResultsPanel.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QTableWidget>
#include <QToolButton>
#include <algorithm>

#include "display/PlotPainter.h"

namespace ladderwise {

namespace {

constexpr int rowMargin = 2;            ///< pixels added to a line of text
constexpr int columnMargin = 12;        ///< pixels added to a text
constexpr int longestValueWidth = 250;  ///< pixels; a longer list ends in "..."
constexpr int leastValueWidth = 80;     ///< of the last column, where there is no room
constexpr int tabMargin = 4;            ///< pixels beside the tab's text
constexpr double panelFontScale = 0.9;  ///< of the normal font, as in the grid of values

/// A button whose text runs upwards, as on the tab of a folder.
class FolderTab : public QToolButton {
public:
    explicit FolderTab(QWidget* parent) : QToolButton(parent) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QStylePainter painter(this);
        QStyleOptionButton frame;
        frame.initFrom(this);
        frame.state |= isDown() || isChecked() ? QStyle::State_Sunken : QStyle::State_Raised;
        painter.drawControl(QStyle::CE_PushButtonBevel, frame);
        if (hasFocus()) painter.drawRect(rect().adjusted(2, 2, -3, -3));
        painter.rotate(-90);
        painter.drawText(QRect(-height(), 0, height(), width()), Qt::AlignCenter, text());
    }
};

/// The colours of the plot, whatever the desktop's: the panel lies beside it.
QPalette PlotColours(QPalette palette) {
    palette.setColor(QPalette::Base, ToQColor(BackgroundColour));
    palette.setColor(QPalette::Window, ToQColor(BackgroundColour));
    palette.setColor(QPalette::Text, Qt::black);
    return palette;
}

QStringList CellsOf(const ComparedResult& row, bool hasReference) {
    QStringList cells{QString::fromStdString(row.Name), QString::fromStdString(row.OfDesign)};
    if (hasReference) cells << QString::fromStdString(row.OfReference);
    return cells;
}

}  // namespace

ResultsPanel::ResultsPanel(QWidget* parent)
    : QWidget(parent), table(new QTableWidget(this)), tab(new FolderTab(this)) {
    setObjectName("ResultsPanel");
    table->setObjectName("ResultsTable");
    table->setAccessibleName("Results");
    table->horizontalHeader()->hide();
    table->verticalHeader()->hide();
    table->setShowGrid(false);
    table->setFrameShape(QFrame::NoFrame);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setPalette(PlotColours(table->palette()));
    QFont font = table->font();
    font.setPointSizeF(font.pointSizeF() * panelFontScale);
    table->setFont(font);
    const int height = table->fontMetrics().height() + rowMargin;
    table->verticalHeader()->setMinimumSectionSize(height);
    table->verticalHeader()->setDefaultSectionSize(height);
    table->horizontalHeader()->setMinimumSectionSize(1);
    table->installEventFilter(this);
    auto* const copy = new QAction("&Copy", table);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    connect(copy, &QAction::triggered, this, &ResultsPanel::Copy);
    table->addAction(copy);
    table->setContextMenuPolicy(Qt::ActionsContextMenu);
    tab->setObjectName("ResultsTab");
    tab->setText("Results");
    tab->setCheckable(true);
    tab->setToolTip("Shows the results over the schematic");
    tab->hide();
    connect(tab, &QAbstractButton::toggled, this, [this](bool shown) {
        open = shown;
        Place();
        emit Unfolded(shown);
    });
}

int ResultsPanel::TabWidth() const {
    return tab->fontMetrics().height() + 2 * tabMargin;
}

void ResultsPanel::ShowRows(const std::vector<ComparedResult>& newRows) {
    rows = newRows;
    hasReference = std::any_of(rows.begin(), rows.end(),
                               [](const ComparedResult& row) { return !row.OfReference.empty(); });
    Fill();
}

void ResultsPanel::PlaceIn(const QRect& newRoom, bool isFolded) {
    room = newRoom;
    folded = isFolded;
    Place();
}

void ResultsPanel::Place() {
    const int left = !folded ? room.left()
                     : open  ? std::max(0, room.right() + 1 - TabWidth() - LeastWidth)
                             : room.right() + 1 - TabWidth();
    setGeometry(left, room.top(), room.right() + 1 - left, room.height());
    tab->setVisible(folded);
    tab->setGeometry(width() - TabWidth(), 0, TabWidth(), height());
    table->setGeometry(TableRect());
    table->setVisible(IsOpen());
    if (folded) raise();
    Fill();
}

QRect ResultsPanel::TableRect() const {
    return {0, 0, width() - (folded ? TabWidth() : 0), height()};
}

/// As many blocks as the rows need to be seen without scrolling, if the width has room for them.
ResultsPanel::Form ResultsPanel::FormFor(QSize size) const {
    const int count = static_cast<int>(rows.size());
    Form form;
    form.Widths.assign(hasReference ? 3 : 2, columnMargin);
    for (const ComparedResult& row : rows) {
        const QStringList cells = CellsOf(row, hasReference);
        for (int k = 0; k < cells.size(); ++k) {
            const int width = table->fontMetrics().horizontalAdvance(cells[k]) + columnMargin;
            int& widest = form.Widths[static_cast<std::size_t>(k)];
            widest = std::max(widest, k == 0 ? width : std::min(width, longestValueWidth));
        }
    }
    int block = 0;
    for (const int width : form.Widths)
        block += width;
    const int seen = std::max(1, size.height() / table->verticalHeader()->defaultSectionSize());
    form.Blocks = std::clamp((count + seen - 1) / seen, 1, std::max(1, size.width() / block));
    form.Rows = std::max(std::min(count, seen), (count + form.Blocks - 1) / form.Blocks);
    // What is left over is the last column's; where nothing is, its texts end in an ellipsis, and
    // the tool tip has them whole.
    const int bar = count > seen ? table->verticalScrollBar()->sizeHint().width() : 0;
    int& last = form.Widths.back();
    if (form.Blocks == 1) last = std::max(leastValueWidth, last + size.width() - bar - block);
    return form;
}

void ResultsPanel::Fill() {
    const Form form = FormFor(TableRect().size());
    const int columns = static_cast<int>(form.Widths.size());
    table->setRowCount(form.Rows);
    table->setColumnCount(form.Blocks * columns);
    for (int k = 0; k < form.Blocks * columns; ++k)
        table->setColumnWidth(k, form.Widths[static_cast<std::size_t>(k % columns)]);
    for (int n = 0; n < form.Blocks * form.Rows; ++n) {
        const bool used = n < static_cast<int>(rows.size());
        const QStringList cells =
            used ? CellsOf(rows[static_cast<std::size_t>(n)], hasReference) : QStringList();
        for (int k = 0; k < columns; ++k) {
            const int column = n / form.Rows * columns + k;
            if (!used) {
                delete table->takeItem(n % form.Rows, column);
                continue;
            }
            if (!table->item(n % form.Rows, column))
                table->setItem(n % form.Rows, column, new QTableWidgetItem);
            QTableWidgetItem* const item = table->item(n % form.Rows, column);
            if (item->text() == cells[k]) continue;
            item->setText(cells[k]);
            item->setToolTip(cells[k]);
        }
    }
}

QString ResultsPanel::SelectedText() const {
    const int columns = hasReference ? 3 : 2;
    const bool all = table->selectedItems().isEmpty();
    QString text;
    for (int n = 0; n < static_cast<int>(rows.size()); ++n) {
        QStringList cells;
        for (int k = 0; k < columns; ++k) {
            const auto* const item =
                table->item(n % table->rowCount(), n / table->rowCount() * columns + k);
            if (item && (all || item->isSelected())) cells << item->text();
        }
        if (!cells.isEmpty()) text += cells.join('\t') + '\n';
    }
    return text;
}

void ResultsPanel::Copy() const {
    QApplication::clipboard()->setText(SelectedText());
}

/// The toolkit's own copy takes the cell of the cursor alone.
bool ResultsPanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
        Copy();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace ladderwise
