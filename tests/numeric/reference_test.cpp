// Compares the calculation with tests/reference/cases.tsv: numbers of an independent model and of
// ngspice, whose origin and line formats are told at the head of that file.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <fstream>
#include <locale>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/Circuitanalysis.h"
#include "analysis/PartValues.h"
#include "app/pipeline/NamedSettings.h"
#include "app/pipeline/PlotQuantities.h"
#include "files/Formatfunctions.h"
#include "scaling/BandScaler.h"

namespace ladderwise {
namespace {

using Row = std::vector<std::string>;

/// One record of the case file: its first row and the rows that belong to it, by tag.
struct Record {
    Row Head;
    std::map<std::string, std::vector<Row>> Rows;
};

/// The fields of a line; an empty last field counts.
Row SplitAtTabs(const std::string& line) {
    Row fields;
    std::size_t start = 0;
    for (std::size_t tab; (tab = line.find('\t', start)) != std::string::npos; start = tab + 1)
        fields.push_back(line.substr(start, tab - start));
    fields.push_back(line.substr(start));
    return fields;
}

/// All records whose first word is `kind`.
std::vector<Record> ReadRecords(const std::string& kind) {
    static const std::set<std::string> kinds = {"filter", "ladder", "trap", "snap", "text"};
    std::ifstream file(std::string(LADDERWISE_TEST_DATA) + "/cases.tsv");
    EXPECT_TRUE(file.is_open()) << "the case file is missing";
    std::vector<Record> records;
    bool wanted = false;
    for (std::string line; std::getline(file, line);) {
        const Row fields = SplitAtTabs(line);
        if (kinds.count(fields[0]) != 0) {
            wanted = fields[0] == kind;
            if (wanted) records.push_back({fields, {}});
        } else if (wanted) {
            records.back().Rows[fields[0]].push_back(fields);
        }
    }
    EXPECT_FALSE(records.empty()) << "no records of kind " << kind;
    return records;
}

/// A number of the case file, which always has a point.
double Number(const std::string& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double value = 0.0;
    stream >> value;
    return value;
}

int Whole(const std::string& text) {
    return std::atoi(text.c_str());
}

/// Largest relative distance of an element value, and absolute distance of a transfer or a
/// reflection coefficient, from the model; and the latter from ngspice, whose rounding is larger.
constexpr double ValueLimit = 1e-9;
constexpr double TransferLimit = 1e-9;
constexpr double SpiceLimit = 1e-7;

/// The amplitude of a level in dB: deep reflections are rounding, their amplitudes compare well.
double Amplitude(double db) {
    return std::pow(10.0, db / 20.0);
}

const ElementInfo& InfoOfRow(const Row& row) {
    return InfoOf(static_cast<ElementType>(Whole(row[2])));
}

/// Compares a slot with an "el" row: type and the values that the type uses.
void ExpectElement(const CircuitElement& element, const Row& row) {
    SCOPED_TRACE("slot " + row[1]);
    ASSERT_EQ(static_cast<int>(element.Type), Whole(row[2]));
    for (int k = 0; k < 4; ++k) {
        const std::string& text = row[3 + k];
        ASSERT_EQ(InfoOfRow(row).Values[k] == ValueKind::Unused, text == "-") << "V" << k + 1;
        if (text == "-") continue;
        const double wanted = Number(text);
        EXPECT_NEAR(element.Value(k), wanted, ValueLimit * std::abs(wanted)) << "V" << k + 1;
    }
}

/// Compares one point of a sweep with a "pt" or "sp" row.
void ExpectPoint(const SweepResponse& response, const Row& row) {
    SCOPED_TRACE(row[0] + " at point " + row[1]);
    const double limit = row[0] == "sp" ? SpiceLimit : TransferLimit;
    const int i = Whole(row[1]);
    const Complex got(response.TransferRe[i], response.TransferIm[i]);
    EXPECT_LE(std::abs(got - Complex(Number(row[3]), Number(row[4]))), limit);
    EXPECT_NEAR(Amplitude(response.ReflectionDb[i]), Amplitude(Number(row[5])), limit);
}

/// Fills the slots of a design from "el" rows.
void PutElements(FilterDesign& design, const std::vector<Row>& rows) {
    design.NumElements = static_cast<int>(rows.size());
    for (const Row& row : rows) {
        CircuitElement& element = design.Elements[Whole(row[1])];
        element.Type = static_cast<ElementType>(Whole(row[2]));
        for (int k = 0; k < 4; ++k)
            if (row[3 + k] != "-") element.Value(k) = Number(row[3 + k]);
    }
}

/// Sets the inputs of a filter record and runs the whole calculation.
void CalculateRecord(Calculation& calculation, const Record& record,
                     const MessageCallback& report) {
    if (const auto sets = record.Rows.find("set"); sets != record.Rows.end()) {
        for (const Row& row : sets->second) {
            const auto fault = ApplySetting(calculation, row[1], row[2], report);
            EXPECT_FALSE(fault) << fault.value_or("");
        }
    }
    ReadInputs(calculation.Inputs, calculation.Design, report);
    Calculate(calculation, report, {});
}

TEST(Reference, FiltersFromTypedInputs) {
    const MessageCallback ignore = [](const std::string&, const std::string&) {};
    for (const Record& record : ReadRecords("filter")) {
        SCOPED_TRACE(record.Head[1]);
        const auto calculation = std::make_unique<Calculation>();
        const auto quantities = std::make_unique<DisplayQuantities>();
        CalculateRecord(*calculation, record, ignore);
        const FilterDesign& design = calculation->Design;

        const Row& out = record.Rows.at("out")[0];
        EXPECT_NEAR(design.RLoad, Number(out[1]), ValueLimit * design.RLoad);
        EXPECT_EQ(design.FormCLC ? "clc" : "lcl", out[2]);
        const std::vector<Row>& elements = record.Rows.at("el");
        ASSERT_EQ(design.NumElements, static_cast<int>(elements.size()));
        for (const Row& row : elements)
            ExpectElement(design.Elements[Whole(row[1])], row);
        for (const char* tag : {"pt", "sp"}) {
            if (record.Rows.count(tag) == 0) continue;
            for (const Row& row : record.Rows.at(tag)) {
                const double f = Number(row[2]);
                EXPECT_NEAR(design.SweepFreqs[Whole(row[1])], f, 1e-12 * f);
                ExpectPoint(design.Response, row);
            }
        }
        DerivePlotQuantities(*calculation, 0, *quantities, ignore);
        if (const auto scale = record.Rows.find("gd"); scale != record.Rows.end()) {
            const double wanted = Number(scale->second[0][1]);
            EXPECT_NEAR(design.GDFullScale, wanted, ValueLimit * std::abs(wanted));
        }
    }
}

TEST(Reference, EveryElementTypeBetweenNeighbours) {
    for (const Record& record : ReadRecords("ladder")) {
        const Row& head = record.Head;
        SCOPED_TRACE(head[1]);
        const auto design = std::make_unique<FilterDesign>();
        design->F0 = Number(head[2]);
        design->RSource = Number(head[3]);
        design->RLoad = Number(head[4]);
        PartModel& model = design->PartModel;
        model.Choice = head[5] == "ideal" ? PartChoice::IdealParts : PartChoice::RealParts;
        model.IndQ = Number(head[6]);
        model.IndC = Number(head[7]);
        model.CapR = Number(head[8]);
        model.CapL = Number(head[9]);
        PutElements(*design, record.Rows.at("el"));
        design->SweepFreqs.fill(design->F0);
        for (const Row& row : record.Rows.at("pt"))
            design->SweepFreqs[Whole(row[1])] = Number(row[2]);

        SweepTables tables;
        BuildSweepTables(tables, design->SweepFreqs, design->F0);
        SweepResponse& response = design->Response;
        for (const KernelChoice choice :
             {KernelChoice::Reference, KernelChoice::Baseline, KernelChoice::V3}) {
            if (!KernelAvailable(choice)) continue;
            SCOPED_TRACE("kernel " + std::to_string(static_cast<int>(choice)));
            AnalyseLadder(*design, tables, {}, response.TransferRe, response.TransferIm,
                          response.ReflectionDb, choice);
            for (const char* tag : {"pt", "sp"})
                for (const Row& row : record.Rows.at(tag))
                    ExpectPoint(response, row);
        }
    }
}

TEST(Reference, TrapSectionsOfBothArms) {
    for (const Record& record : ReadRecords("trap")) {
        const Row& head = record.Head;
        SCOPED_TRACE(head[1]);
        const auto design = std::make_unique<FilterDesign>();
        design->TrapType = Whole(head[4]);
        design->RSource = Number(head[5]);
        design->F0 = Number(head[6]);
        design->BandWidth = Number(head[7]);
        design->NumElements = 1;
        CircuitElement& slot = design->Elements[1];
        slot.Type = head[3] == "series" ? ElementType::SeriesLC : ElementType::ShuntLC;
        slot.V1 = Number(head[8]);
        slot.V2 = Number(head[9]);
        head[2] == "band-pass" ? ScaleBandPass(*design) : ScaleNotch(*design);
        ExpectElement(slot, record.Rows.at("el")[0]);
    }
}

TEST(Reference, StandardValuesToTheLastBit) {
    for (const Record& record : ReadRecords("snap")) {
        const Row& row = record.Head;
        PartModel model;
        model.IndSeriesStep = model.CapSeriesStep = Whole(row[2]);
        const double x = Number(row[1]);
        for (const PartKind kind : {PartKind::Inductor, PartKind::Capacitor})
            EXPECT_EQ(SnapValue(model, kind, x), Number(row[3])) << row[1] << " stride " << row[2];
    }
}

/// The text that the formatting function of that name makes.
std::string TextBy(const std::string& function, double x, int digits, const std::string& unit) {
    if (function == "number") return FormatNumber(x, digits);
    if (function == "scientific") return FormatScientific(x, digits);
    if (function == "engineering") return FormatEngineering(x, digits);
    if (function == "prefix") return FormatWithPrefix(x, digits, unit);
    return function == "plain" ? FormatPlain(x, digits) : "no such function";
}

TEST(Reference, TextsOfNumbers) {
    for (const Record& record : ReadRecords("text")) {
        const Row& row = record.Head;
        const std::string& function = row[1];
        const double x = Number(row[2]);
        const int digits = Whole(row[3]);
        SCOPED_TRACE(function + " of " + row[2] + " with " + row[3] + " digits");
        if (function == "round") {
            EXPECT_NEAR(RoundToSignificant(x, digits), Number(row[5]), 1e-14 * std::abs(x));
        } else {
            EXPECT_EQ(TextBy(function, x, digits, row[4]), row[5]);
        }
    }
}

}  // namespace
}  // namespace ladderwise
