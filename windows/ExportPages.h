// The options of the export dialog: a page for each kind of file. They show a choice and give it
// back; whether it can be met, the dialog finds out.
#pragma once

#include <QStackedWidget>
#include <optional>
#include <string>
#include <vector>

#include "controls/NumberEdit.h"
#include "windows/ExportChoice.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;

namespace ladderwise {

/// A number of an export: a box without an input behind it.
class NumberField : public QObject {
    Q_OBJECT

public:
    /// A box named `name` that is stepped by `step`; `what` says in a reason what it holds.
    NumberField(QWidget* parent, const char* name, const char* what, double step);

    NumberEdit* Edit() const { return edit; }
    void Show(double value);

    /// The number in the box as the system's locale writes it, above 0 and whole if asked for;
    /// otherwise nothing, and `fault` says why unless it says something already.
    std::optional<double> Read(bool whole, std::string& fault);

signals:
    void Changed();

private:
    void Step(bool up);

    NumberEdit* edit;
    QString written;  ///< by Show; while the box holds it, it stands for `exact`
    double exact = 0.0;
    std::string what;
    double step;
};

/// From, to, number and spacing of points, or the sweep.
class PointsGroup : public QObject {
    Q_OBJECT

public:
    /// Adds its rows to a form; the names of its boxes begin with `name`.
    PointsGroup(QFormLayout* form, const QString& name);

    void Show(const ExportChoice& choice, const FilterDesign& design);
    std::string Read(ExportChoice& choice);

signals:
    void Changed();

private:
    void Enable();

    QComboBox* which;
    NumberField *from, *to, *points;
    QComboBox* spacing;
};

class ExportPages : public QStackedWidget {
    Q_OBJECT

public:
    explicit ExportPages(QWidget* parent);

    /// Shows a choice for a design; `runs` of a worst case can be had.
    void Show(const ExportChoice& choice, const FilterDesign& design, int runs);

    /// Takes the options of the page that is seen into the choice. Returns why they are no options,
    /// as a sentence; empty if they are.
    std::string Read(ExportChoice& choice);

signals:
    void Changed();

private:
    QFormLayout* AddPage();
    void BuildTouchstone();
    void BuildNetlist();
    void BuildSchematic();
    QComboBox* BuildTable(const char* name);
    void BuildPicture();
    QComboBox* AddCombo(QFormLayout* form, const char* name, const char* label,
                        const QStringList& entries);
    NumberField* AddNumber(QFormLayout* form, const char* name, const char* label, const char* what,
                           double step, const char* unit);
    PointsGroup* AddPoints(QFormLayout* form, const QString& name);
    std::string ReadTouchstone(ExportChoice& choice);
    std::string ReadPicture(ExportChoice& choice);
    void Enable();

    QComboBox* version;
    QLabel* versionNote;
    NumberField* reference;
    QCheckBox* withRuns;
    NumberField* runs;
    PointsGroup* points[3];  ///< of the first three pages
    QComboBox* simulator;
    QCheckBox* subcircuit;
    QComboBox* separators[2];  ///< of the sweep and of the parts list
    QComboBox *parts, *background, *format, *unit;
    NumberField *width, *height;
    int runsToBeHad = 0;
};

}  // namespace ladderwise
