// The pictures are those of the schematic strip, cut to the section itself and made smaller.
#include "windows/EllipticPanel.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>
#include <QToolButton>

#include "controls/FittedCells.h"
#include "display/PlotLayout.h"
#include "prototypes/EllipticPrototype.h"
#include "resources/Resources.h"
#include "scaling/BandScaler.h"

namespace ladderwise {

namespace {

constexpr int RoomBelowWire = 68;  ///< pixels from the source's wire to the value grid
constexpr int Density = 2;         ///< of the schematic pictures that are made smaller
constexpr int FrameWidth = 1;      ///< around a picture, for the mark of the form in use
constexpr int Columns = 2;
constexpr int EntryGap = 2;

/// How the four pictures of an arm are made: series sections are wide, shunt ones high.
struct FormPictures {
    QRect Section;  ///< what is cut out of a schematic picture, logical units
    QSize Size;     ///< of a small picture
};

FormPictures LayoutOf(ElementArm arm) {
    if (arm == ElementArm::Series) return {QRect(0, 0, 64, 50), QSize(30, 23)};
    return {QRect(8, 16, 48, 76), QSize(20, 32)};
}

QPixmap SmallPicture(ElementType type, const FormPictures& layout, qreal pixelRatio) {
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
    : QWidget(parent), entry(BuildEntry(binder)), forms(new QButtonGroup(this)) {
    setObjectName("EllipticPanel");
    for (int form = 1; form <= 4; ++form) {
        auto* const button = new QToolButton(this);
        button->setObjectName("TrapForm" + QString::number(form));
        button->setAccessibleName("Trap type " + QString::number(form));
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        forms->addButton(button, form);
    }
    auto* const box = entry->findChild<NumberEdit*>();
    connect(forms, &QButtonGroup::idClicked, this, [box, &binder](int form) {
        box->setText(QString::number(form));
        box->setModified(true);  // as if typed
        binder.Actions().Calculate();
    });
    setFixedSize(SchematicWidth, RoomBelowWire);
    LayOut(ElementArm::Series);
}

QWidget* EllipticPanel::BuildEntry(InputBinder& binder) {
    auto* const widget = new QWidget(parentWidget());
    auto* const grid = new QGridLayout(widget);
    grid->setContentsMargins(EntryGap, EntryGap, EntryGap, 0);
    grid->setSpacing(1);
    NumberEdit* const box = binder.AddBox(widget, InputId::TrapType);
    QLabel* const label = binder.AddLabel(widget, InputId::TrapType);
    UpDownButton* const arrows = binder.AddArrows(widget, InputId::TrapType, "EllipticFormUpDown");
    const int room = ValueGridLeft - 2 * EntryGap;
    label->setFont(FontThatFits(label->font(), label->text().remove('&'), room, QWIDGETSIZE_MAX));
    // It stands on the plot, which is light in dark themes too.
    QPalette colours = label->palette();
    colours.setColor(QPalette::WindowText, Qt::black);
    label->setPalette(colours);
    box->setMinimumWidth(0);
    box->setMaximumWidth(room - arrows->width() - grid->spacing());
    grid->addWidget(label, 0, 0, 1, 2);
    grid->addWidget(box, 1, 0);
    grid->addWidget(arrows, 1, 1);
    widget->setFixedSize(ValueGridLeft, widget->sizeHint().height());
    return widget;
}

void EllipticPanel::PlaceAt(QPoint gridCorner) {
    move(gridCorner - QPoint(0, height()));
    entry->move(gridCorner - QPoint(entry->width(), 0));
}

void EllipticPanel::setVisible(bool visible) {
    entry->setVisible(visible);
    QWidget::setVisible(visible);
}

void EllipticPanel::LayOut(ElementArm arm) {
    if (arm == shown) return;
    shown = arm;
    const FormPictures pictures = LayoutOf(arm);
    delete layout();
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    for (int form = 1; form <= 4; ++form) {
        auto* const button = static_cast<QToolButton*>(forms->button(form));
        const ElementType type = TrapForms(arm)[form - 1];
        button->setIcon(SmallPicture(type, pictures, devicePixelRatioF()));
        button->setIconSize(pictures.Size);
        button->setFixedSize(pictures.Size + 2 * QSize(FrameWidth, FrameWidth));
        button->setToolTip(
            QString("<p>Trap type %1</p><img src=\"%2\">").arg(form).arg(SchematicPath(type)));
        grid->addWidget(button, (form - 1) / Columns, (form - 1) % Columns);
    }
}

void EllipticPanel::ShowForms(const FilterDesign& design) {
    if (!IsElliptic(design.ResponseType)) return;
    LayOut(TrapArm(design.ResponseType));
    setEnabled(HasTrapPanel(design.PassType));
    if (QAbstractButton* const button = forms->button(design.TrapType)) button->setChecked(true);
}

}  // namespace ladderwise
