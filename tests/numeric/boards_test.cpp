// Which parts to buy: against a search of all sets, shares known in closed form, and the edges that
// were asked for.
#include <gtest/gtest.h>

#include <set>

#include "analysis/Results.h"
#include "boards/Absorb.h"
#include "boards/Closeness.h"
#include "boards/StandardParts.h"
#include "boards/Yield.h"
#include "support.h"

namespace ladderwise {
namespace {

StandardParts Chosen(const Calculation& calculation, StdMethod method,
                     const std::vector<HeldPart>& held = {}, const LimitLines& limits = {}) {
    StandardTask task;
    task.Method = method;
    task.Held = held;
    task.Limits = limits;
    task.Effort = 0.2;  // enough for the ladders here
    return ChooseStandardParts(calculation.Design, calculation.IdealElements, task);
}

/// J of the best of all ladders with each part at most `reach` values from the nearest.
double LeastOfAll(const Calculation& calculation, int reach) {
    auto design = std::make_unique<FilterDesign>(calculation.Design);
    Closeness judge(calculation.Design, calculation.IdealElements);
    const std::vector<PartToChoose> parts = PartsToChoose(*design, {}, reach);
    double least = Infinity;
    const std::function<void(std::size_t)> descend = [&](std::size_t part) {
        if (part == parts.size()) {
            least = std::min(least, judge.Cost(*design));
            return;
        }
        const auto& [slot, row] = parts[part].Place;
        for (const SeriesValue& value : parts[part].Choices) {
            design->Elements[static_cast<std::size_t>(slot)].Value(row) = value.Value;
            descend(part + 1);
        }
    };
    descend(0);
    return least;
}

/// The largest |A - T| by the reference analysis at other frequencies than the choice had.
double DeviationBetween(const Calculation& calculation, const ElementList& chosen, double low,
                        double high) {
    auto design = std::make_unique<FilterDesign>(calculation.Design);
    double worst = 0.0;
    for (int i = 0; i <= 500; ++i) {
        const double f = low + (high - low) * i / 500.0;
        design->Elements = calculation.Design.Elements;
        const Complex exact = AnalysePoint(*design, design->F0, f).Transfer;
        design->Elements = chosen;
        const Complex other = AnalysePoint(*design, design->F0, f).Transfer;
        worst = std::max(worst, std::abs(20.0 * std::log10(std::abs(other / exact))));
    }
    return worst;
}

}  // namespace

TEST(StandardParts, TheClosestSetOfAllIsFound) {
    const auto calculation = Designed({{"poles", "4"},
                                       {"response", "chebyshev"},
                                       {"f0", "71.3"},
                                       {"cap-tol", "10"},
                                       {"ind-tol", "10"}});
    const StandardParts parts = Chosen(*calculation, StdMethod::Together);
    EXPECT_LE(parts.ChosenCost, LeastOfAll(*calculation, 3) * (1.0 + 1e-12));
    EXPECT_LT(parts.ChosenCost, 0.7 * parts.NearestCost);
    // Other ratios of L to C in both resonators, four values away.
    const auto resonators = Designed({{"pass", "band-pass"},
                                      {"poles", "2"},
                                      {"response", "chebyshev"},
                                      {"ripple", "0.1"},
                                      {"f0", "38.9314"},
                                      {"bw-percent", "12"},
                                      {"cap-tol", "5"},
                                      {"ind-tol", "5"}});
    EXPECT_LE(Chosen(*resonators, StdMethod::Together).ChosenCost,
              LeastOfAll(*resonators, 4) * (1.0 + 1e-12));
    FilterDesign nearest = calculation->Design;
    SnapToStdValue(nearest);
    for (int slot = 1; slot <= nearest.NumElements; ++slot)
        for (int row = 0; row < 2; ++row)
            EXPECT_EQ(parts.Nearest[slot].Value(row), nearest.Elements[slot].Value(row));
}

TEST(StandardParts, AreNeverWorseThanTheNearestAndAlwaysOfTheirSeries) {
    const Settings designs[] = {
        {{"pass", "high-pass"}, {"poles", "5"}},
        {{"pass", "notch"}, {"poles", "3"}, {"bw", "60"}},
        {{"pass", "band-pass"}, {"response", "elliptic-c"}, {"poles", "1"}, {"bw", "70"}},
        {{"pass", "direct-coupled"}, {"bw", "20"}, {"parts", "real"}, {"ind-q", "150"}},
        {{"pass", "norton"}, {"bw", "20"}},
    };
    for (const Settings& settings : designs) {
        const auto calculation = Designed(settings);
        const StandardParts parts = Chosen(*calculation, StdMethod::Together);
        const std::string name = settings[0].second;
        EXPECT_LT(parts.ChosenCost, parts.NearestCost) << name;
        EXPECT_LE(parts.ChosenDeviation, parts.NearestDeviation) << name;
        EXPECT_GT(parts.NearestDeviation, 0.0) << name;
        for (const ChosenPart& part : parts.Parts) {
            const PartKind kind =
                part.Place.Row % 2 == 0 ? PartKind::Inductor : PartKind::Capacitor;
            EXPECT_EQ(part.Value.Value,
                      SnapValue(calculation->Design.PartModel, kind, part.Value.Value));
        }
    }
}

TEST(StandardParts, PairsOfCapacitorsMakeWhatSinglesCannotAndAHeldPartStays) {
    const auto calculation = Designed({{"pass", "band-pass"},
                                       {"bw-percent", "5"},
                                       {"poles", "3"},
                                       {"cap-tol", "5"},
                                       {"ind-tol", "5"}});
    const StandardParts singles = Chosen(*calculation, StdMethod::Together);
    const HeldPart held{singles.Parts[0].Place, 1.3 * singles.Parts[0].Value.Value};
    const StandardParts pairs = Chosen(*calculation, StdMethod::Pairs);
    const StandardParts again = Chosen(*calculation, StdMethod::Pairs);
    EXPECT_LT(pairs.ChosenCost, 0.5 * singles.ChosenCost);
    EXPECT_NEAR(DeviationBetween(*calculation, pairs.Chosen, 197e6, 203e6), 0.0,
                pairs.ChosenDeviation * 1.01);
    for (std::size_t i = 0; i < pairs.Parts.size(); ++i) {
        const SeriesValue& value = pairs.Parts[i].Value;
        EXPECT_EQ(value.Value, again.Parts[i].Value.Value);
        if (!value.IsPair()) continue;
        EXPECT_EQ(pairs.Parts[i].Place.Row % 2, 1);
        EXPECT_EQ(value.Larger + value.Smaller, value.Value);
        EXPECT_GE(value.Smaller, SmallestOfPair * value.Larger);
        for (const double each : {value.Larger, value.Smaller})
            EXPECT_EQ(each, SnapValue(calculation->Design.PartModel, PartKind::Capacitor, each));
    }
    const StandardParts kept = Chosen(*calculation, StdMethod::Together, {held});
    EXPECT_EQ(kept.Parts[0].Value.Value, held.Value);
    EXPECT_EQ(kept.Chosen[held.Place.Slot].Value(held.Place.Row), held.Value);
}

namespace {

/// A shunt capacitor alone, whose loss grows with it, and a limit that it just keeps when its value
/// is `most` times the nominal one.
struct OneCapacitor {
    explicit OneCapacitor(double value, double most)
        : Design(MakeDesign({SlotOf(ElementType::ShuntCap, [&](ValueKind) { return value; })})) {
        FilterDesign limit = Design;
        limit.Elements[1].V2 *= most;
        const double f = 1.0 / (TwoPi * value * 50.0);
        const double loss = -ComplexToDb(AnalysePoint(limit, TestF0, f).Transfer);
        Task.Limits = {{LimitKind::AttenMax, f, f, loss}};
        Task.Boards = 20000;
    }

