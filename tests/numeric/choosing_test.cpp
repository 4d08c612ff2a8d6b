// The list of filters for a need: orders against closed forms, rows against the console's way to
// the same ladder and a dense search, boards against boards judged one by one.
#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <random>
#include <set>

#include "analysis/BoardDraws.h"
#include "analysis/PartValues.h"
#include "analysis/ResponseSamples.h"
#include "choosing/BoardYield.h"
#include "choosing/FilterChoices.h"
#include "choosing/MinimaxStep.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

using enum LimitKind;

std::unique_ptr<ChoosingRequest> Asked(const Settings& settings, const LimitLines& limits,
                                       int rows = 40) {
    auto request = std::make_unique<ChoosingRequest>();
    const auto calculation = Designed(settings);
    request->Inputs = calculation->Inputs;
    request->Present = calculation->Design;
    request->Limits = limits;
    request->MostRows = rows;
    request->YieldRows = 0;
    return request;
}

FilterList Chosen(const ChoosingRequest& request) {
    ChoosingMemory memory;
    return ChooseFilters(request, memory);
}

/// The smallest margin of a ladder at 1000 points of each limit, dB.
double DenseMargin(const FilterDesign& design, const LimitLines& limits) {
    double least = 1e9;
    for (const LimitLine& line : limits) {
        for (int i = 0; i <= 1000; ++i) {
            const double f = std::max(line.From, 1e-5 * line.To) +
                             (line.To - std::max(line.From, 1e-5 * line.To)) * i / 1000.0;
            const double loss = -LevelAt(design, f);
            least =
                std::min(least, line.Kind == AttenMin        ? loss - line.Value
                                : line.Kind == ReturnLossMin ? -ReflectionAt(design, f) - line.Value
                                                             : line.Value - loss);
        }
    }
    return least;
}

/// The ladder that the row's settings make in a fresh program.
std::unique_ptr<Calculation> Remade(const ChoosingRequest& request, const FilterChoice& row) {
    return Designed(SettingsOf(request, row));
}

const LimitLines transmitter = {
    {AttenMax, 144e6, 148e6, 1.0}, {AttenMin, 288e6, 296e6, 45.0}, {AttenMin, 432e6, 444e6, 45.0}};
const LimitLines band = {
    {AttenMax, 96e6, 104e6, 1.5}, {AttenMin, 40e6, 80e6, 35.0}, {AttenMin, 125e6, 300e6, 35.0}};
const LimitLines stopped = {
    {AttenMin, 98e6, 102e6, 30.0}, {AttenMax, 30e6, 85e6, 1.0}, {AttenMax, 118e6, 250e6, 1.0}};

// Butterworth: n >= log(k) / log(x); Chebyshev: n >= acosh(sqrt(k)) / acosh(x), at equal ends the
// next odd one, with k = (10^(As/10) - 1) / (10^(Ap/10) - 1) and x the ratio of the edges.
TEST(Choosing, SmallestOrdersAreThoseOfTheClosedForms) {
    for (const auto& [ripple, need, ratio] : {std::tuple{0.5, 40.0, 2.0}, {0.3, 50.0, 2.9}}) {
        const LimitLines limits = {{AttenMax, 0.0, 30e6, ripple},
                                   {AttenMin, 30e6 * ratio, 300e6, need}};
        const double k =
            (std::pow(10.0, need / 10.0) - 1.0) / (std::pow(10.0, ripple / 10.0) - 1.0);
        const int butterworth = int(std::ceil(0.5 * std::log(k) / std::log(ratio)));
        int chebyshev = int(std::ceil(std::acosh(std::sqrt(k)) / std::acosh(ratio)));
        chebyshev += chebyshev % 2 == 0;
        const auto request = Asked({}, limits, 700);
        std::map<ResponseType, int> least;
        for (const FilterChoice& row : Chosen(*request).Choices) {
            if (row.OtherLoad) continue;
            int& n = least.try_emplace(row.What.Response, 99).first->second;
            n = std::min(n, row.What.Poles);
        }
        EXPECT_EQ(least[ResponseType::Butterworth], butterworth) << ripple;
        EXPECT_EQ(least[ResponseType::Chebyshev], chebyshev) << ripple;
    }
}

