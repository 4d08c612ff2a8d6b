// The options window.
#include "windows/OptionsWindow.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace ladderwise {

namespace {

constexpr int TextWidth = 330;  ///< pixels of the explaining text

QPushButton* AddButton(QWidget* parent, const char* name, const char* caption, const char* tip) {
    auto* const button = new QPushButton(QString::fromLatin1(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(QString::fromLatin1(tip));
    // As in the main window: a click must not have a box read twice.
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

}  // namespace

OptionsWindow::OptionsWindow(DesignInputs& inputs, const InputActions& actions, QWidget* parent)
    : QDialog(parent, Qt::Tool), binder(inputs, actions) {
    setObjectName("OptionsForm");
    setWindowTitle("Options");
    auto* const grid = new QGridLayout(this);
    auto* const explanation = new QLabel(
        "Cutoff for Phase and Group delay plots. (dB) Stops the phase and GD plots in the stop "
        "band.",
        this);
    explanation->setWordWrap(true);
    explanation->setMinimumWidth(TextWidth);
    NumberEdit* const box = binder.AddBox(this, InputId::GDPhaseThreshold);
    explanation->setBuddy(box);
    QPushButton* const apply =
        AddButton(this, "ApplyButton", "&Apply", "Recalculates with this level");
    QPushButton* const close = AddButton(this, "CloseButton", "&Close", "Closes this window");
    apply->setDefault(true);
    close->setAutoDefault(false);
    grid->addWidget(explanation, 0, 0, 1, 3);
    grid->addWidget(box, 1, 0, Qt::AlignLeft);
    grid->addWidget(apply, 1, 1);
    grid->addWidget(close, 1, 2);
    grid->setColumnStretch(0, 1);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    connect(apply, &QPushButton::clicked, this, [this] { binder.Actions().Calculate(); });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
}

}  // namespace ladderwise
