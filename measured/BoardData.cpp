// Choice of points, and noise.
#include "measured/BoardData.h"

#include <algorithm>
#include <cmath>

namespace ladderwise {

namespace {

constexpr double leastNoise = 1e-4;    ///< no analyser is better; of calculated files
constexpr double evenShare = 0.5;      ///< of the points that lie evenly, whatever the trace does
constexpr double squaredThird = 20.0;  ///< 1 + 9 + 9 + 1: of a third difference of white noise

/// Noise of one parameter, from the median of |third difference|^2: of both parts together that is
/// 2 ln 2 times the mean square of one.
double NoiseOf(const BoardData& data, std::size_t parameter) {
    std::vector<double> squares;
    for (std::size_t i = 3; i < data.S.size(); ++i)
        squares.push_back(std::norm(data.S[i][parameter] - 3.0 * data.S[i - 1][parameter] +
                                    3.0 * data.S[i - 2][parameter] - data.S[i - 3][parameter]));
    if (squares.empty()) return leastNoise;
    const auto middle = squares.begin() + static_cast<std::ptrdiff_t>(squares.size() / 2);
    std::nth_element(squares.begin(), middle, squares.end());
    return std::max(leastNoise, std::sqrt(*middle / (squaredThird * 2.0 * std::log(2.0))));
}

/// How far the parameters move from one point to the next, beyond their noise.
double Movement(const BoardData& data, std::size_t i) {
    double sum = 0.0;
    for (std::size_t p = 0; p < NumBoardParameters; ++p)
        if (data.IsThere[p])
            sum += std::max(0.0, std::abs(data.S[i][p] - data.S[i - 1][p]) - 2.0 * data.Noise[p]);
    return sum;
}

BoardData Chosen(const BoardData& all, const std::vector<std::size_t>& points) {
    BoardData data = all;
    data.Hz.clear();
    data.S.clear();
    for (const std::size_t i : points) {
        data.Hz.push_back(all.Hz[i]);
        data.S.push_back(all.S[i]);
    }
    return data;
}

/// Points at equal steps of a sum that grows with the movement and with every point.
std::vector<std::size_t> ByMovement(const BoardData& data, std::size_t count) {
    std::vector<double> sum(data.Hz.size(), 0.0);
    for (std::size_t i = 1; i < sum.size(); ++i)
        sum[i] = sum[i - 1] + Movement(data, i);
    const double even = sum.back() > 0.0 ? evenShare / (1.0 - evenShare) * sum.back() : 1.0;
    for (std::size_t i = 1; i < sum.size(); ++i)
        sum[i] += even * static_cast<double>(i) / static_cast<double>(sum.size() - 1);
    std::vector<std::size_t> points{0};
    for (std::size_t i = 1; i < sum.size(); ++i)
        if (sum[i] >=
            sum.back() * static_cast<double>(points.size()) / static_cast<double>(count - 1))
            points.push_back(i);
    return points;
}

bool AllZero(const std::vector<SParameters>& list, Complex SParameters::*which) {
    return std::all_of(list.begin(), list.end(),
                       [&](const SParameters& s) { return s.*which == Complex(0.0); });
}

}  // namespace

BoardData DataOfNetwork(const NetworkData& network, const DesignState& design, std::size_t most) {
    BoardData data;
    const bool two = network.Ports == 2;
    const bool forward = two && !AllZero(network.S, &SParameters::S21);
    const bool backward = two && !AllZero(network.S, &SParameters::S12);
    data.Ports = {network.Reference.Source, two ? network.Reference.Load : design.RLoad};
    data.IsThere = {true, forward || backward, two && !AllZero(network.S, &SParameters::S22)};
    for (std::size_t i = 0; i < network.Hz.size(); ++i) {
        const SParameters& s = network.S[i];
        if (!(network.Hz[i] > 0.0)) continue;
        data.Hz.push_back(network.Hz[i]);
        const Complex through =
            forward && backward ? 0.5 * (s.S21 + s.S12) : (forward ? s.S21 : s.S12);
        data.S.push_back({s.S11, through, s.S22});
    }
    for (std::size_t p = 0; p < NumBoardParameters; ++p)
        if (data.IsThere[p]) data.Noise[p] = NoiseOf(data, p);
    return data.Hz.size() > most ? Chosen(data, ByMovement(data, most)) : data;
}

BoardData Thinned(const BoardData& data, std::size_t count) {
    if (data.Hz.size() <= count) return data;
    std::vector<std::size_t> points;
    for (std::size_t i = 0; i < count; ++i)
        points.push_back(i * (data.Hz.size() - 1) / (count - 1));
    return Chosen(data, points);
}

}  // namespace ladderwise
