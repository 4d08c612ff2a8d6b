// Everything that a user can type, check or choose, without a screen: the state of the controls of
// all windows. The windows show it, the console program fills it from its arguments, and ReadInputs
// turns it into the design state. No Qt.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "design/ChoiceNames.h"
#include "design/FilterDesign.h"
#include "design/Messages.h"
#include "design/TraceChoices.h"
#include "design/ValuePlace.h"
#include "numbers/NumberBox.h"
#include "pipeline/Updownfunctions.h"

namespace ladderwise {

/// The boxes and choices, at first those of a fresh program. What a stage of the calculation
/// overrides (a forced form, a moved load) is a result and stands in FilterDesign only.
struct DesignInputs {
    DesignInputs();

    NumberBox& Box(InputId id) { return Boxes[static_cast<std::size_t>(id)]; }
    const NumberBox& Box(InputId id) const { return Boxes[static_cast<std::size_t>(id)]; }
    int& Choice(ChoiceId id) { return Choices[static_cast<std::size_t>(id)]; }
    int Choice(ChoiceId id) const { return Choices[static_cast<std::size_t>(id)]; }

    bool IsOn(ChoiceId id) const { return Choice(id) != 0; }
    bool IsPrototype() const { return Choice(ChoiceId::Pass) == PrototypePassCode; }
    PassType Pass() const {
        return IsPrototype() ? PassType::LowPass : static_cast<PassType>(Choice(ChoiceId::Pass));
    }
    ResponseType Response() const { return static_cast<ResponseType>(Choice(ChoiceId::Response)); }
    TraceChoices Traces() const;

    std::array<NumberBox, NumInputs> Boxes{};
    std::array<int, NumChoices> Choices{};
    HeldParts Held{};  ///< single parts that are settled
};

/// The load (ohm) that a response prescribes for a source; Butterworth and Chebyshev keep the
/// user's.
double LoadFor(ResponseType response, double source, double load);

/// Why a load was moved, for people: "equal to R Source, as this response needs it".
const char* TextOf(LoadReason why);

/// The load that the user asked for, ohm, where the program's own still stands in its place
/// although nothing in the design asks for that any more: an even-order Chebyshev leaves its load
/// to an odd one, a family that is fixed to the source's to Butterworth. `design` as calculated
/// from `inputs`.
std::optional<double> LoadToBringBack(const DesignInputs& inputs, const FilterDesign& design);

/// Puts that load back into its box; a calculation has to follow. False if there is none.
bool BringBackLoad(DesignInputs& inputs, const FilterDesign& design);

/// What moved a load, for people: "an even-order Chebyshev".
std::string MoverOf(const MovedEntry& moved);

/// True for the pass types whose elliptic sections come in four trap forms.
constexpr bool HasTrapPanel(PassType pass) {
    return pass == PassType::BandPassCanonical || pass == PassType::Notch;
}

/// Reads "% Change" into KeyStepFraction and returns it: the step of the keys F1 and F2.
double ReadPercentChange(DesignInputs& inputs, FilterDesign& design, const MessageCallback& report);

/// Copies the choices and reads every box into the design, cleaning the boxes as it goes, and
/// forces the load from the source where the response asks for it: equal for the tabulated
/// families, Elliptic C to E and a coefficients file, twice the source for Elliptic A, half of it
/// for Elliptic B.
void ReadInputs(DesignInputs& inputs, FilterDesign& design, const MessageCallback& report);

}  // namespace ladderwise
