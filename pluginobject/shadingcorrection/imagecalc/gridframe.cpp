#include "pluginobject/shadingcorrection/imagecalc/gridframe.h"

#include <cstring>

namespace ffc::imagecalc {

namespace {

void CopyElement(uint8_t *pTo, const uint8_t *pFrom)
{
  std::memcpy(pTo, pFrom, COEFFICIENT_ELEMENT_BYTES);
}

} // namespace

void FrameCoefficientGrid(uint8_t *pTable, uint32_t nColumns, uint32_t nRows)
{
  const std::size_t nGridRowBytes = nColumns * COEFFICIENT_ELEMENT_BYTES;
  const std::size_t nTableRowBytes = nGridRowBytes + 2 * COEFFICIENT_ELEMENT_BYTES;
  // The last row first: no row is overwritten before it has moved.
  for (std::size_t nRow = nRows; nRow > 0; --nRow) {
    uint8_t *const pRow = pTable + nRow * nTableRowBytes;
    std::memmove(pRow + COEFFICIENT_ELEMENT_BYTES, pTable + (nRow - 1) * nGridRowBytes, nGridRowBytes);
    CopyElement(pRow, pRow + COEFFICIENT_ELEMENT_BYTES);
    CopyElement(pRow + nTableRowBytes - COEFFICIENT_ELEMENT_BYTES, pRow + nGridRowBytes);
  }
  std::memcpy(pTable, pTable + nTableRowBytes, nTableRowBytes);
  uint8_t *const pLastRow = pTable + (nRows + std::size_t{1}) * nTableRowBytes;
  std::memcpy(pLastRow, pLastRow - nTableRowBytes, nTableRowBytes);
}

} // namespace ffc::imagecalc
