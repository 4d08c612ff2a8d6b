// The reader, in three steps: bytes to lines of words; option line and keywords; numbers to points.
#include "exchange/TouchstoneReader.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "exchange/TouchstoneLines.h"
#include "numbers/Matherrmain.h"
#include "numbers/PlainNumbers.h"

namespace ladderwise {

namespace {

constexpr double DegreesToRadians = std::numbers::pi / 180.0;
constexpr std::size_t NoiseColumns = 5;  ///< frequency, figure, two of Gamma, resistance
constexpr int MostPorts = 2;

struct LineOfNumbers {
    std::size_t Line;  ///< from 1
    std::vector<double> Values;
};

/// Numbers in a point of p ports: the frequency and p^2 pairs.
constexpr std::size_t PointSize(std::size_t ports) {
    return 1 + 2 * ports * ports;
}

[[noreturn]] void RefusePorts(std::size_t line, std::size_t numbers) {
    std::size_t ports = 3;
    while (PointSize(ports) < numbers)
        ++ports;
    if (PointSize(ports) == numbers)
        Refuse(line, std::to_string(ports) + " ports; one or two can be read");
    Refuse(line,
           std::to_string(numbers) + " numbers belong to a frequency; one port has 3, two have 9");
}

/// A word of the data as a number; -inf passes as the level of zero in dB.
double DataNumber(const WordLine& line, std::string_view word) {
    double x = 0.0;
    switch (ReadPlainNumber(word, x)) {
        case NumberFault::None:
            return x;
        case NumberFault::NotANumber:
            Refuse(line.Number, QuotedWord(word) + " is no number");
        case NumberFault::TooLarge:
            Refuse(line.Number, QuotedWord(word) + " is too large");
    }
    return x;
}

std::vector<LineOfNumbers> NumbersOf(const std::vector<WordLine>& lines) {
    std::vector<LineOfNumbers> numbers;
    for (const WordLine& line : lines) {
        numbers.push_back({line.Number, {}});
        for (const std::string_view word : line.Words)
            numbers.back().Values.push_back(DataNumber(line, word));
    }
    return numbers;
}

/// How many numbers a point of version 1 has: those of the first line and of the lines of whole
/// pairs that continue it. Wrapped amid a pair: two ports.
std::size_t PointSizeOf(const std::vector<LineOfNumbers>& lines) {
    std::size_t count = lines.front().Values.size();
    for (std::size_t i = 1; i < lines.size() && lines[i].Values.size() % 2 == 0; ++i)
        count += lines[i].Values.size();
    if (count == PointSize(1) || count == PointSize(2)) return count;
    if (lines.front().Values.size() >= PointSize(2)) RefusePorts(lines.front().Line, count);
    std::size_t streamed = 0;
    for (std::size_t i = 0; i < lines.size() && streamed < PointSize(2); ++i)
        streamed += lines[i].Values.size();
    if (streamed != PointSize(2)) RefusePorts(lines.front().Line, count);
    return streamed;
}

/// A line that begins noise data: five numbers where a point would begin, not above the last
/// frequency, and not followed by the four that would make it a wrapped point.
bool IsNoise(const std::vector<LineOfNumbers>& lines, std::size_t i, double lastFrequency) {
    if (lines[i].Values.size() != NoiseColumns || lines[i].Values[0] > lastFrequency) return false;
    return i + 1 == lines.size() || lines[i + 1].Values.size() == NoiseColumns;
}

struct RawPoint {
    std::size_t Line;
    std::vector<double> Values;
};

std::vector<RawPoint> PointsFrom(const std::vector<LineOfNumbers>& lines, std::size_t size,
                                 bool noisePossible, std::vector<std::string>& messages) {
    std::vector<RawPoint> points;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const bool starts = points.empty() || points.back().Values.size() == size;
        if (starts && noisePossible && !points.empty() &&
            IsNoise(lines, i, points.back().Values[0])) {
            for (std::size_t k = i; k < lines.size(); ++k)
                if (lines[k].Values.size() != NoiseColumns)
                    Refuse(lines[k].Line, "a line of noise data has 5 numbers");
            messages.push_back("Noise data from line " + std::to_string(lines[i].Line) +
                               " on were left out.");
            break;
        }
        if (starts) points.push_back({lines[i].Line, {}});
        std::vector<double>& point = points.back().Values;
        point.insert(point.end(), lines[i].Values.begin(), lines[i].Values.end());
        if (point.size() > size)
            Refuse(lines[i].Line, std::to_string(point.size()) +
                                      " numbers for one frequency, not " + std::to_string(size));
    }
    if (!points.empty() && points.back().Values.size() != size)
        Refuse(lines.back().Line, "the last frequency has " +
                                      std::to_string(points.back().Values.size()) +
                                      " numbers, not " + std::to_string(size));
    return points;
}

/// Points of version 2, whose lines may end anywhere.
std::vector<RawPoint> StreamedPoints(const std::vector<LineOfNumbers>& lines, std::size_t size) {
    std::vector<RawPoint> points;
    for (const LineOfNumbers& line : lines) {
        for (const double x : line.Values) {
            if (points.empty() || points.back().Values.size() == size)
                points.push_back({line.Line, {}});
            points.back().Values.push_back(x);
        }
    }
    if (!points.empty() && points.back().Values.size() != size)
        Refuse(points.back().Line, "the last frequency has " +
                                       std::to_string(points.back().Values.size()) +
                                       " numbers, not " + std::to_string(size));
    return points;
}

Complex PairValue(const TouchstoneHeader& header, const RawPoint& point, std::size_t at) {
    const double a = point.Values[at], b = point.Values[at + 1];
    const bool zero = header.Format == PairFormat::Decibels && std::isinf(a) && a < 0.0;
    if (!std::isfinite(b) || !(std::isfinite(a) || zero))
        Refuse(point.Line, "a number is infinite");
    Complex z{a, b};
    if (header.Format != PairFormat::RealImaginary) {
        const double magnitude = zero                                    ? 0.0
                                 : header.Format == PairFormat::Decibels ? std::pow(10.0, a / 20.0)
                                                                         : a;
        z = {magnitude * std::cos(b * DegreesToRadians),
             magnitude * std::sin(b * DegreesToRadians)};
    }
    if (!std::isfinite(z.real()) || !std::isfinite(z.imag()))
        Refuse(point.Line, "a number is too large");
    return z;
}

/// The four parameters of a point, in whatever order and shape the file has them.
SParameters ParametersOf(const TouchstoneHeader& header, const RawPoint& point) {
    const auto pair = [&](std::size_t k) { return PairValue(header, point, 1 + 2 * k); };
    if (point.Values.size() == PointSize(1)) return {pair(0), 0.0, 0.0, 0.0};
    if (header.Matrix != MatrixShape::Full) return {pair(0), pair(1), pair(1), pair(2)};
    if (header.Version == 2 && header.Order == PairOrder::Rows)
        return {pair(0), pair(2), pair(1), pair(3)};
    return {pair(0), pair(1), pair(2), pair(3)};
}

/// S = (P r + Q / r)^-1 (Q / r - P r) of a network that obeys P V = Q I, with V = r (a + b) and
/// I = (a - b) / r, r = sqrt(R): the definition of a and b for real references.
struct LinearRelation {
    SParameters P, Q;  ///< rows and columns as the names say
};

LinearRelation RelationOf(NetworkParameter kind, const SParameters& x) {
    switch (kind) {
        case NetworkParameter::Z:
            return {{1.0, 0.0, 0.0, 1.0}, x};
        case NetworkParameter::Y:
            return {x, {1.0, 0.0, 0.0, 1.0}};
        case NetworkParameter::H:  // V1 = h11 I1 + h12 V2, I2 = h21 I1 + h22 V2
            return {{1.0, 0.0, -x.S12, -x.S22}, {x.S11, x.S21, 0.0, -1.0}};
        case NetworkParameter::G:  // I1 = g11 V1 + g12 I2, V2 = g21 V1 + g22 I2
            return {{x.S11, x.S21, 0.0, -1.0}, {1.0, 0.0, -x.S12, -x.S22}};
        case NetworkParameter::S:
            break;
    }
    return {};
}

SParameters ToScattering(NetworkParameter kind, const SParameters& x, PortResistances ports) {
    if (kind == NetworkParameter::S) return x;
    const auto [P, Q] = RelationOf(kind, x);
    const double r1 = GuardedSqrt(ports.Source), r2 = GuardedSqrt(ports.Load);
    const SParameters p{P.S11 * r1, P.S21 * r1, P.S12 * r2, P.S22 * r2};
    const SParameters q{Q.S11 / r1, Q.S21 / r1, Q.S12 / r2, Q.S22 / r2};
    const SParameters m{p.S11 + q.S11, p.S21 + q.S21, p.S12 + q.S12, p.S22 + q.S22};
    const SParameters n{q.S11 - p.S11, q.S21 - p.S21, q.S12 - p.S12, q.S22 - p.S22};
    const Complex det = m.S11 * m.S22 - m.S12 * m.S21;
    return {GuardedDivide(m.S22 * n.S11 - m.S12 * n.S21, det),
            GuardedDivide(m.S11 * n.S21 - m.S21 * n.S11, det),
            GuardedDivide(m.S22 * n.S12 - m.S12 * n.S22, det),
            GuardedDivide(m.S11 * n.S22 - m.S21 * n.S12, det)};
}

SParameters ScatteringOf(const TouchstoneHeader& header, const RawPoint& point, int ports) {
    const SParameters x = ParametersOf(header, point);
    // Version 1 has impedances in units of R, which is to say, at references of 1 ohm.
    const PortResistances reference =
        header.Version == 1 ? PortResistances{1.0, 1.0} : header.Reference;
    SParameters s;
    if (ports == 1 && header.Parameter != NetworkParameter::S) {
        const bool impedance = header.Parameter == NetworkParameter::Z;
        const Complex z = impedance ? x.S11 / reference.Source : x.S11 * reference.Source;
        const Complex gamma = GuardedDivide(z - 1.0, z + 1.0);
        s = {impedance ? gamma : -gamma, 0.0, 0.0, 0.0};
    } else {
        s = ToScattering(header.Parameter, x, reference);
    }
    for (const Complex& z : {s.S11, s.S21, s.S12, s.S22})
        if (!std::isfinite(z.real()) || !std::isfinite(z.imag()))
            Refuse(point.Line, "there are no S-parameters of these");
    return s;
}

double FrequencyOf(const TouchstoneHeader& header, const RawPoint& point) {
    const double f = point.Values[0] * header.Unit;
    if (!(f >= 0.0) || !std::isfinite(f))
        Refuse(point.Line, "no frequency is negative or infinite");
    return f;
}

/// Puts points in the order of their frequencies; of those with the same one the first counts.
void SortPoints(NetworkData& network) {
    std::vector<std::size_t> order(network.Hz.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto below = [&](std::size_t a, std::size_t b) { return network.Hz[a] < network.Hz[b]; };
    if (!std::is_sorted(order.begin(), order.end(), below)) {
        std::stable_sort(order.begin(), order.end(), below);
        network.Messages.push_back("The frequencies were not in order; they were sorted.");
    }
    NetworkData sorted = network;
    sorted.Hz.clear();
    sorted.S.clear();
    for (const std::size_t i : order) {
        if (!sorted.Hz.empty() && sorted.Hz.back() == network.Hz[i]) continue;
        sorted.Hz.push_back(network.Hz[i]);
        sorted.S.push_back(network.S[i]);
    }
    const std::size_t repeated = network.Hz.size() - sorted.Hz.size();
    if (repeated > 0)
        sorted.Messages.push_back(
            std::to_string(repeated) +
            " repeated frequencies were left out; the first of each was kept.");
    network = std::move(sorted);
}

void NameOnePath(NetworkData& network, NetworkParameter parameter) {
    if (network.Ports != 2 || parameter != NetworkParameter::S) return;
    network.OnePath = std::all_of(network.S.begin(), network.S.end(), [](const SParameters& s) {
        return s.S12 == 0.0 && s.S22 == 0.0;
    });
    if (network.OnePath)
        network.Messages.push_back(
            "S12 and S22 are all zero: a one-path instrument wrote this; S22 is not measured.");
}

std::size_t SizeInVersion2(const TouchstoneHeader& header, std::size_t line) {
    if (header.Ports > MostPorts)
        Refuse(line, std::to_string(header.Ports) + " ports; one or two can be read");
    if (header.Ports == 1) return PointSize(1);
    return header.Matrix == MatrixShape::Full ? PointSize(2) : PointSize(2) - 2;
}

std::vector<RawPoint> RawPointsOf(const TouchstoneHeader& header, const TouchstoneBody& body,
                                  std::vector<std::string>& messages) {
    const std::vector<LineOfNumbers> lines = NumbersOf(body.Data);
    if (lines.empty()) Refuse(body.LastLine, "there are no data");
    if (header.Version == 1) {
        const std::size_t size = PointSizeOf(lines);
        return PointsFrom(lines, size, size == PointSize(2), messages);
    }
    std::vector<RawPoint> points =
        StreamedPoints(lines, SizeInVersion2(header, lines.front().Line));
    if (header.Points && *header.Points != points.size())
        Refuse(body.LastLine, "[Number of Frequencies] is " + std::to_string(*header.Points) +
                                  ", but there are " + std::to_string(points.size()));
    return points;
}

NetworkData NetworkOf(std::string_view bytes) {
    const TouchstoneBody body = ReadTouchstoneLines(bytes);
    TouchstoneHeader header = body.Header;
    NetworkData network;
    network.Messages = body.Messages;
    const std::vector<RawPoint> points = RawPointsOf(header, body, network.Messages);
    network.Ports = points.front().Values.size() == PointSize(1) ? 1 : 2;
    if (network.Ports == 1 && header.HasTwoReferences)
        Refuse(header.OptionLine, "two reference resistances, but one port");
    if (network.Ports == 1 &&
        (header.Parameter == NetworkParameter::G || header.Parameter == NetworkParameter::H))
        Refuse(header.OptionLine, "G and H are of two ports, but there is one");
    if (network.Ports == 1) header.Reference.Load = header.Reference.Source;
    network.Reference = header.Reference;
    for (const RawPoint& point : points) {
        network.Hz.push_back(FrequencyOf(header, point));
        network.S.push_back(ScatteringOf(header, point, network.Ports));
    }
    SortPoints(network);
    NameOnePath(network, header.Parameter);
    return network;
}

}  // namespace

TouchstoneResult ReadTouchstone(std::string_view bytes) {
    if (bytes.size() > MaxTouchstoneBytes)
        return {{}, "line 1: the file is longer than any measurement"};
    try {
        return {NetworkOf(bytes), {}};
    } catch (const TouchstoneRefusal& refusal) {
        return {{}, "line " + std::to_string(refusal.Line) + ": " + refusal.Reason};
    }
}

}  // namespace ladderwise
