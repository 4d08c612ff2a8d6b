// A measured network as the fit of a board takes it: the points that tell most, and the
// noise of each parameter. No Qt.
#pragma once

#include <array>
#include <vector>

#include "exchange/TouchstoneReader.h"
#include "measured/BoardModel.h"

namespace ladderwise {

inline constexpr std::size_t MostBoardPoints = 400;   ///< while it is searched
inline constexpr std::size_t MostFinalPoints = 1600;  ///< for the last steps, from what was found
inline constexpr int LeastBoardPoints = 12;

/// The three parameters of a reciprocal network, in the order of BoardPoint.
inline constexpr std::size_t NumBoardParameters = 3;

struct BoardData {
    std::vector<double> Hz{};                                     ///< ascending
    std::vector<std::array<Complex, NumBoardParameters>> S{};     ///< S11, S21, S22
    std::array<bool, NumBoardParameters> IsThere{};               ///< which were measured
    std::array<double, NumBoardParameters> Noise{1.0, 1.0, 1.0};  ///< of each real part, rms
    PortResistances Ports{};                                      ///< of the file, port 1 first
    bool Turned = false;  ///< port 1 of the file is the design's load

    /// Between which resistances the design's ladder stands.
    PortResistances LadderPorts() const {
        return Turned ? PortResistances{Ports.Load, Ports.Source} : Ports;
    }
    /// The board's parameters in the order of the file's.
    std::array<Complex, NumBoardParameters> InOrder(const BoardPoint& point) const {
        return Turned ? std::array{point.S22, point.S21, point.S11}
                      : std::array{point.S11, point.S21, point.S22};
    }
};

/// At most so many points of a network, close where its parameters change fast (which they do with
/// the group delay). S21 is the mean of S21 and S12 where both were measured; S22, and S21 of a
/// file that has zeros for it, are not there. One port is terminated by the design's load.
///
/// The noise is that of the third differences over the file's points, whose mean square is 20 times
/// that of white noise and which a smooth trace hardly has; their median leaves out the places
/// where it has.
BoardData DataOfNetwork(const NetworkData& network, const DesignState& design,
                        std::size_t most = MostBoardPoints);

/// Every so many points, `count` or fewer.
BoardData Thinned(const BoardData& data, std::size_t count);

}  // namespace ladderwise
