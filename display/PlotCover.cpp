// The plot's area in cells, and the search for free ones.
#include "display/PlotCover.h"

#include <algorithm>
#include <utility>

namespace ladderwise {

namespace {

constexpr int cellSize = 4;   // pixels
constexpr int placeStep = 8;  // between the places tried where no corner is free
constexpr std::uint8_t traceWeight = 1;
constexpr std::uint8_t blockWeight = 20;  // a covered label cannot be read, a covered trace can
constexpr int labelDistances[] = {3, 14, 28, 46, 70};  // from anchor to label, pixels

}  // namespace

PlotCover::PlotCover(const PlotLayout& layout)
    : area{layout.PlotLeft, layout.PlotTop, layout.PlotWidth, layout.PlotHeight},
      columns(std::max(area.Width, 0) / cellSize + 1),
      rows(std::max(area.Height, 0) / cellSize + 1),
      cells(static_cast<std::size_t>(columns) * rows) {}

void PlotCover::AddTrace(const TracePoints& points) {
    const auto take = [this](int column, int y1, int y2) {
        const int first = (std::min(y1, y2) - area.Top) / cellSize;
        const int last = (std::max(y1, y2) - area.Top) / cellSize;
        for (int row = first; row <= last; ++row)
            cells[static_cast<std::size_t>(row) * columns + column] |= traceWeight;
    };
    for (int r = 0; r < points.NumRuns; ++r) {
        const TraceRun& run = points.Runs[r];
        for (int n = run.First + 1; n <= run.Last; ++n) {
            const int from = (points.X[n - 1] - area.Left) / cellSize;
            const int to = (points.X[n] - area.Left) / cellSize;
            for (int column = from; column <= to; ++column)
                take(column, points.Y[n - 1], points.Y[n]);
        }
    }
}

void PlotCover::AddBlock(const PlotRect& block) {
    const PlotRect inside = Inside(block);
    const int lastColumn =
        std::min((inside.Left + inside.Width - area.Left) / cellSize, columns - 1);
    const int lastRow = std::min((inside.Top + inside.Height - area.Top) / cellSize, rows - 1);
    for (int row = (inside.Top - area.Top) / cellSize; row <= lastRow; ++row)
        for (int column = (inside.Left - area.Left) / cellSize; column <= lastColumn; ++column)
            cells[static_cast<std::size_t>(row) * columns + column] = blockWeight;
}

int PlotCover::Cost(const PlotRect& rect) const {
    const int firstColumn = std::clamp((rect.Left - area.Left) / cellSize, 0, columns - 1);
    const int lastColumn =
        std::clamp((rect.Left + rect.Width - area.Left) / cellSize, 0, columns - 1);
    const int firstRow = std::clamp((rect.Top - area.Top) / cellSize, 0, rows - 1);
    const int lastRow = std::clamp((rect.Top + rect.Height - area.Top) / cellSize, 0, rows - 1);
    int cost = 0;
    for (int row = firstRow; row <= lastRow; ++row)
        for (int column = firstColumn; column <= lastColumn; ++column)
            cost += cells[static_cast<std::size_t>(row) * columns + column];
    return cost;
}

PlotRect PlotCover::Inside(PlotRect rect) const {
    rect.Left = std::max(std::min(rect.Left, area.Left + area.Width - rect.Width), area.Left);
    rect.Top = std::max(std::min(rect.Top, area.Top + area.Height - rect.Height), area.Top);
    return rect;
}

PlotRect PlotCover::PlaceLabel(int anchorX, int anchorY, int width, int height, bool leftFirst) {
    PlotRect best;
    int least = -1;
    for (const int d : labelDistances) {
        int right = anchorX + d, left = anchorX - d - width;
        if (leftFirst) std::swap(left, right);
        const int above = anchorY - d - height, below = anchorY + d;
        const int middleX = anchorX - width / 2, middleY = anchorY - height / 2;
        for (const auto& [x, y] : {std::pair{right, above},
                                   {left, above},
                                   {right, below},
                                   {left, below},
                                   {middleX, above},
                                   {middleX, below},
                                   {right, middleY},
                                   {left, middleY}}) {
            const PlotRect place = Inside({x, y, width, height});
            const int cost = Cost(place);
            if (least >= 0 && cost >= least) continue;
            best = place;
            least = cost;
            if (least == 0) break;
        }
        if (least == 0) break;
    }
    AddBlock(best);
    return best;
}

PlotRect PlotCover::PlaceNearCorner(const PlotRect& corners, const PlotRect& block) const {
    // Sums over all cells above and left of each, so that a place costs four look-ups.
    const int stride = columns + 1;
    std::vector<int> sums(static_cast<std::size_t>(stride) * (rows + 1));
    for (int row = 0; row < rows; ++row)
        for (int column = 0, inRow = 0; column < columns; ++column) {
            const auto at = static_cast<std::size_t>(row) * stride + column;
            inRow += cells[static_cast<std::size_t>(row) * columns + column];
            sums[at + stride + 1] = sums[at + 1] + inRow;
        }
    const int across = block.Width / cellSize + 2, down = block.Height / cellSize + 2;
    PlotRect best = block;
    int least = -1, nearest = 0;
    for (int y = corners.Top; y <= corners.Top + corners.Height; y += placeStep)
        for (int x = corners.Left; x <= corners.Left + corners.Width; x += placeStep) {
            const int column = (x - area.Left) / cellSize, row = (y - area.Top) / cellSize;
            const int right = std::min(column + across, columns),
                      below = std::min(row + down, rows);
            const auto sum = [&](int r, int c) {
                return sums[static_cast<std::size_t>(r) * stride + c];
            };
            const int cost =
                sum(below, right) - sum(below, column) - sum(row, right) + sum(row, column);
            const int aside = std::min(x - corners.Left, corners.Left + corners.Width - x) +
                              std::min(y - corners.Top, corners.Top + corners.Height - y);
            if (least >= 0 && (cost > least || (cost == least && aside >= nearest))) continue;
            best.Left = x;
            best.Top = y;
            least = cost;
            nearest = aside;
        }
    return best;
}

bool PlotCover::HasRoomFor(int width, int height, int margin) const {
    return width + 2 * margin <= area.Width && height + 2 * margin <= area.Height;
}

PlotRect PlotCover::FindCorner(int width, int height, int margin) const {
    const int left = area.Left + margin, right = area.Left + area.Width - margin - width;
    const int top = area.Top + margin, bottom = area.Top + area.Height - margin - height;
    const std::pair<int, int> corners[] = {
        {right, top}, {left, bottom}, {left, top}, {right, bottom}};
    PlotRect best;
    int least = -1;
    for (const auto& [x, y] : corners) {
        const PlotRect place = Inside({x, y, width, height});
        const int cost = Cost(place);
        if (least >= 0 && cost >= least) continue;
        best = place;
        least = cost;
    }
    if (least > 0) {
        const PlotRect elsewhere = PlaceNearCorner({left, top, right - left, bottom - top}, best);
        if (Cost(elsewhere) == 0) best = elsewhere;
    }
    return best;
}

}  // namespace ladderwise