// Bands with one steep edge, and a notch as wide as its centre frequency: no raster of centres and
// widths finds a larger margin.
TEST(Choosing, UnevenBandsLieWhereADenseSearchPutsThem) {
    const struct {
        PassType Pass;
        LimitLines Limits;
    } needs[] = {{PassType::BandPassCanonical,
                  {{AttenMax, 0.350e6, 0.666e6, 1.0},
                   {AttenMin, 0.008e6, 0.235e6, 13.3},
                   {AttenMin, 0.795e6, 24e6, 13.3}}},
                 {PassType::Notch,
                  {{AttenMin, 23.4e6, 32.7e6, 38.7},
                   {AttenMax, 3.5e6, 11.8e6, 3.0},
                   {AttenMax, 46.9e6, 94e6, 3.0}}}};
    for (const auto& [pass, limits] : needs) {
        PrototypeStore prototypes;
        FilterDesign base;
        LadderMaker maker(base, prototypes);
        LimitGrid grid(limits, 256);
        Candidate what;
        what.Pass = pass;
        what.Poles = 5;
        ASSERT_TRUE(maker.Use(what));
        const Placement at = PlacementSearch(maker, grid, pass, KeptLimits::All).Find(what);
        double best = -1e9;
        for (int i = -20; i <= 20; ++i)
            for (int k = -20; k <= 20; ++k) {
                const double f0 = at.F0 * (1.0 + 0.005 * i),
                             width = at.BandWidth * (1.0 + 0.02 * k);
                if (!maker.Place(f0, width)) continue;
                double least = 1e9;
                for (const RowMargin& row : grid.Judge(maker.Design(), 0.0))
                    least = std::min(least, row.Least());
                best = std::max(best, least);
            }
        EXPECT_GT(at.Margin, 0.0);
        EXPECT_GT(at.Margin, best - 0.01);
    }
}

// The fewest that a dense search over F0, ripple and attenuation of every group came to: a ripple
// beyond the return loss, whose valley lies beside it; one trap in a stop limit, with half of its
// attenuation beside it.
TEST(Choosing, FindsWhatADenseSearchFindsWithFewestParts) {
    const struct {
        const char* Pass;
        LimitLines Limits;
        int Inductors, Parts;
    } needs[] = {{"high-pass",
                  {{AttenMax, 33.5486e6, 36.9035e6, 2.0},
                   {AttenMin, 3.31428e6, 16.5714e6, 20.72},
                   {ReturnLossMin, 33.5486e6, 36.9035e6, 12.0}},
                  1,
                  3},
                 {"low-pass",
                  {{AttenMax, 0.0, 1.45177e6, 1.0}, {AttenMin, 2.35276e6, 2.39982e6, 45.51}},
                  1,
                  4}};
    for (const auto& need : needs) {
        const FilterList list = Chosen(*Asked({{"pass", need.Pass}}, need.Limits));
        EXPECT_EQ(list.AtUsersLoad.Inductors, need.Inductors) << need.Pass;
        EXPECT_EQ(list.AtUsersLoad.Parts, need.Parts) << need.Pass;
    }
}

// One trap in a stop limit of 2 %, where ripple, attenuation and F0 are one narrow ridge: a dense
// scan of the three comes to 0.07 dB at a ripple of 0.43 dB and 17.2 dB. From the raster, 1 dB
// below, no search of one after the other gets there.
TEST(Choosing, ClimbsARidgeOfRippleAttenuationAndCorner) {
    const FilterList list = Chosen(
        *Asked({}, {{AttenMax, 0.0, 5.86299e6, 0.5}, {AttenMin, 6.94532e6, 7.08423e6, 33.5}}, 400));
    const auto row = std::find_if(
        list.Choices.begin(), list.Choices.end(),
        [](const FilterChoice& choice) { return choice.What.Response == ResponseType::EllipticA; });
    ASSERT_NE(row, list.Choices.end());
    EXPECT_EQ(row->Parts.Both(), 5);
    EXPECT_GT(row->MarginDb, 0.07);
}

