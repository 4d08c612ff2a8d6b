// The math-error window.
#include "windows/MathErrWindow.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "controls/WindowPlacement.h"
#include "numbers/Matherrmain.h"

namespace ladderwise {

namespace {
constexpr QSize StartSize(560, 360);
}

MathErrWindow::MathErrWindow(QWidget* parent) : QDialog(parent) {
    setObjectName("MathErrForm");
    setWindowTitle("Math Err");
    auto* const request = new QLabel(
        "Please save the circuit file and send it in, so that the problem can be replicated.",
        this);
    request->setObjectName("RequestLabel");
    request->setWordWrap(true);
    memo = new QPlainTextEdit(this);
    memo->setObjectName("MathErrMemo");
    memo->setReadOnly(true);
    memo->setUndoRedoEnabled(false);
    memo->setLineWrapMode(QPlainTextEdit::NoWrap);
    memo->setPlaceholderText("No math errors in this run of the program.");
    memo->setAccessibleName("Math errors");
    auto* const close = new QPushButton("&Close", this);
    close->setObjectName("Button1");
    close->setDefault(true);
    close->setToolTip("Closes this window");
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(request);
    column->addWidget(memo, 1);
    column->addWidget(close, 0, Qt::AlignRight);
    resize(StartSize.boundedTo(RoomOnScreen(this)));
}

void MathErrWindow::ShowLog() {
    show();
    raise();
    activateWindow();
    Refresh();
}

void MathErrWindow::Refresh() {
    const MathErrorLog& log = MathErrors();
    if (!isVisible() || log.ErrorCount() == shownErrors) return;
    // Once old lines give way the whole text moves.
    const bool full = 2 * log.ErrorCount() > MathErrorLog::LargestLineCount;
    QStringList lines;
    for (const std::string& line : log.Lines(full ? 0 : shownErrors))
        lines << QString::fromStdString(line);
    if (full)
        memo->setPlainText(lines.join('\n'));
    else
        memo->appendPlainText(lines.join('\n'));
    memo->moveCursor(QTextCursor::End);
    memo->moveCursor(QTextCursor::StartOfLine);
    shownErrors = log.ErrorCount();
}

}  // namespace ladderwise
