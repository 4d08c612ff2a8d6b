// The secondary windows of the main window: made in one place, read and shown together.
#pragma once

#include <array>

#include "controls/InputBinder.h"
#include "design/FilterDesign.h"
#include "windows/NortonWindow.h"

class QWidget;

namespace ladderwise {

class DirectCoupledWindow;
class HelpWindow;
class MathErrWindow;
class OptionsWindow;
class PartDefinitionsWindow;

class SecondaryWindows {
public:
    /// Each window is a child of `owner`.
    SecondaryWindows(DesignInputs& inputs, const FilterDesign& design, const InputActions& actions,
                     const NortonActions& nortonActions, QWidget* owner);

    /// Takes the texts of all boxes into the inputs, and shows the inputs again.
    void StoreInputs();
    void ShowInputs();

    void ShowPartDefinitions();
    void ShowOptions();
    void ShowHelp();
    void ShowMathErrors();
    void ShowAbout();

    /// The window of a band-pass that has one of its own.
    void ShowFor(PassType pass);
    /// Closes those of other pass types.
    void CloseOthers(PassType pass);

    /// True for a window with inputs of the design.
    bool HasInputs(const QObject* window) const;

    /// The list of math errors, if it is open, as it is now.
    void RefreshMathErrors();
    void CloseAll();
    std::array<QWidget*, 6> All() const;

private:
    const FilterDesign& design;
    QWidget* owner;
    PartDefinitionsWindow* partDefinitions;
    HelpWindow* help;
    DirectCoupledWindow* directCoupled;
    NortonWindow* norton;
    MathErrWindow* mathErrors;
    OptionsWindow* options;
};

}  // namespace ladderwise
