// The reading of a board.
#include "windows/BoardWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTableWidget>
#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/HelpButton.h"
#include "controls/WindowPlacement.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

enum BoardColumn {
    BoardPartColumn,
    BoardNominalColumn,
    BoardActualColumn,
    BoardDeviationColumn,
    BoardIntervalColumn,
    BoardQColumn,
    NumBoardColumns
};

enum TurnColumn {
    TurnPartColumn,
    TurnChangeColumn,
    TurnGainColumn,
    TurnTextColumn,
    NumTurnColumns
};

constexpr QSize BoardStartSize(620, 440);
constexpr int BoardValueDigits = 3;
constexpr int BoardTuningDigits = 5;  ///< of a resonance
constexpr double BoardKilohertz = 1e3;
constexpr int BoardRowPadding = 6;
constexpr int SettleMs = 400;  ///< an analyser's program writes a file in pieces
constexpr int LeastTurnsHeight = 70;

constexpr const char* BoardNotTold = "undetermined";

QPushButton* NewBoardButton(QWidget* parent, const char* name, const char* caption,
                            const char* tip) {
    auto* const button = new QPushButton(QString::fromLatin1(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(QString::fromLatin1(tip));
    button->setAutoDefault(false);
    return button;
}

QString WithSign(double x, int digits) {
    return (x < 0.0 ? "-" : "+") + QString::fromStdString(FormatFixed(std::abs(x), digits));
}

QString ValueText(double value, ValueKind kind) {
    return QString::fromStdString(FormatWithPrefix(value, BoardValueDigits, UnitOf(kind)));
}

void PrepareTable(QTableWidget* table, const char* name, const char* what,
                  const QStringList& headers) {
    table->setObjectName(QString::fromLatin1(name));
    table->setAccessibleName(QString::fromLatin1(what));
    table->setHorizontalHeaderLabels(headers);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + BoardRowPadding);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTabKeyNavigation(false);
}

void PutCell(QTableWidget* table, int row, int column, const QString& text) {
    auto* const item = new QTableWidgetItem(text);
    item->setToolTip(text);
    table->setItem(row, column, item);
}

}  // namespace

BoardWindow::BoardWindow(BoardActions asked, QWidget* parent)
    : QDialog(parent),
      actions(std::move(asked)),
      told(new QLabel(this)),
      progress(new QProgressBar(this)),
      parts(new QTableWidget(0, NumBoardColumns, this)),
      next(new QTableWidget(0, NumTurnColumns, this)) {
    setObjectName("BoardWindow");
    setWindowTitle("Read the Board");
    told->setObjectName("BoardTold");
    told->setWordWrap(true);
    progress->setObjectName("BoardProgress");
    progress->setRange(0, 100);
    progress->hide();
    BuildTables();
    auto* const nextCaption =
        new QLabel("What to turn, best first; the next step is drawn dashed", this);
    auto* const column = new QGridLayout(this);
    column->addWidget(BuildChoices(), 0, 0);
    column->addWidget(told, 1, 0);
    column->addWidget(progress, 2, 0);
    column->addWidget(parts, 3, 0);
    column->addWidget(nextCaption, 4, 0);
    column->addWidget(next, 5, 0);
    column->addWidget(BuildButtons(), 6, 0);
    column->setRowStretch(3, 2);
    column->setRowStretch(5, 1);
    settled.setSingleShot(true);
    settled.setInterval(SettleMs);
    connect(&watcher, &QFileSystemWatcher::fileChanged, &settled, qOverload<>(&QTimer::start));
    connect(&settled, &QTimer::timeout, this, [this] {
        if (isVisible()) Read();
    });
    resize(BoardStartSize.boundedTo(RoomOnScreen(this)));
    Forget({});
}

void BoardWindow::BuildTables() {
    PrepareTable(parts, "BoardParts", "Actual values of the parts",
                 {"Part", "Nominal", "Actual", "Deviation", "95 % interval", "Q"});
    PrepareTable(next, "BoardNext", "What to turn", {"Part", "Change", "Gain", "What to do"});
    next->setMinimumHeight(LeastTurnsHeight);
}

