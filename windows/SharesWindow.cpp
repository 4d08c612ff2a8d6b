// The window of the shares.
#include "windows/SharesWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTableWidget>
#include <utility>

#include "controls/HelpButton.h"
#include "controls/WindowPlacement.h"

namespace ladderwise {

namespace {

struct ShareColumn {
    const char* Caption;
    std::string ShareRow::*Text;  ///< null: the designator
    const char* Tip;
};

constexpr QSize SharesStartSize(560, 360);
constexpr int LeastSharesHeight = 120;

const std::vector<ShareColumn>& ShareColumns() {
    static const std::vector<ShareColumn> columns = {
        {"Part", nullptr, "Its bar stands at its symbol while this window is open"},
        {"Value", &ShareRow::Value, "As it stands in the ladder"},
        {"Tolerance", &ShareRow::Tolerance,
         "As chosen in Part Definitions, or in the value grid's menu for a part alone"},
        {"Share", &ShareRow::Percent, "Of the variance that the tolerances cause"},
        {"1 % more", &ShareRow::PerPercent, "What a value 1 % larger does"},
        {"With a 1 % part", &ShareRow::WithOne,
         "The spread of 95 % of the boards if this part alone is one of 1 %"}};
    return columns;
}

QString CellText(const ShareRow& row, const ShareColumn& column) {
    return QString::fromStdString(column.Text ? row.*column.Text : row.Share.Designator);
}

}  // namespace

SharesWindow::SharesWindow(SharesShown onShown, QWidget* parent)
    : QDialog(parent),
      shown(std::move(onShown)),
      place(new QComboBox(this)),
      spread(new QLabel(this)),
      table(new QTableWidget(0, static_cast<int>(ShareColumns().size()), this)) {
    setObjectName("SharesWindow");
    setWindowTitle("Which Part Matters");
    place->setObjectName("SharesPlace");
    place->setToolTip("The tightest limit; without limits the -3 dB edges and Fo");
    auto* const caption = new QLabel("&Spread of", this);
    caption->setBuddy(place);
    spread->setObjectName("SharesSpread");
    spread->setWordWrap(true);
    table->setObjectName("SharesTable");
    table->setAccessibleName("Shares of the parts in the spread");
    for (int i = 0; i < table->columnCount(); ++i) {
        const ShareColumn& column = ShareColumns()[static_cast<std::size_t>(i)];
        auto* const header = new QTableWidgetItem(QString::fromLatin1(column.Caption));
        header->setToolTip(QString::fromLatin1(column.Tip));
        table->setHorizontalHeaderItem(i, header);
    }
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->hide();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setTabKeyNavigation(false);
    table->setMinimumHeight(LeastSharesHeight);
    const auto button = [this](const char* name, const char* text) {
        auto* const made = new QPushButton(QString::fromLatin1(text), this);
        made->setObjectName(QString::fromLatin1(name));
        made->setAutoDefault(false);
        return made;
    };
    auto* const copy = button("SharesCopyButton", "C&opy Table");
    copy->setToolTip("All rows, with tabs between the columns, for a spreadsheet");
    auto* const close = button("SharesCloseButton", "&Close");
    auto* const grid = new QGridLayout(this);
    grid->addWidget(caption, 0, 0);
    grid->addWidget(place, 0, 1, 1, 3);
    grid->addWidget(spread, 1, 0, 1, 4);
    grid->addWidget(table, 2, 0, 1, 4);
    grid->addWidget(copy, 3, 0);
    grid->addWidget(close, 3, 2);
    grid->addWidget(NewHelpButton(this, "SharesHelpButton", HelpPage::Start, "shares"), 3, 3);
    grid->setColumnStretch(1, 1);
    connect(place, &QComboBox::currentIndexChanged, this, &SharesWindow::ShowChosen);
    connect(copy, &QPushButton::clicked, this, &SharesWindow::CopyTable);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    auto* const copyKey = new QShortcut(QKeySequence::Copy, table);
    copyKey->setContext(Qt::WidgetShortcut);
    connect(copyKey, &QShortcut::activated, this, &SharesWindow::CopyTable);
    resize(SharesStartSize.boundedTo(RoomOnScreen(this)));
}

void SharesWindow::ShowTables(std::vector<ShareTable> newTables) {
    tables = std::move(newTables);
    const int before = std::max(0, place->currentIndex());
    {
        const QSignalBlocker quiet(place);
        place->clear();
        for (const ShareTable& one : tables)
            place->addItem(QString::fromStdString(one.Place));
        place->setCurrentIndex(std::min(before, place->count() - 1));
        place->setEnabled(place->count() > 1);
    }
    ShowChosen();
    if (tables.empty()) spread->setText("No part matters: there is no pass band to look at.");
}

void SharesWindow::ShowBesideOwner() {
    const QRect owner = parentWidget()->window()->frameGeometry();
    ShowOnScreen(this, owner.bottomRight() - QPoint(width(), height()));
}

void SharesWindow::ShowChosen() {
    static const ShareTable nothing;
    const int chosen = place->currentIndex();
    const ShareTable& one = chosen >= 0 ? tables[static_cast<std::size_t>(chosen)] : nothing;
    spread->setText(QString::fromStdString(one.Spread));
    table->setRowCount(static_cast<int>(one.Rows.size()));
    for (int row = 0; row < table->rowCount(); ++row)
        for (int i = 0; i < table->columnCount(); ++i) {
            const auto r = static_cast<std::size_t>(row), c = static_cast<std::size_t>(i);
            auto* const item = new QTableWidgetItem(CellText(one.Rows[r], ShareColumns()[c]));
            if (i > 0) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table->setItem(row, i, item);
        }
    if (shown) shown(one.Rows);
}

void SharesWindow::CopyTable() {
    QString text;
    const int count = table->columnCount();
    for (int row = -1; row < table->rowCount(); ++row)
        for (int i = 0; i < count; ++i) {
            const auto* const item = row < 0 ? table->horizontalHeaderItem(i) : table->item(row, i);
            text += item->text() + (i + 1 < count ? '\t' : '\n');
        }
    QApplication::clipboard()->setText(text);
}

void SharesWindow::hideEvent(QHideEvent* event) {
    QDialog::hideEvent(event);
    if (shown) shown({});
}

}  // namespace ladderwise
