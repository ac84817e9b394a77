#include "camera/software/selfcorrection/framecorrector.h"

#include <algorithm>
#include <cstddef>

#include "camera/software/selfcorrection/blocktable.h"
#include "camera/software/selfcorrection/gridsampler.h"

namespace ffc::camera {

using genapi::EColor;
using genapi::GetPixelColor;

namespace {

constexpr double WHITE = 255.0;

template <class TSample>
void Shift(TSample *pFrame, std::size_t nPixels, uint32_t nShift, uint32_t nMax)
{
  for (std::size_t nAt = 0; nAt < nPixels; ++nAt) {
    pFrame[nAt] = static_cast<TSample>(std::min(uint32_t{pFrame[nAt]} << nShift, nMax));
  }
}

template <class TSample>
void Correct(TSample *pFrame, std::size_t nPixels, const float *pDark, const float *pFactor, uint32_t nMax)
{
  const float fTop = static_cast<float>(nMax) + 0.5F;
  for (std::size_t nAt = 0; nAt < nPixels; ++nAt) {
    const float fValue = (static_cast<float>(pFrame[nAt]) - pDark[nAt]) * pFactor[nAt] + 0.5F;
    pFrame[nAt] = static_cast<TSample>(static_cast<int32_t>(std::min(std::max(fValue, 0.0F), fTop)));
  }
}

} // namespace

void CFrameCorrector::Process(const SCameraSettings &stSettings, const SFrameCorrection &stCorrection, void *pFrame)
{
  if (stSettings.pFormat->GetBytesPerPixel() == 1) {
    ProcessSamples(stSettings, stCorrection, static_cast<uint8_t *>(pFrame));
  } else {
    ProcessSamples(stSettings, stCorrection, static_cast<uint16_t *>(pFrame));
  }
}

template <class TSample>
void CFrameCorrector::ProcessSamples(const SCameraSettings &stSettings, const SFrameCorrection &stCorrection,
                                     TSample *pFrame)
{
  const std::size_t nPixels = std::size_t{stSettings.nWidth} * stSettings.nHeight;
  const uint32_t nMax = stSettings.pFormat->GetMaxValue();
  if (stCorrection.nDigitalShift > 0) {
    Shift(pFrame, nPixels, stCorrection.nDigitalShift, nMax);
  }
  if (stCorrection.pCoefficients == nullptr) {
    return;
  }
  if (!IsPrepared(stSettings, stCorrection)) {
    Prepare(stSettings, stCorrection);
  }
  Correct(pFrame, nPixels, m_listDark.data(), m_listFactor.data(), nMax);
}

bool CFrameCorrector::IsPrepared(const SCameraSettings &stSettings, const SFrameCorrection &stCorrection) const
{
  return m_pPrepared == stCorrection.pCoefficients && m_pPreparedFormat == stSettings.pFormat &&
         m_dPreparedGray == stCorrection.dExpectGray;
}

void CFrameCorrector::Prepare(const SCameraSettings &stSettings, const SFrameCorrection &stCorrection)
{
  m_pPrepared = nullptr; // until all is done: memory may run out
  const SBlockLayout &stLayout = stCorrection.pCoefficients->stLayout;
  const SBlockTable stTable = ReadBlockTable(stLayout, stCorrection.pCoefficients->listRegister);
  const double dDarkScale = 1U << (stSettings.pFormat->nBitDepth - 8);
  const double dGray = stCorrection.dExpectGray / WHITE;
  CGridSampler sampler(stLayout);
  m_listDark.resize(std::size_t{stSettings.nWidth} * stSettings.nHeight);
  m_listFactor.resize(m_listDark.size());
  for (uint32_t nY = 0; nY < stSettings.nHeight; ++nY) {
    const std::size_t nRow = std::size_t{nY} * stSettings.nWidth;
    for (uint32_t nFirstX = 0; nFirstX < 2; ++nFirstX) { // even and odd columns may differ in colour
      const EColor eColor =
        GetPixelColor(stSettings.pFormat->eLayout, stSettings.nOffsetX + nFirstX, stSettings.nOffsetY + nY);
      const GridPlane &listGain = stTable.alistGain[static_cast<std::size_t>(eColor)];
      sampler.SampleRow(stTable.listDark, nY, nFirstX, dDarkScale, m_listDark.data() + nRow);
      sampler.SampleRow(listGain, nY, nFirstX, dGray, m_listFactor.data() + nRow);
    }
  }
  m_pPrepared = stCorrection.pCoefficients;
  m_pPreparedFormat = stSettings.pFormat;
  m_dPreparedGray = stCorrection.dExpectGray;
}

} // namespace ffc::camera
