// The ladder as a drawing of lines, arcs and texts that can be painted at any size: source, every
// part with its designator and value, load, in rows that suit a place. Plain structs, no
// Qt.
//
// Units are those of the text: whatever the metrics count in. Every symbol's size follows from the
// height of a line of text. y points down.
#pragma once

#include <string>
#include <vector>

#include "design/FilterDesign.h"
#include "schematic/Shapes.h"

namespace ladderwise {

struct DrawnPoint {
    double X = 0.0;
    double Y = 0.0;

    bool operator==(const DrawnPoint&) const = default;
};

struct DrawnRect {
    double Left = 0.0;
    double Top = 0.0;
    double Width = 0.0;
    double Height = 0.0;

    double Right() const { return Left + Width; }
    double Bottom() const { return Top + Height; }
};

struct DrawnLine {
    DrawnPoint From;
    DrawnPoint To;
};

/// Part of the ellipse in Frame, degrees counter-clockwise from three o'clock.
struct DrawnArc {
    DrawnRect Frame;
    double Start = 0.0;
    double Span = 360.0;
};

/// A line of text in its rectangle, which it fills.
struct DrawnText {
    DrawnRect Place;
    std::string Text;  ///< UTF-8
};

/// Where the symbol of a part stands and between which points it lies; the wires end there. The
/// second end of an open stub is connected to nothing; that of a shorted one to ground.
struct DrawnPart {
    int Slot = 0;
    int Row = 0;  ///< 0 .. 3 for V1 .. V4; of a line the row of its length
    DrawnPoint A;
    DrawnPoint B;
    DrawnRect Symbol;
};

/// Wires meet where the end of one lies on another; those that only cross are not connected.
struct SchematicDrawing {
    double Width = 0.0;
    double Height = 0.0;
    double Stroke = 0.0;           ///< width of all lines
    std::vector<DrawnLine> Wires;  ///< what carries current between the parts
    std::vector<DrawnLine> Lines;  ///< of symbols
    std::vector<DrawnArc> Arcs;    ///< of symbols
    std::vector<DrawnRect> Boxes;  ///< outlines of resistors
    std::vector<DrawnPoint> Dots;  ///< junctions
    std::vector<DrawnPoint> Grounds;
    std::vector<DrawnText> Texts;
    std::vector<DrawnPart> Parts;
    DrawnPoint SourceEnd;  ///< of the source's resistor at the ladder
    DrawnPoint LoadEnd;    ///< of the load at the ladder
    double DotRadius = 0.0;
};

/// Draws the slots in use of `design` with values of three significant digits, for a place of
/// width x height: in as few rows as fit it, or, if it is too small for any, in those that have to
/// be shrunk least. Nothing for an empty ladder. A slot that holds no element is a cross in a line
/// that is cut.
SchematicDrawing DrawLadder(const DesignState& design, double width, double height,
                            const TextMetrics& metrics);

}  // namespace ladderwise
