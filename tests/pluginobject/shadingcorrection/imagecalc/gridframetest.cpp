#include "pluginobject/shadingcorrection/imagecalc/gridframe.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

using namespace ffc::imagecalc;

namespace {

using TBytes = std::vector<uint8_t>;

// Eight bytes that tell an element and each of its bytes apart from every other.
void AppendElement(TBytes &listTable, uint32_t nElement)
{
  for (uint32_t nByte = 0; nByte < COEFFICIENT_ELEMENT_BYTES; ++nByte) {
    listTable.push_back(static_cast<uint8_t>(nElement * COEFFICIENT_ELEMENT_BYTES + nByte));
  }
}

TBytes FrameSlowly(uint32_t nColumns, uint32_t nRows)
{
  TBytes listTable;
  for (uint32_t nRow = 0; nRow < nRows + 2; ++nRow) {
    for (uint32_t nColumn = 0; nColumn < nColumns + 2; ++nColumn) {
      const uint32_t nFromRow = std::clamp(nRow, 1U, nRows) - 1;
      const uint32_t nFromColumn = std::clamp(nColumn, 1U, nColumns) - 1;
      AppendElement(listTable, nFromRow * nColumns + nFromColumn);
    }
  }
  return listTable;
}

} // namespace

TEST(CoefficientGridFrame, EveryElementOfTheRingCopiesItsNearestInTheGrid)
{
  // At most 31 elements, which the bytes tell apart.
  for (uint32_t nColumns = 1; nColumns <= 31; ++nColumns) {
    for (uint32_t nRows = 1; nRows * nColumns <= 31; ++nRows) {
      TBytes listTable;
      for (uint32_t nElement = 0; nElement < nColumns * nRows; ++nElement) {
        AppendElement(listTable, nElement);
      }
      listTable.resize((nColumns + 2) * (nRows + 2) * COEFFICIENT_ELEMENT_BYTES, 0xFF);
      FrameCoefficientGrid(listTable.data(), nColumns, nRows);
      ASSERT_EQ(FrameSlowly(nColumns, nRows), listTable) << nColumns << " x " << nRows;
    }
  }
}
