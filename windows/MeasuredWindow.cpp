// The window of the measured files.
#include "windows/MeasuredWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTableWidget>
#include <algorithm>
#include <utility>

#include "controls/HelpButton.h"
#include "controls/WindowPlacement.h"
#include "measured/CableLength.h"

namespace ladderwise {

namespace {

enum Column { NameColumn, DataColumn, NumColumns };

constexpr QSize MeasuredStartSize(600, 400);
constexpr int SwatchSize = 12;  ///< pixels of a colour beside a name
constexpr int LeastTableHeight = 90;
constexpr int CableLetters = 9;

QIcon SwatchOf(const MeasuredColour& colour) {
    QPixmap swatch(SwatchSize, SwatchSize);
    swatch.fill(QColor(colour.Red, colour.Green, colour.Blue));
    return swatch;
}

QString Text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

QPushButton* NewMeasuredButton(QWidget* parent, const char* name, const char* caption,
                               const char* tip) {
    auto* const button = new QPushButton(QString::fromLatin1(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(QString::fromLatin1(tip));
    button->setAutoDefault(false);
    return button;
}

}  // namespace

MeasuredWindow::MeasuredWindow(MeasuredActions asked, QWidget* parent)
    : QDialog(parent), actions(std::move(asked)), table(new QTableWidget(0, NumColumns, this)) {
    setObjectName("MeasuredWindow");
    setWindowTitle("Measured Data");
    setAcceptDrops(true);
    table->setObjectName("MeasuredTable");
    table->setAccessibleName("Measured files");
    table->setHorizontalHeaderLabels({"Shown file", "Data"});
    table->horizontalHeaderItem(NameColumn)->setToolTip("Only files that are checked are drawn");
    table->horizontalHeaderItem(DataColumn)->setToolTip("What the file holds");
    table->horizontalHeader()->setSectionResizeMode(NameColumn, QHeaderView::ResizeToContents);
    table->horizontalHeader()->setSectionResizeMode(DataColumn, QHeaderView::Stretch);
    table->verticalHeader()->hide();
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setTabKeyNavigation(false);
    table->setMinimumHeight(LeastTableHeight);
    auto* const column = new QGridLayout(this);
    column->addWidget(table, 0, 0);
    column->addWidget(BuildDetails(), 1, 0);
    column->addWidget(BuildButtons(), 2, 0);
    column->setRowStretch(0, 1);
    column->setRowStretch(1, 1);
    connect(table, &QTableWidget::itemChanged, this, &MeasuredWindow::TakeChecks);
    connect(table, &QTableWidget::itemSelectionChanged, this, &MeasuredWindow::ShowDetails);
    auto* const removeKey = new QShortcut(QKeySequence::Delete, table);
    removeKey->setContext(Qt::WidgetShortcut);
    connect(removeKey, &QShortcut::activated, this, &MeasuredWindow::Remove);
    resize(MeasuredStartSize.boundedTo(RoomOnScreen(this)));
    ShowDetails();
}

QLineEdit* MeasuredWindow::NewCableEdit(const char* name, const char* tip) {
    auto* const edit = new QLineEdit(details);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setToolTip(QString::fromLatin1(tip) +
                     " (one way), as a time: 150 is 150 ps, 0.15 ns the same; or as the length in "
                     "air that takes as long: 45 mm. Its effect is taken out of the traces.");
    edit->setFixedWidth(edit->fontMetrics().averageCharWidth() * 2 * CableLetters);
    return edit;
}

QWidget* MeasuredWindow::BuildDetails() {
    auto* const group = new QGroupBox("Selected file", this);
    details = group;
    auto* const grid = new QGridLayout(group);
    colour = new QComboBox(group);
    colour->setObjectName("MeasuredColour");
    colour->setToolTip("Colour of its traces");
    for (const MeasuredColour& one : MeasuredColours)
        colour->addItem(SwatchOf(one), QString::fromLatin1(one.Name));
    swapped = new QCheckBox("&Ports swapped", group);
    swapped->setObjectName("MeasuredSwapped");
    swapped->setToolTip("Port 1 of the file was at the load");
    sourceCable =
        NewCableEdit("MeasuredSourceCable", "Electrical length of the cable at the source");
    loadCable = NewCableEdit("MeasuredLoadCable", "Electrical length of the cable at the load");
    const auto label = [&](const char* caption, QWidget* buddy) {
        auto* const text = new QLabel(QString::fromLatin1(caption), group);
        text->setBuddy(buddy);
        return text;
    };
    grid->addWidget(label("Colou&r", colour), 0, 0);
    grid->addWidget(colour, 0, 1);
    grid->addWidget(swapped, 1, 0, 1, 2);
    grid->addWidget(label("Cable at &source", sourceCable), 0, 3);
    grid->addWidget(sourceCable, 0, 4);
    grid->addWidget(new QLabel("ps", group), 0, 5);
    grid->addWidget(label("Cable at &load", loadCable), 1, 3);
    grid->addWidget(loadCable, 1, 4);
    grid->addWidget(new QLabel("ps", group), 1, 5);
    grid->setColumnStretch(2, 1);
    remarks = new QPlainTextEdit(group);
    remarks->setObjectName("MeasuredRemarks");
    remarks->setAccessibleName("What was found in the file");
    remarks->setReadOnly(true);
    remarks->setTabChangesFocus(true);
    grid->addWidget(remarks, 2, 0, 1, 6);
    connect(colour, &QComboBox::activated, this, [this](int index) {
        ChangeSelected([index](MeasuredFile& file) { file.Colour = index; });
    });
    connect(swapped, &QCheckBox::clicked, this, [this](bool is) {
        ChangeSelected([is](MeasuredFile& file) { file.PortsSwapped = is; });
    });
    connect(sourceCable, &QLineEdit::editingFinished, this,
            [this] { TakeCable(sourceCable, &MeasuredFile::SourceDelay); });
    connect(loadCable, &QLineEdit::editingFinished, this,
            [this] { TakeCable(loadCable, &MeasuredFile::LoadDelay); });
    return group;
}

QWidget* MeasuredWindow::BuildButtons() {
    auto* const row = new QWidget(this);
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const add = NewMeasuredButton(row, "MeasuredAddButton", "&Add...",
                                        "Adds .s1p and .s2p files; they can be dropped here too");
    remove = NewMeasuredButton(row, "MeasuredRemoveButton", "Re&move",
                               "Takes the selected file from the list; the file itself stays");
    readAgain = NewMeasuredButton(row, "MeasuredReadAgainButton", "Read A&gain",
                                  "Reads all files anew, after another measurement");
    auto* const close =
        NewMeasuredButton(row, "MeasuredCloseButton", "&Close", "Closes this window");
    layout->addWidget(add);
    layout->addWidget(remove);
    layout->addWidget(readAgain);
    layout->addStretch(1);
    layout->addWidget(close);
    layout->addWidget(NewHelpButton(row, "MeasuredHelpButton", HelpPage::Start, "measured"));
    connect(add, &QPushButton::clicked, this, [this] { actions.Add(); });
    connect(remove, &QPushButton::clicked, this, &MeasuredWindow::Remove);
    connect(readAgain, &QPushButton::clicked, this, [this] { actions.ReadAgain(); });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    return row;
}

void MeasuredWindow::ShowFiles(const MeasuredFiles& newFiles,
                               const std::vector<MeasuredSummary>& newSummaries) {
    const QSignalBlocker quiet(table);
    const int before = Selected();
    const bool more = !files.empty() && newFiles.size() > files.size();
    files = newFiles;
    summaries = newSummaries;
    const int count = static_cast<int>(files.size());
    table->setRowCount(count);
    for (int row = 0; row < count; ++row)
        ShowRow(row);
    // What was added is what the user will look at.
    if (count > 0) table->selectRow(more ? count - 1 : std::clamp(before, 0, count - 1));
    ShowDetails();
}

void MeasuredWindow::ShowRow(int row) {
    const MeasuredFile& file = files[static_cast<std::size_t>(row)];
    const MeasuredSummary& summary = summaries[static_cast<std::size_t>(row)];
    for (int column = 0; column < NumColumns; ++column)
        if (!table->item(row, column)) table->setItem(row, column, new QTableWidgetItem);
    QTableWidgetItem* const name = table->item(row, NameColumn);
    name->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
    name->setText(Text(summary.Name));
    name->setToolTip(Text(file.Path));
    name->setIcon(SwatchOf(ColourOf(file)));
    name->setCheckState(file.Hidden ? Qt::Unchecked : Qt::Checked);
    QTableWidgetItem* const data = table->item(row, DataColumn);
    data->setText(Text(summary.Data));
    data->setToolTip(data->text());
}

int MeasuredWindow::Selected() const {
    const QList<QTableWidgetItem*> items = table->selectedItems();
    const int row = items.isEmpty() ? -1 : items.front()->row();
    return row < static_cast<int>(files.size()) ? row : -1;
}

void MeasuredWindow::ShowDetails() {
    const int row = Selected();
    details->setEnabled(row >= 0);
    remove->setEnabled(row >= 0);
    readAgain->setEnabled(!files.empty());
    const MeasuredFile file = row >= 0 ? files[static_cast<std::size_t>(row)] : MeasuredFile{};
    colour->setCurrentIndex(file.Colour);
    swapped->setChecked(file.PortsSwapped);
    const auto show = [&](QLineEdit* edit, double delay) {
        const QString text = row >= 0 ? Text(CableText(delay)) : QString();
        // Of the same file what is being typed stays.
        const QString holder = Text(file.Path) + '\n' + text;
        if (edit->property("holder") == holder) return;
        edit->setProperty("holder", holder);
        edit->setText(text);
    };
    show(sourceCable, file.SourceDelay);
    show(loadCable, file.LoadDelay);
    QStringList lines;
    if (row >= 0) {
        const MeasuredSummary& summary = summaries[static_cast<std::size_t>(row)];
        lines << (summary.IsUsable ? "On the plot: \"" + Text(summary.ShortName) + "\""
                                   : Text(summary.Data));
        for (const std::string& remark : summary.Remarks)
            lines << Text(remark);
    } else {
        lines << "Add Touchstone files (.s1p, .s2p), or drop them on the program's window.";
    }
    if (remarks->toPlainText() != lines.join('\n')) remarks->setPlainText(lines.join('\n'));
}

void MeasuredWindow::TakeChecks() {
    MeasuredFiles changed = files;
    for (std::size_t i = 0; i < changed.size(); ++i)
        changed[i].Hidden =
            table->item(static_cast<int>(i), NameColumn)->checkState() == Qt::Unchecked;
    if (changed != files) actions.Change(changed);
}

void MeasuredWindow::ChangeSelected(const std::function<void(MeasuredFile&)>& change) {
    const int row = Selected();
    if (row < 0) return;
    MeasuredFiles changed = files;
    change(changed[static_cast<std::size_t>(row)]);
    if (changed != files) actions.Change(changed);
}

/// A text that is no length gives way to what the box held.
void MeasuredWindow::TakeCable(QLineEdit* edit, double MeasuredFile::*delay) {
    if (!edit->isModified()) return;
    edit->setModified(false);
    edit->setProperty("holder", QString());
    if (const auto read = ReadCableDelay(edit->text().toStdString()))
        ChangeSelected([&](MeasuredFile& file) { file.*delay = *read; });
    ShowDetails();
}

void MeasuredWindow::Remove() {
    const int row = Selected();
    if (row < 0) return;
    MeasuredFiles changed = files;
    changed.erase(changed.begin() + row);
    actions.Change(changed);
}

void MeasuredWindow::ShowBelowPlot() {
    const QRect owner = parentWidget()->window()->frameGeometry();
    ShowOnScreen(this, owner.bottomLeft() - QPoint(0, height()));
    activateWindow();
}

}  // namespace ladderwise
