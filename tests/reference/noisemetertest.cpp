// Noise as differences of frames show it.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "reference/noisemeter.h"

using namespace ffc::reference;

namespace {

template <class TSample>
void ExpectFewSamples(uint32_t nWidth, uint32_t nHeight, double dVariance)
{
  std::vector<TSample> listFormer(std::size_t{nWidth} * nHeight);
  std::vector<TSample> listLatter(listFormer.size());
  for (std::size_t n = 0; n < listLatter.size(); ++n) {
    const bool bRises = n / 2 % 2 == 0; // around one level, of which no drift is made
    listFormer[n] = bRises ? 48 : 52;
    listLatter[n] = bRises ? 52 : 48;
  }
  CNoiseMeter meter;
  meter.Add(listFormer.data(), listLatter.data(), nWidth, nHeight, sizeof(TSample));
  EXPECT_NEAR(meter.GetSite(0).dSample, dVariance, 0.3) << nWidth << " x " << nHeight;
  EXPECT_EQ(meter.GetAll().dLine, 0) << "of one line of a site nothing is known";
}

} // namespace

TEST(ReferenceNoise, TheMeterSeesNoiseAndLinesAndNoDriftOfTheLight)
{
  constexpr uint32_t WIDTH = 200;
  constexpr uint32_t HEIGHT = 150;
  std::mt19937 random(3);
  std::normal_distribution<double> normal;
  CNoiseMeter meter;
  std::vector<uint16_t> listFormer;
  for (int nFrame = 0; nFrame < 8; ++nFrame) {
    std::vector<uint16_t> listFrame;
    for (uint32_t nY = 0; nY < HEIGHT; ++nY) {
      const double dLine = 4 * normal(random);
      for (uint32_t nX = 0; nX < WIDTH; ++nX) {
        const double dLight = (1000 + 5.0 * nX) * (1 + 0.05 * nFrame);
        listFrame.push_back(static_cast<uint16_t>(std::lround(dLight + dLine + 10 * normal(random))));
      }
    }
    if (!listFormer.empty()) {
      meter.Add(listFormer.data(), listFrame.data(), WIDTH, HEIGHT, 2);
    }
    listFormer = listFrame;
  }
  EXPECT_EQ(meter.GetPairCount(), 7U);
  EXPECT_NEAR(meter.GetAll().dSample, 116, 5);
  EXPECT_NEAR(meter.GetSite(3).dSample, 116, 8);
  EXPECT_NEAR(meter.GetAll().dLine, 16, 3);
}

TEST(ReferenceNoise, TheMeterReadsBytesAsItReadsWords)
{
  constexpr uint32_t WIDTH = 40;
  std::mt19937 random(5);
  std::vector<uint8_t> alistBytes[2];
  std::vector<uint16_t> alistWords[2];
  for (int nFrame = 0; nFrame < 2; ++nFrame) {
    for (uint32_t n = 0; n < WIDTH * 20; ++n) {
      alistBytes[nFrame].push_back(static_cast<uint8_t>(100 + random() % 16));
      alistWords[nFrame].push_back(alistBytes[nFrame].back());
    }
  }
  CNoiseMeter bytes;
  CNoiseMeter words;
  bytes.Add(alistBytes[0].data(), alistBytes[1].data(), WIDTH, 20, 1);
  words.Add(alistWords[0].data(), alistWords[1].data(), WIDTH, 20, 2);
  EXPECT_NEAR(bytes.GetAll().dSample, 255.0 / 12, 3) << "16 numbers alike";
  EXPECT_EQ(bytes.GetAll().dSample, words.GetAll().dSample);
  EXPECT_EQ(bytes.GetAll().dLine, words.GetAll().dLine);
}

TEST(ReferenceNoise, TheMeterKnowsNothingOfFewerThanEightSamples)
{
  for (const auto &[nWidth, dVariance] : {std::pair{1U, 0.0}, std::pair{14U, 0.0}, std::pair{16U, 8 * 16.0 / 6 / 2}}) {
    ExpectFewSamples<uint8_t>(nWidth, 2, dVariance);
    ExpectFewSamples<uint16_t>(nWidth, 2, dVariance);
  }
}

