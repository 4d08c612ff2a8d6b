// The window of the limits.
#include "windows/LimitsWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <algorithm>
#include <utility>

#include "controls/HelpButton.h"
#include "controls/WindowPlacement.h"
#include "limits/LimitTable.h"
#include "numbers/Formatfunctions.h"
#include "windows/LimitPresetPanel.h"

namespace ladderwise {

namespace {

enum LimitColumn { KindColumn, FromColumn, ToColumn, AmountColumn, UnitColumn, ResultColumn };
constexpr int NumLimitColumns = 6;
constexpr int FirstNumber = FromColumn;  ///< the columns of LimitEntry::Texts

constexpr int LimitRowMargin = 8;     ///< pixels added to a line of text
constexpr int LeastLimitTable = 110;  ///< pixels
constexpr int StartRows = 4;          ///< of the table, seen at start
/// A row as wide as they mostly are.
constexpr const char* WideRow =
    "delay variation at most  From MHz  To MHz  Value  Unit  holds by 21.77 dB at 432.5 MHz   ";
constexpr QColor FaultInk(192, 0, 0);
constexpr int DarkLightness = 128;  ///< of a ground on which that ink is too dark

/// Chooses a kind in a cell.
class LimitKindDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex&) const override {
        auto* const box = new QComboBox(parent);
        box->setAccessibleName("Kind of limit");
        for (const LimitKind kind : AllLimitKinds)
            box->addItem(QString::fromLatin1(CaptionOf(kind)));
        return box;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        static_cast<QComboBox*>(editor)->setCurrentText(index.data().toString());
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override {
        model->setData(index, static_cast<QComboBox*>(editor)->currentText());
    }
};

QPushButton* NewLimitButton(QWidget* parent, const char* name, const char* caption,
                            const char* tip) {
    auto* const button = new QPushButton(QString::fromLatin1(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(QString::fromLatin1(tip));
    button->setAutoDefault(false);
    return button;
}

/// Numbers as the system writes them.
QString Localised(std::string text) {
    QString number = QString::fromStdString(text);
    return SystemFormatSettings().DecimalSeparator == ',' ? number.replace('.', ',') : number;
}

QTableWidgetItem* NewCell(int column) {
    auto* const item = new QTableWidgetItem;
    const bool typed = column < UnitColumn;
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled |
                   (typed ? Qt::ItemIsEditable : Qt::NoItemFlags));
    if (typed && column >= FirstNumber) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return item;
}

QColor FaultInkOn(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Base).lightness() < DarkLightness;
    return dark ? FaultInk.lighter() : FaultInk;
}

}  // namespace

LimitsWindow::LimitsWindow(LimitActions asked, QWidget* parent)
    : QDialog(parent),
      actions(std::move(asked)),
      table(new QTableWidget(0, NumLimitColumns, this)),
      message(new QLabel(this)) {
    setObjectName("LimitsWindow");
    setWindowTitle("Limits");
    BuildTable();
    message->setObjectName("LimitMessage");
    message->setWordWrap(true);
    message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    presets = new LimitPresetPanel([this] { return actions.Promise(); }, this);
    connect(presets, &LimitPresetPanel::Made, this, &LimitsWindow::TakePreset);
    connect(presets, &LimitPresetPanel::Refused, this, &LimitsWindow::Say);
    auto* const column = new QGridLayout(this);
    column->addWidget(table, 0, 0);
    column->addWidget(message, 1, 0);
    column->addWidget(BuildButtons(), 2, 0);
    column->addWidget(presets, 3, 0);
    column->addWidget(BuildFileButtons(), 4, 0);
    column->setRowStretch(0, 1);
    Say({});
    const QFontMetrics metrics = table->fontMetrics();
    const int rows = StartRows * (metrics.height() + LimitRowMargin);
    const QSize start(metrics.horizontalAdvance(WideRow), sizeHint().height() + rows / 2);
    resize(start.boundedTo(RoomOnScreen(this)));
    Fill();
}

void LimitsWindow::BuildTable() {
    table->setObjectName("LimitTable");
    table->setAccessibleName("Limits");
    table->setHorizontalHeaderLabels({"Kind", "From MHz", "To MHz", "Value", "Unit", "The design"});
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->horizontalHeader()->setSectionResizeMode(ResultColumn, QHeaderView::Stretch);
    table->verticalHeader()->hide();
    const int height = table->fontMetrics().height() + LimitRowMargin;
    table->verticalHeader()->setMinimumSectionSize(height);
    table->verticalHeader()->setDefaultSectionSize(height);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTabKeyNavigation(false);
    table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                           QAbstractItemView::AnyKeyPressed);
    table->setMinimumHeight(LeastLimitTable);
    table->setItemDelegateForColumn(KindColumn, new LimitKindDelegate(table));
    table->installEventFilter(this);
    connect(table, &QTableWidget::itemChanged, this, &LimitsWindow::TakeCell);
    connect(table, &QTableWidget::itemSelectionChanged, this,
            [this] { remove->setEnabled(!SelectedRows().empty()); });
}

