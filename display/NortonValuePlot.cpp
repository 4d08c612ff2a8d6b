// Scales, marks and texts of the value plot.
#include "display/NortonValuePlot.h"

#include <algorithm>
#include <cmath>

#include "design/Designators.h"
#include "numbers/Formatfunctions.h"
#include "numbers/UtilityFunctions.h"

namespace ladderwise {

namespace {

constexpr int MostDecades = 12;
constexpr int TextGap = 5;            // pixels between a text and what it belongs to
constexpr int SmallestDecade = 40;    // pixels of a decade that has lines at 2 .. 9 too
constexpr int SmallestPicture = 120;  // pixels; a smaller one is laid out in this size
constexpr PlotColour MinorColour{205, 205, 205};

/// One of the two lists with its scale and looks.
struct Series {
    std::span<const double> Values;
    DecadeScale Scale;
    PlotColour Colour;
    ValueMark Mark;
    const char* Unit;
    const char* Name;
    std::span<const std::string> Parts{};  ///< designators of the values
};

std::string ValueText(double value, const char* unit) {
    if (value == 0.0) return "0";
    return std::isfinite(value) ? FormatWithPrefix(value, 2, unit) : "not finite";
}

/// Builds one picture.
class Builder {
public:
    Builder(const NortonResult& result, const NortonDesignators& names, const std::string& title,
            int width, int height, const TextMetrics& metrics)
        : metrics(metrics), title(title) {
        const auto list = [](const std::array<double, MaxNortonValues>& values, int count) {
            return std::span<const double>(values.data(), static_cast<std::size_t>(count));
        };
        capacitors = {list(result.Capacitors, result.NortonCapCount),
                      {},
                      CapacitorColour,
                      ValueMark::Capacitor,
                      "F",
                      "Capacitors",
                      names.Capacitors};
        inductors = {list(result.Inductors, result.NortonIndCount),
                     {},
                     InductorColour,
                     ValueMark::Inductor,
                     "H",
                     "Inductors",
                     names.Inductors};
        MatchScales();
        columns = static_cast<int>(
            std::max({capacitors.Values.size(), inductors.Values.size(), std::size_t{1}}));
        const int margin = metrics.Width("100 pF") + 2 * TextGap;
        const int line = metrics.Height + TextGap;
        plot.Border = {margin, 2 * line, std::max(width, SmallestPicture) - 2 * margin,
                       std::max(height, SmallestPicture) - 5 * line};
        titleX = std::max(width, SmallestPicture) / 2;
    }

    NortonValuePlot Build() {
        AddGrid();
        AddMarks(capacitors, true);
        AddMarks(inductors, false);
        AddSeries(capacitors, inductors);
        AddSeries(inductors, capacitors);
        AddHeadings();
        plot.CapacitorScale = capacitors.Scale;
        plot.InductorScale = inductors.Scale;
        return std::move(plot);
    }

private:
    /// Both scales get as many decades, so that the slopes of both traces mean the same ratio.
    void MatchScales() {
        capacitors.Scale = ScaleOf(capacitors.Values);
        inductors.Scale = ScaleOf(inductors.Values);
        decades = std::max(capacitors.Scale.High - capacitors.Scale.Low,
                           inductors.Scale.High - inductors.Scale.Low);
        capacitors.Scale.Low = capacitors.Scale.High - decades;
        inductors.Scale.Low = inductors.Scale.High - decades;
    }

    int Bottom() const { return plot.Border.Top + plot.Border.Height; }
    int ColumnX(int index) const {
        return plot.Border.Left + (2 * index + 1) * plot.Border.Width / (2 * columns);
    }
    /// y of so many decades above the bottom.
    int HeightY(double above) const {
        return Bottom() - NearestInt(above / decades * plot.Border.Height);
    }
    int ValueY(const Series& series, double value) const {
        if (!std::isfinite(value)) return plot.Border.Top;
        if (value == 0.0) return Bottom();
        const double above = std::log10(std::abs(value)) - series.Scale.Low;
        return HeightY(std::clamp(above, 0.0, double(decades)));
    }