TEST(ReferenceNoise, OfALargeFrameEverySecondPairOfLinesIsLookedAt)
{
  constexpr uint32_t WIDTH = 2000;
  constexpr uint32_t HEIGHT = 1000; // as many samples as are enough
  std::mt19937 random(5);
  std::vector<uint8_t> listFormer(std::size_t{WIDTH} * HEIGHT);
  std::vector<uint8_t> listLatter(listFormer.size());
  std::vector<uint8_t> listFormerLines;
  std::vector<uint8_t> listLatterLines;
  for (uint32_t nLine = 0; nLine < HEIGHT; ++nLine) {
    const bool bLookedAt = nLine % 4 < 2;
    for (std::size_t n = std::size_t{nLine} * WIDTH; n < std::size_t{nLine + 1} * WIDTH; ++n) {
      listFormer[n] = static_cast<uint8_t>(100 + random() % (bLookedAt ? 7 : 50));
      listLatter[n] = static_cast<uint8_t>(100 + random() % (bLookedAt ? 7 : 50));
      if (bLookedAt) {
        listFormerLines.push_back(listFormer[n]);
        listLatterLines.push_back(listLatter[n]);
      }
    }
  }
  CNoiseMeter all;
  all.Add(listFormer.data(), listLatter.data(), WIDTH, HEIGHT, 1);
  CNoiseMeter lines;
  lines.Add(listFormerLines.data(), listLatterLines.data(), WIDTH, HEIGHT / 2, 1);
  for (uint32_t nSite = 0; nSite < CNoiseMeter::SITES; ++nSite) {
    EXPECT_EQ(all.GetSite(nSite).dSample, lines.GetSite(nSite).dSample) << nSite;
    EXPECT_EQ(all.GetSite(nSite).dLine, lines.GetSite(nSite).dLine) << nSite;
  }
}

TEST(ReferenceNoise, LightThatAddsOneToTheOneBrighterSampleIsNoNoise)
{
  // In each site one of eight samples is brighter, and gets brighter still: a line through both levels has both.
  std::vector<uint8_t> listFormer(16 * 2, 50);
  std::vector<uint8_t> listLatter = listFormer;
  for (const std::size_t n : {6U, 7U, 16U + 6U, 16U + 7U}) {
    ++listLatter[n];
  }
  CNoiseMeter meter;
  meter.Add(listFormer.data(), listLatter.data(), 16, 2, 1);
  EXPECT_NEAR(meter.GetAll().dSample, 0, 1e-9);
}

TEST(ReferenceNoise, TwoLinesOfASiteAreEnoughForTheNoiseOfLines)
{
  constexpr uint32_t WIDTH = 40;
  std::vector<uint16_t> listFormer(std::size_t{WIDTH} * 4, 1000);
  std::vector<uint16_t> listLatter = listFormer;
  std::fill_n(listLatter.begin(), std::size_t{WIDTH} * 2, uint16_t{1010});
  CNoiseMeter meter;
  meter.Add(listFormer.data(), listLatter.data(), WIDTH, 4, 2);
  // Of each site, lines that differ by 10 and 0: the variance of a difference is 50, half of it a frame's.
  EXPECT_NEAR(meter.GetAll().dLine, 25 - meter.GetAll().dSample * 2 / WIDTH, 1e-9);
}

TEST(ReferenceNoise, ASiteOfOneLineLeavesTheOthersTheirNoiseOfLines)
{
  constexpr uint32_t WIDTH = 40;
  std::vector<uint16_t> listFormer(std::size_t{WIDTH} * 3, 1000);
  std::vector<uint16_t> listLatter = listFormer;
  std::fill_n(listLatter.begin(), WIDTH, uint16_t{1010});
  CNoiseMeter meter;
  meter.Add(listFormer.data(), listLatter.data(), WIDTH, 3, 2);
  // The upper sites have two lines, as above; of the lower ones nothing is known.
  EXPECT_NEAR(meter.GetSite(0).dLine, 25 - meter.GetSite(0).dSample * 2 / WIDTH, 1e-9);
  EXPECT_EQ(meter.GetSite(2).dLine, 0);
  EXPECT_NEAR(meter.GetAll().dLine, 25 * 2.0 / 3 - meter.GetAll().dSample * 2 / WIDTH, 1e-9);
}

TEST(ReferenceNoise, TheNoiseOfAnEvenSumOfTwoFramesIsSeen)
{
  constexpr uint32_t WIDTH = 40;
  std::vector<uint16_t> listFormer(std::size_t{WIDTH} * 20);
  std::vector<uint16_t> listLatter(listFormer.size());
  for (std::size_t n = 0; n < listFormer.size(); ++n) {
    listFormer[n] = n / 2 % 2 == 0 ? 1005 : 995;
    listLatter[n] = static_cast<uint16_t>(2000 - listFormer[n]);
  }
  CNoiseMeter meter;
  EXPECT_EQ(meter.GetAll().dSample, 0) << "nothing was measured";
  meter.Add(listFormer.data(), listLatter.data(), WIDTH, 20, 2);
  EXPECT_NEAR(meter.GetAll().dSample, 50, 1) << "half the variance of differences of 10";
}