QWidget* LimitsWindow::BuildButtons() {
    auto* const row = new QWidget(this);
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const add = NewLimitButton(row, "LimitAddButton", "&Add Row", "A new row, to be typed");
    remove = NewLimitButton(row, "LimitRemoveButton", "Re&move", "Removes the selected rows");
    auto* const copy = NewLimitButton(row, "LimitCopyButton", "&Copy",
                                      "The selected rows, or all, as a table for a spreadsheet");
    auto* const paste = NewLimitButton(
        row, "LimitPasteButton", "&Paste",
        "Adds the rows of a copied table: kind, from and to in MHz, value in dB or ns");
    for (QPushButton* const button : {add, remove, copy, paste})
        layout->addWidget(button);
    layout->addStretch(1);
    connect(add, &QPushButton::clicked, this, &LimitsWindow::AddRow);
    connect(remove, &QPushButton::clicked, this, &LimitsWindow::RemoveRows);
    connect(copy, &QPushButton::clicked, this, &LimitsWindow::Copy);
    connect(paste, &QPushButton::clicked, this, &LimitsWindow::Paste);
    return row;
}

QWidget* LimitsWindow::BuildFileButtons() {
    auto* const row = new QWidget(this);
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const open = NewLimitButton(row, "LimitOpenButton", "Ope&n CSV...",
                                      "The limits of a file in place of those in the table");
    auto* const save = NewLimitButton(row, "LimitSaveButton", "Sa&ve CSV...",
                                      "The limits into a file, as the console program reads it");
    auto* const close = NewLimitButton(row, "LimitCloseButton", "Clo&se", "Closes this window");
    auto* const choose = NewLimitButton(
        row, "LimitChooseButton", "Which &Filter... F10",
        "Lists all filters that keep the limits, best first, in place of this window");
    layout->addWidget(choose);
    layout->addWidget(open);
    layout->addWidget(save);
    layout->addStretch(1);
    layout->addWidget(close);
    layout->addWidget(NewHelpButton(row, "LimitHelpButton", HelpPage::Start, "limits"));
    connect(open, &QPushButton::clicked, this, [this] { actions.Open(); });
    connect(save, &QPushButton::clicked, this, [this] {
        FinishEditing();
        actions.Save();
    });
    connect(choose, &QPushButton::clicked, this, [this] {
        FinishEditing();
        QDialog::close();  // the list and the plot take its place; F9 brings it back
        actions.Choose();
    });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    return row;
}

void LimitsWindow::ShowLimits(const LimitReport& judged) {
    report = judged;
    LimitLines lines;
    for (const LimitMargin& row : report.Rows)
        lines.push_back(row.Line);
    if (lines != entries.Lines()) entries.Show(lines);
    Fill();
    presets->Refresh();
}

void LimitsWindow::Fill() {
    const QSignalBlocker quiet(table);
    const int count = static_cast<int>(entries.Rows().size());
    if (table->rowCount() != count) table->setRowCount(count);
    for (int row = 0; row < count; ++row)
        FillRow(row);
    remove->setEnabled(!SelectedRows().empty());
}

/// What stays the same is not touched: a cell that is open keeps what is being typed.
void LimitsWindow::FillRow(int row) {
    const LimitEntry& entry = entries.Rows()[static_cast<std::size_t>(row)];
    const QString cells[NumLimitColumns] = {QString::fromLatin1(CaptionOf(entry.Kind)),
                                            Localised(entry.Texts[0]),
                                            Localised(entry.Texts[1]),
                                            Localised(entry.Texts[2]),
                                            QString::fromLatin1(UnitOf(entry.Kind)),
                                            ResultOf(static_cast<std::size_t>(row))};
    const LimitMargin* margin = nullptr;
    for (const LimitMargin& one : report.Rows)
        if (entry.InForce && one.Line == *entry.InForce) margin = &one;
    const bool bad = !entry.Fault.empty() || (margin && !margin->Holds());
    for (int column = 0; column < NumLimitColumns; ++column) {
        if (!table->item(row, column)) table->setItem(row, column, NewCell(column));
        QTableWidgetItem* const item = table->item(row, column);
        if (item->text() != cells[column]) item->setText(cells[column]);
        if (column != ResultColumn) continue;
        item->setToolTip(cells[column]);
        item->setForeground(bad ? QBrush(FaultInkOn(table->palette())) : table->palette().text());
    }
}

QString LimitsWindow::ResultOf(std::size_t row) const {
    const LimitEntry& entry = entries.Rows()[row];
    if (!entry.Fault.empty()) {
        const QString fault = QString::fromStdString(entry.Fault);
        return entry.InForce
                   ? fault + "; still " + QString::fromStdString(ShortTextOf(*entry.InForce))
                   : fault;
    }
    for (const LimitMargin& margin : report.Rows)
        if (margin.Line == *entry.InForce) return QString::fromStdString(TextOf(margin));
    return {};
}

