// Compares the calculation with tests/reference/cases.tsv: numbers of an independent model and of
// ngspice, whose origin and line formats are told at the head of that file.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "files/Formatfunctions.h"

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
