// The layout of a picture for a report.
#include "display/PictureLayout.h"

#include <algorithm>
#include <cmath>

#include "design/ChoiceNames.h"
#include "display/Legend.h"
#include "display/Subtitle.h"

namespace ladderwise {

namespace {

// In lines of text of the body.
constexpr double margin = 0.9;       // around the picture
constexpr double sectionGap = 1.0;   // between its parts
constexpr double lineSpacing = 1.2;  // of the results
constexpr double cellGap = 1.0;      // between name and value
constexpr double blockGap = 3.0;     // between columns of results
constexpr double plotHead = 1.5;     // above the plot: the units of its axes

constexpr double ladderShare = 0.5;      // of the room beside a plot, at most
constexpr double largestLadder = 1.6;    // of the body's text, where the ladder stands alone
constexpr double resultsShare = 0.4;     // of the picture's height, at most
constexpr double smallestResults = 0.7;  // of the body's text
constexpr double scaleStep = 0.05;
constexpr int plotTopMargin = 35;  // that ComputePlotLayout leaves

int Whole(double x) {
    return static_cast<int>(std::lround(x));
}

/// A list "a, b, c" in lines of at most `width`, broken behind commas.
std::vector<std::string> Wrapped(const std::string& list, int width, const TextMetrics& metrics) {
    std::vector<std::string> lines;
    std::string line;
    for (std::size_t at = 0; at < list.size();) {
        const std::size_t comma = std::min(list.find(", ", at), list.size());
        const std::string item = list.substr(at, comma - at);
        if (!line.empty() && metrics.Width(line + ", " + item) > width) {
            lines.push_back(line + ",");
            line = item;
        } else {
            line += (line.empty() ? "" : ", ") + item;
        }
        at = comma + 2;
    }
    lines.push_back(line);
    return lines;
}

/// A row of the results whose value is longer than half a line stands in lines of its own.
bool IsLong(const PictureRow& row, int width, const TextMetrics& metrics) {
    return 2 * metrics.Width(row.OfDesign) > width;
}

/// The table of the results: its columns by width, in as many blocks side by side as fit.
struct Table {
    int Name = 0, Value = 0, Reference = 0;
    int Blocks = 0;
    int Rows = 0;
    int Width = 0;
};

Table FormOf(const std::vector<PictureRow>& rows, int width, const TextMetrics& metrics) {
    Table table;
    const auto widen = [&](int& column, const std::string& text) {
        column = std::max(column, metrics.Width(text));
    };
    for (const PictureRow& row : rows) {
        widen(table.Name, row.Name);
        widen(table.Value, row.OfDesign);
        widen(table.Reference, row.OfReference);
    }
    const int cell = Whole(cellGap * metrics.Height), gap = Whole(blockGap * metrics.Height);
    table.Width =
        table.Name + cell + table.Value + (table.Reference > 0 ? cell : 0) + table.Reference;
    table.Blocks = std::max(1, (width + gap) / (table.Width + gap));
    const int count = static_cast<int>(rows.size());
    table.Rows = (count + table.Blocks - 1) / table.Blocks;
    table.Blocks = table.Rows > 0 ? (count + table.Rows - 1) / table.Rows : 0;
    return table;
}

class PictureMaker {
public:
    PictureMaker(const PictureContent& ofContent, PictureParts ofParts, int ofWidth, int ofHeight,
                 const PictureMetrics& inMetrics)
        : content(ofContent),
          parts(ofParts),
          width(ofWidth),
          metrics(inMetrics),
          em(inMetrics.Body.Height),
          left(Whole(margin * em)),
          room(std::max(1, ofWidth - 2 * left)),
          top(left),
          bottom(ofHeight - left) {}

    PictureLayout Make(int height) {
        AddHead();
        AddResults(Whole(resultsShare * height));
        if (parts != PictureParts::Plot) AddLadder();
        if (parts != PictureParts::Schematic) AddPlot();
        return std::move(layout);
    }

private:
    const PictureContent& content;
    const PictureParts parts;
    const int width;
    const PictureMetrics& metrics;
    const int em, left, room;
    int top, bottom;  ///< of what is left for plot and ladder
    PictureLayout layout;

    void AddCentred(const std::string& text, const TextMetrics& font, bool title) {
        layout.Lines.push_back({(width - font.Width(text)) / 2, top, text, title});
        top += font.Height;
    }

    void AddHead() {
        const FilterDesign& design = content.Plot.Design;
        AddCentred(DesignTitle(design), metrics.Title, true);
        std::string subtitle =
            parts == PictureParts::Schematic ? DesignSubtitle(design) : PlotSubtitle(design);
        if (HasEdits(design)) subtitle += ", values edited by hand";
        for (const std::string& line : Wrapped(subtitle, room, metrics.Body))
            AddCentred(line, metrics.Body, false);
        top += Whole(sectionGap * em);
    }