void LimitsWindow::TakeCell(QTableWidgetItem* item) {
    const auto row = static_cast<std::size_t>(item->row());
    const int column = item->column();
    if (row >= entries.Rows().size() || column >= UnitColumn) return;
    bool changed = false;
    if (column == KindColumn) {
        for (const LimitKind kind : AllLimitKinds)
            if (item->text() == QLatin1String(CaptionOf(kind)))
                changed = entries.SetKind(row, kind);
    } else {
        const LimitEntry& entry = entries.Rows()[row];
        const auto which = static_cast<std::size_t>(column - FirstNumber);
        if (item->text() != Localised(entry.Texts[which]))
            changed = entries.SetText(row, which, item->text().trimmed().toStdString());
    }
    TellChange(changed);
}

/// The document answers with ShowLimits.
void LimitsWindow::TellChange(bool changed) {
    Say({});
    Fill();
    if (changed) actions.Change(entries.Lines());
}

void LimitsWindow::Say(const QString& text) {
    message->setText(text);
    message->setVisible(!text.isEmpty());
    QPalette red = palette();
    red.setColor(QPalette::WindowText, FaultInkOn(palette()));
    message->setPalette(red);
}

void LimitsWindow::FinishEditing() {
    const QModelIndex at = table->currentIndex();
    if (!at.isValid() || !table->isPersistentEditorOpen(at)) return;
    QItemSelectionModel* const selection = table->selectionModel();
    selection->setCurrentIndex({}, QItemSelectionModel::NoUpdate);  // which takes what stands there
    selection->setCurrentIndex(at, QItemSelectionModel::NoUpdate);
}

void LimitsWindow::AddRow() {
    FinishEditing();
    entries.Add();
    Say({});
    Fill();
    table->setFocus();
    table->setCurrentCell(table->rowCount() - 1, FromColumn);
    table->editItem(table->currentItem());
}

std::set<std::size_t> LimitsWindow::SelectedRows() const {
    std::set<std::size_t> selected;
    for (const QTableWidgetItem* const item : table->selectedItems())
        selected.insert(static_cast<std::size_t>(item->row()));
    return selected;
}

void LimitsWindow::RemoveRows() {
    FinishEditing();
    const std::set<std::size_t> selected = SelectedRows();
    if (selected.empty()) return;
    const LimitLines before = entries.Lines();
    entries.Remove(selected);
    table->clearSelection();
    TellChange(entries.Lines() != before);
    const int next = std::min(static_cast<int>(*selected.begin()), table->rowCount() - 1);
    if (next >= 0) table->setCurrentCell(next, FromColumn);
}

/// The selected limits, or all. What is no limit yet is not copied.
void LimitsWindow::Copy() {
    FinishEditing();
    const std::set<std::size_t> selected = SelectedRows();
    LimitLines lines;
    for (std::size_t row = 0; row < entries.Rows().size(); ++row)
        if (entries.Rows()[row].InForce && (selected.empty() || selected.contains(row)))
            lines.push_back(*entries.Rows()[row].InForce);
    QApplication::clipboard()->setText(QString::fromStdString(
        LimitTableText(lines, '\t', SystemFormatSettings().DecimalSeparator)));
}

void LimitsWindow::Paste() {
    FinishEditing();
    const std::string fault = entries.Paste(QApplication::clipboard()->text().toStdString());
    TellChange(fault.empty());
    if (!fault.empty())
        Say("What was copied is no table of limits: " + QString::fromStdString(fault));
}

void LimitsWindow::TakePreset(const LimitLines& lines, bool instead) {
    FinishEditing();
    LimitLines all = instead ? LimitLines() : entries.Lines();
    all.insert(all.end(), lines.begin(), lines.end());
    if (all.size() > MaxLimitLines) return Say("There are too many limits");
    Say({});
    if (all != entries.Lines()) actions.Change(all);
}

/// Keys of the table that its cells have no use for.
bool LimitsWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (key.matches(QKeySequence::Copy))
        Copy();
    else if (key.matches(QKeySequence::Paste))
        Paste();
    else if (key.matches(QKeySequence::Delete))
        RemoveRows();
    else if (key.key() == Qt::Key_Insert)
        AddRow();
    else
        return QDialog::eventFilter(watched, event);
    return true;
}

void LimitsWindow::ShowBesidePlot() {
    const QRect owner = parentWidget()->window()->frameGeometry();
    if (std::exchange(placed, true)) {
        show();
        raise();
    } else {
        ShowOnScreen(this, owner.bottomRight() - QPoint(width(), height()));
    }
    activateWindow();
}

}  // namespace ladderwise