// Two planes best where they cross, one in the corner of the box, and many that none of ten
// thousand steps drawn at random does better for.
TEST(MinimaxStep, IsTheBestInItsBox) {
    const auto roof = LargestSmallest({{1.0, {2.0}}, {2.0, {-1.0}}}, {1.0, 1.0, 0.0, 0.0});
    EXPECT_NEAR(roof.Step[0], 1.0 / 3.0, 1e-12);
    EXPECT_NEAR(roof.Smallest, 5.0 / 3.0, 1e-12);
    const auto plane = LargestSmallest({{0.0, {1.0, -2.0, 0.5, 0.0}}}, {0.5, 0.25, 2.0, 1.0});
    EXPECT_NEAR(plane.Smallest, 2.0, 1e-12);
    std::mt19937 random(5);
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> inside(-1.0, 1.0);
    for (int problem = 0; problem < 40; ++problem) {
        std::vector<LinearFunction> functions(static_cast<std::size_t>(3 + 8 * problem));
        std::array<double, MostUnknowns> reach{};
        for (std::size_t j = 0; j < MostUnknowns; ++j)
            reach[j] = (problem + j) % 5 == 0 ? 0.0 : std::exp(normal(random));
        for (LinearFunction& of : functions) {
            of.Value = 3.0 * std::abs(normal(random));
            for (double& slope : of.Slope)
                slope = normal(random);
        }
        const MinimaxStep best = LargestSmallest(functions, reach);
        const auto smallestAt = [&](const std::array<double, MostUnknowns>& step) {
            double smallest = 1e300;
            for (const LinearFunction& of : functions)
                smallest = std::min(smallest, std::inner_product(step.begin(), step.end(),
                                                                 of.Slope.begin(), of.Value));
            return smallest;
        };
        EXPECT_NEAR(smallestAt(best.Step), best.Smallest, 1e-12);
        for (int trial = 0; trial < 10000; ++trial) {
            // Half of them around what was found, ever closer.
            std::array<double, MostUnknowns> step;
            const double near = trial % 2 == 0 ? 1.0 : std::exp(-trial / 700.0);
            for (std::size_t j = 0; j < MostUnknowns; ++j)
                step[j] = std::clamp(
                    (trial % 2 == 0 ? 0.0 : best.Step[j]) + near * reach[j] * inside(random),
                    -reach[j], reach[j]);
            ASSERT_LE(smallestAt(step), best.Smallest + 1e-9) << problem;
        }
    }
}

TEST(Choosing, EveryRowDoesWhatItSaysAndIsMadeByItsSettings) {
    const struct {
        Settings Set;
        LimitLines Limits;
        double Load = 50.0;
    } needs[] = {
        {{{"parts", "real"}, {"ind-q", "60"}}, transmitter},
        {{{"pass", "norton"}, {"poles", "3"}}, band},
        {{{"pass", "band-pass"}, {"parts", "deembed"}, {"ind-q", "300"}}, band},
        {{{"pass", "notch"}, {"response", "bessel-freq"}, {"r-load", "75"}}, stopped, 75.0},
        {{{"pass", "high-pass"}, {"std", "on"}},
         {{ReturnLossMin, 30e6, 60e6, 12.0}, {AttenMin, 5e6, 15e6, 30.0}}}};
    for (const auto& need : needs) {
        const auto request = Asked(need.Set, need.Limits, 60);
        const FilterList list = Chosen(*request);
        ASSERT_GT(list.Choices.size(), 5u);
        std::set<std::pair<PassType, ResponseType>> seen;
        double cost = 0.0;
        for (const FilterChoice& row : list.Choices) {
            EXPECT_GE(row.Cost, cost);
            cost = row.Cost;
            EXPECT_EQ(row.OtherLoad, std::abs(row.RLoad - need.Load) > 1e-3);
            if (!seen.insert({row.What.Pass, row.What.Response}).second) continue;
            const auto remade = Remade(*request, row);
            ASSERT_EQ(remade->Design.NumElements, row.NumElements);
            for (int slot = 1; slot <= row.NumElements; ++slot)
                for (int value = 0; value < 4; ++value)
                    EXPECT_EQ(remade->Design.Elements[std::size_t(slot)].Value(value),
                              row.Elements[std::size_t(slot)].Value(value));
            EXPECT_GT(row.MarginDb, 0.0);
            EXPECT_NEAR(DenseMargin(remade->Design, need.Limits), row.MarginDb, 2e-3);
        }
        EXPECT_GT(seen.size(), 1u);
    }
}

