// Which standard values to buy: each the nearest, all chosen together for the closest response,
// with capacitors as two in parallel, or for the highest yield. No Qt.
//
// H. J. Orchard, "Inductorless filters", Electronics Letters 2 (1966) 224-225, on why the pass band
// of a doubly terminated ladder hardly feels its values: a good set far from each nearest value
// exists.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "boards/StandardSeries.h"
#include "boards/ValueSearch.h"
#include "design/FilterDesign.h"
#include "design/LimitLine.h"

namespace ladderwise {

/// What is chosen, and what the user has said about it.
struct StandardTask {
    StdMethod Method = StdMethod::Nearest;
    std::vector<HeldPart> Held{};
    LimitLines Limits{};  ///< for the highest yield
    /// Of the highest yield the first answer alone, by slopes, in a few milliseconds.
    bool FirstAnswer = false;
    double Effort = 1.0;  ///< share of the usual evaluations, above 0: less is a poorer choice
};

/// One part as it is to be bought.
struct ChosenPart {
    ValuePlace Place{};
    SeriesValue Value{};
    bool Held = false;
};

/// A choice beside that of the nearest values.
struct StandardParts {
    std::vector<ChosenPart> Parts{};
    ElementList Nearest{};     ///< the ladder of the nearest values and the held ones
    ElementList Chosen{};      ///< the ladder that was chosen
    double NearestCost = 0.0;  ///< J of Closeness, dB; NaN where it cannot be judged
    double ChosenCost = 0.0;
    double NearestDeviation = 0.0;  ///< Closeness::WorstDeviation, dB
    double ChosenDeviation = 0.0;
    int Evaluations = 0;
    bool ByYield = false;  ///< chosen by limits; J and deviation may be worse then
    bool Final = false;    ///< nothing better will follow
};

/// Puts the chosen values, and what each is made of, into a design.
void TakeParts(DesignState& design, const StandardParts& parts);

/// Chooses standard values for the exact ones in exact.Elements; `ideal` is the ladder as it was
/// scaled, before any allowance for parasitics. The same every time, however it is sliced. The
/// choice is never worse than the nearest values, neither in J nor in the worst deviation of the
/// pass band; of the highest yield, which needs limits, never in ConfirmingBoards boards of its
/// own, nor its first answer in FirstConfirmingBoards. Held parts keep their values and are among
/// the nearest ones too.
class StandardSearch {
public:
    StandardSearch(const FilterDesign& exact, const ElementList& ideal, const StandardTask& task);
    ~StandardSearch();

    /// Goes on for a few milliseconds at most, or a board's worth of them; false: all is done.
    bool Advance();

    /// The nearest values at first, of the highest yield then a first answer, in the end the
    /// choice.
    const StandardParts& Present() const;

    /// How much is done, 0 to 1.
    double DoneShare() const;

private:
    class Chooser;
    std::unique_ptr<Chooser> chooser;
};

/// The whole search at once.
StandardParts ChooseStandardParts(const FilterDesign& exact, const ElementList& ideal,
                                  const StandardTask& task);

inline constexpr int SearchEvaluations = 12000;

}  // namespace ladderwise
