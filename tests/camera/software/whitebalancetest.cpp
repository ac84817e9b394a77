#include "camera/software/whitebalance.h"

#include <vector>

#include <gtest/gtest.h>

using ffc::camera::CWhiteBalance;
using ffc::camera::SCameraSettings;
using ffc::genapi::CSoftwareNodeMap;

namespace {

using Ratios = std::array<double, ffc::genapi::COLOR_COUNT>;

constexpr uint32_t WIDTH = 28;

/// One kind of light on a BayerRG8 sensor.
std::vector<uint8_t> Expose(uint8_t nRed, uint8_t nGreen, uint8_t nBlue)
{
  std::vector<uint8_t> listFrame;
  for (uint32_t n = 0; n < WIDTH * 2; ++n) {
    const bool bFirstLine = n < WIDTH;
    const bool bFirstColumn = n % 2 == 0;
    listFrame.push_back(bFirstLine != bFirstColumn ? nGreen : bFirstLine ? nRed : nBlue);
  }
  return listFrame;
}

class WhiteBalance : public testing::Test {
protected:
  WhiteBalance()
  {
    m_stSettings.pFormat = ffc::genapi::FindSensorFormat("BayerRG8");
    m_stSettings.nWidth = WIDTH;
    m_stSettings.nHeight = 2;
    Set("Continuous");
  }

  void Set(const char *pMode)
  {
    dynamic_cast<GenApi::IEnumeration &>(*m_map.GetNode("BalanceWhiteAuto")).FromString(pMode);
  }

  CSoftwareNodeMap m_map;
  CWhiteBalance m_balance{m_map};
  SCameraSettings m_stSettings;
};

} // namespace

TEST_F(WhiteBalance, RedAndBlueAreBroughtToGreen)
{
  m_balance.Process(m_stSettings, Expose(50, 100, 25).data());
  EXPECT_EQ(m_balance.GetRatios(), (Ratios{2.0, 1.0, 4.0}));
}

TEST_F(WhiteBalance, AFrameThatWasExposedWithOtherRatiosIsNotJudged)
{
  m_stSettings.adBalance = {1.5, 1.0, 1.0};
  m_balance.Process(m_stSettings, Expose(50, 100, 25).data());
  EXPECT_EQ(m_balance.GetRatios(), (Ratios{1.0, 1.0, 1.0}));
  m_stSettings.adBalance = m_balance.GetRatios();
  Set("Off");
  m_balance.Process(m_stSettings, Expose(50, 100, 25).data());
  EXPECT_EQ(m_balance.GetRatios(), (Ratios{1.0, 1.0, 1.0}));
}

TEST_F(WhiteBalance, AColourWithoutSignalStaysAndNoRatioLeavesItsRange)
{
  m_balance.Process(m_stSettings, Expose(50, 0, 25).data());
  EXPECT_EQ(m_balance.GetRatios(), (Ratios{1.0, 1.0, 1.0})) << "no green to go by";
  m_balance.Process(m_stSettings, Expose(0, 100, 1).data());
  EXPECT_EQ(m_balance.GetRatios(), (Ratios{1.0, 1.0, 16.0}));
}