// An elliptic of two coils, 0.34 dB at a coarse scan, is worth more than a Chebyshev of seven
// poles.
TEST(Choosing, TrapsOnTheHarmonicsStandAboveSevenPoles) {
    const auto request = Asked({{"parts", "real"}, {"ind-q", "60"}}, transmitter, 400);
    const std::vector<FilterChoice> rows = Chosen(*request).Choices;
    const auto first = [&](auto fits) {
        return std::find_if(rows.begin(), rows.end(), fits) - rows.begin();
    };
    const auto elliptic = first([](const FilterChoice& row) {
        return IsElliptic(row.What.Response) && row.Parts.Inductors == 2 && !row.OtherLoad &&
               *row.LossDb < 0.36;
    });
    const auto chebyshev = first([](const FilterChoice& row) {
        return row.What.Response == ResponseType::Chebyshev && row.What.Poles == 7;
    });
    EXPECT_LT(elliptic, chebyshev);
    EXPECT_LT(chebyshev, std::ssize(rows));
    for (const FilterChoice& row : rows) {  // only what is behind another row is folded
        if (row.Folded) continue;
        for (const FilterChoice& other : rows)
            EXPECT_FALSE(other.OtherLoad == row.OtherLoad && other.Cost < row.Cost &&
                         other.Parts.Inductors <= row.Parts.Inductors &&
                         other.Parts.Both() <= row.Parts.Both() && other.MarginDb >= row.MarginDb &&
                         *other.LossDb <= *row.LossDb);
    }
}

TEST(Choosing, NearestMissesKeepTheirKindAndTellHowFarToRelax) {
    LimitLines limits = transmitter;
    limits[0] = {AttenMax, 130e6, 280e6, 0.05};
    const auto request = Asked({{"parts", "real"}, {"ind-q", "60"}}, limits);
    const FilterList list = Chosen(*request);
    EXPECT_TRUE(list.Choices.empty());
    ASSERT_FALSE(list.NearestMisses.empty());
    double last = 0.0;
    for (const FilterChoice& miss : list.NearestMisses) {
        LimitLines relaxed = limits;
        double most = 0.0;
        for (const RelaxedLimit& by : miss.Relax) {
            LimitLine& line = relaxed[by.Limit];
            EXPECT_EQ(line.Kind == AttenMin, miss.Kept == KeptLimits::Pass);
            line.Value += line.Kind == AttenMin ? -by.By : by.By;
            most = std::max(most, by.By);
        }
        EXPECT_GE(DenseMargin(Remade(*request, miss)->Design, relaxed), -2e-3);
        EXPECT_GE(most, last);
        last = most;
    }
}

