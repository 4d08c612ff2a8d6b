// Cells, their marks and what is done to them.
#include "app/ValueGrid.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QMenu>
#include <QScopedValueRollback>
#include <QWheelEvent>
#include <algorithm>

#include "controls/FittedCells.h"
#include "design/Designators.h"
#include "display/PlotPainter.h"
#include "numbers/UnitTexts.h"

namespace ladderwise {

namespace {

constexpr int GridRowHeight = 22;      ///< pixels of a row, at least
constexpr int CellMargin = 2;          ///< pixels above and below a cell's text
constexpr double GridFontScale = 0.9;  ///< of the normal font: "-15.9E-12" fits its cell
constexpr int MayBeHeldRole = BadgeRole + 1;
constexpr int ToleranceRole = MayBeHeldRole + 1;
constexpr int OwnToleranceRole = ToleranceRole + 1;
const QColor labelBackground(225, 225, 225);
const QColor editedColour(255, 208, 160);
const QColor rejectedColour(192, 192, 192);

/// Behind a value that is pointed at: lighter than light cells' text, darker than that of dark
/// ones.
QColor LitCell(const QPalette& palette) {
    constexpr int middle = 128;
    return palette.base().color().lightness() < middle ? QColor(96, 78, 16) : QColor(255, 238, 180);
}

QString PercentOf(double fraction) {
    return QString::number(fraction * 100.0) + " %";
}

/// The item of a cell, made when there is none yet.
QTableWidgetItem* ItemAt(QTableWidget* grid, int row, int column) {
    if (!grid->item(row, column)) grid->setItem(row, column, new QTableWidgetItem);
    return grid->item(row, column);
}

bool IsPartCell(const QTableWidgetItem* item) {
    return item && item->column() > 0 && !item->text().isEmpty();
}

struct GridCommand {
    FormKey Key;
    const char* Text;
};

constexpr GridCommand gridCommands[] = {
    {FormKey::F1, "&Smaller by %1 %\tF1"},
    {FormKey::F2, "&Larger by %1 %\tF2"},
    {FormKey::F3, "S&tandard Value\tF3"},
    {FormKey::F5, "Standard Value, Keep &Resonance\tF5"},
    {FormKey::F6, "Standard Values of &Both\tF6"},
    {FormKey::F4, "Next R&esponse\tF4"},
};

/// What grid and pinned headers have in common.
void Dress(QTableView* view) {
    view->horizontalHeader()->hide();
    view->verticalHeader()->hide();
    view->horizontalHeader()->setMinimumSectionSize(SchematicWidth);
    view->horizontalHeader()->setDefaultSectionSize(SchematicWidth);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setFrameShape(QFrame::NoFrame);
    view->setItemDelegate(new FittedCells(view));
}

}  // namespace

ValueGrid::ValueGrid(QWidget* parent) : QTableWidget(ValueGridRows, 1, parent) {
    setObjectName("ValueGrid");
    setAccessibleName("Part values");
    Dress(this);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setTabKeyNavigation(false);
    setMouseTracking(true);
    setContextMenuPolicy(Qt::CustomContextMenu);
    QFont cellFont = font();
    cellFont.setPointSizeF(cellFont.pointSizeF() * GridFontScale);
    // One size for all usual values; the delegate makes longer ones smaller.
    setFont(FontThatFits(cellFont, "15.9E-12", SchematicWidth - 4 * CellMargin, QWIDGETSIZE_MAX));
    QPalette beyondCells = viewport()->palette();
    beyondCells.setColor(QPalette::Base, ToQColor(BackgroundColour));
    viewport()->setPalette(beyondCells);
    BuildHeaders();
    // The colours of the plot beside it, whatever the desktop's.
    QPalette colours = palette();
    colours.setColor(QPalette::Base, Qt::white);
    colours.setColor(QPalette::Text, Qt::black);
    setPalette(colours);
    SetRowHeights();
    connect(this, &QTableWidget::itemChanged, this, [this] {
        if (!showing) emit Edited();
    });
    connect(this, &QTableWidget::cellEntered, this,
            [this](int row, int column) { emit PointedAt(column, row); });
    connect(this, &QWidget::customContextMenuRequested, this, &ValueGrid::OpenMenu);
}

void ValueGrid::BuildHeaders() {
    headers = new QTableView(this);
    headers->setObjectName("RowHeaders");
    headers->setModel(model());
    Dress(headers);
    headers->setFont(font());
    headers->setFocusPolicy(Qt::NoFocus);
    headers->setSelectionMode(QAbstractItemView::NoSelection);
    headers->setEditTriggers(QAbstractItemView::NoEditTriggers);
    headers->hide();
}

void ValueGrid::SetRowHeights() {
    const int height = std::max(GridRowHeight, fontMetrics().height() + 2 * CellMargin);
    for (QTableView* const view : {static_cast<QTableView*>(this), headers}) {
        view->verticalHeader()->setMinimumSectionSize(height);
        view->verticalHeader()->setDefaultSectionSize(height);
    }
}

int ValueGrid::RowsHeight() const {
    return shownRows * verticalHeader()->defaultSectionSize();
}

int ValueGrid::HeaderWidth() const {
    return columnViewportPosition(1) - columnViewportPosition(0);
}

void ValueGrid::KeepHeaders(int scroll) {
    const int hidden = scroll - ValueGridLeft;  // pixels of the grid left of its parent's edge
    headers->setVisible(hidden > 0);
    if (hidden > 0) headers->setGeometry(hidden, 0, HeaderWidth(), height());
}

void ValueGrid::changeEvent(QEvent* event) {
    QTableWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && headers) headers->setPalette(palette());
}

