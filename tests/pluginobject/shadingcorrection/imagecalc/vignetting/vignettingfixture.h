/// \file
/// The vignetting calculators with their inner operations in reach, and what the tests run on both.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/imagecalc/vignetting/vcbayer.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/vcgary.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

using TGains = std::vector<int32_t>;

/// TCalculator is CVCBayer or CVCGary.
template <class TCalculator>
class CReachable : public TCalculator {
public:
  using TCalculator::Calc16Bit;
  using TCalculator::Calc8Bit;
  using TCalculator::CalcBlockGrid16;
  using TCalculator::CalcBlockGrid8;
  using TCalculator::CalcGains;
  using TCalculator::m_bReady;
  using TCalculator::m_nBlockHeight;
  using TCalculator::m_nBlockWidth;
  using TCalculator::m_nMaxGain;
  using TCalculator::m_nScale;
  using TCalculator::m_pCoefficient;
  using TCalculator::PackQuads;
  using TCalculator::PadImage16;
  using TCalculator::PadImage8;
  using TCalculator::TCalculator;
};

using CReachableBayer = CReachable<CVCBayer>;
using CReachableGray = CReachable<CVCGary>;

/// What a calculation hands out.
struct SGainTable {
  int32_t nStatus = 1;
  const uint16_t *pTable = nullptr;
  uint64_t nColumns = 77;
  uint64_t nRows = 77;

  TGains GetGains(uint32_t nGainsPerPoint) const { return {pTable, pTable + nColumns * nRows * nGainsPerPoint}; }
};

inline SGainTable CalcTable(IVignettingCorrection &calculator, const ffc::test::CTestImage &image)
{
  SGainTable stTable;
  stTable.nStatus = calculator.CalcCoefficient(image.GetData(), static_cast<uint32_t>(image.GetWidth()),
                                               static_cast<uint32_t>(image.GetHeight()), image.GetBitDepth(),
                                               &stTable.pTable, &stTable.nColumns, &stTable.nRows);
  return stTable;
}

/// The gains of a frame, quad by quad.
inline TGains CalcGains(IVignettingCorrection &calculator, const ffc::test::CTestImage &image, uint32_t nGainsPerPoint)
{
  const SGainTable stTable = CalcTable(calculator, image);
  EXPECT_EQ(stTable.nStatus, 0);
  return stTable.nStatus == 0 ? stTable.GetGains(nGainsPerPoint) : TGains();
}

/// An 8-bit image of whole blocks, each as grey as it is told.
inline ffc::test::CTestImage MakeBlocks(int32_t nBlockSide, const std::vector<std::vector<int32_t>> &listRows)
{
  const auto nColumns = static_cast<int32_t>(listRows[0].size());
  ffc::test::CTestImage image(nColumns * nBlockSide, static_cast<int32_t>(listRows.size()) * nBlockSide, 8);
  for (int32_t y = 0; y < image.GetHeight(); ++y) {
    for (int32_t x = 0; x < image.GetWidth(); ++x) {
      image.Set(x, y, listRows[static_cast<std::size_t>(y / nBlockSide)][static_cast<std::size_t>(x / nBlockSide)]);
    }
  }
  return image;
}
