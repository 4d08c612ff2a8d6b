// Boards built by another ladder than the one that is fitted: parts spread, pads, vias, cables,
// loss and noise put in; what is read of them is held to what was put in.
#include <gtest/gtest.h>

#include <utility>

#include "measured/BoardReading.h"
#include "support.h"

namespace ladderwise {
namespace {

constexpr double padOfBoard = 0.3e-12, viaOfBoard = 0.6e-9;  // on average, F and H

/// What is done to a design when it is built.
struct Built {
    FilterDesign Design;  ///< with the parts as they are
    double Q = 120.0;
    double Pads = padOfBoard, Vias = viaOfBoard;
    double Cable = 40e-12;  ///< at both ports, s
    double Noise = 0.002;
    PartPlace Missing{}, Shorted{};
    bool PortsSwapped = false;
};

/// A board by nested impedances, and what its parts come to as mounted.
class Board {
public:
    Board(const Built& built, unsigned seed) : b(built), random(seed) {
        for (int i = 0; i < 4 * NumSlots; ++i) {
            pads.push_back(Vary());
            vias.push_back(Vary());
        }
    }

    NetworkData Measured(const std::vector<double>& freqs) {
        NetworkData network;
        network.Hz = freqs;
        for (const double f : freqs)
            network.S.push_back(At(f));
        return network;
    }
    double Truth(PartPlace place) const { return mounted[place.Slot].Value(place.Row); }

private:
    double Vary() { return std::uniform_real_distribution<double>(0.5, 1.5)(random); }
    Complex Noise() {
        std::normal_distribution<double> normal(0.0, b.Noise);
        const double re = normal(random);
        return {re, normal(random)};
    }

    Complex Z(const Network& net, int slot, double f) const {
        const Complex s(0.0, TwoPi * f);
        Complex sum = 0.0;
        for (const Network& member : net.Members) {
            const Complex z = Z(member, slot, f);
            sum += net.Kind == NetworkKind::InSeries ? z : 1.0 / z;
        }
        if (net.Kind == NetworkKind::InSeries) return sum;
        if (net.Kind == NetworkKind::InParallel) return 1.0 / sum;
        const double value = b.Design.Elements[slot].Value(net.Row);
        if (b.Missing == PartPlace{slot, net.Row}) return 1.0 / (s * 0.02e-12);
        if (b.Shorted == PartPlace{slot, net.Row}) return 0.01 + s * 0.3e-9;
        const PartModel& model = b.Design.PartModel;
        if (net.Kind == NetworkKind::Capacitor)
            return 1.0 / (s * value) + s * model.CapL + model.CapR;
        const Complex coil = TwoPi * std::sqrt(b.Design.F0 * f) * value / b.Q + s * value;
        return coil / (1.0 + s * model.IndC * coil);
    }

    /// Two arms in the line of one slot have no pad between them here.
    SParameters At(double f) {
        const Complex s(0.0, TwoPi * f);
        Complex A = 1.0, B = 0.0, C = 0.0, D = 1.0;
        std::size_t node = 0, arm = 0;
        mounted = b.Design.Elements;
        const auto shunt = [&](Complex y) { A += B * y, C += D * y; };
        bool padIsFree = true;
        shunt(s * b.Pads * pads[node]);
        for (int slot = 1; slot <= b.Design.NumElements; ++slot) {
            const ElementType type = b.Design.Elements[slot].Type;
            for (const Network& net : NetworksOf(type)) {
                const std::vector<Network> one{net};
                if (InfoOf(type).Arm == ElementArm::Series) {
                    const Complex z = Z(net, slot, f);
                    B += A * z, D += C * z;
                    shunt(s * b.Pads * pads[++node]);
                    padIsFree = true;
                    continue;
                }
                const double via = b.Vias * vias[arm++];
                shunt(1.0 / (Z(net, slot, f) + s * via));
                for (const Network& part : net.Members.empty() ? one : net.Members) {
                    double& value = mounted[slot].Value(part.Row);
                    if (part.Kind == NetworkKind::Inductor && net.Kind != NetworkKind::InParallel)
                        value += via;
                    if (part.Kind == NetworkKind::Capacitor && net.Kind != NetworkKind::InSeries &&
                        std::exchange(padIsFree, false))
                        value += b.Pads * pads[node];
                }
            }
        }
        const double R = 50.0;
        const Complex sum = A * R + B + C * R * R + D * R;
        const Complex cable = std::polar(1.0, -2.0 * TwoPi * f * b.Cable);
        const Complex S11 = cable * (A * R + B - C * R * R - D * R) / sum;
        const Complex S22 = cable * (D * R + B - C * R * R - A * R) / sum;
        const Complex S21 = cable * 2.0 * R / sum;
        const auto [one, two] = b.PortsSwapped ? std::pair(S22, S11) : std::pair(S11, S22);
        return {one + Noise(), S21 + Noise(), S21 + Noise(), two + Noise()};
    }