    void AddText(int centre, int y, const std::string& text, PlotColour colour) {
        plot.Texts.push_back({centre - metrics.Width(text) / 2, y, text, colour});
    }

    void AddGrid() {
        const int left = plot.Border.Left, right = left + plot.Border.Width;
        const bool minor = plot.Border.Height / decades >= SmallestDecade;
        for (int decade = 0; decade < decades; ++decade) {
            for (int digit = 2; minor && digit <= 9; ++digit) {
                const int y = HeightY(decade + std::log10(digit));
                plot.Lines.push_back({left, y, right, y, MinorColour});
            }
            const int y = HeightY(decade);
            if (decade > 0) plot.Lines.push_back({left, y, right, y, GridColour});
        }
        for (int index = 0; index < columns; ++index) {
            const int x = ColumnX(index);
            plot.Lines.push_back({x, Bottom(), x, plot.Border.Top, GridColour});
        }
        AddParts(capacitors, Bottom() + TextGap);
        AddParts(inductors, Bottom() + TextGap + metrics.Height);
    }

    /// The designators below the columns, as many as there is room for.
    void AddParts(const Series& series, int y) {
        int widest = 0;
        for (const std::string& part : series.Parts)
            widest = std::max(widest, metrics.Width(part));
        int stride = 1;
        while (stride * plot.Border.Width / columns < widest + TextGap / 2)
            ++stride;
        const int count = static_cast<int>(std::min(series.Parts.size(), series.Values.size()));
        for (int k = 0; k < count; k += stride)
            AddText(ColumnX(k), y, series.Parts[static_cast<std::size_t>(k)], series.Colour);
    }

    /// The powers of ten, as many as there is room for.
    void AddMarks(const Series& series, bool atLeft) {
        if (series.Values.empty()) return;
        int stride = 1;
        while (stride * plot.Border.Height / decades < metrics.Height)
            ++stride;
        for (int decade = 0; decade <= decades; decade += stride) {
            const std::string text =
                FormatWithPrefix(std::pow(10.0, series.Scale.Low + decade), 0, series.Unit);
            const int x = atLeft ? plot.Border.Left - TextGap - metrics.Width(text)
                                 : plot.Border.Left + plot.Border.Width + TextGap;
            plot.Texts.push_back({x, HeightY(decade) - metrics.Height / 2, text, series.Colour});
        }
    }

    int ValueY(const Series& series, int index) const {
        return ValueY(series, series.Values[static_cast<std::size_t>(index)]);
    }

    /// Marks, the lines that join them and, where there is room, values.
    void AddSeries(const Series& series, const Series& other) {
        int widest = 0;
        for (const double value : series.Values)
            widest = std::max(widest, metrics.Width(ValueText(value, series.Unit)));
        const bool room = widest + TextGap <= plot.Border.Width / columns;
        const int count = static_cast<int>(series.Values.size());
        bool joined = false;  // to the mark before
        for (int k = 0; k < count; ++k) {
            const double value = series.Values[static_cast<std::size_t>(k)];
            const int x = ColumnX(k), y = ValueY(series, k);
            const ValueMark mark = MarkOf(series, value);
            const bool buildable = mark == series.Mark;
            if (joined && buildable)
                plot.Lines.push_back(
                    {plot.Points.back().X, plot.Points.back().Y, x, y, series.Colour});
            joined = buildable;
            plot.Points.push_back({x, y, mark, series.Colour});
            const bool unrealisableHere = mark == ValueMark::Unrealisable;
            if (unrealisableHere) ++unrealisable;
            if (room || unrealisableHere)
                AddValue(x, y, LabelAbove(series, other, k), ValueText(value, series.Unit),
                         unrealisableHere ? UnrealisableColour : series.Colour);
        }
    }

    static ValueMark MarkOf(const Series& series, double value) {
        if (value == 0.0) return ValueMark::LeftOut;
        return std::isfinite(value) && value > 0.0 ? series.Mark : ValueMark::Unrealisable;
    }

