// From a candidate at its place to a row of the list: the ladder by the calculation's own steps,
// its margins on the analysis itself, its cost. No Qt.
#pragma once

#include <cmath>

#include "choosing/FilterChoices.h"

namespace ladderwise {

/// The inputs in use for a request: what is to count is set, nothing is worst case.
DesignInputs InputsFor(const ChoosingRequest& request);

/// The user's own load, ohm, whatever the present response has made of it.
double UsersLoad(const DesignInputs& inputs, const FilterDesign& design);

class RowMaker {
public:
    explicit RowMaker(const ChoosingRequest& request);

    /// The design of the request as read; RLoad is the user's.
    const FilterDesign& Base() const { return base; }

    /// The row of a candidate that `maker` (of Base()) builds; its frequencies are rounded to what
    /// is typed. A row without limits judged where it cannot be built.
    FilterChoice Make(LadderMaker& maker, const Candidate& candidate, double f0,
                      double bandWidth) const;

    /// The design of a row from inputs as they would be typed, with the ladder in Elements.
    FilterDesign& Build(const FilterChoice& row);

    bool IsOtherLoad(double load) const { return std::abs(load - base.RLoad) > 1e-6 * base.RLoad; }

    /// Cost by the weights, without the loss.
    double CostOf(const DesignState& design) const;

private:
    const ChoosingRequest& request;
    FilterDesign base;
    FilterDesign work;
};

}  // namespace ladderwise
