#include "camera/software/simulated/simulatedsensor.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ffc::camera {

using genapi::EColor;
using genapi::EColorLayout;
using genapi::GetPixelColor;

CSimulatedSensor::CSimulatedSensor(uint32_t nSensorWidth, uint32_t nSensorHeight, double dCornerFalloff, uint64_t nSeed,
                                   const SSensorModel &stModel)
  : m_stModel(stModel), m_nSensorWidth(nSensorWidth), m_nSeed(nSeed),
    m_lens(nSensorWidth, nSensorHeight, dCornerFalloff), m_noise(nSeed, nSensorWidth)
{
  const std::size_t nPixels = std::size_t{nSensorWidth} * nSensorHeight;
  CRandomPicker picker(~nSeed); // apart from the frames', which count up from the seed
  const auto fill = [&](std::vector<float> &listPlane, double dMean, double dDeviation) {
    listPlane.resize(nPixels);
    for (float &fValue : listPlane) {
      fValue = static_cast<float>(dMean + dDeviation * m_noise.Get(picker));
    }
  };
  fill(m_listResponse, 1.0, stModel.dPrnu);
  fill(m_listDarkSignal, 0.0, stModel.dDsnu);
  if (stModel.dHotPixels > 0.0) {
    MakeHotPixels(picker);
  }
}

// At least one.
void CSimulatedSensor::MakeHotPixels(CRandomPicker &picker)
{
  const auto nPixels = static_cast<uint32_t>(m_listDarkSignal.size());
  m_listHot.resize(1 + static_cast<std::size_t>(m_stModel.dHotPixels * nPixels));
  for (uint32_t &nPlace : m_listHot) {
    nPlace = picker.NextBelow(nPixels);
  }
}

void CSimulatedSensor::Expose(const SCameraSettings &stSettings, const SScene &stScene, uint64_t nFrameId,
                              std::vector<uint8_t> &listFrame)
{
  if (!m_stPrepared || !(*m_stPrepared == stSettings) || !(m_stPreparedScene == stScene)) {
    Prepare(stSettings, stScene);
  }
  listFrame.resize(stSettings.GetPayloadSize());
  if (stSettings.pFormat->GetBytesPerPixel() == 1) {
    Digitise(stSettings, nFrameId, listFrame.data());
  } else {
    Digitise(stSettings, nFrameId, reinterpret_cast<uint16_t *>(listFrame.data()));
  }
}

void CSimulatedSensor::Prepare(const SCameraSettings &stSettings, const SScene &stScene)
{
  const std::size_t nPixels = std::size_t{stSettings.nWidth} * stSettings.nHeight;
  m_stPrepared.reset();
  m_listMean.resize(nPixels);
  m_listDeviation.resize(nPixels);
  for (uint32_t nY = 0; nY < stSettings.nHeight; ++nY) {
    PrepareRow(stSettings, stScene, nY);
  }
  if (!stSettings.bDeadPixelCorrection) {
    PrepareHotPixels(stSettings);
  }
  m_stPrepared = stSettings;
  m_stPreparedScene = stScene;
}

// Digital numbers per electron.
double CSimulatedSensor::GetGain(const SCameraSettings &stSettings, EColor eColor) const
{
  return stSettings.pFormat->GetMaxValue() / m_stModel.dFullWell * std::pow(10.0, stSettings.dGain / 20.0) *
         stSettings.adBalance[static_cast<std::size_t>(eColor)];
}

void CSimulatedSensor::PrepareHotPixels(const SCameraSettings &stSettings)
{
  for (const uint32_t nPlace : m_listHot) {
    const uint32_t nX = nPlace % m_nSensorWidth - stSettings.nOffsetX; // outside the region it wraps round to
    const uint32_t nY = nPlace / m_nSensorWidth - stSettings.nOffsetY; // more than any width or height
    if (nX < stSettings.nWidth && nY < stSettings.nHeight) {
      const EColor eColor =
        GetPixelColor(stSettings.pFormat->eLayout, stSettings.nOffsetX + nX, stSettings.nOffsetY + nY);
      m_listMean[std::size_t{nY} * stSettings.nWidth + nX] +=
        static_cast<float>(GetGain(stSettings, eColor) * m_stModel.dHotSignal);
    }
  }
}

