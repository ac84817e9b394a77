/// \file
/// The course of a vignetting calculation, which both calculators share.
#pragma once

#include <cstdint>
#include <memory>

#include "pluginobject/shadingcorrection/imagecalc/arrayallocation.h"
#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/blockpadding.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/meangrid.h"

namespace ffc::imagecalc {

/// Where CalcCoefficient writes its results. None may be null.
struct SGainTableResult {
  const uint16_t **ppTable;
  uint64_t *pnColumns;
  uint64_t *pnRows;
};

/// Runs the virtual operations of a calculator, which befriends it. TCalculator is CVCBayer or CVCGary.
template <class TCalculator>
class CVignettingSteps {
public:
  /// CalcCoefficient.
  [[nodiscard]] static int32_t CalcCoefficient(TCalculator &calculator, const SRawFrame<void> &stFrame,
                                               int32_t nBitDepth, const SGainTableResult &stTable)
  {
    if (stTable.ppTable == nullptr || stTable.pnColumns == nullptr || stTable.pnRows == nullptr ||
        calculator.CheckImage(stFrame.pPixels, stFrame.nWidth, stFrame.nHeight) != IMAGECALC_STATUS_SUCCESS) {
      return IMAGECALC_STATUS_INVALID_ARGUMENT;
    }
    if (nBitDepth != 8 && nBitDepth != 10 && nBitDepth != 12) {
      return IMAGECALC_STATUS_NOT_SUPPORTED;
    }
    SGridSize stSize;
    const int32_t nStatus = nBitDepth == 8 ? calculator.Calc8Bit(ViewAs<uint8_t>(stFrame), stSize)
                                           : calculator.Calc16Bit(ViewAs<uint16_t>(stFrame), stSize);
    *stTable.pnColumns = stSize.nColumns;
    *stTable.pnRows = stSize.nRows;
    if (nStatus == IMAGECALC_STATUS_SUCCESS) {
      *stTable.ppTable = calculator.m_pCoefficient.get();
    }
    return nStatus;
  }

  /// Calc8Bit and Calc16Bit, by the operations of their pixel type.
  template <class TPixel>
  [[nodiscard]] static int32_t Calc(TCalculator &calculator, const SRawFrame<TPixel> &stFrame,
                                    int32_t (TCalculator::*fnPad)(const SRawFrame<TPixel> &, SPaddedImage<TPixel> &),
                                    int32_t (TCalculator::*fnMeasure)(const SPaddedImage<TPixel> &, SMeanGrid &),
                                    SGridSize &stSize)
  {
    stSize = SGridSize();
    SPaddedImage<TPixel> stPadded;
    SMeanGrid stGrid;
    int32_t nStatus = (calculator.*fnPad)(stFrame, stPadded);
    if (nStatus == IMAGECALC_STATUS_SUCCESS) {
      nStatus = (calculator.*fnMeasure)(stPadded, stGrid);
    }
    if (nStatus == IMAGECALC_STATUS_SUCCESS) {
      nStatus = calculator.ConvertGrid(stGrid, stSize);
    }
    return nStatus;
  }

  /// ConvertGrid.
  [[nodiscard]] static int32_t Convert(TCalculator &calculator, SMeanGrid &stGrid, uint32_t nGainsPerPoint,
                                       SGridSize &stSize)
  {
    const std::unique_ptr<uint16_t[]> pGains =
      AllocateArray<uint16_t>({stGrid.stSize.nColumns, stGrid.stSize.nRows, nGainsPerPoint});
    if (pGains == nullptr) {
      return IMAGECALC_STATUS_OUT_OF_MEMORY;
    }
    calculator.CalcGains(stGrid, pGains.get());
    SGridSize stPacked = stGrid.stSize;
    const int32_t nStatus = calculator.PackQuads(pGains.get(), stPacked);
    if (nStatus == IMAGECALC_STATUS_SUCCESS) {
      stSize = stPacked;
    }
    return nStatus;
  }

private:
  template <class TPixel>
  static SRawFrame<TPixel> ViewAs(const SRawFrame<void> &stFrame)
  {
    return {static_cast<const TPixel *>(stFrame.pPixels), stFrame.nWidth, stFrame.nHeight};
  }
};

} // namespace ffc::imagecalc
