// The options window.
#include "windows/OptionsWindow.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "controls/HelpButton.h"
#include "controls/WindowPlacement.h"

namespace ladderwise {

namespace {

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
    : QDialog(parent), binder(inputs, actions) {
    setObjectName("OptionsForm");
    setWindowTitle("Options");
    auto* const grid = new QGridLayout(this);
    NumberEdit* const box = binder.AddBox(this, InputId::GDPhaseThreshold);
    QLabel* const explanation = binder.AddLabel(this, InputId::GDPhaseThreshold);
    explanation->setText(explanation->text() +
                         ". (dB) Stops the phase and GD plots in the stop band.");
    explanation->setWordWrap(true);
    explanation->setMinimumWidth(ExplanationWidth);
    QPushButton* const apply =
        AddButton(this, "ApplyButton", "&Apply", "Recalculates with this level");
    QPushButton* const close = AddButton(this, "CloseButton", "&Close", "Closes this window");
    apply->setDefault(true);
    close->setAutoDefault(false);
    QPushButton* const help = NewHelpButton(this, "OptionsHelpButton", HelpPage::Start, "plot");
    grid->addWidget(explanation, 0, 0, 1, 5);
    grid->addWidget(box, 1, 0);
    grid->addWidget(binder.AddUnit(this, InputId::GDPhaseThreshold), 1, 1);
    grid->addWidget(apply, 1, 2);
    grid->addWidget(close, 1, 3);
    grid->addWidget(help, 1, 4);
    grid->setColumnStretch(1, 1);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    connect(apply, &QPushButton::clicked, this, [this] { binder.Actions().Calculate(); });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
}

}  // namespace ladderwise