    Built b;
    std::mt19937 random;
    std::vector<double> pads, vias;
    ElementList mounted{};
};

std::vector<double> Linear(double from, double to, int count) {
    std::vector<double> freqs;
    for (int i = 0; i < count; ++i)
        freqs.push_back(from + (to - from) * i / (count - 1));
    return freqs;
}

Settings WithParts(Settings settings) {
    settings.insert(settings.end(), {{"parts", "real"}, {"ind-q", "100"}});
    return settings;
}

/// The design with every part off by up to `spread`.
FilterDesign Spread(const FilterDesign& design, double spread, unsigned seed) {
    FilterDesign built = design;
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> off(-spread, spread);
    for (int slot = 1; slot <= built.NumElements; ++slot)
        for (int row = 0; row < 4; ++row)
            if (IsPart(InfoOf(built.Elements[slot].Type).Values[row]))
                built.Elements[slot].Value(row) *= 1.0 + off(random);
    return built;
}

TEST(BoardModel, SlopesAreThoseOfDifferencesAndTheBareLadderIsTheAnalysis) {
    std::mt19937 random(5);
    for (int code = 0; code < NumElementTypes - 1; ++code) {
        FilterDesign design = MakeDesign({{ElementType::SeriesInd, TestL},
                                          RandomSlot(static_cast<ElementType>(code), random),
                                          {ElementType::ShuntCap, UnusedValue, TestC}},
                                         PartChoice::RealParts);
        BoardModel model(design, {50.0, 75.0}, {});
        std::vector<double> x = model.Means();
        for (std::size_t i = 0; i < x.size(); ++i)
            if (model.Unknowns()[i].Kind == BoardUnknownKind::Pad ||
                model.Unknowns()[i].Kind == BoardUnknownKind::Via)
                x[i] = 0.0;
        const std::vector<double> freqs = {0.37 * TestF0, 1.83 * TestF0};
        const std::vector<SParameters> bare = AnalyseSParameters(design, freqs, {50.0, 75.0});
        for (std::size_t k = 0; k < freqs.size(); ++k) {
            const BoardPoint point = model.At(x, freqs[k]);
            EXPECT_LT(std::abs(point.S11 - bare[k].S11), 1e-7) << code;
            EXPECT_LT(std::abs(point.S21 - bare[k].S21), 1e-7) << code;
            EXPECT_LT(std::abs(point.S22 - bare[k].S22), 1e-7) << code;
            BoardSlopes slopes;
            std::vector<double> means = model.Means();
            for (std::size_t i = 0; i < means.size(); ++i)
                if (model.Unknowns()[i].Kind == BoardUnknownKind::PortDelay)
                    means[i] = (1.0 + model.Unknowns()[i].Slot) * 50e-12;
            model.At(means, freqs[k], &slopes);
            for (std::size_t i = 0; i < means.size(); ++i) {
                const double step = 1e-4 * model.Unknowns()[i].Spread;
                std::vector<double> above = means, below = means;
                above[i] += step, below[i] -= step;
                const BoardPoint high = model.At(above, freqs[k]), low = model.At(below, freqs[k]);
                const double scale = 1.0 / (2.0 * step), far = 3e-7 / step;
                EXPECT_LT(std::abs(slopes.S11[i] - (high.S11 - low.S11) * scale), far) << code;
                EXPECT_LT(std::abs(slopes.S21[i] - (high.S21 - low.S21) * scale), far) << code;
                EXPECT_LT(std::abs(slopes.S22[i] - (high.S22 - low.S22) * scale), far) << code;
            }
        }
    }
}

TEST(ReadBoard, FindsWhatWasPutInAndIsNotSureOfAnythingElse) {
    struct Case {
        Settings Design;
        double Spread, From, To;  // of F0
        std::size_t Told;         // parts at least that are determined
        bool OnePath = false;
    };
    const std::vector<Case> cases = {
        {{{"pass", "low-pass"}, {"poles", "5"}, {"f0", "60"}}, 0.2, 0.1, 4.0, 5},
        {{{"pass", "low-pass"}, {"poles", "7"}, {"f0", "30"}, {"response", "chebyshev"}},
         0.2,
         0.1,
         4.0,
         7,
         true},
        {{{"pass", "low-pass"}, {"poles", "2"}, {"f0", "60"}, {"response", "elliptic-c"}},
         0.1,
         0.1,
         4.0,
         6},
        {{{"pass", "high-pass"}, {"poles", "5"}, {"f0", "60"}}, 0.2, 0.1, 4.0, 5},
        {{{"pass", "band-pass"}, {"poles", "3"}, {"f0", "60"}, {"bw-percent", "60"}},
         0.1,
         0.1,
         4.0,
         5},
        {{{"pass", "band-pass"}, {"poles", "3"}, {"f0", "30"}, {"bw-percent", "5"}},
         0.1,
         0.7,
         1.3,
         0},
        {{{"pass", "notch"}, {"poles", "3"}, {"f0", "30"}, {"bw-percent", "40"}},
         0.1,
         0.1,
         4.0,
         5}};
    std::size_t inside = 0, all = 0;
    for (const Case& c : cases) {
        const auto calculation = Designed(WithParts(c.Design));
        const FilterDesign& design = calculation->Design;
        Board board({Spread(design, c.Spread, 3)}, 4);
        NetworkData network = board.Measured(Linear(c.From * design.F0, c.To * design.F0, 101));
        if (c.OnePath)
            for (SParameters& s : network.S)
                s.S12 = s.S22 = 0.0;
        const BoardReading reading = ReadBoard(network, design);
        ASSERT_TRUE(reading.Understood) << c.Design.front().second;
        EXPECT_FALSE(reading.Fault);
        EXPECT_LT(reading.Excess, 1.1);
        std::size_t told = 0;
        for (const BoardPart& part : reading.Parts) {
            if (part.Value.Undetermined) continue;
            ++told, ++all;
            const double truth = board.Truth(part.Place);
            if (truth > part.Value.Low && truth < part.Value.High) ++inside;
            const double half = std::log(part.Value.High / part.Value.Low) / 2.0;
            EXPECT_LT(std::fabs(std::log(part.Value.Actual / truth)), 2.0 * half)
                << part.Designator;
            EXPECT_LT(half, 0.1);
        }
        EXPECT_GE(told, c.Told) << c.Design.front().second;
        EXPECT_EQ(reading.Text, told > 0 ? "understood" : ResonancesToldText);
    }
    EXPECT_GE(inside, all - all / 12);
}

/// The usual low-pass of a transmitter, whose parts all differ.
FilterDesign LowPass() {
    return Designed(WithParts({{"pass", "low-pass"},
                               {"response", "chebyshev"},
                               {"poles", "5"},
                               {"f0", "14"},
                               {"r-load", "50"}}))
        ->Design;
}

TEST(ReadBoard, SaysWhichCoilToTurn) {
    for (const bool ideal : {false, true}) {
        FilterDesign design = LowPass();
        FilterDesign built = design;
        built.Elements[2].V1 *= 1.08;
        Built what{built, 100.0, padOfBoard, viaOfBoard, 0.0, 0.001};
        if (ideal) {  // a calculated file
            design.PartModel.Choice = PartChoice::IdealParts;
            PartModel& none = what.Design.PartModel;
            none.IndC = none.CapL = none.CapR = 0.0;
            what = {what.Design, 1e9, 0.0, 0.0, 0.0, 0.0};
        }
        Board board(what, 1);
        const BoardReading reading = ReadBoard(board.Measured(Linear(1e6, 60e6, 201)), design);
        ASSERT_TRUE(reading.Understood);
        for (const BoardPart& part : reading.Parts)
            EXPECT_NEAR(part.Deviation(), part.Designator == "L2" ? 0.08 : 0.0, 0.01);
        EXPECT_NEAR(MeasuredLadder(reading, design)[2].V1, built.Elements[2].V1, 5e-9);
        ASSERT_FALSE(reading.Next.empty());
        EXPECT_EQ(reading.Next.front().Designator, "L2");
        EXPECT_NEAR(reading.Next.front().Change, 1.0 / 1.08 - 1.0, 0.01);
        EXPECT_GT(reading.Next.front().Gain, 0.1);
        EXPECT_EQ(reading.Next.front().Text.rfind("L2 8.", 0), 0u) << reading.Next.front().Text;
        if (ideal) {
            EXPECT_FALSE(reading.Q);
        } else {
            EXPECT_NEAR(*reading.Q, 100.0, 20.0);
        }
    }
}

// There are no pads in a calculated file, and the higher the frequency the more they would count.
TEST(ReadBoard, HoldsTheValuesOfAFileThatWasCalculated) {
    for (const Settings& settings : std::vector<Settings>{
             {{"pass", "low-pass"}, {"poles", "5"}, {"form", "lcl"}, {"response", "chebyshev"}},
             {{"pass", "high-pass"}, {"poles", "5"}, {"form", "lcl"}, {"response", "chebyshev"}}}) {
        const auto calculation = Designed(settings);
        const FilterDesign& design = calculation->Design;
        ASSERT_EQ(design.F0, 200e6);
        NetworkData network;
        network.Hz = Linear(20e6, 800e6, 101);
        network.S = AnalyseSParameters(design, network.Hz, {50.0, 50.0});
        const BoardReading reading = ReadBoard(network, design);
        ASSERT_TRUE(reading.Understood);
        ASSERT_EQ(reading.Parts.size(), 5u);
        for (const BoardPart& part : reading.Parts) {
            EXPECT_FALSE(part.Value.Undetermined) << part.Designator;
            EXPECT_GT(part.Nominal, part.Value.Low) << part.Designator;
            EXPECT_LT(part.Nominal, part.Value.High) << part.Designator;
        }
    }
}

/// Three parts, all different.
FilterDesign UnequalLowPass() {
    return Designed(WithParts({{"pass", "low-pass"}, {"f0", "14"}, {"r-load", "80"}}))->Design;
}

TEST(ReadBoard, NamesGrossFaults) {
    const FilterDesign design = UnequalLowPass();
    struct Case {
        FaultKind Kind;
        PartPlace Place;
        std::vector<std::string> Names;
        std::string Text;
    };
    const Case cases[] = {{FaultKind::Missing, {3, 1}, {"C3"}, "C3 is missing"},
                          {FaultKind::Shorted, {2, 0}, {"L2"}, "L2 is shorted"},
                          {FaultKind::TenTimes, {2, 0}, {"L2"}, "L2 has ten times its value"},
                          // The same ladder seen from behind.
                          {FaultKind::Swapped,
                           {1, 1},
                           {"C1", "C3"},
                           "C1 and C3 are swapped, or the ports are swapped"}};
    for (const Case& c : cases) {
        Built built{Spread(design, 0.05, 8)};
        double& value = built.Design.Elements[c.Place.Slot].Value(c.Place.Row);
        if (c.Kind == FaultKind::Missing) built.Missing = c.Place;
        if (c.Kind == FaultKind::Shorted) built.Shorted = c.Place;
        if (c.Kind == FaultKind::TenTimes) value *= 10.0;
        if (c.Kind == FaultKind::Swapped) std::swap(value, built.Design.Elements[3].V2);
        Board board(built, 2);
        const BoardReading reading = ReadBoard(board.Measured(Linear(1e6, 60e6, 61)), design);
        ASSERT_TRUE(reading.Understood) << NameOf(c.Kind);
        ASSERT_TRUE(reading.Fault) << NameOf(c.Kind);
        EXPECT_TRUE(reading.Next.empty());
        const bool both = c.Kind == FaultKind::Swapped;
        if (both && reading.Fault->Kind == FaultKind::PortsSwapped) {
            EXPECT_EQ(reading.Fault->Text, "the ports are swapped, or C1 and C3 are swapped");
            continue;
        }
        EXPECT_EQ(reading.Fault->Kind, c.Kind) << reading.Fault->Text;
        EXPECT_EQ(reading.Fault->Designators, c.Names);
        EXPECT_EQ(reading.Fault->Text, c.Text);
        for (const BoardPart& part : reading.Parts)
            if (part.Place == c.Place) {
                EXPECT_EQ(part.Value.Undetermined,
                          c.Kind == FaultKind::Missing || c.Kind == FaultKind::Shorted);
            }
    }
}

// Where nothing passes any more, most of what can be wrong looks alike; and the design without a
// fault, its parts far off, explains the data too.
TEST(ReadBoard, NamesTheFaultOfANarrowBand) {
    const FilterDesign design =
        Designed(
            WithParts({{"pass", "band-pass"}, {"poles", "3"}, {"f0", "60"}, {"bw-percent", "5"}}))
            ->Design;
    Built built{Spread(design, 0.05, 8)};
    built.Design.Elements[1].V2 *= 10.0;
    Board board(built, 2);
    const BoardReading reading = ReadBoard(board.Measured(Linear(45e6, 75e6, 61)), design);
    ASSERT_TRUE(reading.Fault) << reading.Text;
    EXPECT_EQ(reading.Fault->Text, "C2 has ten times its value");
}

TEST(ReadBoard, RefusesAForeignFilter) {
    const FilterDesign design = UnequalLowPass();
    const auto other = Designed(WithParts({{"pass", "high-pass"}, {"poles", "5"}, {"f0", "14"}}));
    Board board({other->Design}, 6);
    const BoardReading reading = ReadBoard(board.Measured(Linear(1e6, 60e6, 61)), design);
    EXPECT_FALSE(reading.Understood);
    EXPECT_EQ(reading.Text, NotUnderstoodText);
    EXPECT_TRUE(reading.Parts.empty());
    EXPECT_FALSE(ReadBoard({}, design).Understood);
}

// Of five detuned resonators of 2 % little passes: two resonances, to which the three of a design
// of 5 % fit within the noise, with coils of half their values.
TEST(ReadBoard, RefusesFewResonancesOfAnother) {
    const auto band = [](const char* poles, const char* percent) {
        return Designed(WithParts({{"pass", "band-pass"},
                                   {"response", "chebyshev"},
                                   {"poles", poles},
                                   {"f0", "145"},
                                   {"bw-percent", percent},
                                   {"ripple", "0.1"},
                                   {"ind-q", "200"}}));
    };
    const FilterDesign design = band("3", "5")->Design;
    Board board({Spread(band("5", "2")->Design, 0.1, 1)}, 1);
    const BoardReading reading = ReadBoard(board.Measured(Linear(116e6, 174e6, 201)), design);
    EXPECT_FALSE(reading.Understood);
    EXPECT_TRUE(reading.Parts.empty());
}

}  // namespace
}  // namespace ladderwise
