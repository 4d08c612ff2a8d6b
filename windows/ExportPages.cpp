// The pages of the export dialog.
#include "windows/ExportPages.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

#include "controls/InputBinder.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr double MegahertzOfPoints = 1e6;
constexpr int ShownDigits = 7;
constexpr int FieldWidth = 110;  ///< pixels
constexpr int UsualExportPoints = 1001;
constexpr int MostShownPoints = 100'001;  ///< more would hold up the preview

constexpr const char* VersionNote =
    "Few programs read version 2.0. It has source and load as the references of the ports.";

/// A row of a form: a box and its unit.
QWidget* WithUnit(NumberEdit* edit, const char* unit) {
    auto* const row = new QWidget(edit->parentWidget());
    auto* const line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(edit);
    line->addWidget(new QLabel(QString::fromUtf8(unit), row));
    line->addStretch();
    return row;
}

/// The same with a label whose mnemonic moves the focus into the box.
void AddRow(QFormLayout* form, const char* text, NumberEdit* edit, const char* unit) {
    auto* const label = new QLabel(QString::fromLatin1(text), form->parentWidget());
    label->setBuddy(edit);
    form->addRow(label, WithUnit(edit, unit));
}

}  // namespace

// --- a number

NumberField::NumberField(QWidget* parent, const char* name, const char* what, double step)
    : QObject(parent),
      edit(new NumberEdit(QString::fromLatin1(name), parent)),
      what(what),
      step(step) {
    edit->setFixedWidth(FieldWidth);
    edit->setAccessibleName(QString::fromLatin1(what));
    connect(edit, &QLineEdit::textChanged, this, &NumberField::Changed);
    connect(edit, &NumberEdit::StepRequested, this, &NumberField::Step);
}

void NumberField::Show(double value) {
    NumberBox box;
    box.WriteText(FormatPlain(value, ShownDigits), value);
    edit->Show(box);
    written = edit->text();
    exact = value;
}

std::optional<double> NumberField::Read(bool whole, std::string& fault) {
    const std::string text = edit->text().toStdString();
    double value = exact;
    const bool read = edit->text() == written || TryParseDouble(text, value);
    if (read && value > 0.0 && std::isfinite(value) && (!whole || value == std::floor(value)))
        return value;
    if (fault.empty())
        fault = what + ": \"" + text + "\" is no " + (whole ? "whole " : "") + "number above 0.";
    return {};
}

void NumberField::Step(bool up) {
    std::string fault;
    const double value = Read(false, fault).value_or(0.0) + (up ? step : -step);
    if (!(value > 0.0)) return;
    Show(value);
    emit Changed();
}

// --- points

PointsGroup::PointsGroup(QFormLayout* form, const QString& name) : QObject(form->parentWidget()) {
    QWidget* const page = form->parentWidget();
    const auto number = [&](const char* ending, const char* what) {
        return new NumberField(page, qPrintable(name + ending), what, 1.0);
    };
    which = new QComboBox(page);
    which->setObjectName(name + "RangeBox");
    which->addItems({"The sweep", "From, to, number"});
    from = number("FromBox", "From");
    to = number("ToBox", "To");
    points = number("PointsBox", "Points");
    spacing = new QComboBox(page);
    spacing->setObjectName(name + "SpacingBox");
    spacing->addItems({"Linear", "Logarithmic"});
    form->addRow("&Frequencies", which);
    AddRow(form, "Fr&om", from->Edit(), "MHz");
    AddRow(form, "&To", to->Edit(), "MHz");
    AddRow(form, "&Points", points->Edit(), "");
    form->addRow("Sp&acing", spacing);
    connect(which, &QComboBox::currentIndexChanged, this, [this] {
        Enable();
        emit Changed();
    });
    connect(spacing, &QComboBox::currentIndexChanged, this, &PointsGroup::Changed);
    for (NumberField* const field : {from, to, points})
        connect(field, &NumberField::Changed, this, &PointsGroup::Changed);
}

void PointsGroup::Enable() {
    const bool own = which->currentIndex() == 1;
    for (NumberField* const field : {from, to, points})
        field->Edit()->setEnabled(own);
    spacing->setEnabled(own);
}

void PointsGroup::Show(const ExportChoice& choice, const FilterDesign& design) {
    const QSignalBlocker blocker(this);
    const ExportPoints& asked = choice.Options.Points;
    const FrequencyRange sweep = SweepOf(design);
    which->setCurrentIndex(choice.OwnPoints ? 1 : 0);
    const bool own = choice.OwnPoints;
    from->Show((own && asked.From ? *asked.From : sweep.From) / MegahertzOfPoints);
    to->Show((own && asked.To ? *asked.To : sweep.To) / MegahertzOfPoints);
    points->Show(asked.Points.value_or(UsualExportPoints));
    spacing->setCurrentIndex(asked.Logarithmic.value_or(false) ? 1 : 0);
    Enable();
}

