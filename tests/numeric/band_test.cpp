// What is said about bands, checked against the analysis: direct-coupled pass bands by a dense
// search, the Q that a shape takes by coils of negative Q, the texts of the tanks by their
// responses.
#include <gtest/gtest.h>

#include <memory>

#include "pipeline/Calculation.h"
#include "pipeline/CoupledBand.h"
#include "pipeline/NamedSettings.h"
#include "prototypes/NaturalModes.h"
#include "support.h"

namespace ladderwise {
namespace {

std::vector<double> DenseLevels(const FilterDesign& design, double low, double high, int count) {
    std::vector<double> levels;
    for (int i = 0; i < count; ++i)
        levels.push_back(ComplexToDb(
            AnalysePoint(design, design.F0, low + (high - low) * i / (count - 1)).Transfer));
    return levels;
}

/// The same band by its definition on a dense grid of F0 +- 6 BandWidth: empty where a peak within
/// F0 +- BandWidth is wanting.
std::optional<PassBand> DenseBand(const FilterDesign& design, double& step) {
    const double low = std::max(design.F0 / 50, design.F0 - 6 * design.BandWidth);
    const double high = design.F0 + 6 * design.BandWidth;
    const int count = 20000;
    step = (high - low) / (count - 1);
    const std::vector<double> y = DenseLevels(design, low, high, count);
    const auto at = [&](int i) { return low + step * i; };
    int top = -1;
    for (int i = 1; i + 1 < count; ++i)
        if (std::abs(at(i) - design.F0) <= design.BandWidth && y[i] >= y[i - 1] &&
            y[i] > y[i + 1] && (top < 0 || y[i] > y[top]))
            top = i;
    if (top < 0) return {};
    int first = top, last = top;
    for (int before = -1; before != top;) {
        before = first = last = top;
        while (first > 0 && y[first - 1] > y[before] - 10)
            --first;
        while (last + 1 < count && y[last + 1] > y[before] - 10)
            ++last;
        top =
            static_cast<int>(std::max_element(y.begin() + first, y.begin() + last + 1) - y.begin());
    }
    while (y[first] < y[top] - 3.0103)
        ++first;
    while (y[last] < y[top] - 3.0103)
        --last;
    if (first == 0 || last + 1 == count) return {};
    double lowest = y[top];
    for (int i = first + 1; i < last; ++i)
        if (y[i] <= y[i - 1] && y[i] < y[i + 1]) lowest = std::min(lowest, y[i]);
    return PassBand{0.5 * (at(first) + at(last)), at(last) - at(first), y[top] - lowest, -y[top]};
}

TEST(CoupledBand, IsThatOfADenseSearch) {
    std::mt19937 random(20);
    const auto between = [&](double low, double high) {
        return low * std::pow(high / low, std::uniform_real_distribution<double>()(random));
    };
    int compared = 0;
    for (int trial = 0; trial < 40; ++trial) {
        const int poles = 1 + trial % 7, tank = static_cast<int>(random() % 10);
        const char* inverters[] = {"inductor", "capacitor", "line"};
        const char* families[] = {"butterworth", "bessel-freq", "papoulis", "gauss"};
        std::string values;
        for (int k = 0; k < poles; ++k)
            values += (k > 0 ? "," : "") +
                      std::to_string(between(tank == 0 ? 8 : 60, tank == 0 ? 45 : 400));
        const auto calculation = Designed({{"pass", "direct-coupled"},
                                           {"poles", std::to_string(poles)},
                                           {"response", families[random() % 4]},
                                           {"bw-percent", std::to_string(between(0.6, 30))},
                                           {"tank", std::to_string(tank)},
                                           {"inverter", inverters[random() % 3]},
                                           {"factor", std::to_string(between(0.3, 1.0))},
                                           {"tank-units", "ohms"},
                                           {"tank-values", values}});
        const FilterDesign& design = calculation->Design;
        double step = 0.0;
        const auto dense = DenseBand(design, step);
        const auto made = MeasureBand(design, calculation->IdealElements);
        // Where next to nothing passes, the grid misses the peaks of what passes.
        if (!dense || dense->PeakLossDb > 60) continue;
        ++compared;
        ASSERT_TRUE(made) << trial;
        EXPECT_NEAR(made->Width, dense->Width, 3 * step) << trial;
        EXPECT_NEAR(made->Centre, dense->Centre, 2 * step) << trial;
        EXPECT_NEAR(made->RippleDb, dense->RippleDb, 0.02) << trial;
        EXPECT_NEAR(made->PeakLossDb, dense->PeakLossDb, 0.02) << trial;
    }
    EXPECT_GT(compared, 25);
}

// Coils of negative Q undo the damping: at the Q of LeastDamping a natural mode reaches the axis,
// and the response grows without bounds; damped a tenth less or more it stays small.
TEST(NaturalModes, TheLeastDampedOneDecidesTheQ) {
    for (const char* pass : {"band-pass", "notch"})
        for (const char* family : {"butterworth", "chebyshev", "papoulis", "linear-chebyshev",
                                   "elliptic-a", "elliptic-c", "elliptic-d", "elliptic-e"})
            for (const char* count : {"1", "2"}) {
                const auto calculation = Designed({{"pass", pass},
                                                   {"response", family},
                                                   {"poles", count},
                                                   {"bw-percent", "0.5"},
                                                   {"atten", "30"},
                                                   {"parts", "real"}});
                FilterDesign& design = calculation->Design;
                design.PartModel.IndC = design.PartModel.CapR = design.PartModel.CapL = 0.0;
                const double damping = LeastDamping(design);
                const auto highest = [&](double part) {
                    design.PartModel.IndQ = -design.F0 / (design.BandWidth * damping * part);
                    const auto levels = DenseLevels(design, design.F0 - 1.5 * design.BandWidth,
                                                    design.F0 + 1.5 * design.BandWidth, 6000);
                    return *std::max_element(levels.begin(), levels.end());
                };
                const double there = highest(1.0);
                EXPECT_GT(there, highest(0.9) + 10) << pass << family << count;
                EXPECT_GT(there, highest(1.1) + 10) << pass << family << count;
            }
}

// What the window says of each tank: zeros, and pass bands beyond the first.
TEST(Tanks, AreGoodForWhatTheirTextsSay) {
    const double factor = 0.6, below = std::sqrt(1 - factor), above = 1 / below;
    const struct {
        const char* Tank;
        const char* Inverter;
        std::vector<double> Zeros;   ///< over F0
        std::vector<double> Passes;  ///< further pass bands over F0, to a tenth
    } cases[] = {{"1", "capacitor", {}, {}},
                 {"5", "inductor", {below}, {0.24}},
                 {"7", "inductor", {below}, {0.24}},
                 {"6", "capacitor", {above}, {4.07, 5.77}},
                 {"8", "capacitor", {above}, {4.07}},
                 {"2", "capacitor", {2.0}, {3.74, 4.02}},
                 {"3", "inductor", {4.0}, {4.28}},
                 {"4", "inductor", {2.0, 4.0}, {3.03, 4.98}},
                 {"9", "inductor", {2.0, 4.0}, {2.94, 4.88}}};
    for (const auto& c : cases) {
        const auto calculation = Designed({{"pass", "direct-coupled"},
                                           {"bw", "10"},
                                           {"tank", c.Tank},
                                           {"inverter", c.Inverter},
                                           {"factor", "0.6"},
                                           {"tank-units", "ohms"},
                                           {"tank-values", "100,100,100"}});
        const FilterDesign& design = calculation->Design;
        const auto level = [&](double x) {
            return ComplexToDb(AnalysePoint(design, design.F0, x * design.F0).Transfer);
        };
        for (const double zero : c.Zeros)
            EXPECT_LT(level(zero * (1 + 1e-9)), -150) << c.Tank;
        std::vector<double> levels = DenseLevels(design, 0.2 * design.F0, 6 * design.F0, 40000);
        const auto highest = [&](double low, double high) {
            const auto index = [&](double x) {
                const int k = static_cast<int>((x - 0.2) / 5.8 * 39999);
                return levels.begin() + std::clamp(k, 0, static_cast<int>(levels.size()));
            };
            return *std::max_element(index(low), index(high));
        };
        for (const double pass : c.Passes)
            EXPECT_GT(highest(pass - 0.05, pass + 0.05), -12) << c.Tank << " " << pass;
        if (c.Passes.empty()) {
            EXPECT_LT(highest(1.3, 6), -30) << c.Tank;
        }
    }
}

}  // namespace
}  // namespace ladderwise