    void ExpectShare(double share) const {
        const YieldResult result = YieldOf(Design, Task);
        EXPECT_NEAR(result.Share(), share, 4.0 * std::sqrt(share * (1.0 - share) / Task.Boards));
        EXPECT_EQ(result.Failures[0], result.Boards - result.Passed);
    }

    FilterDesign Design;
    YieldTask Task;
};

double NormalBelow(double x) {
    return 0.5 * (1.0 + std::erf(x / std::sqrt(2.0)));
}

}  // namespace

TEST(Yield, IsTheShareThatASinglePartHasByItsDistribution) {
    // Of the 201 steps of 5 % those from -100 to +40 keep 1 + 0.405 x 5 %.
    OneCapacitor(100e-12, 1.0 + 0.405 * 0.05).ExpectShare(141.0 / NumToleranceSteps);
    OneCapacitor absolute(5e-12, 1.0 + 0.405 * 0.1);
    absolute.Design.Boards.CapAbsolute = 0.5e-12;
    absolute.ExpectShare(141.0 / NumToleranceSteps);
    OneCapacitor better(100e-12, 1.0 + 0.405 * 0.01);
    better.Design.Held = {{{1, 1}, 0.0, 0.01}};
    better.ExpectShare(141.0 / NumToleranceSteps);
    OneCapacitor normal(100e-12, 1.0 + 0.05 / 3.0);
    normal.Design.Boards.Normal = true;
    normal.ExpectShare((NormalBelow(1.0) - NormalBelow(-3.0)) /
                       (NormalBelow(3.0) - NormalBelow(-3.0)));
}

TEST(Yield, APairAveragesItsTolerancesAndAReelDoesNot) {
    const auto share = [](bool pair, double reel) {
        OneCapacitor one(100e-12, 1.0 + 0.5 * 0.05);
        one.Design.Boards.Reel = reel;
        if (pair) one.Design.Pairs = {{{1, 1}, 100e-12, 50e-12, 50e-12}};
        return YieldOf(one.Design, one.Task).Share();
    };
    EXPECT_NEAR(share(false, 0.0), 0.75, 0.02);
    EXPECT_NEAR(share(true, 0.0), 0.875, 0.02);  // 1 - (1/2)^2 / 2 of the square of both draws
    EXPECT_NEAR(share(true, 1.0), 0.75, 0.02);
}

// What a worst case draws is what the boards are counted of.
TEST(Yield, TheRunsOfAWorstCaseAreBoardsToo) {
    const auto spread = [](const Settings& more) {
        Settings all = {{"poles", "1"}, {"f0", "1273.24"}, {"worst-case", "on"}, {"seed", "5"}};
        all.insert(all.end(), more.begin(), more.end());
        return Designed(all)->WorstCase.SpreadAtF0Db;  // of one capacitor of 5 pF
    };
    const double five = spread({});
    EXPECT_GT(five, 0.2);
    EXPECT_NEAR(spread({{"cap-abs", "0.5"}}), spread({{"cap-tol", "10"}}), 1e-4);
    EXPECT_LT(spread({{"draw", "normal"}}), five);
}

TEST(Yield, TheIntervalCoversNineteenOfTwenty) {
    double sum = 0.0;
    int cases = 0;
    for (const int n : {100, 300})
        for (double p = 0.31; p < 0.97; p += 0.03) {
            for (int k = 0; k <= n; ++k) {
                const auto [low, high] = WilsonInterval(k, n);
                if (p < low || p > high) continue;
                sum +=
                    std::exp(std::lgamma(n + 1.0) - std::lgamma(k + 1.0) -
                             std::lgamma(n - k + 1.0) + k * std::log(p) + (n - k) * std::log1p(-p));
            }
            ++cases;
        }
    EXPECT_NEAR(sum / cases, 0.95, 0.005);
}

TEST(Yield, ChosenValuesPassMoreOftenThanTheNearest) {
    const auto calculation = Designed({{"poles", "5"},
                                       {"response", "chebyshev"},
                                       {"f0", "30"},
                                       {"ind-tol", "5"},
                                       {"cap-tol", "5"}});
    const LimitLines limits = {{LimitKind::AttenMax, 0.0, 27e6, 0.45},
                               {LimitKind::AttenMin, 60e6, 300e6, 37.0}};
    const StandardParts parts = Chosen(*calculation, StdMethod::Yield, {}, limits);
    FilterDesign design = calculation->Design;
    const auto passed = [&](const ElementList& elements) {
        design.Elements = elements;
        return YieldOf(design, {limits, 2000, 7}).Passed;
    };
    EXPECT_GT(passed(parts.Chosen), passed(parts.Nearest) + 200);
    BoardCount sliced(design, limits, 7);
    for (const int boards : {250, 0, 1749, 1})
        sliced.Build(boards);
    EXPECT_EQ(sliced.Result().Boards, 2000);
    EXPECT_EQ(sliced.Result().Passed, passed(design.Elements));
}

// Where most boards fail, by little or by much: a step of one part does no better.
TEST(Yield, NoNeighbourOfTheChosenValuesPassesClearlyMoreOften) {
    const auto calculation = Designed({{"poles", "5"},
                                       {"response", "chebyshev"},
                                       {"f0", "32"},
                                       {"ripple", "0.1"},
                                       {"cap-tol", "5"},
                                       {"ind-tol", "10"}});
    const LimitLines limits{{LimitKind::AttenMax, 1e6, 30e6, 0.6},
                            {LimitKind::AttenMin, 60e6, 120e6, 35.0},
                            {LimitKind::ReturnLossMin, 1e6, 28e6, 14.0}};
    StandardTask task;
    task.Method = StdMethod::Yield;
    task.Limits = limits;
    const StandardParts parts =
        ChooseStandardParts(calculation->Design, calculation->IdealElements, task);
    auto design = std::make_unique<FilterDesign>(calculation->Design);
    const auto share = [&](const ElementList& elements) {
        design->Elements = elements;
        return YieldOf(*design, {limits, 2000, 4}).Share();
    };
    const double chosen = share(parts.Chosen);
    EXPECT_GT(chosen, share(parts.Nearest) + 0.03);  // 24 % in place of 18 %
    for (const PartToChoose& part : PartsToChoose(calculation->Design, {}, 10))
        for (std::size_t i = 1; i + 1 < part.Choices.size(); ++i) {
            const auto valueIn = [&](ElementList& elements) -> double& {
                return elements[static_cast<std::size_t>(part.Place.Slot)].Value(part.Place.Row);
            };
            ElementList elements = parts.Chosen;
            if (part.Choices[i].Value != valueIn(elements)) continue;
            for (const std::size_t next : {i - 1, i + 1}) {
                valueIn(elements) = part.Choices[next].Value;
                EXPECT_LT(share(elements), chosen + 0.03) << part.Place.Slot;
            }
        }
}

TEST(Yield, FewPointsJudgeAsManyDo) {
    const auto calculation =
        Designed({{"pass", "band-pass"}, {"poles", "4"}, {"bw", "40"}, {"response", "chebyshev"}});
    FilterDesign board = calculation->Design;
    const LimitLines limits = {{LimitKind::AttenMax, 185e6, 215e6, 1.5},
                               {LimitKind::ReturnLossMin, 190e6, 210e6, 6.0}};
    BoardJudge judge(board, limits);
    BoardDrawer drawer(board);
    std::mt19937 generator(3);
    int passed = 0, otherwise = 0;
    for (int k = 0; k < 2000; ++k) {
        drawer.Draw(generator, board);
        const bool passes = judge.Of(board).Passes();
        passed += passes;
        otherwise += passes != judge.Closely(board).Passes();
    }
    EXPECT_GT(passed, 100);
    EXPECT_LT(passed, 1900);
    EXPECT_LE(otherwise, 2);
}

TEST(FitWidth, EdgesAreWhereTheyWereAskedForWithLossesAndLines) {
    const Settings designs[] = {
        {{"parts", "ideal"}},
        {{"parts", "real"}, {"ind-q", "100"}},
        {{"parts", "deembed"}, {"ind-q", "150"}},
        {{"inverter", "line"}, {"tank", "7"}, {"tlin", "60"}},
    };
    for (Settings settings : designs) {
        for (const auto& [name, value] :
             Settings{{"pass", "direct-coupled"}, {"bw", "20"}, {"f0", "100"}})
            settings.emplace_back(name, value);
        const std::string what = settings[0].second;
        const auto plain = Designed(settings);
        settings.emplace_back("fit-width", "on");
        const auto fitted = Designed(settings);
        const auto& edges = fitted->Results.Edges;
        ASSERT_TRUE(edges.Lower && edges.Upper) << what;
        EXPECT_NEAR(*edges.Lower, 90e6, 100.0) << what;
        EXPECT_NEAR(*edges.Upper, 110e6, 100.0) << what;
        EXPECT_GT(std::abs(*plain->Results.Edges.Lower - 90e6), 1e4) << what;
        EXPECT_EQ(fitted->Design.F0, 100e6);
        EXPECT_EQ(fitted->Design.BandWidth, 20e6);
    }
}

TEST(Absorb, TheLossyLadderTakesTheIdealShape) {
    const auto calculation = Designed({{"pass", "band-pass"},
                                       {"poles", "4"},
                                       {"f0", "100"},
                                       {"bw", "40"},
                                       {"parts", "real"},
                                       {"ind-q", "100"}});
    const AbsorbedLadder absorbed =
        AbsorbParasitics(calculation->Design, calculation->IdealElements);
    EXPECT_LT(absorbed.MissDb, 0.3);
    EXPECT_GT(absorbed.MissedDb, 1.0);
    FilterDesign design = calculation->Design;
    design.Elements = absorbed.Elements;
    const ResponseResults results = ComputeResults(design, ReturnLossBandEdge(design));
    ASSERT_TRUE(results.Edges.Lower && results.Edges.Upper);
    EXPECT_NEAR(*results.Edges.Upper - *results.Edges.Lower, 40e6, 0.8e6);
    EXPECT_NEAR(std::sqrt(*results.Edges.Lower * *results.Edges.Upper), std::sqrt(80e6 * 120e6),
                0.4e6);

    design = calculation->Design;
    design.PartModel.IndQ = 5.0;
    const AbsorbedLadder lossy = AbsorbParasitics(design, calculation->IdealElements);
    EXPECT_GT(lossy.MissDb, AbsorbedLadder::ShapeKeptDb);
    design.PartModel.IndQ = lossy.NeededQ;
    EXPECT_LE(AbsorbParasitics(design, calculation->IdealElements).MissDb,
              AbsorbedLadder::ShapeKeptDb);
}

}  // namespace ladderwise