void CSimulatedSensor::PrepareRow(const SCameraSettings &stSettings, const SScene &stScene, uint32_t nY)
{
  const EColorLayout eLayout = stSettings.pFormat->eLayout;
  const double dFullScale = stSettings.pFormat->GetMaxValue();
  const double dBright =
    m_stModel.dBrightSignal * m_stModel.dFullWell * stSettings.dExposureTime / m_stModel.dBrightExposure;
  const auto fDark = static_cast<float>(m_stModel.dDarkCurrent * stSettings.dExposureTime * 1e-6);
  const auto fBlack = static_cast<float>(stSettings.dBlackLevel / 100.0 * dFullScale);
  const auto fFullWell = static_cast<float>(m_stModel.dFullWell);
  const auto fDarkVariance = static_cast<float>(m_stModel.dDarkNoise * m_stModel.dDarkNoise);
  const float fPattern = stSettings.bFixedPatternCorrection ? 0.0F : 1.0F;
  std::array<float, 2> afLight{}; // of even and odd columns: electrons under full light, and gain
  std::array<float, 2> afGain{};
  for (uint32_t nX = 0; nX < 2; ++nX) {
    const EColor eColor = GetPixelColor(eLayout, stSettings.nOffsetX + nX, stSettings.nOffsetY + nY);
    const bool bColor = eLayout != EColorLayout::Mono;
    afLight[nX] = static_cast<float>(dBright * (bColor ? GetLampColor(eColor) : 1.0));
    afGain[nX] = static_cast<float>(GetGain(stSettings, eColor));
  }
  const std::size_t nRow = std::size_t{nY} * stSettings.nWidth;
  const std::size_t nSensorRow = std::size_t{stSettings.nOffsetY + nY} * m_nSensorWidth + stSettings.nOffsetX;
  for (uint32_t nX = 0; nX < stSettings.nWidth; ++nX) {
    const float fLight = m_lens.GetLight(stScene, stSettings.nOffsetX + nX, stSettings.nOffsetY + nY);
    const float fElectrons = std::min(afLight[nX % 2] * fLight * m_listResponse[nSensorRow + nX] + fDark, fFullWell);
    m_listMean[nRow + nX] = fBlack + afGain[nX % 2] * (fElectrons + fPattern * m_listDarkSignal[nSensorRow + nX]);
    m_listDeviation[nRow + nX] = afGain[nX % 2] * std::sqrt(fElectrons + fDarkVariance);
  }
}

template <class TSample>
void CSimulatedSensor::Digitise(const SCameraSettings &stSettings, uint64_t nFrameId, TSample *pFrame) const
{
  CRandomPicker picker(m_nSeed + nFrameId);
  const auto nMax = static_cast<int32_t>(stSettings.pFormat->GetMaxValue());
  for (uint32_t nY = 0; nY < stSettings.nHeight; ++nY) {
    const std::size_t nRow = std::size_t{nY} * stSettings.nWidth;
    const float *pMean = m_listMean.data() + nRow;
    const float *pDeviation = m_listDeviation.data() + nRow;
    const float *pNoise = m_noise.GetRun(picker);
    TSample *pRow = pFrame + nRow;
    for (uint32_t nX = 0; nX < stSettings.nWidth; ++nX) {
      // Negative values round towards zero here, and are cut off at zero anyway; lround is a call for each pixel.
      // NOLINTNEXTLINE(bugprone-incorrect-roundings)
      const auto nValue = static_cast<int32_t>(pMean[nX] + pDeviation[nX] * pNoise[nX] + 0.5F);
      pRow[nX] = static_cast<TSample>(nValue < 0 ? 0 : nValue > nMax ? nMax : nValue);
    }
  }
}

} // namespace ffc::camera
