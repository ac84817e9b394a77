#include "pluginobject/shadingcorrection/imagecalc/vignetting/vcbayer.h"

#include <limits>

#include "pluginobject/shadingcorrection/imagecalc/vignetting/gainquads.h"

using namespace ffc::imagecalc;

namespace {

using CSteps = CVignettingSteps<CVCBayer>;

constexpr uint32_t COLOURS = 3;
// The sides of a cell.
constexpr uint32_t PADDING_PERIOD = 2;

} // namespace

CVCBayer::CVCBayer() noexcept : CVCBayer(BAYER_TYPE_RG) {}

CVCBayer::CVCBayer(uint32_t nBayerType) noexcept : m_nBayerType(nBayerType)
{
  m_nMaxGain = std::numeric_limits<int32_t>::max();
}

CVCBayer::~CVCBayer() = default;

int32_t CVCBayer::CalcCoefficient(const void *pImage, uint32_t nWidth, uint32_t nHeight, int32_t nBitDepth,
                                  const uint16_t **ppTable, uint64_t *pnColumns, uint64_t *pnRows) noexcept
{
  return CSteps::CalcCoefficient(*this, {pImage, nWidth, nHeight}, nBitDepth, {ppTable, pnColumns, pnRows});
}

int32_t CVCBayer::Calc16Bit(const SFrame16 &stFrame, SGridSize &stSize)
{
  return CSteps::Calc(*this, stFrame, &CVCBayer::PadImage16, &CVCBayer::CalcBlockGrid16, stSize);
}

int32_t CVCBayer::Calc8Bit(const SFrame8 &stFrame, SGridSize &stSize)
{
  return CSteps::Calc(*this, stFrame, &CVCBayer::PadImage8, &CVCBayer::CalcBlockGrid8, stSize);
}

int32_t CVCBayer::PadImage16(const SFrame16 &stFrame, SPadded16 &stPadded)
{
  return PadToBlocks(stFrame, {m_nBlockWidth, m_nBlockHeight}, PADDING_PERIOD, stPadded);
}

int32_t CVCBayer::PadImage8(const SFrame8 &stFrame, SPadded8 &stPadded)
{
  return PadToBlocks(stFrame, {m_nBlockWidth, m_nBlockHeight}, PADDING_PERIOD, stPadded);
}

int32_t CVCBayer::CalcBlockGrid16(const SPadded16 &stPadded, SMeanGrid &stGrid)
{
  return __MeasureColours(stPadded, stGrid);
}

int32_t CVCBayer::CalcBlockGrid8(const SPadded8 &stPadded, SMeanGrid &stGrid)
{
  return __MeasureColours(stPadded, stGrid);
}

int32_t CVCBayer::ConvertGrid(SMeanGrid &stGrid, SGridSize &stSize)
{
  return CSteps::Convert(*this, stGrid, COLOURS, stSize);
}

void CVCBayer::CalcGains(SMeanGrid &stGrid, uint16_t *pGains)
{
  const uint64_t nPoints = stGrid.CountPoints();
  for (uint64_t nPoint = 0; nPoint < nPoints; ++nPoint) {
    for (uint32_t nColour = 0; nColour < COLOURS; ++nColour) {
      *pGains++ = CalcGain(stGrid.pMeans[nColour * nPoints + nPoint], stGrid.adMaxima[nColour]);
    }
  }
}

uint16_t CVCBayer::CalcGain(double dMean, double dMaximum)
{
  return ScaleVignettingGain(ComputeVignettingGain(dMean, dMaximum, m_nMaxGain), m_nScale);
}

int32_t CVCBayer::PackQuads(const uint16_t *pGains, SGridSize &stSize)
{
  return PackGainQuads(pGains, COLOURS, stSize, m_pCoefficient);
}

template <class TPixel>
int32_t CVCBayer::__MeasureColours(const SPaddedImage<TPixel> &stPadded, SMeanGrid &stGrid) const
{
  const auto nBayerType = static_cast<int32_t>(m_nBayerType);
  const auto measure = [nBayerType](const SBlockRow &stRow, double *pMeans) {
    ComputeColourMeans(stRow, sizeof(TPixel) > 1, nBayerType, pMeans);
  };
  return MeasureBlocks(stPadded, {m_nBlockWidth, m_nBlockHeight}, COLOURS, measure, stGrid);
}
