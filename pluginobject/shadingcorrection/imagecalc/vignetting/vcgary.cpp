#include "pluginobject/shadingcorrection/imagecalc/vignetting/vcgary.h"

#include <limits>

#include "pluginobject/shadingcorrection/imagecalc/vignetting/gainquads.h"

using namespace ffc::imagecalc;

namespace {

using CSteps = CVignettingSteps<CVCGary>;

constexpr uint32_t COLOURS = 1;
constexpr uint32_t PADDING_PERIOD = 1;

} // namespace

CVCGary::CVCGary() noexcept
{
  m_nMaxGain = std::numeric_limits<int32_t>::max();
}

CVCGary::~CVCGary() = default;

int32_t CVCGary::CalcCoefficient(const void *pImage, uint32_t nWidth, uint32_t nHeight, int32_t nBitDepth,
                                 const uint16_t **ppTable, uint64_t *pnColumns, uint64_t *pnRows) noexcept
{
  return CSteps::CalcCoefficient(*this, {pImage, nWidth, nHeight}, nBitDepth, {ppTable, pnColumns, pnRows});
}

int32_t CVCGary::Calc16Bit(const SFrame16 &stFrame, SGridSize &stSize)
{
  return CSteps::Calc(*this, stFrame, &CVCGary::PadImage16, &CVCGary::CalcBlockGrid16, stSize);
}

int32_t CVCGary::Calc8Bit(const SFrame8 &stFrame, SGridSize &stSize)
{
  return CSteps::Calc(*this, stFrame, &CVCGary::PadImage8, &CVCGary::CalcBlockGrid8, stSize);
}

int32_t CVCGary::PadImage16(const SFrame16 &stFrame, SPadded16 &stPadded)
{
  return PadToBlocks(stFrame, {m_nBlockWidth, m_nBlockHeight}, PADDING_PERIOD, stPadded);
}

int32_t CVCGary::PadImage8(const SFrame8 &stFrame, SPadded8 &stPadded)
{
  return PadToBlocks(stFrame, {m_nBlockWidth, m_nBlockHeight}, PADDING_PERIOD, stPadded);
}

int32_t CVCGary::CalcBlockGrid16(const SPadded16 &stPadded, SMeanGrid &stGrid)
{
  return __MeasureGrey(stPadded, stGrid);
}

int32_t CVCGary::CalcBlockGrid8(const SPadded8 &stPadded, SMeanGrid &stGrid)
{
  return __MeasureGrey(stPadded, stGrid);
}

int32_t CVCGary::ConvertGrid(SMeanGrid &stGrid, SGridSize &stSize)
{
  return CSteps::Convert(*this, stGrid, COLOURS, stSize);
}

void CVCGary::CalcGains(SMeanGrid &stGrid, uint16_t *pGains)
{
  for (uint64_t nPoint = 0; nPoint < stGrid.CountPoints(); ++nPoint) {
    double &dMean = stGrid.pMeans[nPoint];
    dMean = ComputeVignettingGain(dMean, stGrid.adMaxima[0], m_nMaxGain);
    pGains[nPoint] = ScaleVignettingGain(dMean, m_nScale);
  }
}

int32_t CVCGary::PackQuads(const uint16_t *pGains, SGridSize &stSize)
{
  return PackGainQuads(pGains, COLOURS, stSize, m_pCoefficient);
}

template <class TPixel>
int32_t CVCGary::__MeasureGrey(const SPaddedImage<TPixel> &stPadded, SMeanGrid &stGrid) const
{
  const auto measure = [](const SBlockRow &stRow, double *pMeans) {
    ComputeGreyMeans(stRow, sizeof(TPixel) > 1, pMeans);
  };
  return MeasureBlocks(stPadded, {m_nBlockWidth, m_nBlockHeight}, COLOURS, measure, stGrid);
}
