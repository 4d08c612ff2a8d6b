// Limits of usual tasks.
#include "windows/LimitPresetPanel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <cmath>
#include <utility>

#include "limits/LimitTable.h"
#include "numbers/Formatfunctions.h"
#include "numbers/PlainNumbers.h"

namespace ladderwise {

namespace {

enum Task { FromDesign, Transmitter, Receiver };

constexpr double PresetMegahertz = 1e6;
constexpr int PresetDigits = 6;  // significant, of a number that is filled in
constexpr int FieldLetters = 9;
constexpr const char* StartAttenuation = "45";  ///< dB

/// What is wrong with a field; thrown by Lines, never out of the panel.
struct PresetFault {
    QString Reason;
};

QPushButton* NewPresetButton(QWidget* parent, const char* name, const char* caption,
                             const char* tip) {
    auto* const button = new QPushButton(QString::fromLatin1(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(QString::fromLatin1(tip));
    button->setAutoDefault(false);
    return button;
}

QString NumberText(double x) {
    return QString::fromStdString(FormatPlain(x, PresetDigits));
}

/// An end of a band in MHz, rounded into the band: the promise must hold to its very end.
QString EndText(double f, bool upper) {
    const double x = f / PresetMegahertz;
    if (!(x > 0.0)) return "0";
    constexpr double sameStep = 1e-6;  // of a step; what lies so near to a round number is that
    const double step = std::pow(10.0, std::floor(std::log10(x)) - (PresetDigits - 1));
    const double steps = upper ? std::floor(x / step + sameStep) : std::ceil(x / step - sameStep);
    return NumberText(steps * step);
}

}  // namespace

LimitPresetPanel::LimitPresetPanel(std::function<DesignPromise()> asked, QWidget* parent)
    : QGroupBox("Ready-made limits", parent),
      promise(std::move(asked)),
      grid(new QGridLayout(this)),
      task(new QComboBox(this)) {
    Build();
    connect(task, &QComboBox::activated, this, [this] {
        ShowFields();
        if (task->currentIndex() != FromDesign) return;
        for (QLineEdit* const field : {bandFrom, bandTo, loss, operating})
            field->setModified(false);
        Refresh();
    });
    ShowFields();
}

QLineEdit* LimitPresetPanel::AddField(int row, int column, const char* name, const char* caption,
                                      const char* unit, const char* tip) {
    auto* const field = new QLineEdit(this);
    field->setObjectName(QString::fromLatin1(name));
    field->setToolTip(QString::fromLatin1(tip));
    field->setFixedWidth(field->fontMetrics().averageCharWidth() * 2 * FieldLetters);
    auto* const label = new QLabel(QString::fromLatin1(caption), this);
    label->setBuddy(field);
    grid->addWidget(label, row, column);
    grid->addWidget(field, row, column + 1);
    grid->addWidget(new QLabel(QString::fromLatin1(unit), this), row, column + 2);
    return field;
}

void LimitPresetPanel::Build() {
    task->setObjectName("LimitTask");
    task->addItems({"From the design", "Harmonics of a transmitter", "Image and IF"});
    task->setToolTip("What the limits are for");
    auto* const label = new QLabel("&Task", this);
    label->setBuddy(task);
    grid->addWidget(label, 0, 0);
    grid->addWidget(task, 0, 1, 1, 3);
    oscillatorHigh = new QCheckBox("&Oscillator above", this);
    oscillatorHigh->setObjectName("LimitOscillatorHigh");
    oscillatorHigh->setToolTip(
        "The local oscillator lies above the signal, and so does the image; else below");
    oscillatorHigh->setChecked(true);
    grid->addWidget(oscillatorHigh, 0, 4, 1, 2);
    bandFrom = AddField(1, 0, "LimitBandFrom", "&Band from", "MHz", "Lower end of the band in use");
    bandTo = AddField(2, 0, "LimitBandTo", "ban&d to", "MHz", "Upper end of the band in use");
    loss = AddField(1, 3, "LimitLoss", "&Loss at most", "dB", "In the band");
    attenuation = AddField(2, 3, "LimitAttenuation", "Atten&uation", "dB",
                           "At least, at the harmonics, or at image and IF; empty: none");
    operating = AddField(3, 0, "LimitOperating", "Operatin&g at", "MHz",
                         "The frequency whose second and third harmonics are to be kept off; it "
                         "need not be Fo");
    intermediate = AddField(3, 3, "LimitIntermediate", "&IF", "MHz", "Intermediate frequency");
    auto* const buttons = new QHBoxLayout;
    auto* const add = NewPresetButton(this, "LimitPresetAdd", "Add Th&ese",
                                      "Adds these limits to those in the table");
    auto* const instead = NewPresetButton(this, "LimitPresetInstead", "&Replace All",
                                          "Puts these limits in place of those in the table");
    buttons->addStretch(1);
    buttons->addWidget(add);
    buttons->addWidget(instead);
    grid->addLayout(buttons, 4, 0, 1, 7);
    grid->setColumnStretch(6, 1);
    connect(add, &QPushButton::clicked, this, [this] { Make(false); });
    connect(instead, &QPushButton::clicked, this, [this] { Make(true); });
    loss->setText("1");
    attenuation->setText(StartAttenuation);
}

/// Those that the task needs; the others stay in their places, so that nothing jumps.
void LimitPresetPanel::ShowFields() {
    operating->setEnabled(task->currentIndex() == FromDesign);
    intermediate->setEnabled(task->currentIndex() == Receiver);
    oscillatorHigh->setEnabled(task->currentIndex() == Receiver);
}

/// The band, of a notch its lower one, the loss and the operating frequency.
void LimitPresetPanel::Refresh() {
    if (task->currentIndex() != FromDesign) return;
    filled = promise();
    const bool any = !filled.Pass.empty();
    const auto show = [this](QLineEdit* field, const QString& text) {
        const bool cleared = field->text().isEmpty() && field != attenuation;
        if ((cleared || !field->isModified()) && field->text() != text) field->setText(text);
    };
    show(bandFrom, any ? EndText(filled.Pass.front().From, false) : QString());
    show(bandTo, any ? EndText(filled.Pass.front().To, true) : QString());
    show(loss, NumberText(filled.Loss));
    show(operating, NumberText(filled.Operating / PresetMegahertz));
    if (filled.HoldsHarmonics)
        show(attenuation, StartAttenuation);
    else
        show(attenuation, QString());
}

double LimitPresetPanel::NumberIn(const QLineEdit* field) const {
    double x = 0.0;
    const std::string text = field->text().trimmed().replace(',', '.').toStdString();
    if (text.empty() && field == attenuation) return 0.0;
    if (ReadPlainNumber(text, x) == NumberFault::None && x >= 0.0 && std::isfinite(x)) return x;
    QString caption;
    for (const auto* const label : findChildren<QLabel*>())
        if (label->buddy() == field) caption = label->text().remove('&');
    throw PresetFault{caption + (text.empty() ? " is missing" : ": no such number")};
}

LimitLines LimitPresetPanel::Lines() const {
    const auto hz = [this](const QLineEdit* field) { return NumberIn(field) * PresetMegahertz; };
    const LimitBand band{hz(bandFrom), hz(bandTo)};
    const double most = NumberIn(loss), least = NumberIn(attenuation);
    LimitLines lines;
    switch (task->currentIndex()) {
        case FromDesign: {
            // The upper band of a notch comes with the lower one that was filled in.
            std::vector<LimitBand> pass{band};
            if (filled.Pass.size() > 1) pass.push_back(filled.Pass.back());
            lines = PromiseOfDesign(pass, most, least > 0.0 ? hz(operating) : 0.0, least);
            break;
        }
        case Transmitter:
            lines = HarmonicsOfTransmitter(band, most, least);
            break;
        default:
            lines = ImageAndIntermediate(band, hz(intermediate), oscillatorHigh->isChecked(), most,
                                         least);
    }
    std::erase_if(lines, [&](const LimitLine& line) {
        return line.Kind == LimitKind::AttenMin && least == 0.0;
    });
    for (const LimitLine& line : lines)
        if (const std::string fault = FaultOf(line); !fault.empty())
            throw PresetFault{QString::fromStdString(TextOf(line) + ": " + fault)};
    return lines;
}

void LimitPresetPanel::Make(bool instead) {
    Refresh();
    try {
        emit Made(Lines(), instead);
    } catch (const PresetFault& fault) {
        emit Refused(fault.Reason);
    }
}

}  // namespace ladderwise