void ValueGrid::ShowLabels(const std::vector<GridColumn>& columns) {
    for (int row = 0; row < ValueGridRows; ++row) {
        QTableWidgetItem* const label = ItemAt(this, row, 0);
        label->setText(GridRowLabels[row]);
        label->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        const bool used = IsRowUsed(columns, row);
        label->setBackground(used ? labelBackground : ToQColor(BackgroundColour));
        label->setForeground(used ? QColor(Qt::black) : ToQColor(UnusedLabelColour));
    }
}

void ValueGrid::ShowRows(int rows) {
    shownRows = rows;
    for (QTableView* const view : {static_cast<QTableView*>(this), headers})
        for (int row = 0; row < ValueGridRows; ++row)
            view->setRowHidden(row, row >= rows);
}

void ValueGrid::ShowColumns(const std::vector<GridColumn>& columns) {
    const QScopedValueRollback<bool> writes(showing, true);
    setColumnCount(1 + static_cast<int>(columns.size()));
    ShowLabels(columns);
    ShowRows(RowsInUse(columns));
    for (int row = 0; row < ValueGridRows; ++row) {
        const bool used = IsRowUsed(columns, row);
        for (int column = 1; column < columnCount(); ++column) {
            const GridCell& cell = columns[column - 1][row];
            QTableWidgetItem* const item = ItemAt(this, row, column);
            const QString text = QString::fromStdString(cell.Text);
            item->setText(text);
            item->setData(Qt::UserRole, text);
            item->setToolTip(QString::fromStdString(cell.ToolTip));
            item->setData(HeldRole, cell.Held);
            item->setData(MayBeHeldRole, cell.MayBeHeld);
            item->setData(ToleranceRole, cell.Tolerance);
            item->setData(OwnToleranceRole, cell.HasOwnTolerance);
            item->setData(BadgeRole, cell.HasOwnTolerance ? PercentOf(cell.Tolerance) : QString());
            item->setBackground(cell.Edited ? QBrush(editedColour) : palette().base());
            item->setForeground(cell.Edited ? QBrush(Qt::black) : palette().text());
            MarkRejected(item, cell, {column, row});
            // A row that no element uses is blended into what lies around the grid.
            if (!used) item->setBackground(ToQColor(BackgroundColour));
            Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
            if (!text.isEmpty()) flags |= Qt::ItemIsEditable;
            item->setFlags(flags);
        }
    }
}

void ValueGrid::MarkRejected(QTableWidgetItem* item, const GridCell& cell, CellPosition at) {
    for (const RejectedCell& reject : rejected) {
        if (reject.At.Slot != at.Slot || reject.At.Row != at.Row) continue;
        item->setText(reject.Text);
        item->setData(Qt::UserRole, reject.Text);
        item->setBackground(rejectedColour);
        item->setForeground(QBrush(Qt::black));
        item->setToolTip("\"" + reject.Text +
                         "\" is no value; in use: " + QString::fromStdString(cell.ToolTip));
    }
}

std::vector<ValueGrid::TypedValue> ValueGrid::TakeTyped() {
    std::vector<TypedValue> typed;
    std::vector<RejectedCell> unreadable;
    for (int slot = 1; slot < columnCount(); ++slot)
        for (int row = 0; row < ValueGridRows; ++row)
            if (!IsReadable(item(row, slot), {slot, row}, typed))
                unreadable.push_back({{slot, row}, item(row, slot)->text()});
    rejected = unreadable;
    return typed;
}

/// Appends what was typed. False if the cell's text is no value, now or since an earlier reading.
bool ValueGrid::IsReadable(QTableWidgetItem* item, CellPosition at,
                           std::vector<TypedValue>& typed) const {
    for (const RejectedCell& reject : rejected)
        if (reject.At.Slot == at.Slot && reject.At.Row == at.Row && reject.Text == item->text())
            return false;
    // The exact value stands behind the program's own text, unless it was typed anew.
    if (item->text() == item->data(Qt::UserRole).toString()) return true;
    double value = 0.0;
    if (!TryParsePartValue(item->text().toStdString(), value)) return false;
    typed.push_back({at, value});
    return true;
}

std::string ValueGrid::RejectedText(const FilterDesign& design) const {
    std::string text;
    const auto designators = DesignatorsOf(design);
    for (const RejectedCell& reject : rejected) {
        const CircuitElement& element = design.Elements[reject.At.Slot];
        text += designators[reject.At.Slot][reject.At.Row] + ": \"" + reject.Text.toStdString() +
                "\" is no value, " + CellOf(element, reject.At.Row).ToolTip + " is used.  ";
    }
    return text;
}

