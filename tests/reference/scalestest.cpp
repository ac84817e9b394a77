// The scales of an image: smoothing, and what it makes of white noise.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "reference/scales.h"
#include "tests/reference/noisesamples.h"

using namespace ffc::reference;
using namespace ffc::test;

TEST(ReferenceScales, APlaceBeyondTheEdgeIsReflectedWithoutItsOwnSampleTwice)
{
  EXPECT_EQ(Mirror(-1, 5), 1U);
  EXPECT_EQ(Mirror(5, 5), 3U);
  EXPECT_EQ(Mirror(-9, 5), 1U);
  EXPECT_EQ(Mirror(4, 5), 4U);
  EXPECT_EQ(Mirror(123, 1), 0U);
  for (const auto &[nIndex, nPlace] : {std::pair{12, 4U}, std::pair{13, 3U}, std::pair{-6, 2U}, std::pair{-13, 3U}}) {
    EXPECT_EQ(Mirror(nIndex, 5), nPlace) << nIndex << " is reflected more than once";
  }
}

TEST(ReferenceScales, SmoothingIsTheSplineAlongBothAxes)
{
  std::vector<float> listFrom(11 * 9);
  std::vector<float> listTo(listFrom.size());
  std::vector<float> listLine(11 + 4 * 2);
  listFrom[4 * 11 + 5] = 256;
  Smooth({listFrom.data(), 11, 9}, {listTo.data(), 11, 9}, 2, listLine.data());
  EXPECT_FLOAT_EQ(listTo[4 * 11 + 5], 36);
  EXPECT_FLOAT_EQ(listTo[4 * 11 + 7], 24);
  EXPECT_FLOAT_EQ(listTo[2 * 11 + 9], 4);
  EXPECT_FLOAT_EQ(listTo[4 * 11 + 6], 0) << "the taps are 2 apart";
}

TEST(ReferenceScales, StatisticsAreThoseOfWhiteNoise)
{
  const auto listStatistics = GetScaleStatistics(3);
  constexpr uint32_t SIDE = 300;
  std::vector<float> listFine = MakeNoise(std::size_t{SIDE} * SIDE);
  std::vector<float> listWide(listFine.size());
  std::vector<float> listSquares(listFine.size());
  std::vector<float> listLine(SIDE + 4 * 4);
  for (uint32_t nScale = 0; nScale < 3; ++nScale) {
    const auto fnImage = [](std::vector<float> &list) { return SImage{list.data(), SIDE, SIDE}; };
    Smooth(fnImage(listFine), fnImage(listWide), 1U << nScale, listLine.data());
    for (std::size_t n = 0; n < listFine.size(); ++n) {
      listFine[n] -= listWide[n];
    }
    const double dGain = GetMeanSquare(listFine);
    EXPECT_NEAR(dGain / listStatistics[nScale].dGain, 1, 0.05) << nScale;
    for (std::size_t n = 0; n < listFine.size(); ++n) {
      listSquares[n] = listFine[n] * listFine[n] / static_cast<float>(dGain);
    }
    std::vector<float> listEnergy(listFine.size());
    Smooth(fnImage(listSquares), fnImage(listEnergy), 1U << nScale, listLine.data());
    const double dVariance = GetMeanSquare(listEnergy) - 1;
    EXPECT_NEAR(2 / dVariance / listStatistics[nScale].dFreedom, 1, 0.15) << nScale;
    listFine = listWide;
  }
}

TEST(ReferenceScales, StatisticsAreThoseOfTheSlowTwin)
{
  constexpr double SPLINE[] = {1.0 / 16, 4.0 / 16, 6.0 / 16, 4.0 / 16, 1.0 / 16};
  constexpr int REACH = 14; // 2 + 4 + 8
  constexpr int SIDE = 2 * REACH + 1;
  constexpr auto IMAGE_SIDE = static_cast<uint32_t>(SIDE + 4 * REACH);
  const auto listStatistics = GetScaleStatistics(3);
  EXPECT_DOUBLE_EQ(listStatistics[0].dGain, 1 - 2 * 36.0 / 256 + 70.0 / 256 * 70 / 256);
  // The detail of a single sample, with zeros all around.
  std::vector<float> listFine(std::size_t{IMAGE_SIDE} * IMAGE_SIDE);
  listFine[listFine.size() / 2] = 1;
  std::vector<float> listWide(listFine.size());
  std::vector<float> listLine(IMAGE_SIDE + 4 * 4);
  for (uint32_t nScale = 0; nScale < 3; ++nScale) {
    Smooth({listFine.data(), IMAGE_SIDE, IMAGE_SIDE}, {listWide.data(), IMAGE_SIDE, IMAGE_SIDE}, 1U << nScale,
           listLine.data());
    const auto fnDetail = [&](int nX, int nY) {
      const auto nPlace = static_cast<std::size_t>((nY + 2 * REACH) * static_cast<int>(IMAGE_SIDE) + nX + 2 * REACH);
      return double{listFine[nPlace]} - double{listWide[nPlace]};
    };
    // What two details of white noise so many steps apart have in common.
    const auto fnCovariance = [&](int nStepsX, int nStepsY) {
      double dSum = 0;
      for (int nY = 0; nY < SIDE; ++nY) {
        for (int nX = 0; nX < SIDE; ++nX) {
          dSum += fnDetail(nX, nY) * fnDetail(nX + (nStepsX << nScale), nY + (nStepsY << nScale));
        }
      }
      return dSum;
    };
    const double dGain = fnCovariance(0, 0);
    EXPECT_NEAR(listStatistics[nScale].dGain / dGain, 1, 1e-5) << nScale;
    double dVariance = 0; // of the smoothed square: the sum over all pairs of taps
    for (int nY = -4; nY <= 4; ++nY) {
      for (int nX = -4; nX <= 4; ++nX) {
        const double dCorrelation = fnCovariance(std::abs(nX), std::abs(nY)) / dGain;
        const auto fnPairs = [&](int nApart) {
          double dSum = 0;
          for (int n = std::max(0, -nApart); n < std::min(5, 5 - nApart); ++n) {
            dSum += SPLINE[n] * SPLINE[n + nApart];
          }
          return dSum;
        };
        dVariance += 2 * fnPairs(nX) * fnPairs(nY) * dCorrelation * dCorrelation;
      }
    }
    EXPECT_NEAR(listStatistics[nScale].dFreedom * dVariance / 2, 1, 1e-5) << nScale;
    listFine = listWide;
  }
}
