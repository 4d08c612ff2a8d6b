// The list of filters.
#include "windows/ChoicesWindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QTableWidget>
#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

#include "choosing/ChoiceTexts.h"
#include "controls/HelpButton.h"
#include "controls/WindowPlacement.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

enum ChoiceColumn {
    PictureColumn,
    FilterColumn,
    InductorColumn,
    CapacitorColumn,
    LossColumn,
    MarginColumn,
    BoardsColumn,
    CostColumn,
    PlaceColumn,
    InductancesColumn,
    CapacitancesColumn,
    TightestColumn,
    SpreadColumn,
    NumChoiceColumns
};

struct ChoiceHeader {
    const char* Caption;
    const char* Tip;
};

constexpr ChoiceHeader choiceHeaders[NumChoiceColumns] = {
    {"Response", "Attenuation over the range of the limits, which are red"},
    {"Filter", "Family, order and form"},
    {"L", "Inductors"},
    {"C", "Capacitors"},
    {"Loss dB", "The largest where attenuation is limited to a largest one"},
    {"Margin dB", "The smallest of all limits"},
    {"Boards", "Share of 1 000 boards that pass; of the twenty best alone"},
    {"Cost", "The sum of what parts and drawbacks count"},
    {"Place", "Fo and bandwidth that make the smallest margin largest"},
    {"Inductances", "Smallest and largest"},
    {"Capacitances", "Smallest and largest"},
    {"Tightest", "Where the margin is smallest"},
    {"Spread dB", "Standard deviation there by the tolerances"}};

constexpr QSize ChoicesStartSize(1180, 460);
constexpr QSize ChoicesLeastSize(760, 280);
constexpr int SixteenthsOfOwner = 6;  ///< of its owner's height at first
constexpr int StripRows = 2;          ///< of the table, while it makes room for the plot
constexpr QSize ThumbnailSize(ThumbnailPoints, 30);
constexpr double ThumbnailDepth = 80.0;  ///< dB
constexpr double ThumbnailReach = 1.2;   ///< of the limits' lowest and highest frequency
constexpr int CostLetters = 6;
constexpr double Pico = 1e-12, Nano = 1e-9;

/// An item that sorts by its number.
class NumberItem : public QTableWidgetItem {
public:
    NumberItem(const QString& text, double value) : QTableWidgetItem(text), number(value) {
        setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    bool operator<(const QTableWidgetItem& other) const override {
        const auto* const right = dynamic_cast<const NumberItem*>(&other);
        return right ? number < right->number : QTableWidgetItem::operator<(other);
    }

private:
    double number;
};

QString Fixed(double x, int digits) {
    return QString::fromStdString(FormatFixed(x, digits));
}

/// The lowest frequency above 0 and the highest of the limits, Hz.
std::pair<double, double> RangeOf(const LimitLines& limits) {
    double low = 0.0, high = 0.0;
    for (const LimitLine& line : limits)
        for (const double f : {line.From, line.To}) {
            if (f > 0.0 && (low == 0.0 || f < low)) low = f;
            high = std::max(high, f);
        }
    return {low / ThumbnailReach, high * ThumbnailReach};
}

QPixmap ThumbnailPixmap(const ChoosingRequest& request, const FilterChoice& choice, double ratio) {
    const auto [low, high] = RangeOf(request.Limits);
    QPixmap picture(ThumbnailSize * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::white);
    if (!(low > 0.0 && high > low)) return picture;
    const auto y = [](double db) {
        return std::clamp(db / ThumbnailDepth, -0.02, 1.0) * (ThumbnailSize.height() - 3) + 1.5;
    };
    const auto x = [low = low, high = high](double f) {
        return std::log(std::max(f, low) / low) / std::log(high / low) * (ThumbnailPoints - 1);
    };
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(200, 0, 0), 2));
    for (const LimitLine& line : request.Limits)
        if (line.Kind == LimitKind::AttenMin || line.Kind == LimitKind::AttenMax)
            painter.drawLine(QPointF(x(line.From) - 1, y(line.Value)),
                             QPointF(x(line.To) + 1, y(line.Value)));
    const auto trace = ThumbnailOf(request, choice, low, high);
    QPolygonF points;
    for (int i = 0; i < ThumbnailPoints; ++i)
        if (std::isfinite(trace[static_cast<std::size_t>(i)]))
            points << QPointF(i, y(trace[static_cast<std::size_t>(i)]));
    painter.setPen(QPen(QColor(30, 60, 160), 1.2));
    painter.drawPolyline(points);
    return picture;
}