    /// On the side of a mark that its own trace leaves free, unless the other mark of the column is
    /// so near that both labels would meet.
    bool LabelAbove(const Series& series, const Series& other, int k) const {
        const int y = ValueY(series, k);
        if (k < static_cast<int>(other.Values.size())) {
            const int otherY = ValueY(other, k);
            if (std::abs(otherY - y) < 2 * (metrics.Height + ValueMarkSize))
                return y < otherY || (y == otherY && series.Mark == ValueMark::Capacitor);
        }
        const int last = static_cast<int>(series.Values.size()) - 1;
        return 2 * y <= ValueY(series, std::max(k - 1, 0)) + ValueY(series, std::min(k + 1, last));
    }

    void AddValue(int x, int y, bool above, const std::string& text, PlotColour colour) {
        const int over = y - ValueMarkSize / 2 - metrics.Height;
        const int under = y + ValueMarkSize / 2;
        if (over < plot.Border.Top) above = false;
        if (under + metrics.Height > Bottom()) above = true;
        // At an end of the plot both labels of a column are on one side, and stand in a pile.
        int top = above ? over : under;
        const auto lies = [&](const PlotText& other) {
            const int right = other.X + metrics.Width(other.Text);
            return other.X <= x && x < right && std::abs(other.Y - top) < metrics.Height;
        };
        while (std::any_of(plot.Texts.begin(), plot.Texts.end(), lies))
            top += above ? -metrics.Height : metrics.Height;
        AddText(x, top, text, colour);
    }

    void AddHeadings() {
        const int first = TextGap / 2, second = first + metrics.Height + TextGap / 2;
        AddText(titleX, first, title, Black);
        plot.Texts.push_back({plot.Border.Left, second, capacitors.Name, capacitors.Colour});
        const int width = metrics.Width(inductors.Name);
        plot.Texts.push_back({plot.Border.Left + plot.Border.Width - width, second, inductors.Name,
                              inductors.Colour});
        AddText(titleX, Bottom() + 2 * metrics.Height + TextGap, "Parts from source to load",
                Black);
        if (unrealisable > 0)
            AddText(titleX, second,
                    std::to_string(unrealisable) + (unrealisable == 1 ? " value" : " values") +
                        " cannot be built",
                    UnrealisableColour);
    }

    const TextMetrics& metrics;
    NortonValuePlot plot;
    Series capacitors;
    Series inductors;
    int decades = 1;
    int columns = 1;
    int titleX = 0;
    int unrealisable = 0;
    const std::string& title;
};

}  // namespace

DecadeScale ScaleOf(std::span<const double> values) {
    double lowest = HUGE_VAL, highest = 0.0;
    for (const double value : values) {
        const double size = std::abs(value);
        if (!std::isfinite(size) || size == 0.0) continue;
        lowest = std::min(lowest, size);
        highest = std::max(highest, size);
    }
    if (highest == 0.0) return {-12, -11};  // nothing to scale by: 1 to 10 pF or pH
    DecadeScale scale{static_cast<int>(std::floor(std::log10(lowest))),
                      static_cast<int>(std::ceil(std::log10(highest)))};
    scale.High = std::max(scale.High, scale.Low + 1);
    scale.Low = std::max(scale.Low, scale.High - MostDecades);
    return scale;
}

NortonDesignators NortonDesignatorsOf(const FilterDesign& design) {
    NortonDesignators names;
    const auto all = DesignatorsOf(design);
    for (int slot = 1; slot <= design.NumElements; ++slot)
        for (int row = 0; row < 4; ++row) {
            const ValueKind kind = InfoOf(design.Elements[slot].Type).Values[row];
            if (kind == ValueKind::Capacitance) names.Capacitors.push_back(all[slot][row]);
            if (kind == ValueKind::Inductance) names.Inductors.push_back(all[slot][row]);
        }
    return names;
}

NortonValuePlot BuildNortonValuePlot(const NortonResult& result, const NortonDesignators& names,
                                     const std::string& title, int width, int height,
                                     const TextMetrics& metrics) {
    return Builder(result, names, title, width, height, metrics).Build();
}

}  // namespace ladderwise
