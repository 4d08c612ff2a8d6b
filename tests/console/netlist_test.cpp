// Exported netlists and schematics in the hands of ngspice, against the analysis of the ladder.
#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <map>
#include <set>

#include "../numeric/support.h"
#include "exchange/SchematicFile.h"

namespace ladderwise {
namespace {

struct Simulated {
    std::vector<double> Hz;
    std::vector<Complex> Out;
    std::string Words;  ///< what the simulator said
};

/// Runs a netlist in batch mode and reads V(out) from the table of all voltages, which has 16
/// digits.
Simulated Simulate(const std::string& netlist) {
    const QTemporaryDir folder;
    QFile circuit(folder.filePath("circuit.cir"));
    if (!circuit.open(QIODevice::WriteOnly)) return {};
    circuit.write(netlist.data(), static_cast<qint64>(netlist.size()));
    circuit.close();
    QProcess ngspice;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("SPICE_ASCIIRAWFILE", "1");
    ngspice.setProcessEnvironment(environment);
    ngspice.setProcessChannelMode(QProcess::MergedChannels);
    ngspice.start("ngspice", {"-b", "-r", folder.filePath("out.raw"), circuit.fileName()});
    if (!ngspice.waitForFinished(60000)) return {};
    Simulated result;
    result.Words = ngspice.readAll().toStdString();
    QFile raw(folder.filePath("out.raw"));
    if (!raw.open(QIODevice::ReadOnly)) return result;
    const QList<QByteArray> lines = raw.readAll().split('\n');
    int column = -1, values = -1, variables = 0;
    for (int i = 0; i < lines.size(); ++i) {
        const QList<QByteArray> words = lines[i].simplified().split(' ');
        if (lines[i].startsWith("No. Variables:")) variables = words.last().toInt();
        if (words.size() == 3 && words[1] == "v(out)") column = words[0].toInt();
        if (lines[i].startsWith("Values:")) values = i + 1;
    }
    const auto pair = [&](int line) {
        const QList<QByteArray> parts = lines[line].simplified().split(' ').last().split(',');
        return Complex(parts[0].toDouble(), parts[1].toDouble());
    };
    for (int i = values; column > 0 && values > 0 && i + variables <= lines.size();
         i += variables + (i + variables < lines.size() && lines[i + variables].isEmpty())) {
        if (lines[i].isEmpty()) break;
        result.Hz.push_back(pair(i).real());
        result.Out.push_back(pair(i + column));
    }
    return result;
}

void ExpectTheTransferOf(const FilterDesign& design, const Simulated& simulated, std::size_t points,
                         double absolute = 1e-9) {
    ASSERT_GE(simulated.Hz.size(), points) << simulated.Words;
    const double factor = std::sqrt(design.RSource / design.RLoad);
    for (std::size_t i = 0; i < simulated.Hz.size(); ++i) {
        const Complex wanted = AnalysePoint(design, design.F0, simulated.Hz[i]).Transfer;
        if (std::isnan(wanted.real())) continue;
        EXPECT_LT(std::abs(simulated.Out[i] * factor - wanted), 1e-6 * std::abs(wanted) + absolute)
            << simulated.Hz[i];
    }
}

/// A schematic file as a netlist: pins that wires join are one node, parasitics in an attribute are
/// parts of their own. A wire's end joins whatever wire or pin it touches.
class DrawnCircuit {
public:
    explicit DrawnCircuit(const std::string& text) {
        for (const QString& line : QString::fromStdString(text).split('\n'))
            Take(line.split(' '));
        for (const Symbol& symbol : symbols)
            Place(symbol);
    }

    std::string Netlist() { return "* drawn\n" + parts + analysis + "\n.end\n"; }

private:
    struct Symbol {
        QString Kind, Turn, Name, Value, More;
        int X, Y;
    };
    struct Segment {
        int X1, Y1, X2, Y2;
        bool Touches(int x, int y) const {
            return std::min(X1, X2) <= x && x <= std::max(X1, X2) && std::min(Y1, Y2) <= y &&
                   y <= std::max(Y1, Y2);
        }
    };
    std::vector<Symbol> symbols;
    std::vector<Segment> wires;
    std::vector<std::pair<Segment, QString>> flags;
    std::string parts, analysis;

    void Take(const QStringList& words) {
        if (words[0] == "WIRE")
            wires.push_back(
                {words[1].toInt(), words[2].toInt(), words[3].toInt(), words[4].toInt()});
        if (words[0] == "FLAG") {
            const int x = words[1].toInt(), y = words[2].toInt();
            flags.push_back({{x, y, x, y}, words[3]});
        }
        if (words[0] == "SYMBOL")
            symbols.push_back({words[1], words[4], {}, {}, {}, words[2].toInt(), words[3].toInt()});
        if (words[0] == "SYMATTR") {
            QString& attribute = words[1] == "InstName" ? symbols.back().Name
                                 : words[1] == "Value"  ? symbols.back().Value
                                                        : symbols.back().More;
            attribute = words.mid(2).join(' ');
        }
        if (words[0] == "TEXT" && words[5] == "!.ac")
            analysis = words.mid(5).join(' ').mid(1).toStdString();
    }