/// What a list is for, beside its limits, and no row of it changes.
auto NeedOf(const DesignState& design) {
    const PartModel& parts = design.PartModel;
    return std::tuple(design.RSource, design.StdLCValues, parts.Choice, parts.IndQ, parts.IndC,
                      parts.CapR, parts.CapL, parts.CapTolerance, parts.IndTolerance);
}

QPushButton* NewChoiceButton(QWidget* parent, const char* name, const char* caption,
                             const char* tip) {
    auto* const button = new QPushButton(QString::fromLatin1(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(QString::fromLatin1(tip));
    button->setAutoDefault(false);
    return button;
}

QString FewestText(const char* where, const FewestParts& fewest) {
    if (!fewest.Inductors) return {};
    return QString("Fewest %1: %2 inductors, or %3 parts in all.  ")
        .arg(where)
        .arg(*fewest.Inductors)
        .arg(*fewest.Parts);
}

}  // namespace

ChoicesWindow::ChoicesWindow(ChoiceActions asked, QWidget* parent)
    : QDialog(parent),
      actions(std::move(asked)),
      table(new QTableWidget(0, NumChoiceColumns, this)),
      told(new QLabel(this)),
      progress(new QProgressBar(this)) {
    setObjectName("ChoicesWindow");
    setWindowTitle("Which Filter");
    BuildTable();
    told->setObjectName("ChoicesTold");
    told->setWordWrap(true);
    progress->setObjectName("ChoicesProgress");
    progress->setRange(0, 100);
    progress->hide();
    auto* const column = new QGridLayout(this);
    above = BuildNeed();
    costs = BuildCosts();
    below = BuildButtons();
    column->addWidget(above, 0, 0);
    column->addWidget(costs, 1, 0);
    column->addWidget(told, 2, 0);
    column->addWidget(progress, 3, 0);
    column->addWidget(table, 4, 0);
    column->addWidget(below, 5, 0);
    column->setRowStretch(4, 1);
    resize(ChoicesStartSize.boundedTo(RoomOnScreen(this)));
}

void ChoicesWindow::BuildTable() {
    table->setObjectName("ChoicesTable");
    table->setAccessibleName("Filters that keep the limits");
    for (int i = 0; i < NumChoiceColumns; ++i) {
        auto* const header = new QTableWidgetItem(QString::fromLatin1(choiceHeaders[i].Caption));
        header->setToolTip(QString::fromLatin1(choiceHeaders[i].Tip));
        table->setHorizontalHeaderItem(i, header);
    }
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(ThumbnailSize.height() + 4);
    table->setIconSize(ThumbnailSize);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->installEventFilter(this);
    connect(table, &QTableWidget::cellDoubleClicked, this, &ChoicesWindow::TakeSelected);
    connect(table, &QTableWidget::itemSelectionChanged, this, [this] {
        take->setEnabled(Selected() != nullptr);
        if (comparing) ShowCompared();
    });
}

QWidget* ChoicesWindow::BuildNeed() {
    auto* const row = new QWidget(this);
    auto* const grid = new QGridLayout(row);
    grid->setContentsMargins(0, 0, 0, 0);
    need = new QLabel(row);
    need->setObjectName("ChoicesNeed");
    counts = new QComboBox(row);
    counts->setObjectName("ChoicesCounts");
    counts->setToolTip(
        "The ladder that is judged. Standard values are the nearest for each part: once a filter "
        "is "
        "taken, Part Definitions can choose them together.");
    counts->addItems({"parts as they are set", "ideal parts", "the part model in hand",
                      "nearest standard values"});
    auto* const caption = new QLabel("Count &with", row);
    caption->setBuddy(counts);
    folded = new QCheckBox("Show &dominated rows too", row);
    folded->setObjectName("ChoicesFolded");
    folded->setToolTip("Rows than which another one is as good in everything, and better in some");
    auto* const weigh = new QCheckBox("Show wei&ghts", row);
    weigh->setObjectName("ChoicesWeigh");
    weigh->setToolTip("What parts, losses and values outside the practical ranges cost");
    int place = 0;
    for (QWidget* const one : std::initializer_list<QWidget*>{need, caption, counts, folded, weigh})
        grid->addWidget(one, 0, place++);
    grid->setColumnStretch(0, 1);
    connect(weigh, &QCheckBox::toggled, this, [this](bool on) { costs->setVisible(on); });
    connect(counts, &QComboBox::activated, this, &ChoicesWindow::Search);
    connect(folded, &QCheckBox::toggled, this, [this](bool on) {
        if (on && list.NotMade > 0)
            Search();
        else
            ShowList();
    });
    return row;
}

QLineEdit* ChoicesWindow::NewCostEdit(QWidget* group, const char* name, const char* tip,
                                      double value) {
    auto* const edit = new QLineEdit(QString::fromStdString(FormatPlain(value, 6)), group);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setToolTip(QString::fromLatin1(tip));
    edit->setAccessibleName(QString::fromLatin1(tip));
    edit->setFixedWidth(edit->fontMetrics().averageCharWidth() * 2 * CostLetters);
    connect(edit, &QLineEdit::editingFinished, this, [this, edit] {
        if (edit->isModified()) Search();
        edit->setModified(false);
    });
    return edit;
}

QWidget* ChoicesWindow::BuildCosts() {
    auto* const group = new QGroupBox("What counts how much (a capacitor counts 1)", this);
    auto* const row = new QHBoxLayout(group);
    const CostWeights weights;
    const auto edit = [&](const char* caption, const char* name, const char* tip, double value) {
        auto* const label = new QLabel(QString::fromLatin1(caption), group);
        QLineEdit* const made = NewCostEdit(group, name, tip, value);
        if (label->text().contains('&')) label->setBuddy(made);
        row->addWidget(label);
        row->addWidget(made);
        return made;
    };
    inductorCost = edit("&Inductor", "InductorCost", "What an inductor counts", weights.Inductor);
    lossCost = edit("a d&B of loss", "LossCost", "What a dB of loss counts", weights.PerDbOfLoss);
    impracticalCost = edit("a value &outside", "ImpracticalCost",
                           "What a value outside the practical ranges counts", weights.Impractical);
    leastC = edit("of", "LeastC", "Smallest practical capacitance, pF",
                  weights.PracticalC.Smallest / Pico);
    mostC =
        edit("to", "MostC", "Largest practical capacitance, pF", weights.PracticalC.Largest / Pico);
    leastL = edit("pF,", "LeastL", "Smallest practical inductance, nH",
                  weights.PracticalL.Smallest / Nano);
    mostL =
        edit("to", "MostL", "Largest practical inductance, nH", weights.PracticalL.Largest / Nano);
    row->addWidget(new QLabel("nH", group));
    row->addStretch(1);
    group->hide();
    return group;
}

QWidget* ChoicesWindow::BuildButtons() {
    auto* const row = new QWidget(this);
    auto* const box = new QHBoxLayout(row);
    box->setContentsMargins(0, 0, 0, 0);
    take = NewChoiceButton(row, "ChoicesTake", "&Take",
                           "Makes the row the design (a double click too); undo takes it back");
    auto* const search =
        NewChoiceButton(row, "ChoicesSearch", "&Search Again",
                        "For the limits, resistances and parts of the design as it is now");
    auto* const copy =
        NewChoiceButton(row, "ChoicesCopy", "Cop&y Table", "All rows that are shown");
    auto* const close = NewChoiceButton(row, "ChoicesClose", "&Close", "");
    box->addWidget(take);
    box->addWidget(new QLabel("Space, held: compare", row));
    box->addStretch(1);
    for (QWidget* const one : std::initializer_list<QWidget*>{
             search, copy, close, NewHelpButton(row, "ChoicesHelp", HelpPage::Start, "choosing")})
        box->addWidget(one);
    take->setEnabled(false);
    connect(take, &QPushButton::clicked, this, &ChoicesWindow::TakeSelected);
    connect(search, &QPushButton::clicked, this, &ChoicesWindow::Search);
    connect(copy, &QPushButton::clicked, this, &ChoicesWindow::CopyTable);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    return row;
}

void ChoicesWindow::Open() {
    const QRect owner = parentWidget()->window()->frameGeometry();
    if (!testAttribute(Qt::WA_Moved)) TakeStartSize();
    if (!isVisible()) ShowOnScreen(this, owner.bottomLeft() - QPoint(0, height()));
    raise();
    activateWindow();
    table->setFocus();
    Search();
}

void ChoicesWindow::TakeStartSize() {
    const int height = parentWidget()->window()->height() * SixteenthsOfOwner / 16;
    const QSize most = ChoicesStartSize.boundedTo(RoomOnScreen(this));
    resize(QSize(most.width(), height).expandedTo(ChoicesLeastSize).boundedTo(most));
}

/// What stands in the boxes and is no number from 0 on is put back.
void ChoicesWindow::ReadCosts() {
    CostWeights& weights = request.Weights;
    const auto read = [](QLineEdit* edit, double unit, double& value) {
        double typed = 0.0;
        const bool taken = TryParseDouble(edit->text().toStdString(), typed) &&
                           std::isfinite(typed) && typed >= 0.0;
        if (taken) value = typed * unit;
        if (!taken) edit->setText(QString::fromStdString(FormatPlain(value / unit, 6)));
    };
    read(inductorCost, 1.0, weights.Inductor);
    read(lossCost, 1.0, weights.PerDbOfLoss);
    read(impracticalCost, 1.0, weights.Impractical);
    read(leastC, Pico, weights.PracticalC.Smallest);
    read(mostC, Pico, weights.PracticalC.Largest);
    read(leastL, Nano, weights.PracticalL.Smallest);
    read(mostL, Nano, weights.PracticalL.Largest);
}

void ChoicesWindow::Search() {
    const CostWeights weights = request.Weights;
    request = actions.Request();
    request.Weights = weights;
    request.Only = static_cast<WhatCounts>(counts->currentIndex());
    request.DominatedRows = folded->isChecked();
    following = outdated = false;
    ReadCosts();
    progress->setValue(0);
    progress->show();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    list = ChooseFilters(request, memory, [this](double done) {
        progress->setValue(static_cast<int>(100.0 * done));
        progress->repaint();
        return true;
    });
    lastWhole = list;
    QApplication::restoreOverrideCursor();
    progress->hide();
    ShowList();
}

void ChoicesWindow::ShowCounts() {
    const std::size_t count = request.Limits.size();
    need->setText(count == 1 ? QString("1 limit") : QString("%1 limits").arg(count));
    if (count == 0)
        return told->setText(
            "Without limits every filter does. Say in the window Limits what the filter must do.");
    if (outdated)
        return told->setText(
            "The list is of other parts, or of another source, than the design has now. "
            "Search Again makes it anew.");
    if (following && misses)
        return told->setText(
            "None of the filters that came near meets the limits as they are now. "
            "Release the mouse button to search all.");
    if (following)
        return told->setText(
            "While the limit moves: the filters of the last list, and those that "
            "came near. Release the mouse button to search all.");
    if (misses && list.NearestMisses.empty())
        return told->setText("No filter meets the limits, and none comes near.");
    if (misses)
        return told->setText(
            "No filter meets the limits. These come nearest; a column says what has to yield.");
    told->setText(FewestText("at your load", list.AtUsersLoad) +
                  FewestText("at another load", list.AtOtherLoad) +
                  QString("%1 filters tried.").arg(list.Candidates));
}

void ChoicesWindow::ShowList() {
    misses = list.Choices.empty();
    const std::vector<FilterChoice>& rows = misses ? list.NearestMisses : list.Choices;
    ShowCounts();
    table->setUpdatesEnabled(false);
    table->setSortingEnabled(false);
    table->setRowCount(0);
    table->horizontalHeaderItem(CostColumn)->setText(misses ? "To be relaxed" : "Cost");
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (!rows[i].Folded || folded->isChecked()) {
            table->insertRow(table->rowCount());
            FillChoiceRow(table->rowCount() - 1, i);
        }
    table->setSortingEnabled(true);
    if (!misses) table->sortByColumn(CostColumn, Qt::AscendingOrder);
    if (table->rowCount() > 0) table->selectRow(0);
    table->setUpdatesEnabled(true);
    take->setEnabled(Selected() != nullptr);
}

void ChoicesWindow::FillChoiceRow(int row, std::size_t choice) {
    const FilterChoice& one = (misses ? list.NearestMisses : list.Choices)[choice];
    const auto put = [&](int column, QTableWidgetItem* item) { table->setItem(row, column, item); };
    const auto text = [&](int column, const std::string& of) {
        put(column, new QTableWidgetItem(QString::fromStdString(of)));
    };
    const auto number = [&](int column, const QString& of, double value) {
        put(column, new NumberItem(of, value));
    };
    auto* const picture = new QTableWidgetItem;
    picture->setIcon(QIcon(ThumbnailPixmap(request, one, devicePixelRatioF())));
    picture->setData(Qt::UserRole, static_cast<int>(choice));
    put(PictureColumn, picture);
    text(FilterColumn, NameOf(one));
    text(PlaceColumn, PlaceOf(one));
    number(InductorColumn, QString::number(one.Parts.Inductors), one.Parts.Inductors);
    number(CapacitorColumn, QString::number(one.Parts.Capacitors), one.Parts.Capacitors);
    number(InductancesColumn, QString::fromStdString(RangeText(one.Inductors, "H")),
           one.Inductors.Smallest);
    number(CapacitancesColumn, QString::fromStdString(RangeText(one.Capacitors, "F")),
           one.Capacitors.Smallest);
    number(LossColumn, one.LossDb ? Fixed(*one.LossDb, 2) : "-", one.LossDb.value_or(0.0));
    number(MarginColumn, Fixed(one.MarginDb, 2), one.MarginDb);
    number(TightestColumn, QString::fromStdString(FormatWithPrefix(one.TightestHz, 3, "Hz")),
           one.TightestHz);
    number(SpreadColumn, Fixed(one.SpreadDb, 2), one.SpreadDb);
    number(BoardsColumn, one.PassingShare ? Fixed(100.0 * *one.PassingShare, 1) + " %" : "-",
           one.PassingShare.value_or(-1.0));
    if (misses)
        text(CostColumn, RelaxText(one));
    else
        number(CostColumn, Fixed(one.Cost, 2), one.Cost);
}

const FilterChoice* ChoicesWindow::Selected() const {
    const int row = table->currentRow();
    if (row < 0 || !table->item(row, PictureColumn)) return nullptr;
    const auto choice =
        static_cast<std::size_t>(table->item(row, PictureColumn)->data(Qt::UserRole).toInt());
    const std::vector<FilterChoice>& rows = misses ? list.NearestMisses : list.Choices;
    return choice < rows.size() ? &rows[choice] : nullptr;
}

void ChoicesWindow::TakeSelected() {
    const FilterChoice* const choice = Selected();
    if (!choice) return;
    CompareSelected(false);
    actions.Take(InputsOf(request, *choice));
}

void ChoicesWindow::CompareSelected(bool on) {
    if (on == comparing) return;
    if (on && !Selected()) return;
    comparing = on;
    if (!on) {
        StepBack();
        return actions.Compare(nullptr);
    }
    StepAside();
    ShowCompared();
}

void ChoicesWindow::ShowCompared() {
    const FilterChoice* const choice = Selected();
    if (!choice) return;
    const DesignInputs inputs = InputsOf(request, *choice);
    actions.Compare(&inputs);
}

void ChoicesWindow::StepAside() {
    if (!frameGeometry().intersects(parentWidget()->window()->frameGeometry())) return;
    whole = geometry();
    for (QWidget* const one : std::initializer_list<QWidget*>{above, costs, told, below})
        one->hide();
    const int rows = StripRows * table->verticalHeader()->defaultSectionSize();
    const QMargins margins = layout()->contentsMargins();
    const int height = table->horizontalHeader()->height() + rows + 2 * table->frameWidth() +
                       margins.top() + margins.bottom() +
                       table->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    layout()->activate();
    setGeometry(whole.left(), whole.bottom() + 1 - height, whole.width(), height);
    table->scrollToItem(table->currentItem(), QAbstractItemView::PositionAtTop);
}

void ChoicesWindow::StepBack() {
    if (whole.isNull()) return;
    for (QWidget* const one : std::initializer_list<QWidget*>{above, told, below})
        one->show();
    costs->setVisible(findChild<QCheckBox*>("ChoicesWeigh")->isChecked());
    setGeometry(std::exchange(whole, {}));
    table->scrollToItem(table->currentItem());
}

void ChoicesWindow::NoteDesign() {
    if (!isVisible() || comparing) return;
    const ChoosingRequest now = actions.Request();
    if (now.Limits != request.Limits || following) return Search();
    outdated = NeedOf(now.Present) != NeedOf(request.Present);
    ShowCounts();
}

void ChoicesWindow::FollowLimits(const LimitLines& limits) {
    if (!isVisible() || comparing || limits == request.Limits) return;
    following = true;
    request.Limits = limits;
    if (lastWhole.Choices.empty() && lastWhole.NearestMisses.empty()) return;
    list = ReviseChoices(request, lastWhole, memory);
    ShowList();
}

void ChoicesWindow::CopyTable() {
    QString text;
    for (int row = -1; row < table->rowCount(); ++row)
        for (int i = FilterColumn; i < NumChoiceColumns; ++i) {
            const auto* const item = row < 0 ? table->horizontalHeaderItem(i) : table->item(row, i);
            text += item->text() + (i + 1 < NumChoiceColumns ? '\t' : '\n');
        }
    QApplication::clipboard()->setText(text);
}

/// Space, held, compares; Return takes.
bool ChoicesWindow::eventFilter(QObject* watched, QEvent* event) {
    const bool press = event->type() == QEvent::KeyPress;
    if (press || event->type() == QEvent::KeyRelease) {
        const auto* const key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Space) {
            if (!key->isAutoRepeat()) CompareSelected(press);
            return true;
        }
        if (press && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)) {
            TakeSelected();
            return true;
        }
    }
    if (event->type() == QEvent::FocusOut) CompareSelected(false);
    return QDialog::eventFilter(watched, event);
}

void ChoicesWindow::hideEvent(QHideEvent* event) {
    CompareSelected(false);
    QDialog::hideEvent(event);
}

}  // namespace ladderwise