    /// Their height with texts of this size; 0: they are too wide.
    int ResultsHeight(const std::vector<PictureRow>& rows, const std::vector<PictureLine>& beneath,
                      const TextMetrics& font) const {
        const Table table = FormOf(rows, room, font);
        const int lines = table.Rows + static_cast<int>(beneath.size());
        return table.Width > room ? 0 : lines * PitchOf(font);
    }
    static int PitchOf(const TextMetrics& font) {
        return std::max(1, Whole(lineSpacing * font.Height));
    }

    /// The long rows, wrapped.
    std::vector<PictureLine> LongLines(const TextMetrics& font, double scale) const {
        std::vector<PictureLine> lines;
        for (const PictureRow& row : content.Results) {
            if (!IsLong(row, room, font)) continue;
            std::string text = row.Name + ": " + row.OfDesign;
            if (!row.OfReference.empty()) text += ", reference: " + row.OfReference;
            for (const std::string& line : Wrapped(text, room, font))
                lines.push_back({left, 0, line, false, scale});
        }
        return lines;
    }

    void AddResults(int mostHeight) {
        for (double scale = 1.0; scale >= smallestResults; scale -= scaleStep) {
            const TextMetrics font = metrics.Body.Scaled(scale);
            std::vector<PictureRow> rows;
            for (const PictureRow& row : content.Results)
                if (!IsLong(row, room, font)) rows.push_back(row);
            std::vector<PictureLine> beneath = LongLines(font, scale);
            const int height = ResultsHeight(rows, beneath, font);
            if (height == 0 || height > mostHeight) continue;
            bottom -= height;
            int y = AddTable(rows, FormOf(rows, room, font), font, scale);
            for (PictureLine& line : beneath) {
                line.Y = y;
                y += PitchOf(font);
                layout.Lines.push_back(line);
            }
            bottom -= Whole(sectionGap * em);
            return;
        }
    }

    /// The rows from `bottom` on; returns where they end.
    int AddTable(const std::vector<PictureRow>& rows, const Table& table, const TextMetrics& font,
                 double scale) {
        const int cell = Whole(cellGap * font.Height);
        const int spare = room - table.Blocks * table.Width;
        const int gap = table.Blocks > 1 ? std::min(spare / (table.Blocks - 1), 3 * em) : 0;
        const int used = table.Blocks * table.Width + (table.Blocks - 1) * gap;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const int block = static_cast<int>(i) / table.Rows;
            const int x = left + (room - used) / 2 + block * (table.Width + gap);
            const int y = bottom + (static_cast<int>(i) % table.Rows) * PitchOf(font);
            const PictureRow& row = rows[i];
            const int value = x + table.Name + cell, reference = value + table.Value + cell;
            layout.Lines.push_back({x, y, row.Name, false, scale});
            layout.Lines.push_back({value, y, row.OfDesign, false, scale});
            if (!row.OfReference.empty())
                layout.Lines.push_back({reference, y, row.OfReference, false, scale});
        }
        return bottom + table.Rows * PitchOf(font);
    }

    void AddLadder() {
        const bool alone = parts == PictureParts::Schematic;
        const double most = std::max(1.0, (bottom - top) * (alone ? 1.0 : ladderShare));
        const double wanted = metrics.LadderScale * (alone ? largestLadder : 1.0);
        layout.Ladder =
            DrawLadder(content.Plot.Design, room / wanted, most / wanted, metrics.Ladder);
        if (layout.Ladder.Wires.empty()) return;
        const double w = layout.Ladder.Width, h = layout.Ladder.Height;
        layout.LadderScale = std::min({wanted, room / w, most / h});
        const double height = h * layout.LadderScale;
        layout.LadderLeft = left + (room - w * layout.LadderScale) / 2.0;
        layout.LadderTop = alone ? top + (bottom - top - height) / 2.0 : bottom - height;
        bottom -= Whole(height + sectionGap * em);
    }

    void AddPlot() {
        const PlotContent& plot = content.Plot;
        const int head = Whole(plotHead * em);
        const ClientExtent area{width, bottom, top + head - plotTopMargin, bottom + SchematicHeight,
                                LegendHeightBelow(plot)};
        layout.Plot = ComputePlotLayout(area, plot.Choices);
        layout.HasPlot = true;
    }
};

}  // namespace

std::string FaultOf(const PictureSize& size) {
    constexpr double smallest = 200.0;   // of the extent: below it there is no room for the scales
    constexpr double largest = 16384.0;  // pixels
    const double perUnit = size.Millimetres ? LogicalDotsPerInch / MillimetresPerInch : 1.0;
    const double dots = size.Millimetres ? DotsOfMillimetres / MillimetresPerInch : 1.0;
    const double least = std::ceil(smallest / perUnit), most = std::floor(largest / dots);
    const auto fits = [&](double side) { return side >= least && side <= most; };
    if (fits(size.Width) && fits(size.Height)) return {};
    return "a picture is " + std::to_string(std::lround(least)) + " to " +
           std::to_string(std::lround(most)) + (size.Millimetres ? " mm" : " pixels") +
           " wide and high";
}

PictureLayout LayOutPicture(const PictureContent& content, PictureParts parts, int width,
                            int height, const PictureMetrics& metrics) {
    return PictureMaker(content, parts, width, height, metrics).Make(height);
}

}  // namespace ladderwise
