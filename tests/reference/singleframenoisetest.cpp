// What one frame says of its own noise.
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "reference/planesource.h"
#include "reference/singleframenoise.h"
#include "tests/reference/noisesamples.h"

using namespace ffc::reference;
using namespace ffc::test;

namespace {

constexpr uint32_t FRAME_SIDE = 240;

/// Photon noise of a variance like the level; a quarter of each half is a fine weave besides.
std::vector<uint32_t> MakeFrame(double dLeft, double dRight)
{
  std::mt19937 random(11);
  std::normal_distribution<double> normal;
  std::vector<uint32_t> listFrame;
  for (uint32_t nY = 0; nY < FRAME_SIDE; ++nY) {
    for (uint32_t nX = 0; nX < FRAME_SIDE; ++nX) {
      const double dLevel = nX < FRAME_SIDE / 2 ? dLeft : dRight;
      const double dWeave = nY >= FRAME_SIDE / 4 ? 0 : (nX + nY) % 2 == 0 ? 0.2 : -0.2;
      const double dSample = dLevel * (1 + dWeave) + std::sqrt(dLevel) * normal(random);
      listFrame.push_back(static_cast<uint32_t>(std::lround(dSample)));
    }
  }
  return listFrame;
}

/// \param fUnit DN that one of the frame's numbers is
SSingleFrameNoise Measure(const std::vector<uint32_t> &listFrame, float fUnit, uint32_t nBitDepth)
{
  return MeasureSingleFrame(
    {CPlaneSource(GetPlanes(FRAME_SIDE, FRAME_SIDE, false).front(), listFrame.data(), fUnit, nullptr, 0)}, 0,
    nBitDepth);
}

} // namespace

TEST(ReferenceSingleFrame, AQuarterOfStructuresDoesNotCount)
{
  const SSingleFrameNoise stNoise = Measure(MakeFrame(2000, 2000), 1, 12);
  EXPECT_NEAR(stNoise.stNoise.dPerLevel, 1, 0.1);
}

TEST(ReferenceSingleFrame, TheUnitOfTheSamplesDoesNotCount)
{
  const std::vector<uint32_t> listFrame = MakeFrame(600, 2000);
  const SSingleFrameNoise stNoise = Measure(listFrame, 1, 12);
  EXPECT_EQ(stNoise.eSource, ENoiseSource::PhotonTransfer);
  EXPECT_NEAR(stNoise.stNoise.dPerLevel, 1, 0.15);
  for (const int nShift : {-6, 4}) {
    const double dUnit = std::ldexp(1, nShift);
    const SSingleFrameNoise stOther = Measure(listFrame, static_cast<float>(dUnit), static_cast<uint32_t>(12 + nShift));
    EXPECT_EQ(stOther.eSource, ENoiseSource::PhotonTransfer) << nShift;
    EXPECT_NEAR(stOther.stNoise.dPerLevel / dUnit / stNoise.stNoise.dPerLevel, 1, 1e-6) << nShift;
  }
}

TEST(ReferenceSingleFrame, ADarkFrameHasNoMoreNoiseThanDetailWhateverTheBrightOnesHave)
{
  constexpr uint32_t SIDE = 100;
  const std::vector<float> listNoise = MakeNoise(std::size_t{SIDE} * SIDE, 20);
  std::vector<uint32_t> listDark;
  std::vector<uint32_t> listBright;
  for (const float fNoise : listNoise) {
    const auto nNoise = static_cast<uint32_t>(200 + std::lround(fNoise));
    listDark.push_back(nNoise);
    listBright.push_back(2000 - nNoise); // bright where the other one is dark: not the same pattern at all
  }
  const SPlane stPlane = GetPlanes(SIDE, SIDE, false).front();
  const auto fnMeasure = [&](const std::vector<uint32_t> &listOther) {
    return MeasureSingleDark({CPlaneSource(stPlane, listDark.data(), 1, nullptr, 0)},
                             {CPlaneSource(stPlane, listOther.data(), 1, nullptr, 0)});
  };
  EXPECT_NEAR(fnMeasure(listBright), 400, 40);
  EXPECT_EQ(fnMeasure(listDark), 0) << "all of it is pattern";
}