    /// The node of a point: the flag that its wires reach, or its leftmost uppermost place.
    QString Node(int x, int y) const {
        std::set<std::size_t> reached;
        std::vector<std::pair<int, int>> points = {{x, y}};
        QString node = QString("x%1_%2").arg(x).arg(y);
        std::pair<int, int> least{x, y};
        for (std::size_t p = 0; p < points.size(); ++p) {
            const auto [px, py] = points[p];
            for (std::size_t i = 0; i < wires.size(); ++i) {
                const Segment& w = wires[i];
                const bool joined =
                    w.Touches(px, py) || Segment{px, py, px, py}.Touches(w.X1, w.Y1);
                if (!joined || !reached.insert(i).second) continue;
                points.push_back({w.X1, w.Y1});
                points.push_back({w.X2, w.Y2});
                for (const Segment& other : wires)  // ends that stand on this one
                    for (const auto& end : {std::pair{other.X1, other.Y1}, {other.X2, other.Y2}})
                        if (w.Touches(end.first, end.second)) points.push_back(end);
            }
            least = std::min(least, points[p]);
        }
        for (const auto& [px, py] : points)
            for (const auto& [place, name] : flags)
                if (place.X1 == px && place.Y1 == py) return name;
        for (const std::size_t i : reached)
            for (const auto& [place, name] : flags)
                if (wires[i].Touches(place.X1, place.Y1)) return name;
        return QString("x%1_%2").arg(least.first + 1000).arg(least.second + 1000);
    }

