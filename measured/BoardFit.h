// Least squares of a board's unknowns, damped after Levenberg and Marquardt, with what is known
// before as a pull on each. No Qt.
#pragma once

#include <array>
#include <vector>

#include "measured/BoardData.h"

namespace ladderwise {

/// Where a fit stands. Squares are in units of the noise.
struct BoardState {
    std::vector<double> X{};  ///< the unknowns
    double Misfit = 0.0;      ///< sum of squares of model minus data
    double Pull = 0.0;        ///< sum of squares of unknowns minus their means over their spreads

    double Cost() const { return Misfit + Pull; }
};

/// What is fitted in one go, and how long.
struct BoardStage {
    bool Parasitics = true;  ///< else values, coil losses and cables alone
    double Smoothing = 0.0;  ///< relative width over which model and data are smoothed; 0: not
    int Steps = 40;          ///< at most
    double Enough = 1e-5;    ///< ends where a step gains less than this part of the cost
};

class BoardFit {
public:
    BoardFit(const BoardModel& fitted, const BoardData& measured) : model(fitted), data(measured) {}

    BoardState At(std::vector<double> x) const;
    /// Improves a state until a step gains nothing. Steps change no part by more than 5 %.
    BoardState Improved(BoardState state, const BoardStage& stage) const;

    /// The covariance of all unknowns (by rows; rows of those that are held are 0) for noise alone,
    /// without the pull of the parts to their nominal values.
    std::vector<double> Covariance(const std::vector<double>& x) const;

    /// Model minus data of every point, in the order of the file.
    std::vector<std::array<Complex, NumBoardParameters>> Residuals(
        const std::vector<double>& x) const;

    /// Real numbers that were measured.
    double Count() const;

private:
    struct Normal;  ///< the normal equations
    std::vector<std::size_t> Measured() const;
    std::vector<int> Columns(const BoardStage& stage) const;
    Normal NormalAt(const std::vector<double>& x, const std::vector<int>& columns,
                    const std::vector<double>& smoother) const;
    std::vector<double> RowsAt(const std::vector<double>& x, const std::vector<int>& columns) const;
    BoardState Judged(std::vector<double> x, const std::vector<double>& smoother) const;
    std::vector<double> Smoother(double width) const;
    std::vector<double> Smoothed(const std::vector<double>& rows, std::size_t width,
                                 const std::vector<double>& smoother) const;
    bool Step(BoardState& state, Normal& normal, const std::vector<int>& columns,
              const std::vector<double>& smoother, double& damping) const;
    std::vector<double> Moved(const BoardState& state, const Normal& normal,
                              const std::vector<int>& columns, double damping) const;

    const BoardModel& model;
    const BoardData& data;
};

}  // namespace ladderwise
