#include "camera/software/whitebalance.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

namespace ffc::camera {

using genapi::COLOR_COUNT;
using genapi::EColor;
using genapi::GetPixelColor;

namespace {

constexpr int64_t AUTO_OFF = 0;
constexpr int64_t AUTO_ONCE = 1;
constexpr double MIN_RATIO = 0.1;
constexpr double MAX_RATIO = 16.0;
constexpr uint32_t ROW_PERIOD = 8;  // two rows of so many are measured
constexpr uint32_t COLUMN_STEP = 7; // odd, so that every colour is met

// Ratios of red, green and blue that whiten a known lamp. The first one is measured instead.
struct SLamp {
  const char *pName;
  std::array<double, COLOR_COUNT> adRatios;
};
constexpr SLamp ALL_LAMPS[] = {
  {"Adaptive", {1.0, 1.0, 1.0}},     {"D65", {1.45, 1.0, 1.55}}, {"Fluorescence", {1.5, 1.0, 1.9}},
  {"Incandescent", {1.1, 1.0, 2.4}}, {"D75", {1.55, 1.0, 1.45}},
};

// Mean of each colour over the black level, from a part of the frame's pixels.
template <class TSample>
std::array<double, COLOR_COUNT> MeasureSignal(const SCameraSettings &stSettings, const TSample *pFrame)
{
  std::array<double, COLOR_COUNT> adSums{};
  std::array<double, COLOR_COUNT> adCounts{};
  for (uint32_t nY = 0; nY < stSettings.nHeight; ++nY) {
    if (nY % ROW_PERIOD >= 2) {
      continue;
    }
    const TSample *pRow = pFrame + std::size_t{nY} * stSettings.nWidth;
    for (uint32_t nX = 0; nX < stSettings.nWidth; nX += COLUMN_STEP) {
      const auto nColor = static_cast<std::size_t>(GetPixelColor(stSettings.pFormat->eLayout, nX, nY));
      adSums[nColor] += pRow[nX];
      adCounts[nColor] += 1.0;
    }
  }
  const double dBlack = stSettings.dBlackLevel / 100.0 * stSettings.pFormat->GetMaxValue();
  for (std::size_t nColor = 0; nColor < adSums.size(); ++nColor) {
    adSums[nColor] = adSums[nColor] / std::max(adCounts[nColor], 1.0) - dBlack;
  }
  return adSums;
}

} // namespace

CWhiteBalance::CWhiteBalance(genapi::CSoftwareNodeMap &deviceMap) : m_deviceMap(deviceMap)
{
  m_pAuto = &deviceMap.AddEnumeration("BalanceWhiteAuto")
               .Entry("Off", AUTO_OFF)
               .Entry("Once", AUTO_ONCE)
               .Entry("Continuous", 2)
               .OnWrite([this](int64_t) { m_nFramesLeft = SETTLING_FRAMES; });
  m_pSelector =
    &deviceMap.AddEnumeration("BalanceRatioSelector").Entry("Red", 0).Entry("Green", 1).Entry("Blue", 2).Strict();
  deviceMap.AddFloat("BalanceRatio")
    .Range(MIN_RATIO, MAX_RATIO)
    .Access([this] { return m_pAuto->Peek() == AUTO_OFF ? GenApi::RW : GenApi::RO; })
    .Strict()
    .OnRead([this] { return m_adRatios[static_cast<std::size_t>(m_pSelector->Peek())]; })
    .OnWrite([this](double dRatio) { m_adRatios[static_cast<std::size_t>(m_pSelector->Peek())] = dRatio; });
  m_pLamp = &deviceMap.AddEnumeration("AWBLampHouse").Strict();
  for (std::size_t nLamp = 0; nLamp < std::size(ALL_LAMPS); ++nLamp) {
    m_pLamp->Entry(ALL_LAMPS[nLamp].pName, static_cast<int64_t>(nLamp));
  }
}

std::array<double, COLOR_COUNT> CWhiteBalance::GetRatios() const
{
  const auto lock = m_deviceMap.Lock();
  return m_adRatios;
}

void CWhiteBalance::AddSettings(CSettingList &settings)
{
  const auto setAuto = [this](const SettingValue &value) {
    m_pAuto->Poke(std::get<int64_t>(value));
    m_nFramesLeft = SETTLING_FRAMES;
  };
  settings.Add("BalanceWhiteAuto",
               {[this] { return SettingValue(m_pAuto->Peek()); }, setAuto,
                [this](const SettingValue &value) { return m_pAuto->GetEntry(std::get<int64_t>(value)) != nullptr; }});
  settings.Exclude("BalanceRatio");
  for (std::size_t nColor = 0; nColor < m_adRatios.size(); ++nColor) {
    double &dRatio = m_adRatios[nColor];
    settings.Add("BalanceRatio" + std::to_string(nColor),
                 {[&dRatio] { return SettingValue(dRatio); },
                  [&dRatio](const SettingValue &value) { dRatio = std::get<double>(value); },
                  [](const SettingValue &value) {
                    return std::get<double>(value) >= MIN_RATIO && std::get<double>(value) <= MAX_RATIO;
                  }});
  }
}

void CWhiteBalance::Process(const SCameraSettings &stSettings, const void *pFrame)
{
  if (m_pAuto->Peek() == AUTO_OFF) {
    return;
  }
  const auto adSignal = stSettings.pFormat->GetBytesPerPixel() == 1
                          ? MeasureSignal(stSettings, static_cast<const uint8_t *>(pFrame))
                          : MeasureSignal(stSettings, static_cast<const uint16_t *>(pFrame));
  const auto lock = m_deviceMap.Lock();
  const bool bSameRatios = stSettings.adBalance == m_adRatios;
  if (m_pAuto->Peek() == AUTO_OFF || !bSameRatios) {
    return; // the user has changed the balance since the frame was exposed
  }
  AdjustTo(adSignal);
  if (m_pAuto->Peek() == AUTO_ONCE && --m_nFramesLeft <= 0) {
    m_pAuto->Poke(AUTO_OFF);
  }
}

// Red and blue are brought to green; what gives no signal stays.
void CWhiteBalance::AdjustTo(const std::array<double, COLOR_COUNT> &adSignal)
{
  const auto nLamp = static_cast<std::size_t>(m_pLamp->Peek());
  if (nLamp != 0) {
    m_adRatios = ALL_LAMPS[nLamp].adRatios;
    return;
  }
  const double dGreen = adSignal[static_cast<std::size_t>(EColor::Green)];
  for (const EColor eColor : {EColor::Red, EColor::Blue}) {
    const auto nColor = static_cast<std::size_t>(eColor);
    if (adSignal[nColor] >= 1.0 && dGreen >= 1.0) {
      m_adRatios[nColor] = std::clamp(m_adRatios[nColor] * dGreen / adSignal[nColor], MIN_RATIO, MAX_RATIO);
    }
  }
}

} // namespace ffc::camera
