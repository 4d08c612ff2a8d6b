// Norton transforms: the response of the canonical band-pass is the truth, and the duals of the
// structures are each other's. Search results are those of a direct evaluation in Python.
#include <gtest/gtest.h>

#include "norton/Nortonsearch.h"
#include "prototypes/Prototype.h"
#include "scaling/BandScaler.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

constexpr NortonType nortonTypes[] = {NortonType::TCap, NortonType::TInd, NortonType::PiCap,
                                      NortonType::PiInd};

bool IsTee(NortonType type) {
    return type == NortonType::TCap || type == NortonType::TInd;
}

/// The canonical ladder of 200 MHz, 40 MHz, 50 ohm, in Elements and NortonBaseElements.
FilterDesign Canonical(NortonType type, int numPoles, double load = 50.0,
                       ResponseType response = ResponseType::Butterworth) {
    FilterDesign design;
    design.ResponseType = response;
    design.RippleDb = 0.2;
    design.NumPoles = numPoles;
    design.RLoad = load;
    design.Norton.NortonType = type;
    design.FormCLC = !IsTee(type);
    BuildPrototype(design, numPoles, {});
    ScaleBandPass(design);
    design.NortonBaseElements = design.Elements;
    return design;
}

void Transform(FilterDesign& design, double A, double K, double M) {
    design.Elements.fill({});
    design.Norton.ImpedanceScalar = A;
    design.Norton.NortonK = K;
    design.Norton.NortonM = M;
    TransformNorton(design);
}

double LevelDb(const FilterDesign& design, double frequency) {
    return 10.0 * std::log10(std::norm(AnalysePoint(design, design.F0, frequency).Transfer));
}

/// No value is negative; zero stands for a part that is left out.
bool Realisable(const NortonResult& result) {
    return *std::min_element(result.Capacitors.begin(), result.Capacitors.end()) >= 0.0 &&
           *std::min_element(result.Inductors.begin(), result.Inductors.end()) >= 0.0;
}

TEST(Norton, ResponseIsThatOfTheCanonicalLadder) {
    int compared = 0;
    for (const NortonType type : nortonTypes)
        for (const ResponseType response : {ResponseType::Butterworth, ResponseType::Chebyshev})
            for (const double ratio : {1.0, 1.6}) {
                // A Butterworth T needs the smaller load, a Chebyshev T the larger one.
                const bool smaller = IsTee(type) == (response == ResponseType::Butterworth);
                const double load = smaller ? 50.0 / ratio : 50.0 * ratio;
                for (const int poles : {3, 5}) {
                    const FilterDesign canonical = Canonical(type, poles, load, response);
                    FilterDesign design = canonical;
                    for (const double A : {1.0, 1.5, 3.0})
                        for (const auto& [K, M] : {std::pair{2.0, 1.1}, {5.0, 3.0}, {9.0, 4.5}}) {
                            Transform(design, A, K, M);
                            if (!Realisable(design.NortonResult)) continue;
                            ++compared;
                            EXPECT_NEAR(LevelDb(design, design.F0), LevelDb(canonical, design.F0),
                                        A == 1.0 ? 1e-6 : 1e-3);
                            for (const double offset : {-160e6, -30e6, -15e6, 15e6, 30e6, 800e6}) {
                                const double f = design.F0 + offset;
                                const double distance = LevelDb(design, f) - LevelDb(canonical, f);
                                const double passBand = std::abs(offset) < 20e6 ? 2.0 : Infinity;
                                EXPECT_LE(std::abs(distance), A == 1.0 ? 1e-6 : passBand) << f;
                            }
                        }
                }
            }
    EXPECT_GT(compared, 80);
}

// A T of inductors is the dual of a pi of capacitors: L / R^2 of the one is C of the other.
TEST(Norton, DualStructuresHaveDualValues) {
    for (const int poles : {3, 5})
        for (const auto& [tee, pi] : {std::pair{NortonType::TCap, NortonType::PiInd},
                                      {NortonType::TInd, NortonType::PiCap}}) {
            FilterDesign one = Canonical(tee, poles), other = Canonical(pi, poles);
            Transform(one, 1.5, 4.0, 2.0);
            Transform(other, 1.5, 4.0, 2.0);
            const NortonResult &t = one.NortonResult, &p = other.NortonResult;
            ASSERT_EQ(t.NortonCapCount, p.NortonIndCount);
            ASSERT_EQ(t.NortonIndCount, p.NortonCapCount);
            for (int k = 0; k < MaxNortonValues; ++k) {
                EXPECT_NEAR(p.Capacitors[k], t.Inductors[k] / 2500.0, 1e-12 * p.Capacitors[k]);
                EXPECT_NEAR(p.Inductors[k], t.Capacitors[k] * 2500.0, 1e-12 * p.Inductors[k]);
            }
        }
}

TEST(Norton, SearchFindsTheMostEvenParts) {
    // clang-format off
    using enum NortonType;
    using enum NortonGoal;
    const double first = SearchStart * SearchRatio;
    const struct { NortonType Type; int Poles; NortonGoal Goal; double K, M; } cases[] = {
        {TCap, 3, Inductors, 7.0763, first},      {TCap, 3, Capacitors, 12.8178, first},
        {PiInd, 3, Capacitors, 7.0763, first},    {PiCap, 3, Capacitors, 5.0537, first},
        {PiInd, 5, Inductors, 31.8729, 12.8178},  {TCap, 5, Capacitors, 31.8729, 12.8178},
        {PiCap, 5, Inductors, 1.9925, 7.0763},    {TInd, 5, Inductors, 9.9086, 5.0537}};
    // clang-format on
    for (const auto& c : cases) {
        const NortonBase base = BaseOf(Canonical(c.Type, c.Poles), 1.0);
        const NortonChoice found = SearchEvenest(c.Type, base, c.Goal);
        EXPECT_NEAR(found.K, c.K, 5e-5);
        EXPECT_NEAR(found.M, c.M, 5e-5);
    }
    // A ladder without a positive value leaves the start of the search.
    const NortonChoice none = SearchEvenest(TCap, {}, Inductors);
    EXPECT_EQ(none.Score, 0.0);
    EXPECT_EQ(none.K, first);
}

}  // namespace
}  // namespace ladderwise
