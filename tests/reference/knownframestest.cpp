// Weighted references of known frames: a change of the estimate is seen here.
#include <cmath>
#include <cstdint>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "tests/reference/sensor.h"

using namespace ffc::test;
using namespace ffc::reference;

namespace {

/// A scene, and the figures of its references. They are no requirement: who means to change the estimate looks at
/// docs/reference.md first, and then writes the new ones here.
struct SKnownFrames {
  const char *pName;
  uint32_t nWidth, nHeight;
  bool bMosaic;
  double dPattern, dSystemGain;
  uint32_t nBright, nDark;
  double dError, dSpotError, dDarkMean, dNoise, dDetailWeight;
};

void PrintTo(const SKnownFrames &stFrames, std::ostream *pStream)
{
  *pStream << stFrames.pName;
}

/// Shading, dust with a hard edge, a column and a pixel that stand out, a faint pattern of lines; in a mosaic of two
/// levels.
double GetKnownResponse(const SKnownFrames &stFrames, uint32_t nX, uint32_t nY)
{
  const double dShading = 1 - 0.3 * std::pow(static_cast<double>(nX) / stFrames.nWidth - 0.4, 2);
  const double dDust = std::hypot(nX - 40.0, nY - 30.0) < 9 ? 0.93 : 1;
  const double dOdd = nX == 80 ? 1.1 : nX % 37 == 11 && nY % 23 == 5 ? 1.2 : 1;
  const double dColour = stFrames.bMosaic && (nX + nY) % 2 == 1 ? 0.5 : 1;
  return dShading * dDust * dOdd * dColour * (1 + 0.004 * std::sin(nY * 2.4));
}

class KnownFrames : public testing::TestWithParam<SKnownFrames> {};

} // namespace

TEST_P(KnownFrames, GiveTheFiguresThatTheyGave)
{
  const SKnownFrames &stFrames = GetParam();
  SSensor stSensor;
  stSensor.nWidth = stFrames.nWidth;
  stSensor.nHeight = stFrames.nHeight;
  stSensor.bMosaic = stFrames.bMosaic;
  stSensor.dPattern = stFrames.dPattern;
  stSensor.dSystemGain = stFrames.dSystemGain;
  stSensor.fnStructure = [&](uint32_t nX, uint32_t nY) { return GetKnownResponse(stFrames, nX, nY); };
  const Field field = stSensor.MakeField();
  const Field levels = stSensor.MakeDarkLevels(0.04);
  const CSums dark = MakeDark(stSensor, levels, stFrames.nDark);
  const CSums bright(stSensor, Add(field, levels), stFrames.nBright);
  const SMade stMade = MakeReference(stSensor, bright, &dark);
  ASSERT_EQ(stMade.nStatus, STATUS_SUCCESS);

  const Field signal = stMade.GetSignal(stSensor);
  const auto fnInSpot = [](uint32_t nX, uint32_t nY) { return std::hypot(nX - 40.0, nY - 30.0) < 12; };
  double dDark = 0;
  for (std::size_t n = 0; n < levels.size(); ++n) {
    dDark += std::pow(stMade.listDark[n] / 16.0 - stSensor.dDark - levels[n], 2) / static_cast<double>(levels.size());
  }
  constexpr double SHARE = 2e-4;
  const auto fnExpect = [](double dFound, double dKnown, const char *pWhat) {
    EXPECT_NEAR(dFound, dKnown, SHARE * dKnown) << pWhat << ": " << testing::PrintToString(dFound);
  };
  fnExpect(GetError(stSensor, signal, field), stFrames.dError, "error");
  fnExpect(GetError(stSensor, signal, field, fnInSpot), stFrames.dSpotError, "at the dust");
  fnExpect(std::sqrt(dDark), stFrames.dDarkMean, "dark, DN");
  fnExpect(stMade.stResult.dNoise, stFrames.dNoise, "noise, DN");
  fnExpect(stMade.stResult.dDetailWeight, stFrames.dDetailWeight, "weight");
}

INSTANTIATE_TEST_SUITE_P(Scenes, KnownFrames,
                         testing::Values(SKnownFrames{"OneOfTwoTiles", 300, 100, false, 0.003, 0.27, 1, 4, 0.00337006,
                                                      0.00373092, 1.4207, 24.951, 0.00793989},
                                         SKnownFrames{"Four", 128, 96, false, 0.003, 0.27, 4, 4, 0.00297533, 0.00303303,
                                                      1.42117, 23.3464, 0.204935},
                                         SKnownFrames{"TwoAndALoneDark", 128, 96, false, 0.002, 0.1, 2, 1, 0.00225968,
                                                      0.0024488, 2.67343, 14.4024, 0.189848},
                                         SKnownFrames{"OneOfALargePattern", 160, 120, false, 0.02, 0.027, 1, 2,
                                                      0.00426998, 0.0042715, 1.91013, 2.99587, 0.993772},
                                         SKnownFrames{"OneOfAMosaic", 200, 120, true, 0.005, 0.1, 1, 2, 0.00484486,
                                                      0.00713238, 1.6956, 14.4431, 0.234711},
                                         SKnownFrames{"OneOfAMosaicWithoutPattern", 200, 120, true, 0.0, 0.4, 1, 4,
                                                      0.00352227, 0.00847185, 1.33019, 28.6982, 0.0165175},
                                         SKnownFrames{"ThreeOfAMosaic", 130, 74, true, 0.005, 0.1, 3, 1, 0.00405231,
                                                      0.00471263, 2.31557, 14.581, 0.520843}),
                         [](const auto &stInfo) { return std::string(stInfo.param.pName); });