std::string PointsGroup::Read(ExportChoice& choice) {
    std::string fault;
    choice.OwnPoints = which->currentIndex() == 1;
    if (!choice.OwnPoints) return {};
    const auto first = from->Read(false, fault), last = to->Read(false, fault),
               count = points->Read(true, fault);
    if (!fault.empty()) return fault;
    if (*count > MostShownPoints)
        return "There are at most " + std::to_string(MostShownPoints) +
               " points here; the console has more.";
    choice.Options.Points = {*first * MegahertzOfPoints, *last * MegahertzOfPoints,
                             static_cast<int>(*count), spacing->currentIndex() == 1};
    return {};
}

// --- the pages

ExportPages::ExportPages(QWidget* parent) : QStackedWidget(parent) {
    BuildTouchstone();
    BuildNetlist();
    BuildSchematic();
    separators[0] = BuildTable("ExportSweepSeparatorBox");
    separators[1] = BuildTable("ExportPartsSeparatorBox");
    BuildPicture();
}

QFormLayout* ExportPages::AddPage() {
    auto* const page = new QWidget(this);
    auto* const form = new QFormLayout(page);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    addWidget(page);
    return form;
}

QComboBox* ExportPages::AddCombo(QFormLayout* form, const char* name, const char* label,
                                 const QStringList& entries) {
    auto* const combo = new QComboBox(form->parentWidget());
    combo->setObjectName(QString::fromLatin1(name));
    combo->addItems(entries);
    form->addRow(QString::fromLatin1(label), combo);
    connect(combo, &QComboBox::currentIndexChanged, this, [this] {
        Enable();
        emit Changed();
    });
    return combo;
}

NumberField* ExportPages::AddNumber(QFormLayout* form, const char* name, const char* label,
                                    const char* what, double step, const char* unit) {
    auto* const field = new NumberField(form->parentWidget(), name, what, step);
    AddRow(form, label, field->Edit(), unit);
    connect(field, &NumberField::Changed, this, &ExportPages::Changed);
    return field;
}

PointsGroup* ExportPages::AddPoints(QFormLayout* form, const QString& name) {
    auto* const group = new PointsGroup(form, name);
    connect(group, &PointsGroup::Changed, this, &ExportPages::Changed);
    return group;
}

void ExportPages::BuildTouchstone() {
    QFormLayout* const form = AddPage();
    version = AddCombo(form, "ExportVersionBox", "&Version", {"1", "2.0"});
    versionNote = new QLabel(QString::fromLatin1(VersionNote), form->parentWidget());
    versionNote->setWordWrap(true);
    form->addRow(versionNote);
    reference = AddNumber(form, "ExportReferenceBox", "&Reference", "Reference", 1.0, "ohm");
    points[0] = AddPoints(form, "ExportTouchstone");
    withRuns = new QCheckBox("&Worst-case runs too:", form->parentWidget());
    withRuns->setObjectName("ExportRunsCheck");
    runs = new NumberField(form->parentWidget(), "ExportRunsBox", "Worst-case runs", 1.0);
    form->addRow(withRuns, WithUnit(runs->Edit(), "more files"));
    connect(withRuns, &QCheckBox::toggled, this, [this] {
        Enable();
        emit Changed();
    });
    connect(runs, &NumberField::Changed, this, &ExportPages::Changed);
}

void ExportPages::BuildNetlist() {
    QFormLayout* const form = AddPage();
    simulator = AddCombo(form, "ExportSimulatorBox", "&For", {"ngspice", "LTspice"});
    subcircuit = new QCheckBox("As a s&ubcircuit, without source and load", form->parentWidget());
    subcircuit->setObjectName("ExportSubcircuitCheck");
    form->addRow(subcircuit);
    connect(subcircuit, &QCheckBox::toggled, this, &ExportPages::Changed);
    points[1] = AddPoints(form, "ExportNetlist");
}

void ExportPages::BuildSchematic() {
    QFormLayout* const form = AddPage();
    auto* const note = new QLabel("For LTspice; KiCad opens it too.", form->parentWidget());
    form->addRow(note);
    points[2] = AddPoints(form, "ExportSchematic");
}

QComboBox* ExportPages::BuildTable(const char* name) {
    QFormLayout* const form = AddPage();
    return AddCombo(form, name, "Separa&tor",
                    {"Comma, with decimal points", "Semicolon, with decimal commas"});
}

