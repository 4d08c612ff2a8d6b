// The window "Direct Coupled Filters": tanks, inverters, line lengths and tank values of a
// direct-coupled band-pass, and what its synthesis says about the end tanks.
#pragma once

#include <QDialog>
#include <optional>

#include "controls/InputBinder.h"

class QAbstractButton;
class QLabel;
class QMenu;
class QMenuBar;
class QTableWidget;

namespace ladderwise {

/// Shows and edits the direct-coupled part of the inputs. Every change ends in a calculation.
class DirectCoupledWindow : public QDialog {
    Q_OBJECT

public:
    /// `design` is the one that the calculation writes, for the read-outs.
    DirectCoupledWindow(DesignInputs& inputs, const FilterDesign& design,
                        const InputActions& actions, QWidget* parent);

    /// Takes the texts of boxes and tank values into the inputs.
    void StoreInputs();

    /// Shows inputs, pictures and read-outs.
    void ShowInputs();

    /// The keys of the tank values: Enter calculates, F1 makes the current value smaller and F2
    /// larger by the main window's "% Change".
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildMenus();
    QMenu* BuildChoiceMenu(QMenuBar* bar, const char* title, const char* name, ChoiceId id);
    QWidget* BuildTankValues();
    QWidget* BuildPictures();
    QWidget* BuildBoxes();
    QWidget* BuildReadouts();
    QWidget* BuildButtons();
    void ShowTankValues();
    void ShowPictures();
    void ShowReadouts();
    void StepCurrentTank(bool larger);
    void SetAll();

    DesignInputs& inputs;
    const FilterDesign& design;
    InputBinder binder;
    QMenu* tankTypeMenu;
    QMenu* inverterTypeMenu;
    QTableWidget* tankValue;
    QAbstractButton* altInverterBox;
    QLabel* tankPicture;
    QLabel* tankNote;  ///< what the tank in use is good for
    QLabel* inverterPicture;
    QLabel* endInverterPicture;
    QLabel* minLabels[2];
    QLabel* distortionLabels[2];
    /// What the pictures show: tank, inverter, end inverter. To make them takes longer than the
    /// calculation.
    struct PictureChoice {
        TankType Tank;
        InverterType Inverter;
        InverterType End;
        bool operator==(const PictureChoice&) const = default;
    };
    std::optional<PictureChoice> shownPictures;
    bool showing = false;  ///< cells change because the window writes them
};

}  // namespace ladderwise
