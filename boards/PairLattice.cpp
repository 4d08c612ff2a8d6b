// Derivatives by differences of the reference analysis, Gram-Schmidt, and the K best.
#include "boards/PairLattice.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>

#include "analysis/Circuitanalysis.h"

namespace ladderwise {

namespace {

constexpr int everyPoint = 4;  ///< of the grid that the closeness is judged on
constexpr double stepInLn = 1e-6;

using Column = std::vector<double>;

/// E and K at some of the judge's frequencies, weighted: real and imaginary parts.
Column Residuals(const FilterDesign& design, const Closeness& judge,
                 const std::vector<double>& freqs, const std::vector<double>& scale) {
    Column column;
    for (std::size_t i = 0; i < freqs.size(); i += everyPoint) {
        const LadderPoint point = AnalysePoint(design, design.F0, freqs[i]);
        const Complex E = GuardedDivide(1.0, point.Transfer);
        const Complex K = point.Reflection * E;
        const double w = judge.Weights()[i] * (scale.empty() ? 1.0 : scale[i / everyPoint]);
        for (const double x : {E.real(), E.imag(), K.real(), K.imag()})
            column.push_back(std::isfinite(w * x) ? w * x : 0.0);
    }
    return column;
}

/// 1 / |E|: what counts is the relative change, where little comes through too.
std::vector<double> ScaleOf(const FilterDesign& design, const std::vector<double>& freqs) {
    std::vector<double> scale;
    for (std::size_t i = 0; i < freqs.size(); i += everyPoint)
        scale.push_back(std::abs(AnalysePoint(design, design.F0, freqs[i]).Transfer));
    return scale;
}

double Dot(const Column& a, const Column& b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

/// The triangle of the derivatives: R[i][j], j >= i, over columns in the order of `Order`.
struct Triangle {
    std::vector<int> Order{};
    std::vector<Column> R{};
};

/// Sorted modified Gram-Schmidt: of the columns of one kind the shortest remaining is taken first,
/// so that those decided first, the last ones, have long diagonals. Capacitors stand before coils.
Triangle Decompose(std::vector<Column> columns, const std::vector<PartToChoose>& parts) {
    const std::size_t n = columns.size();
    Triangle triangle;
    triangle.R.assign(n, Column(n, 0.0));
    std::vector<int> left(n);
    std::iota(left.begin(), left.end(), 0);
    std::vector<Column> units;
    const auto rank = [&](int part) {
        const auto at = static_cast<std::size_t>(part);
        return std::make_pair(parts[at].Kind == PartKind::Inductor, Dot(columns[at], columns[at]));
    };
    while (!left.empty()) {
        const auto next = std::min_element(left.begin(), left.end(),
                                           [&](int a, int b) { return rank(a) < rank(b); });
        const int part = *next;
        left.erase(next);
        Column unit = columns[static_cast<std::size_t>(part)];
        const double length = std::sqrt(Dot(unit, unit));
        for (double& x : unit)
            x = length > 0.0 ? x / length : 0.0;
        const std::size_t row = triangle.Order.size();
        triangle.Order.push_back(part);
        triangle.R[row][static_cast<std::size_t>(part)] = length;
        for (const int other : left) {
            Column& column = columns[static_cast<std::size_t>(other)];
            const double along = Dot(unit, column);
            triangle.R[row][static_cast<std::size_t>(other)] = along;
            for (std::size_t k = 0; k < column.size(); ++k)
                column[k] -= along * unit[k];
        }
    }
    return triangle;
}

/// A beginning: the choices made so far, by part, and the sum of squares that they leave.
struct Beginning {
    PartChoices Choices;
    double Sum = 0.0;
};

double ChangeOf(const PartToChoose& part, int choice) {
    return std::log(part.Choices[static_cast<std::size_t>(choice)].Value / part.Exact);
}

class KBest {
public:
    KBest(const Triangle& given, const std::vector<PartToChoose>& toChoose)
        : triangle(given), parts(toChoose) {
        for (const PartToChoose& part : parts) {
            changes.emplace_back();
            for (int i = 0; i < static_cast<int>(part.Choices.size()); ++i)
                changes.back().push_back(ChangeOf(part, i));
        }
    }

    std::vector<Beginning> Run() {
        std::vector<Beginning> survivors{{PartChoices(parts.size(), 0), 0.0}};
        std::vector<Child> children;
        for (std::size_t row = parts.size(); row-- > 0;) {
            children.clear();
            for (std::size_t parent = 0; parent < survivors.size(); ++parent)
                Continue(survivors[parent], parent, row, children);
            const auto width = std::min<std::size_t>(LatticeWidth, children.size());
            std::partial_sort(children.begin(),
                              children.begin() + static_cast<std::ptrdiff_t>(width), children.end(),
                              [](const Child& a, const Child& b) { return a.Sum < b.Sum; });
            children.resize(width);
            std::vector<Beginning> next;
            next.reserve(width);
            for (const Child& child : children) {
                next.push_back({survivors[child.Parent].Choices, child.Sum});
                next.back().Choices[static_cast<std::size_t>(triangle.Order[row])] = child.Choice;
            }
            survivors = std::move(next);
        }
        return survivors;
    }

private:
    /// A beginning with one part more.
    struct Child {
        double Sum;
        std::size_t Parent;
        int Choice;
    };

    /// The next part of one beginning: about the value at which its row of the triangle vanishes.
    void Continue(const Beginning& beginning, std::size_t parent, std::size_t row,
                  std::vector<Child>& children) const {
        const auto part = static_cast<std::size_t>(triangle.Order[row]);
        const Column& R = triangle.R[row];
        double rest = 0.0;
        for (std::size_t later = row + 1; later < triangle.Order.size(); ++later) {
            const auto other = static_cast<std::size_t>(triangle.Order[later]);
            rest += R[other] * changes[other][static_cast<std::size_t>(beginning.Choices[other])];
        }
        const double diagonal = R[part];
        const double wanted = diagonal > 0.0 ? -rest / diagonal : 0.0;
        const std::vector<double>& all = changes[part];
        const int count = static_cast<int>(all.size());
        const int above =
            static_cast<int>(std::lower_bound(all.begin(), all.end(), wanted) - all.begin());
        const int width = std::min(LatticeChildren, count);
        const int first = std::clamp(above - width / 2, 0, count - width);
        for (int choice = first; choice < first + width; ++choice) {
            const double left = rest + diagonal * all[static_cast<std::size_t>(choice)];
            children.push_back({beginning.Sum + left * left, parent, choice});
        }
    }

    const Triangle& triangle;
    const std::vector<PartToChoose>& parts;
    std::vector<std::vector<double>> changes;
};

/// The derivatives of the residuals in ln(value), decomposed.
Triangle TriangleOf(const FilterDesign& exact, Closeness& judge,
                    const std::vector<PartToChoose>& parts) {
    const std::vector<double>& freqs = judge.Grid().Freqs();
    const auto work = std::make_unique<FilterDesign>(exact);
    const std::vector<double> scale = ScaleOf(exact, freqs);
    const Column at = Residuals(exact, judge, freqs, scale);
    std::vector<Column> columns;
    for (const PartToChoose& part : parts) {
        double& value =
            work->Elements[static_cast<std::size_t>(part.Place.Slot)].Value(part.Place.Row);
        value *= std::exp(stepInLn);
        columns.push_back(Residuals(*work, judge, freqs, scale));
        for (std::size_t i = 0; i < at.size(); ++i)
            columns.back()[i] = (columns.back()[i] - at[i]) / stepInLn;
        value = part.Exact;
    }
    return Decompose(std::move(columns), parts);
}

/// The best choices by the lattice alone.
std::vector<PartChoices> ChoicesOfLattice(const FilterDesign& exact, Closeness& judge,
                                          const std::vector<PartToChoose>& parts) {
    const Triangle triangle = TriangleOf(exact, judge, parts);
    std::vector<PartChoices> choices;
    for (Beginning& each : KBest(triangle, parts).Run())
        choices.push_back(std::move(each.Choices));
    return choices;
}

/// Ascending by cost, those of the same cost as they were.
void SortByCost(std::vector<PartChoices>& choices, ValueSearch& search) {
    std::stable_sort(choices.begin(), choices.end(),
                     [&search](const PartChoices& a, const PartChoices& b) {
                         return search.CostOf(a) < search.CostOf(b);
                     });
}

}  // namespace

Slices DescendFromLattice(const FilterDesign& exact, Closeness& judge,
                          const std::vector<PartToChoose>& parts, ValueSearch& search,
                          PartChoices& best) {
    std::vector<PartChoices> found = ChoicesOfLattice(exact, judge, parts);
    co_yield Pause;
    std::size_t judged = 0;
    for (; judged < found.size() && (judged == 0 || !search.IsDone()); ++judged) {
        search.CostOf(found[judged]);
        if (search.IsPauseDue()) co_yield Pause;
    }
    found.resize(judged);  // the evaluations may be used up
    SortByCost(found, search);
    found.resize(std::min<std::size_t>(LatticeDescents, found.size()));
    for (std::size_t i = 0; i < found.size(); ++i) {
        Slices descent = search.Descend(found[i]);
        while (descent.Advance())
            co_yield Pause;
    }
    SortByCost(found, search);
    best = found.front();
}

}  // namespace ladderwise