void ExportPages::BuildPicture() {
    QFormLayout* const form = AddPage();
    parts = AddCombo(form, "ExportPartsBox", "Sh&ows", {"Plot", "Schematic", "Plot and schematic"});
    background =
        AddCombo(form, "ExportBackgroundBox", "&Background", {"As on the screen", "White"});
    format = AddCombo(form, "ExportFormatBox", "&Format",
                      {"PNG, pixels", "SVG, vectors", "PDF, vectors"});
    width = AddNumber(form, "ExportWidthBox", "&Width", "Width", 10.0, "");
    height = AddNumber(form, "ExportHeightBox", "&Height", "Height", 10.0, "");
    unit = AddCombo(form, "ExportUnitBox", "&Unit", {"Pixels", "Millimetres"});
}

void ExportPages::Enable() {
    if (!unit) return;  // being built
    const bool first = version->currentIndex() == 0;
    reference->Edit()->setEnabled(first);
    versionNote->setVisible(!first);
    EnableFor(withRuns, runsToBeHad > 0, "with \"Worst Case\" chosen");
    runs->Edit()->setEnabled(runsToBeHad > 0 && withRuns->isChecked());
}

void ExportPages::Show(const ExportChoice& choice, const FilterDesign& design, int toBeHad) {
    const QSignalBlocker blocker(this);
    const ExportOptions& options = choice.Options;
    runsToBeHad = toBeHad;
    version->setCurrentIndex(options.Version == TouchstoneVersion::Two ? 1 : 0);
    reference->Show(options.Reference);
    withRuns->setChecked(choice.WithRuns && toBeHad > 0);
    runs->Show(std::max(1, options.Runs));
    for (PointsGroup* const group : points)
        group->Show(choice, design);
    simulator->setCurrentIndex(static_cast<int>(options.For));
    subcircuit->setChecked(options.Subcircuit);
    for (QComboBox* const separator : separators)
        separator->setCurrentIndex(static_cast<int>(options.Separator));
    parts->setCurrentIndex(static_cast<int>(choice.Look.Parts));
    background->setCurrentIndex(choice.Look.White ? 1 : 0);
    format->setCurrentIndex(static_cast<int>(choice.Format));
    width->Show(choice.Size.Width);
    height->Show(choice.Size.Height);
    unit->setCurrentIndex(choice.Size.Millimetres ? 1 : 0);
    setCurrentIndex(static_cast<int>(choice.Page));
    Enable();
}

std::string ExportPages::ReadTouchstone(ExportChoice& choice) {
    std::string fault;
    ExportOptions& options = choice.Options;
    options.Version =
        version->currentIndex() == 1 ? TouchstoneVersion::Two : TouchstoneVersion::One;
    if (options.Version == TouchstoneVersion::One)
        options.Reference = reference->Read(false, fault).value_or(options.Reference);
    if (runsToBeHad > 0) choice.WithRuns = withRuns->isChecked();
    if (runsToBeHad > 0 && choice.WithRuns)
        if (const auto count = runs->Read(true, fault))
            options.Runs = static_cast<int>(std::min<double>(*count, MostExportPoints));
    return fault;
}

std::string ExportPages::ReadPicture(ExportChoice& choice) {
    std::string fault;
    choice.Look = {static_cast<PictureParts>(parts->currentIndex()),
                   background->currentIndex() == 1};
    choice.Format = static_cast<PictureFormat>(format->currentIndex());
    const auto w = width->Read(false, fault), h = height->Read(false, fault);
    if (!fault.empty()) return fault;
    choice.Size = {*w, *h, unit->currentIndex() == 1};
    fault = FaultOf(choice.Size);
    if (!fault.empty()) fault[0] = static_cast<char>(std::toupper(fault[0]));
    return fault.empty() ? fault : fault + ".";
}

std::string ExportPages::Read(ExportChoice& choice) {
    switch (choice.Page) {
        case ExportPage::Touchstone: {
            const std::string fault = ReadTouchstone(choice);
            return fault.empty() ? points[0]->Read(choice) : fault;
        }
        case ExportPage::Netlist:
            choice.Options.For = static_cast<SpiceDialect>(simulator->currentIndex());
            choice.Options.Subcircuit = subcircuit->isChecked();
            return points[1]->Read(choice);
        case ExportPage::Schematic:
            return points[2]->Read(choice);
        case ExportPage::Sweep:
        case ExportPage::PartsList: {
            const auto* const separator = separators[choice.Page == ExportPage::Sweep ? 0 : 1];
            choice.Options.Separator = static_cast<FieldSeparator>(separator->currentIndex());
            return {};
        }
        case ExportPage::Picture:
            return ReadPicture(choice);
    }
    return {};
}

}  // namespace ladderwise