CellPosition ValueGrid::SelectedCell() {
    if (currentColumn() < 1) setCurrentCell(std::max(0, currentRow()), 1);
    return {currentColumn(), currentRow()};
}

bool ValueGrid::IsEditing() const {
    return isAncestorOf(QApplication::focusWidget());
}

bool ValueGrid::TakesEnter(const QObject* target) const {
    return !IsEditing() && (target == this || target == viewport());
}

void ValueGrid::FinishEditing() {
    if (IsEditing()) setFocus();
}

void ValueGrid::Light(int slot, const std::array<bool, ValueGridRows>& rows) {
    const QScopedValueRollback<bool> writes(showing, true);
    const QColor lit = LitCell(palette());
    for (int row = 0; row < ValueGridRows; ++row) {
        QTableWidgetItem* const old = litSlot > 0 ? item(row, litSlot) : nullptr;
        if (old && old->background().color() == lit) old->setBackground(palette().base());
    }
    for (int row = 0; row < ValueGridRows; ++row) {
        QTableWidgetItem* const cell = slot > 0 ? item(row, slot) : nullptr;
        if (cell && rows[static_cast<std::size_t>(row)] && !cell->text().isEmpty() &&
            cell->background() == palette().base())
            cell->setBackground(lit);
    }
    litSlot = slot;
}

/// A turn of the wheel over a value is the key F2 or F1 on it.
void ValueGrid::wheelEvent(QWheelEvent* event) {
    const QTableWidgetItem* const cell = itemAt(event->position().toPoint());
    const int angle = event->angleDelta().y();
    if (!IsPartCell(cell) || angle == 0) return QTableWidget::wheelEvent(event);
    setCurrentCell(cell->row(), cell->column());
    emit Stepped(angle > 0 ? FormKey::F2 : FormKey::F1);
    event->accept();
}

bool ValueGrid::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave) emit PointedAt(0, -1);
    return QTableWidget::viewportEvent(event);
}

/// A tolerance of one part's own, for a better one in its place.
void ValueGrid::AddTolerances(QMenu& menu, const QTableWidgetItem* cell) {
    const double now = cell ? cell->data(ToleranceRole).toDouble() : 0.0;
    QMenu* const choices = menu.addMenu("T&olerance of This Part");
    choices->setObjectName("ToleranceMenu");
    choices->setEnabled(now > 0.0);
    if (!(now > 0.0)) return;
    const bool own = cell->data(OwnToleranceRole).toBool();
    const auto add = [&](const QString& text, double fraction, bool checked) {
        QAction* const action = choices->addAction(text, this, [this, cell, fraction] {
            emit ToleranceAsked(cell->column(), cell->row(), fraction);
        });
        action->setCheckable(true);
        action->setChecked(checked);
    };
    const char* const kind = cell->row() % 2 == 0 ? "As All &Inductors" : "As All &Capacitors";
    add(own ? QString(kind) : QString("%1 (%2)").arg(kind, PercentOf(now)), 0.0, !own);
    constexpr double offered[] = {0.1, 0.05, 0.02, 0.01, 0.005};
    for (const double fraction : offered) {
        const QString text = PercentOf(fraction);
        const bool oneDigit = text.indexOf(' ') == 1;  // which is its key
        add(oneDigit ? "&" + text : text, fraction, own && qFuzzyCompare(fraction, now));
    }
}

void ValueGrid::OpenMenu(QPoint at) {
    const QTableWidgetItem* const cell = itemAt(at);
    const bool part = IsPartCell(cell);
    QMenu menu(this);
    menu.setObjectName("ValueGridMenu");
    if (part) setCurrentCell(cell->row(), cell->column());
    for (const GridCommand& command : gridCommands) {
        QString text = QString::fromLatin1(command.Text);
        if (text.contains("%1")) text = text.arg(stepText);
        menu.addAction(text, this, [this, key = command.Key] { emit Stepped(key); })
            ->setEnabled(part);
    }
    QAction* const hold = menu.addAction("&Hold This Value", this, [this, cell](bool on) {
        emit HoldAsked(cell->column(), cell->row(), on);
    });
    hold->setCheckable(true);
    hold->setChecked(part && cell->data(HeldRole).toBool());
    hold->setEnabled(part && cell->data(MayBeHeldRole).toBool());
    hold->setToolTip("With Std LC Values: the others are chosen around it");
    AddTolerances(menu, part ? cell : nullptr);
    menu.addSeparator();
    const QString exact = part ? cell->toolTip() : QString();
    menu.addAction("&Copy Value", this, [exact] { QApplication::clipboard()->setText(exact); })
        ->setEnabled(part);
    menu.addAction("Copy &Parts Table", this, &ValueGrid::PartsTableAsked);
    menu.exec(viewport()->mapToGlobal(at));
}

}  // namespace ladderwise