QWidget* BoardWindow::BuildChoices() {
    auto* const row = new QWidget(this);
    auto* const box = new QHBoxLayout(row);
    box->setContentsMargins(0, 0, 0, 0);
    const auto choice = [&](const char* caption, const char* name, const char* tip) {
        auto* const label = new QLabel(QString::fromLatin1(caption), row);
        auto* const made = new QComboBox(row);
        made->setObjectName(QString::fromLatin1(name));
        made->setToolTip(QString::fromLatin1(tip));
        label->setBuddy(made);
        box->addWidget(label);
        box->addWidget(made);
        return made;
    };
    file = choice("Measured &file", "BoardFile",
                  "One of the measured data; it is read again whenever it is written anew");
    auto* const add = NewBoardButton(row, "BoardAddButton", "&Add...",
                                     "Adds a .s2p file to the measured data, and reads it");
    box->addWidget(add);
    connect(add, &QPushButton::clicked, this, &BoardWindow::AddFile);
    turned = choice("Can be &turned", "BoardTurned", "What you can adjust");
    turned->addItems({"coils", "capacitors", "any part"});
    turned->setCurrentIndex(static_cast<int>(Adjustable::Any));
    box->addStretch(1);
    connect(file, &QComboBox::activated, this, &BoardWindow::Read);
    connect(turned, &QComboBox::activated, this, &BoardWindow::Read);
    return row;
}

QWidget* BoardWindow::BuildButtons() {
    auto* const row = new QWidget(this);
    auto* const box = new QHBoxLayout(row);
    box->setContentsMargins(0, 0, 0, 0);
    auto* const again = NewBoardButton(row, "BoardReadButton", "&Read Again",
                                       "Reads the file from the disk, for the design as it is now");
    putIntoGrid = NewBoardButton(row, "BoardPutButton", "&Put into the Grid",
                                 "The ladder as measured, as values edited by hand");
    copy = NewBoardButton(row, "BoardCopyButton", "C&opy Table", "The parts");
    auto* const close = NewBoardButton(row, "BoardCloseButton", "&Close", "Closes this window");
    for (QWidget* const one : std::initializer_list<QWidget*>{again, putIntoGrid, copy})
        box->addWidget(one);
    box->addStretch(1);
    box->addWidget(close);
    box->addWidget(NewHelpButton(row, "BoardHelpButton", HelpPage::Start, "board"));
    connect(again, &QPushButton::clicked, this, &BoardWindow::Read);
    connect(copy, &QPushButton::clicked, this, &BoardWindow::CopyTable);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    connect(putIntoGrid, &QPushButton::clicked, this, [this] {
        if (!reading) return;
        const QScopedValueRollback<bool> own(busy, true);
        actions.PutIntoGrid(*reading);
    });
    return row;
}

void BoardWindow::ListFiles() {
    const QString chosen = file->currentText();
    files = actions.Files();
    file->clear();
    for (const BoardFile& one : files)
        file->addItem(QString::fromStdString(one.Name));
    file->setCurrentIndex(std::max(files.empty() ? -1 : 0, file->findText(chosen)));
    file->setEnabled(!files.empty());
}

/// Reads what was added; if nothing was, all stays.
void BoardWindow::AddFile() {
    const std::size_t before = actions.Files().size();
    {
        const QScopedValueRollback<bool> own(busy, true);
        actions.Add();
    }
    ListFiles();
    if (files.size() <= before) return;
    file->setCurrentIndex(static_cast<int>(files.size()) - 1);
    Read();
}

void BoardWindow::Open() {
    if (!isVisible()) {
        const QRect owner = parentWidget()->window()->frameGeometry();
        ShowOnScreen(this, owner.bottomRight() - QPoint(width(), height()));
    }
    raise();
    activateWindow();
    Read();
}

void BoardWindow::Read() {
    if (busy) return;
    ListFiles();
    if (!watcher.files().isEmpty()) watcher.removePaths(watcher.files());
    if (files.empty())
        return Forget("There is no measured file yet. Add one with two ports (.s2p).");
    const std::string& path = files[static_cast<std::size_t>(file->currentIndex())].Path;
    watcher.addPath(QString::fromStdString(path));
    const QScopedValueRollback<bool> own(busy, true);
    actions.ShowNext(nullptr);
    progress->setValue(0);
    progress->show();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    reading =
        actions.Read(path, static_cast<Adjustable>(turned->currentIndex()), [this](double done) {
            progress->setValue(static_cast<int>(100.0 * done));
            progress->repaint();
        });
    QApplication::restoreOverrideCursor();
    progress->hide();
    if (!reading) return Forget("The file could not be read.");
    ShowReading();
    actions.ShowNext(reading->Next.empty() ? nullptr : &*reading);
}

void BoardWindow::ShowReading() {
    QString text = QString::fromStdString(reading->Text);
    if (!text.isEmpty()) text[0] = text[0].toUpper();
    if (reading->Understood) {
        text += QString(". The ladder fits to %1 dB")
                    .arg(QString::fromStdString(FormatPlain(reading->ResidualDb, 3)));
        if (reading->Q)
            text += ", coils of Q " + QString::fromStdString(FormatFixed(*reading->Q, 0));
        text += ".";
    } else {
        text += QString(". The largest difference is at %1.")
                    .arg(QString::fromStdString(
                        FormatWithPrefix(reading->ResidualAt, BoardValueDigits, "Hz")));
    }
    told->setText(text);
    FillParts();
    AddResonators();
    FillNext();
    const bool any = !reading->Parts.empty();
    putIntoGrid->setEnabled(any);
    copy->setEnabled(any);
}