    void Place(const Symbol& symbol) {
        const auto node = [&](int dx, int dy) {
            if (symbol.Turn == "R0") return Node(symbol.X + dx, symbol.Y + dy);
            if (symbol.Turn == "R90") return Node(symbol.X - dy, symbol.Y + dx);
            return Node(symbol.X + dy, symbol.Y - dx);  // R270
        };
        const QString &name = symbol.Name, &value = symbol.Value;
        const auto add = [&](const QStringList& words) {
            parts += words.join(' ').toStdString() + "\n";
        };
        if (symbol.Kind == "voltage") return add({name, node(0, 16), node(0, 96), "DC 0", value});
        if (symbol.Kind == "res") return add({name, node(16, 16), node(16, 96), value});
        if (symbol.Kind == "tline")
            return add({name, node(-48, -16), node(-48, 16), node(48, -16), node(48, 16), value});
        std::map<QString, QString> more;
        for (const QString& word : symbol.More.split(' ', Qt::SkipEmptyParts))
            more[word.section('=', 0, 0)] = word.section('=', 1);
        const bool coil = symbol.Kind == "ind";
        const QString a = node(16, coil ? 16 : 0), b = node(16, coil ? 96 : 64), m = name + "m";
        add({name, a, m, value});
        add({"Vr" + name, m, m + "r", "0"});
        if (more.contains("Lser")) add({"Ls" + name, m + "r", m + "l", more["Lser"]});
        const QString last = more.contains("Lser") ? m + "l" : m + "r";
        const bool lossless = more["Rser"].isEmpty() || more["Rser"] == "0";
        add({lossless ? "Vs" + name : "Rs" + name, last, b, lossless ? "0" : more["Rser"]});
        if (more.contains("Cpar")) add({"Cp" + name, a, b, more["Cpar"]});
        if (more.contains("Rpar")) add({"Rp" + name, a, b, more["Rpar"]});
    }
};

class Netlists : public testing::Test {
protected:
    void SetUp() override {
        if (QStandardPaths::findExecutable("ngspice").isEmpty()) GTEST_SKIP() << "no ngspice";
    }
};

FilterDesign Ladder(const std::vector<CircuitElement>& slots, PartChoice parts, double load) {
    FilterDesign design = MakeDesign(slots, parts);
    design.RLoad = load;
    return design;
}

TEST_F(Netlists, HaveTheTransferOfEveryElementType) {
    std::mt19937 random(18);
    const FrequencyRange sweep{0.2 * TestF0, 3.0 * TestF0, 57, false};
    for (int code = 0; code < 26; ++code) {
        // Alone, and between parts that leave loops of inductors and nodes behind capacitors.
        const CircuitElement slot = RandomSlot(static_cast<ElementType>(code), random);
        const CircuitElement coil = RandomSlot(ElementType::ShuntInd, random);
        const CircuitElement capacitor = RandomSlot(ElementType::SeriesCap, random);
        for (const PartChoice parts : {PartChoice::IdealParts, PartChoice::RealParts})
            for (const double load : {50.0, 200.0})
                for (const auto& slots : {std::vector<CircuitElement>{slot},
                                          {capacitor, coil, slot, coil, capacitor, slot}}) {
                    const FilterDesign design = Ladder(slots, parts, load);
                    SCOPED_TRACE(std::string(InfoOf(slot.Type).Name) + " " + std::to_string(load));
                    const std::string netlist =
                        NetlistText(design, {SpiceDialect::Ngspice, false, sweep});
                    ExpectTheTransferOf(design, Simulate(netlist), 57);
                    if (HasFailure()) FAIL() << netlist;
                }
    }
}

TEST_F(Netlists, ForLtspiceAreTheSameCircuitAtF0) {
    const FilterDesign design =
        Ladder({{ElementType::ShuntParLC, TestL, TestC}, {ElementType::SeriesTLIN, 70.0, 60.0}},
               PartChoice::RealParts, 200.0);
    const FrequencyRange sweep{TestF0, TestF0, 1, false};
    std::string netlist = NetlistText(design, {SpiceDialect::Ltspice, false, sweep});
    EXPECT_EQ(netlist.find("hertz"), std::string::npos);
    EXPECT_NE(netlist.find("are those at F0"), std::string::npos);
    const std::string lossless = " Rser=0\n";  // which ngspice does not know
    std::size_t coils = 0;
    for (std::size_t at; (at = netlist.find(lossless)) != std::string::npos; ++coils)
        netlist.erase(at, lossless.size() - 1);
    EXPECT_EQ(coils, 2u);
    ExpectTheTransferOf(design, Simulate(netlist), 1);
}

TEST_F(Netlists, SchematicsHaveTheTransferToo) {
    // Ideal parts: the loss of real coils is exact at F0 alone, where a sweep of one point checks
    // it.
    std::mt19937 random(19);
    for (int code = 0; code < 26; ++code) {
        const CircuitElement slot = RandomSlot(static_cast<ElementType>(code), random);
        const CircuitElement capacitor = RandomSlot(ElementType::SeriesCap, random);
        for (const PartChoice parts : {PartChoice::IdealParts, PartChoice::RealParts}) {
            const FilterDesign design =
                Ladder({slot, capacitor, slot, capacitor, slot}, parts, 200.0);
            const bool ideal = parts == PartChoice::IdealParts;
            const FrequencyRange sweep = ideal
                                             ? FrequencyRange{0.3 * TestF0, 3.0 * TestF0, 23, false}
                                             : FrequencyRange{TestF0, TestF0, 1, false};
            const std::string drawing = SchematicFileText(design, sweep);
            const Simulated simulated = Simulate(DrawnCircuit(drawing).Netlist());
            ExpectTheTransferOf(design, simulated, ideal ? 23 : 1);
            if (HasFailure())
                FAIL() << InfoOf(slot.Type).Name << "\n"
                       << drawing << DrawnCircuit(drawing).Netlist();
        }
    }
}

TEST_F(Netlists, ValuesOfZeroAreWiresAndNothing) {
    const FrequencyRange sweep{0.11 * TestF0, 10.0 * TestF0, 41, true};
    const std::vector<std::vector<CircuitElement>> ladders = {
        {{ElementType::SeriesInd, 0.0}, {ElementType::ShuntCap, 1e50, TestC}},
        {{ElementType::SeriesLC, 0.0, TestC}, {ElementType::ShuntLC, TestL, 0.0}},
        {{ElementType::SeriesInd, TestL}, {ElementType::ShuntInd, 0.0}},
        {{ElementType::ShuntSerParLC, 0.0, TestC, TestL, 0.0},
         {ElementType::SeriesCap, 1e50, TestC}},
    };
    for (const auto& slots : ladders) {
        const FilterDesign design = Ladder(slots, PartChoice::IdealParts, 50.0);
        const std::string netlist = NetlistText(design, {SpiceDialect::Ngspice, false, sweep});
        // The analysis has 1e-18 H and F there, which shows beside a trap.
        ExpectTheTransferOf(design, Simulate(netlist), 40, 1e-7);
        if (HasFailure()) FAIL() << netlist;
    }
}

TEST_F(Netlists, ASubcircuitIsTheSameFilter) {
    const FilterDesign design =
        Ladder({{ElementType::ShuntParLC, TestL, TestC}, {ElementType::SeriesSerLC, TestL, TestC}},
               PartChoice::RealParts, 200.0);
    const FrequencyRange sweep{0.5 * TestF0, 2.0 * TestF0, 31, false};
    const std::string part = NetlistText(design, {SpiceDialect::Ngspice, true, sweep});
    ExpectTheTransferOf(
        design,
        Simulate("* around it\nV1 src 0 DC 0 AC 2\nR1 src a 50\nX1 a out ladderwise\n"
                 "R2 out 0 200\n.ac lin 31 5e7 2e8\n" +
                 part + ".end\n"),
        31);
}

}  // namespace
}  // namespace ladderwise
