// The pictures are those of the schematic strip, cut to the section itself and made smaller.
#include "windows/EllipticPanel.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

#include "display/PlotLayout.h"
#include "prototypes/EllipticPrototype.h"
#include "resources/Resources.h"
#include "scaling/BandScaler.h"
#include "windows/FittedCells.h"

namespace ladderwise {

namespace {

constexpr int PanelWidth = ValueGridLeft + SchematicWidth;
constexpr int Density = 2;      ///< of the schematic pictures that are made smaller
constexpr int FrameWidth = 2;   ///< around a picture, for the mark of the form in use
constexpr int LabelWidth = 60;  ///< most that the caption takes of a row
constexpr int SmallestDigits = 3;

/// How the four pictures of an arm stand: series sections are wide, shunt ones high.
struct PictureLayout {
    QRect Section;  ///< what is cut out of a schematic picture, logical units
    int Columns;
    QSize Size;  ///< of a small picture
};

PictureLayout LayoutOf(ElementArm arm) {
    if (arm == ElementArm::Series) return {QRect(0, 0, 64, 50), 2, QSize(40, 31)};
    return {QRect(8, 16, 48, 76), 4, QSize(24, 38)};
}

QPixmap SmallPicture(ElementType type, const PictureLayout& layout, qreal pixelRatio) {
    QString path = SchematicPath(type);
    const QImage whole(path.insert(path.lastIndexOf('.'), "@2x"));
    const QRect& cut = layout.Section;
    QImage small = whole.copy({cut.topLeft() * Density, cut.size() * Density});
    small.setDevicePixelRatio(1);
    small = small.scaled(layout.Size * pixelRatio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    small.setDevicePixelRatio(pixelRatio);
    return QPixmap::fromImage(small);
}

}  // namespace

EllipticPanel::EllipticPanel(InputBinder& binder, QWidget* parent)
    : QWidget(parent), pictures(new QWidget(this)), forms(new QButtonGroup(this)) {
    setObjectName("EllipticPanel");
    setAutoFillBackground(true);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(2, 0, 0, 0);
    rows->setSpacing(1);
    auto* const entry = new QHBoxLayout;
    entry->setSpacing(3);
    NumberEdit* const box = binder.AddBox(this, InputId::TrapType);
    QLabel* const label = binder.AddLabel(this, InputId::TrapType);
    UpDownButton* const arrows = binder.AddArrows(this, InputId::TrapType, "EllipticFormUpDown");
    label->setFont(
        FontThatFits(label->font(), label->text().remove('&'), LabelWidth, QWIDGETSIZE_MAX));
    box->setMinimumWidth(box->fontMetrics().horizontalAdvance('0') * SmallestDigits);
    box->setMaximumWidth(QWIDGETSIZE_MAX);
    entry->addWidget(label);
    entry->addWidget(box, 1);
    entry->addWidget(arrows);
    rows->addLayout(entry);
    rows->addWidget(pictures);
    rows->addStretch();
    for (int form = 1; form <= 4; ++form) {
        auto* const button = new QToolButton(pictures);
        button->setObjectName("TrapForm" + QString::number(form));
        button->setToolTip("Trap type " + QString::number(form));
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        forms->addButton(button, form);
    }
    connect(forms, &QButtonGroup::idClicked, this, [box, &binder](int form) {
        box->setText(QString::number(form));
        binder.Actions().Calculate();
    });
    setFixedSize(PanelWidth, SchematicHeight);
    LayOut(ElementArm::Series);
}

void EllipticPanel::LayOut(ElementArm arm) {
    if (arm == shown) return;
    shown = arm;
    const PictureLayout layout = LayoutOf(arm);
    delete pictures->layout();
    auto* const grid = new QGridLayout(pictures);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    for (int form = 1; form <= 4; ++form) {
        auto* const button = static_cast<QToolButton*>(forms->button(form));
        button->setIcon(SmallPicture(TrapForms(arm)[form - 1], layout, devicePixelRatioF()));
        button->setIconSize(layout.Size);
        button->setFixedSize(layout.Size + 2 * QSize(FrameWidth, FrameWidth));
        grid->addWidget(button, (form - 1) / layout.Columns, (form - 1) % layout.Columns);
    }
}

void EllipticPanel::ShowForms(const FilterDesign& design) {
    if (!IsElliptic(design.ResponseType)) return;
    LayOut(TrapArm(design.ResponseType));
    pictures->setEnabled(HasTrapPanel(design.PassType));
    if (QAbstractButton* const button = forms->button(design.TrapType)) button->setChecked(true);
}

}  // namespace ladderwise
