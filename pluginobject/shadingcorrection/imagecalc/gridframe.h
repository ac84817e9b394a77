/// \file
/// The ring of copied elements around a grid of coefficient elements.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ffc::imagecalc {

/// Bytes of a coefficient element: four little-endian 16-bit words (dark level, gain of B, of G, of R).
constexpr std::size_t COEFFICIENT_ELEMENT_BYTES = 8;

/// Frames a grid in place: its elements, which stand densely at the start of the table, row by row, move one
/// row down and one column to the right, and each element of the ring copies its nearest in the grid.
/// \param pTable (nColumns + 2) x (nRows + 2) elements, of any alignment
/// \param nColumns, nRows size of the grid, at least 1 each
void FrameCoefficientGrid(uint8_t *pTable, uint32_t nColumns, uint32_t nRows);

} // namespace ffc::imagecalc
