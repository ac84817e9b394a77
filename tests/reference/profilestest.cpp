// Profiles of columns and lines, of an image and of a tile.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

#include "reference/planesource.h"
#include "reference/profiles.h"
#include "reference/tile.h"
#include "reference/tileprofiles.h"
#include "tests/reference/noisesamples.h"

using namespace ffc::reference;
using namespace ffc::test;

namespace {

/// Mean in which nothing counts for more than fReach, as the tile's: three steps from the plain one.
double GetRobustMean(const std::vector<double> &listValues, double dReach)
{
  double dMean = 0;
  for (int nRound = 0; nRound < 4; ++nRound) {
    double dStep = 0;
    for (const double dValue : listValues) {
      dStep += nRound == 0 ? dValue : std::clamp(dValue - dMean, -dReach, dReach) / 0.866;
    }
    dMean += dStep / static_cast<double>(listValues.size());
  }
  return dMean;
}

} // namespace

TEST(ReferenceProfiles, AColumnThatStandsOutIsKeptAndNoiseIsNot)
{
  SProfileSums stSums;
  stSums.Prepare(200, 256, 128);
  const std::vector<float> listNoise = MakeNoise(2 * 200, std::sqrt(128.0F));
  for (uint32_t nBand = 0; nBand < 2; ++nBand) {
    for (uint32_t n = 0; n < 200; ++n) {
      stSums.GetColumns(nBand)[n] =
        listNoise[nBand * 200 + n] + (n == 77 ? 128 * 2.0F : 0) + (n == 99 && nBand == 1 ? 128 * 3.0F : 0);
    }
  }
  WeightProfiles(stSums, 1, 0);
  EXPECT_NEAR(stSums.GetColumns(0)[77], 2, 0.3);
  EXPECT_NEAR(stSums.GetColumns(1)[99], 3, 0.4) << "only in the lower band";
  EXPECT_NEAR(stSums.GetColumns(0)[99], 0, 0.3);
  double dOthers = 0;
  for (uint32_t n = 0; n < 70; ++n) {
    dOthers += double{stSums.GetColumns(0)[n]} * double{stSums.GetColumns(0)[n]} / 70;
  }
  EXPECT_LT(dOthers, 0.25 / 128);
}

TEST(ReferenceTileProfiles, EqualTheSlowTwinWhereALineIsNoWholeNumberOfVectors)
{
  constexpr uint32_t WIDTH = 13;
  constexpr uint32_t HEIGHT = 11;
  std::vector<uint32_t> listSums;
  for (const float fNoise : MakeNoise(std::size_t{WIDTH} * HEIGHT, 100)) {
    listSums.push_back(static_cast<uint32_t>(std::lround(1000 + fNoise)));
  }
  listSums[5 * WIDTH + 12] += 5000; // dust, in what a vector leaves over
  CTile tile;
  tile.Load({GetPlanes(WIDTH, HEIGHT, false).front(), listSums.data(), 1, nullptr, 1}, 0, nullptr, nullptr);
  std::vector<std::vector<double>> listLines(HEIGHT);
  std::vector<std::vector<double>> listColumns(WIDTH);
  double dDistances = 0;
  for (uint32_t nY = 0; nY < HEIGHT; ++nY) {
    for (uint32_t nX = 0; nX < WIDTH; ++nX) {
      const double dDetail = double{tile.GetSmooth(0, nY)[nX]} - double{tile.GetSmooth(FINE_SCALES, nY)[nX]};
      listLines[nY].push_back(dDetail);
      listColumns[nX].push_back(dDetail);
      dDistances += std::abs(dDetail);
    }
  }
  const double dReach = 1.5 * 1.2533 * dDistances / (WIDTH * HEIGHT);
  std::vector<float> listColumnSums(WIDTH, 7); // what is there stays
  std::vector<float> listLineSums(HEIGHT, 7);
  CTileProfiles(tile).AddUp(listColumnSums.data(), listLineSums.data());
  for (uint32_t n = 0; n < WIDTH; ++n) {
    EXPECT_NEAR(listColumnSums[n], 7 + HEIGHT * GetRobustMean(listColumns[n], dReach), 0.1) << "column " << n;
  }
  for (uint32_t n = 0; n < HEIGHT; ++n) {
    EXPECT_NEAR(listLineSums[n], 7 + WIDTH * GetRobustMean(listLines[n], dReach), 0.1) << "line " << n;
  }
}
