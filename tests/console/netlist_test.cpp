// Exported netlists and schematics in the hands of ngspice, against the analysis of the ladder.
#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "../numeric/support.h"
#include "exchange/Netlist.h"

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

void ExpectTheTransferOf(const FilterDesign& design, const Simulated& simulated,
                         std::size_t points) {
    ASSERT_GE(simulated.Hz.size(), points) << simulated.Words;
    const double factor = std::sqrt(design.RSource / design.RLoad);
    for (std::size_t i = 0; i < simulated.Hz.size(); ++i) {
        const Complex wanted = AnalysePoint(design, design.F0, simulated.Hz[i]).Transfer;
        if (std::isnan(wanted.real())) continue;
        EXPECT_LT(std::abs(simulated.Out[i] * factor - wanted), 1e-6 * std::abs(wanted) + 1e-9)
            << simulated.Hz[i];
    }
}

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
        ExpectTheTransferOf(design, Simulate(netlist), 40);
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
