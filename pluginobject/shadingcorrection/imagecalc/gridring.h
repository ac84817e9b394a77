/// \file
/// The ring of extrapolated points around a grid of means.
#pragma once

#include <cstdint>

/// Points of a grid.
struct SGridSize {
  uint64_t nColumns = 0;
  uint64_t nRows = 0;
};

/// Fills the ring of one plane: the top row and the bottom row without their corners, then the left and the
/// right column with them. A point carries the two points inward of it on in a straight line when the grid has
/// more than 4 points in that direction, else it copies its inner neighbour. No point falls below 0.
/// \param pPlane means, row by row
/// \param stSize the ring included, at least 3 each way
void FillGridRing(double *pPlane, const SGridSize &stSize);
