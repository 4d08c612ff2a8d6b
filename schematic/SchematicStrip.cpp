// Placement of the schematic pictures.
#include "schematic/SchematicStrip.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "design/Designators.h"
#include "design/ElementNetworks.h"
#include "numbers/Formatfunctions.h"
#include "schematic/ValueGridContent.h"

namespace ladderwise {

namespace {

// Pixels; heights count from the top of the pictures.
constexpr int throughLine = 22;  // as in the pictures
constexpr int groundLine = 86;
constexpr int sourceX = 14;  // of the source's axis from the left edge of the window
constexpr int sourceRadius = 8;
constexpr int sourceDrop = 22;  // from the through line to the source's circle
constexpr int resistorLead = 9;
constexpr int resistorLength = 24;
constexpr int resistorHalf = 4;
constexpr int loadX = 14;  // of the load's axis from the last picture
constexpr int loadDrop = 16;
constexpr int resistorDigits = 5;
constexpr int namesTop = -3;  // of a shunt element's names
// Of a series element's names, right below its symbols: by how many of these stand one below the
// other.
constexpr int seriesNamesTop[] = {34, 42, 54};
constexpr std::size_t namesInARow = 2;
constexpr std::size_t mostWithValues = 2;  // parts of an element; more have no room for them
constexpr int valueDigits = 2;             // after the first, as in the grid
constexpr int barWidth = 4;
constexpr int barPitch = 5;  // of the bars of one slot
constexpr int barMargin = 2;
constexpr int textMargin = 1;  // within a picture's width

std::size_t SymbolRows(const Network& network) {
    const bool parallel = network.Kind == NetworkKind::InParallel;
    std::size_t rows = parallel ? 0 : 1;
    for (const Network& member : network.Members) {
        const std::size_t own = SymbolRows(member);
        rows = parallel ? rows + own : std::max(rows, own);
    }
    return rows;
}

int NamesTop(ElementType type) {
    if (InfoOf(type).Arm == ElementArm::Shunt) return namesTop;
    const std::vector<Network> networks = NetworksOf(type);
    const std::size_t rows = networks.empty() ? 1 : SymbolRows(networks.front());
    return seriesNamesTop[std::min(rows, std::size(seriesNamesTop)) - 1];
}

/// The lines of text at an element: its designators, two in a line, or one with its value in each.
std::vector<std::string> NameRows(const CircuitElement& element,
                                  const std::array<std::string, ValueGridRows>& designators,
                                  bool withValues) {
    std::vector<std::string> names, values;
    for (int row = 0; row < ValueGridRows; ++row) {
        const auto r = static_cast<std::size_t>(row);
        if (designators[r].empty()) continue;
        const std::string value = FormatWithPrefix(element.Value(row), valueDigits,
                                                   UnitOf(InfoOf(element.Type).Values[r]));
        // Length and impedance of a line share its designator.
        if (!names.empty() && names.back() == designators[r]) {
            values.back() += " " + value;
            continue;
        }
        names.push_back(designators[r]);
        values.push_back(value);
    }
    std::vector<std::string> rows;
    if (withValues && names.size() <= mostWithValues) {
        for (std::size_t n = 0; n < names.size(); ++n)
            rows.push_back(names[n] + " " + values[n]);
        return rows;
    }
    for (std::size_t n = 0; n < names.size(); n += namesInARow)
        rows.push_back(names[n] + (n + 1 < names.size() ? "  " + names[n + 1] : ""));
    return rows;
}

void AddDesignators(const FilterDesign& design, int top, int scroll, bool withValues,
                    const TextMetrics& metrics, std::vector<PlotText>& texts) {
    const auto designators = DesignatorsOf(design);
    for (int slot = 1; slot <= SlotsInUse(design); ++slot) {
        const auto s = static_cast<std::size_t>(slot);
        constexpr int room = SchematicWidth - 2 * textMargin;
        const int middle = ValueGridLeft + SchematicWidth * slot + SchematicWidth / 2 - scroll;
        int y = top + NamesTop(design.Elements[s].Type);
        for (const std::string& row : NameRows(design.Elements[s], designators[s], withValues)) {
            const int width = metrics.Width(row);
            const double scale = width > room ? static_cast<double>(room) / width : 1.0;
            texts.push_back({middle - std::min(width, room) / 2, y, row, Black, scale});
            y += metrics.Height - 1;
        }
    }
}

}  // namespace

std::vector<StripPicture> PlaceSchematics(const FilterDesign& design, int gridTop, int scroll) {
    std::vector<StripPicture> pictures;
    for (int i = 1; i <= SlotsInUse(design); ++i) {
        const ElementType type = design.Elements[static_cast<std::size_t>(i)].Type;
        pictures.push_back({IsElement(type) ? type : ElementType::errorBitMap,
                            ValueGridLeft + SchematicWidth * i - scroll,
                            gridTop - SchematicHeight});
    }
    return pictures;
}

StripSigns BuildStripSigns(const FilterDesign& design, int gridTop, int scroll, bool withValues,
                           const TextMetrics& metrics) {
    StripSigns signs;
    const int count = SlotsInUse(design);
    if (count < 1) return signs;
    const int top = gridTop - SchematicHeight, line = top + throughLine, ground = top + groundLine;
    const auto wire = [&](int x1, int y1, int x2, int y2) {
        signs.Wires.push_back({x1, y1, x2, y2, Black});
    };
    const auto earth = [&](int x) {
        for (int bar = 0; bar < 3; ++bar)
            wire(x - 8 + 3 * bar, ground + 3 * bar, x + 9 - 3 * bar, ground + 3 * bar);
    };
    const auto ohms = [](double r) { return FormatPlain(r, resistorDigits) + " \u03a9"; };

    const int source = sourceX - scroll, first = ValueGridLeft + SchematicWidth - scroll;
    signs.Source = {source - sourceRadius, line + sourceDrop, 2 * sourceRadius, 2 * sourceRadius};
    wire(source, line, source, line + sourceDrop);
    wire(source, line + sourceDrop + 2 * sourceRadius, source, ground);
    earth(source);
    signs.Resistors.push_back(
        {source + resistorLead, line - resistorHalf, resistorLength, 2 * resistorHalf});
    wire(source - 1, line, source + resistorLead, line);
    wire(source + resistorLead + resistorLength, line, first, line);
    signs.Texts.push_back({std::max(source + resistorLead, 0), line - resistorHalf - metrics.Height,
                           ohms(design.RSource), Black});

    const int end = first + count * SchematicWidth, load = end + loadX;
    wire(end, line, load + 1, line);
    wire(load, line, load, line + loadDrop);
    signs.Resistors.push_back(
        {load - resistorHalf, line + loadDrop, 2 * resistorHalf, resistorLength});
    wire(load, line + loadDrop + resistorLength, load, ground);
    earth(load);
    signs.Texts.push_back({load + resistorHalf + 3,
                           line + loadDrop + (resistorLength - metrics.Height) / 2,
                           ohms(design.RLoad), Black});
    AddDesignators(design, top, scroll, withValues, metrics, signs.Texts);
    return signs;
}

std::vector<PlotRect> BuildShareBars(const std::vector<StripShare>& shares, int gridTop,
                                     int scroll) {
    std::vector<PlotRect> bars;
    double largest = 0.0;
    for (const StripShare& share : shares)
        largest = std::max(largest, share.Share);
    if (!(largest > 0.0)) return bars;
    std::array<int, NumSlots> inSlot{};
    for (const StripShare& share : shares)
        ++inSlot[static_cast<std::size_t>(share.Slot)];
    for (const StripShare& share : shares) {
        int& rest = inSlot[static_cast<std::size_t>(share.Slot)];
        const int right = ValueGridLeft + SchematicWidth * (share.Slot + 1) - scroll - barMargin;
        const int x = right - rest * barPitch;
        --rest;
        const int height = static_cast<int>(std::lround(ShareBarHeight * share.Share / largest));
        if (height > 0) bars.push_back({x, gridTop - barMargin - height, barWidth, height});
    }
    return bars;
}

int SlotAt(int x, int y, const FilterDesign& design, int gridTop, int scroll) {
    if (y < gridTop - SchematicHeight || y >= gridTop) return 0;
    const int offset = x - ValueGridLeft + scroll;
    const int slot = offset >= 0 ? offset / SchematicWidth : 0;
    return slot <= SlotsInUse(design) ? slot : 0;
}

}  // namespace ladderwise