void BoardWindow::FillParts() {
    parts->setRowCount(static_cast<int>(reading->Parts.size()));
    for (int row = 0; row < parts->rowCount(); ++row) {
        const BoardPart& part = reading->Parts[static_cast<std::size_t>(row)];
        const Estimate& value = part.Value;
        const bool known = !value.Undetermined;
        PutCell(parts, row, BoardPartColumn, QString::fromStdString(part.Designator));
        PutCell(parts, row, BoardNominalColumn, ValueText(part.Nominal, part.Kind));
        PutCell(parts, row, BoardActualColumn,
                known ? ValueText(value.Actual, part.Kind) : QString(BoardNotTold));
        PutCell(parts, row, BoardDeviationColumn,
                known ? WithSign(100.0 * part.Deviation(), 2) + " %" : QString());
        PutCell(parts, row, BoardIntervalColumn,
                known ? ValueText(value.Low, part.Kind) + " to " + ValueText(value.High, part.Kind)
                      : QString());
        PutCell(parts, row, BoardQColumn,
                part.Q ? QString::fromStdString(FormatFixed(*part.Q, 0)) : QString());
    }
}

/// Below the parts: each coil with the capacitor that it resonates with, off by so many kHz. Of
/// narrow bands the data often tell these alone.
void BoardWindow::AddResonators() {
    for (const BoardResonator& tank : reading->Resonators) {
        const int row = parts->rowCount();
        const Estimate& tuning = tank.Tuning;
        const bool known = !tuning.Undetermined;
        const auto hz = [](double f) {
            return QString::fromStdString(FormatWithPrefix(f, BoardTuningDigits, "Hz"));
        };
        const auto off = [&tank](double f) {
            return WithSign((f - tank.Nominal) / BoardKilohertz, 1);
        };
        parts->insertRow(row);
        PutCell(parts, row, BoardPartColumn, QString::fromStdString(tank.Name));
        PutCell(parts, row, BoardNominalColumn, hz(tank.Nominal));
        PutCell(parts, row, BoardActualColumn, known ? hz(tuning.Actual) : QString(BoardNotTold));
        PutCell(parts, row, BoardDeviationColumn, known ? off(tuning.Actual) + " kHz" : QString());
        PutCell(parts, row, BoardIntervalColumn,
                known ? off(tuning.Low) + " to " + off(tuning.High) + " kHz" : QString());
        PutCell(parts, row, BoardQColumn, QString());
    }
}

void BoardWindow::FillNext() {
    next->setRowCount(static_cast<int>(reading->Next.size()));
    for (int row = 0; row < next->rowCount(); ++row) {
        const BoardTurn& turn = reading->Next[static_cast<std::size_t>(row)];
        PutCell(next, row, TurnPartColumn, QString::fromStdString(turn.Designator));
        PutCell(next, row, TurnChangeColumn, WithSign(100.0 * turn.Change, 1) + " %");
        PutCell(next, row, TurnGainColumn,
                QString::fromStdString(FormatFixed(turn.Gain, 2)) + " dB");
        PutCell(next, row, TurnTextColumn, QString::fromStdString(turn.Text));
    }
    next->resizeRowsToContents();
}

void BoardWindow::Forget(const QString& why) {
    reading.reset();
    told->setText(why);
    parts->setRowCount(0);
    next->setRowCount(0);
    putIntoGrid->setEnabled(false);
    copy->setEnabled(false);
    actions.ShowNext(nullptr);
}

void BoardWindow::NoteDesign() {
    if (busy || !isVisible() || !reading) return;
    const QScopedValueRollback<bool> own(busy, true);
    Forget("The design has changed since the board was read. Read Again reads it for this one.");
}

void BoardWindow::CopyTable() {
    QString text;
    for (int row = -1; row < parts->rowCount(); ++row)
        for (int i = 0; i < NumBoardColumns; ++i) {
            const auto* const item = row < 0 ? parts->horizontalHeaderItem(i) : parts->item(row, i);
            text += item->text() + (i + 1 < NumBoardColumns ? '\t' : '\n');
        }
    QApplication::clipboard()->setText(text);
}

void BoardWindow::hideEvent(QHideEvent* event) {
    QDialog::hideEvent(event);
    if (busy) return;
    const QScopedValueRollback<bool> own(busy, true);
    actions.ShowNext(nullptr);
}

}  // namespace ladderwise
