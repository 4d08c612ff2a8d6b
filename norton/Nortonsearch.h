// The search for the K and M that make the capacitors (or the inductors) of a Norton-transformed
// ladder as even as possible. Plain structs, no design state, nothing allocated.
#pragma once

#include "norton/Nortonfunctions.h"

namespace ladderwise {

/// K and M run over SearchStart * SearchRatio^k, k = 1 .. SearchPasses.
inline constexpr double SearchStart = 1.1;
inline constexpr double SearchRatio = 1.02;
inline constexpr int SearchPasses = 249;

/// What a search found.
struct NortonChoice {
    double K = SearchStart * SearchRatio;
    double M = SearchStart * SearchRatio;
    double Score = 0.0;  ///< 0: no positive value anywhere, K and M are those of the start
};

/// Evenness of a ladder: the sum of the positive values of the kind, each over the largest value of
/// that kind. At most the number of values, when all are equal.
double EvennessOf(const NortonValues& values, const NortonStructure& structure, NortonGoal goal);

/// The most even ladder of a structure on the grid of K and M (5 poles: 62 001 transforms; 3 poles:
/// M stays at the first of the grid, 249 transforms). The first one wins a tie.
NortonChoice SearchEvenest(NortonType type, const NortonBase& base, NortonGoal goal);

}  // namespace ladderwise
