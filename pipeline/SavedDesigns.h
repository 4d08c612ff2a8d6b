// Between design records and inputs: the one way in which saving, opening, the console program and
// the exchange with the reference design turn one into the other. No Qt, no disk.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "files/FileReadSave.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

/// The record of what is typed and chosen (not of what a stage made of it), with the coefficients
/// in use and the fixed seed. Boxes are read within their bounds; the calculation is not changed.
DesignRecord RecordOf(const Calculation& calculation);

/// Puts a record into boxes and choices, replacing all that stood there. Numbers stand in their
/// boxes as if typed, so that the next calculation judges them by its bounds; unknown names fall
/// back to the code beside them, then to a fresh program's choice. The calculation that follows
/// gives the very numbers that it gave when the record was made.
void LoadRecord(const DesignRecord& record, Calculation& calculation);

/// What is wrong with the tables of inputs and choices, as a sentence for programmers: the first
/// row whose field the record of design files lacks. Empty if every row can be saved. The programs
/// ask at their start where they are built for debugging.
std::string RecordFault(const std::vector<InputRow>& inputs,
                        const std::vector<ChoiceTable>& choices);

/// True if two records describe one design. Whether the last calculation moved the load or the one
/// before it makes no difference.
bool SameDesign(const DesignRecord& one, const DesignRecord& other);

/// Chooses the response "coefficients file" with the rows of a file's text. Returns what is wrong
/// with the text, naming the line; then no rows are in use, and the next calculation falls back.
std::string UseCoefficients(Calculation& calculation, std::string_view text);

/// The file name that saving proposes, without extension: "3 Pole Butterworth LPF".
std::string ProposedFileName(const FilterDesign& design);

}  // namespace ladderwise
