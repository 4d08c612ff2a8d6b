// Compares the calculation with tests/reference/cases.tsv: numbers of an independent model and of
// ngspice, whose origin and line formats are told at the head of that file.
#include <gtest/gtest.h>

#include <fstream>
#include <locale>
#include <map>
#include <memory>
#include <set>
#include <sstream>

#include "pipeline/NamedSettings.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

using Row = std::vector<std::string>;

/// One record of the case file: its first row and the rows that belong to it, by tag.
struct Record {
    Row Head;
    std::map<std::string, std::vector<Row>> Rows;

    const std::vector<Row>& operator[](const std::string& tag) const {
        static const std::vector<Row> none;
        const auto found = Rows.find(tag);
        return found == Rows.end() ? none : found->second;
    }
};

/// The fields of a line; an empty last field counts.
Row SplitAtTabs(const std::string& line) {
    Row fields;
    std::istringstream stream(line + '\t');
    for (std::string field; std::getline(stream, field, '\t');)
        fields.push_back(field);
    return fields;
}

/// All records whose first word is `kind`.
std::vector<Record> ReadRecords(const std::string& kind) {
    static const std::set<std::string> kinds = {"filter", "ladder"};
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

/// Compares a slot with an "el" row: type and the values that the type uses.
void ExpectElement(const CircuitElement& element, const Row& row) {
    SCOPED_TRACE("slot " + row[1]);
    ASSERT_EQ(static_cast<int>(element.Type), Whole(row[2]));
    for (int k = 0; k < 4; ++k) {
        const bool used = row[3 + k] != "-";
        ASSERT_EQ(InfoOf(element.Type).Values[k] != ValueKind::Unused, used) << "V" << k + 1;
        const double wanted = used ? Number(row[3 + k]) : element.Value(k);
        EXPECT_NEAR(element.Value(k), wanted, ValueLimit * std::abs(wanted)) << "V" << k + 1;
    }
}

/// Compares a sweep with the "pt" and "sp" rows.
void ExpectPoints(const SweepResponse& response, const Record& record) {
    for (const char* const tag : {"pt", "sp"})
        for (const Row& row : record[tag]) {
            SCOPED_TRACE(row[0] + " at point " + row[1]);
            const double limit = row[0] == "sp" ? SpiceLimit : TransferLimit;
            const int i = Whole(row[1]);
            const Complex got(response.TransferRe[i], response.TransferIm[i]);
            EXPECT_LE(std::abs(got - Complex(Number(row[3]), Number(row[4]))), limit);
            EXPECT_NEAR(Amplitude(response.ReflectionDb[i]), Amplitude(Number(row[5])), limit);
        }
}

TEST(Reference, FiltersFromTypedInputs) {
    for (const Record& record : ReadRecords("filter")) {
        SCOPED_TRACE(record.Head[1]);
        const auto calculation = std::make_unique<Calculation>();
        const FilterDesign& design = calculation->Design;
        for (const Row& row : record["set"])
            EXPECT_EQ(ApplySetting(*calculation, row[1], row[2], {}), std::nullopt);
        Calculate(*calculation, {});
        const Row& out = record["out"].at(0);
        EXPECT_NEAR(design.RLoad, Number(out[1]), ValueLimit * design.RLoad);
        EXPECT_EQ(design.FormCLC ? "clc" : "lcl", out[2]);
        ASSERT_EQ(design.NumElements, static_cast<int>(record["el"].size()));
        for (const Row& row : record["el"])
            ExpectElement(design.Elements[Whole(row[1])], row);
        for (const Row& row : record["pt"])
            EXPECT_NEAR(design.SweepFreqs[Whole(row[1])], Number(row[2]), 1e-12 * Number(row[2]));
        ExpectPoints(design.Response, record);
        for (const Row& row : record["gd"])
            EXPECT_NEAR(design.GDFullScale, Number(row[1]), ValueLimit * std::abs(Number(row[1])));
    }
}

TEST(Reference, EveryElementTypeBetweenNeighbours) {
    for (const Record& record : ReadRecords("ladder")) {
        const Row& head = record.Head;
        SCOPED_TRACE(head[1]);
        FilterDesign design;
        double* const numbers[] = {&design.F0,
                                   &design.RSource,
                                   &design.RLoad,
                                   nullptr,
                                   &design.PartModel.IndQ,
                                   &design.PartModel.IndC,
                                   &design.PartModel.CapR,
                                   &design.PartModel.CapL};
        for (std::size_t k = 0; k < std::size(numbers); ++k)
            if (numbers[k]) *numbers[k] = Number(head[2 + k]);
        design.PartModel.Choice =
            head[5] == "ideal" ? PartChoice::IdealParts : PartChoice::RealParts;
        for (const Row& row : record["el"]) {
            CircuitElement& element = design.Elements[++design.NumElements];
            element.Type = static_cast<ElementType>(Whole(row[2]));
            for (int k = 0; k < 4; ++k)
                if (row[3 + k] != "-") element.Value(k) = Number(row[3 + k]);
        }
        design.SweepFreqs.fill(design.F0);
        for (const Row& row : record["pt"])
            design.SweepFreqs[Whole(row[1])] = Number(row[2]);
        SweepTables tables;
        BuildSweepTables(tables, design.SweepFreqs, design.F0);
        SweepResponse& response = design.Response;
        for (const KernelChoice choice : AvailableKernels()) {
            SCOPED_TRACE("kernel " + std::to_string(static_cast<int>(choice)));
            AnalyseLadder(design, tables, {}, response.TransferRe, response.TransferIm,
                          response.ReflectionDb, choice);
            ExpectPoints(response, record);
        }
    }
}

}  // namespace
}  // namespace ladderwise