TEST(Choosing, GoesOnFromTheLastListAndStops) {
    const auto request = Asked({}, transmitter, 60);
    ChoosingMemory memory;
    const FilterList first = ChooseFilters(*request, memory);
    request->Limits[1].Value = 46.0;
    const FilterList next = ChooseFilters(*request, memory);
    EXPECT_LT(next.Analyses, first.Analyses / 2);
    const FilterList anew = Chosen(*request);
    ASSERT_FALSE(next.Choices.empty());
    // While a limit is dragged the former rows follow it, each where it does best now.
    request->Limits[1].Value = 47.0;
    const FilterList moving = ReviseChoices(*request, next, memory);
    ASSERT_FALSE(moving.Choices.empty());
    EXPECT_LT(moving.Analyses, next.Analyses / 4);
    for (const FilterChoice& row : moving.Choices)
        EXPECT_GT(DenseMargin(Remade(*request, row)->Design, request->Limits), 0.0);
    EXPECT_NEAR(moving.Choices[0].Cost, Chosen(*request).Choices[0].Cost, 0.01);
    request->Limits[1].Value = 46.0;
    EXPECT_EQ(next.AtUsersLoad.Inductors, anew.AtUsersLoad.Inductors);
    EXPECT_EQ(next.AtUsersLoad.Parts, anew.AtUsersLoad.Parts);
    // What failed by far, and was not searched again for it, is when a value comes back.
    FilterList back;
    for (const double value : {190.0, 187.0, 184.0, 46.0}) {
        request->Limits[1].Value = value;
        back = ChooseFilters(*request, memory);
    }
    EXPECT_EQ(back.AtUsersLoad.Inductors, anew.AtUsersLoad.Inductors);
    EXPECT_EQ(back.AtUsersLoad.Parts, anew.AtUsersLoad.Parts);
    ASSERT_FALSE(back.Choices.empty());
    EXPECT_NEAR(back.Choices[0].Cost, anew.Choices[0].Cost, 0.1);
    for (LimitLine& line : request->Limits)  // so far that nothing is where it was
        line.From *= 1.4, line.To *= 1.4;
    const FilterList moved = ChooseFilters(*request, memory);
    EXPECT_EQ(moved.AtUsersLoad.Inductors, anew.AtUsersLoad.Inductors);
    EXPECT_EQ(moved.AtUsersLoad.Parts, anew.AtUsersLoad.Parts);
    int calls = 0;
    const FilterList stopped = ChooseFilters(*request, memory, [&](double) { return ++calls < 3; });
    EXPECT_TRUE(stopped.Stopped && stopped.Choices.empty());
    EXPECT_EQ(calls, 3);
}

// What a quarter of the points says is no less than what all of them say, and mostly not much more.
TEST(Choosing, AFewPointsTellWhatMarginsDoNotExceed) {
    const LimitLines limits = {{AttenMax, 1e6, 95e6, 0.9},
                               {ReturnLossMin, 20e6, 90e6, 10.0},
                               {AttenMin, 180e6, 400e6, 30.0},
                               {AttenMin, 410e6, 420e6, 50.0}};
    const auto calculation =
        Designed({{"response", "elliptic-c"}, {"poles", "3"}, {"f0", "108"}, {"parts", "real"}});
    FilterDesign& design = calculation->Design;
    LimitGrid grid(limits, 256);
    std::mt19937 generator(7);
    design.NominalElements = design.Elements;
    design.PartModel.CapTolerance = design.PartModel.IndTolerance = 0.3;
    int near = 0;
    constexpr int boards = 200;
    for (int board = 0; board < boards; ++board) {
        RandomiseParts(design, generator);
        KindMargins all;
        const std::vector<RowMargin>& rows = grid.Judge(design, 0.0);
        for (std::size_t row = 0; row < rows.size(); ++row) {
            double& least = IsPassLimit(limits[row].Kind) ? all.Pass : all.Stop;
            least = std::min(least, rows[row].Least());
        }
        const KindMargins most = grid.MostOf(design);
        EXPECT_GE(most.Pass, all.Pass - 1e-9);
        EXPECT_GE(most.Stop, all.Stop - 1e-9);
        near += most.Pass < all.Pass + 0.3 && most.Stop < all.Stop + 0.3;
    }
    EXPECT_GT(near, boards * 3 / 4);
}

TEST(Choosing, BoardsThatPassAreThoseOfADenseSearch) {
    const LimitLines limits = {{AttenMax, 1e6, 95e6, 0.9}, {AttenMin, 180e6, 400e6, 30.0}};
    const auto calculation = Designed({{"response", "chebyshev"},
                                       {"poles", "5"},
                                       {"f0", "108"},
                                       {"parts", "real"},
                                       {"ind-q", "200"}});
    FilterDesign& design = calculation->Design;
    LimitGrid coarse(limits, 256), fine(limits, 1024);
    constexpr int boards = 60;
    const double share = PassingShare(design, coarse, fine, boards, 5);
    std::mt19937 generator(5);
    const ElementList nominal = design.Elements;
    design.NominalElements = nominal;
    int passed = 0;
    for (int board = 0; board < boards; ++board) {
        RandomiseParts(design, generator);
        passed += DenseMargin(design, limits) >= 0.0;
    }
    EXPECT_NEAR(share, double(passed) / boards, 0.5 / boards);
    EXPECT_GT(share, 0.1);
    EXPECT_LT(share, 0.95);
}

}  // namespace
}  // namespace ladderwise
