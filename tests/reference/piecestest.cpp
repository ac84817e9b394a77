// The pieces of the weighted reference, each by itself.
#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include <gtest/gtest.h>

#include "reference/noisemeter.h"
#include "reference/noisemodel.h"
#include "reference/parallel.h"
#include "reference/planefield.h"
#include "reference/planesource.h"
#include "reference/profiles.h"
#include "reference/scales.h"
#include "reference/shrinkage.h"
#include "reference/singleframenoise.h"
#include "reference/tile.h"
#include "reference/tileprofiles.h"
#include "reference/totalvariation.h"

using namespace ffc::reference;

namespace {

std::vector<float> MakeNoise(std::size_t nCount, float fDeviation = 1)
{
  std::mt19937 random(7);
  std::normal_distribution<float> normal(0, fDeviation);
  std::vector<float> listNoise(nCount);
  for (float &fValue : listNoise) {
    fValue = normal(random);
  }
  return listNoise;
}

double GetMeanSquare(const std::vector<float> &listValues)
{
  double dSum = 0;
  for (const float fValue : listValues) {
    dSum += double{fValue} * double{fValue};
  }
  return dSum / static_cast<double>(listValues.size());
}

/// Energies of 12 samples each.
CShrinkage::Histogram CountEnergies(const std::vector<float> &listSamples)
{
  CShrinkage::Histogram aCounts{};
  for (std::size_t n = 0; n < listSamples.size(); n += 12) {
    float fEnergy = 0;
    for (std::size_t i = 0; i < 12; ++i) {
      fEnergy += listSamples[n + i] * listSamples[n + i] / 12;
    }
    ++aCounts[CShrinkage::GetBin(fEnergy)];
  }
  return aCounts;
}

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

TEST(ReferenceShrinkage, NoiseAloneIsNotBelievedAndAStructureIs)
{
  const std::vector<float> listNoise = MakeNoise(12 * 20000);
  const CShrinkage::Histogram aCounts = CountEnergies(listNoise);
  CShrinkage shrinkage;
  shrinkage.Learn(aCounts, 12);
  EXPECT_LT(shrinkage.GetMeanWeight(aCounts), 0.05);
  EXPECT_GT(shrinkage.GetWeight(30), 0.9F);
  EXPECT_GT(shrinkage.GetWeight(1e6F), 0.999F);
  for (int nStep = 0; nStep < 121; ++nStep) { // from 0.01 to 1000
    const float fEnergy = 0.01F * std::pow(1.1F, static_cast<float>(nStep));
    EXPECT_GE(shrinkage.GetWeight(fEnergy * 1.1F), shrinkage.GetWeight(fEnergy));
  }
}

TEST(ReferenceShrinkage, AnEnergyIsFoundFromWhichOnWeightsLieBeyondOne)
{
  CShrinkage shrinkage;
  shrinkage.Learn(CountEnergies(MakeNoise(12 * 20000)), 12);
  for (const float fWeight : {0.02F, 0.15F, 0.6F}) {
    const float fLeast = shrinkage.FindEnergy(fWeight);
    EXPECT_GT(shrinkage.GetWeight(fLeast), fWeight);
    EXPECT_LE(shrinkage.GetWeight(std::nextafter(fLeast, 0.0F)), fWeight);
  }
  EXPECT_EQ(shrinkage.FindEnergy(-1), 0) << "all are beyond";
  EXPECT_EQ(shrinkage.FindEnergy(1), INFINITY);
}

TEST(ReferenceShrinkage, ASignalEverywhereIsBelievedByItsShare)
{
  const std::vector<float> listSamples = MakeNoise(12 * 20000, 2); // signal 3, noise 1
  const CShrinkage::Histogram aCounts = CountEnergies(listSamples);
  CShrinkage shrinkage;
  shrinkage.Learn(aCounts, 12);
  EXPECT_NEAR(shrinkage.GetMeanWeight(aCounts), 0.75, 0.02);
}

TEST(ReferenceShrinkage, AnEnergyBeyondAllOthersIsBelievedWithAnyFreedom)
{
  CShrinkage::Histogram aCounts{};
  aCounts[CShrinkage::GetBin(1)] = 10000;
  CShrinkage shrinkage;
  shrinkage.Learn(aCounts, 1000); // likelihoods far below the smallest number
  EXPECT_GT(shrinkage.GetWeight(16000), 0.99F);
  EXPECT_LT(shrinkage.GetWeight(1), 0.05F);
}

TEST(ReferenceShrinkage, HowManyEnergiesThereAreDoesNotCount)
{
  CShrinkage::Histogram aOne{};
  aOne[CShrinkage::GetBin(1)] = 1;
  CShrinkage::Histogram aMany{};
  aMany[CShrinkage::GetBin(1)] = 10000;
  CShrinkage one;
  one.Learn(aOne, 12);
  CShrinkage many;
  many.Learn(aMany, 12);
  for (const float fEnergy : {0.0F, 1.0F, 3.0F, 30.0F}) {
    EXPECT_FLOAT_EQ(one.GetWeight(fEnergy), many.GetWeight(fEnergy)) << fEnergy;
  }
}

TEST(ReferenceShrinkage, PlacesWithoutEnergyCountInTheMeanWeightToo)
{
  CShrinkage::Histogram aCounts{};
  aCounts[CShrinkage::GetBin(0)] = 3000;
  aCounts[CShrinkage::GetBin(100)] = 1000;
  CShrinkage shrinkage;
  shrinkage.Learn(aCounts, 12);
  EXPECT_FLOAT_EQ(static_cast<float>(shrinkage.GetMeanWeight(aCounts)),
                  0.75F * shrinkage.GetWeight(0) + 0.25F * shrinkage.GetWeight(100));
}

TEST(ReferenceShrinkage, NoEnergyAtAllAndNoNumberHaveAPlace)
{
  EXPECT_EQ(CShrinkage::GetBin(0), 0U);
  EXPECT_EQ(CShrinkage::GetBin(-1), 0U);
  EXPECT_EQ(CShrinkage::GetBin(INFINITY), CShrinkage::BINS - 1);
  CShrinkage shrinkage;
  shrinkage.Learn({}, 12);
  EXPECT_LE(shrinkage.GetWeight(1), 1.0F);
  EXPECT_EQ(shrinkage.GetMeanWeight({}), 0);
}

TEST(ReferenceNoise, RoundingLeavesATwelfthWithoutNoiseAndNothingWithMuch)
{
  EXPECT_NEAR(GetRoundingVariance(0), 1.0 / 12, 1e-3);
  EXPECT_LT(GetRoundingVariance(0.5), 1e-8);
  for (const double dVariance : {0.0, 0.05, 0.3, 25.0}) {
    const double dMeasured = dVariance + 1.0 / 12 - GetRoundingVariance(dVariance);
    EXPECT_NEAR(RemoveRounding(dMeasured), dVariance, 0.005 + 1e-6 * dVariance);
  }
}

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

TEST(ReferenceNoise, BelowTheDarkTheLightAddsNoNoise)
{
  const SFieldNoise stNoise = {4, 0.5F, 0};
  EXPECT_EQ(stNoise.At(-10), 4);
  EXPECT_EQ(stNoise.At(10), 9);
}

TEST(ReferencePlanes, TheFourSitesOfAMosaicMakeUpTheImage)
{
  const auto listPlanes = GetPlanes(5, 3, true);
  ASSERT_EQ(listPlanes.size(), 4U);
  std::vector<int> listSeen(15);
  for (const SPlane &stPlane : listPlanes) {
    for (uint32_t nY = 0; nY < stPlane.nHeight; ++nY) {
      for (uint32_t nX = 0; nX < stPlane.nWidth; ++nX) {
        ++listSeen.at(stPlane.GetIndex(nX, nY));
      }
    }
  }
  EXPECT_EQ(listSeen, std::vector<int>(15, 1));
  EXPECT_EQ(GetPlanes(5, 3, false).size(), 1U);
}

TEST(ReferencePlanes, ALineBeyondTheEdgesIsReflected)
{
  const std::vector<uint32_t> listSums = {10, 20, 30, 40, 50, 60, 70, 80};
  const std::vector<uint16_t> listDark = {1, 1, 1, 1, 1, 1, 1, 1};
  const CPlaneSource source(GetPlanes(4, 2, false).front(), listSums.data(), 0.5F, listDark.data(), 1);
  std::vector<float> listLine(8);
  source.ReadLine(-1, -2, 8, listLine.data());
  EXPECT_EQ(listLine, (std::vector<float>{34, 29, 24, 29, 34, 39, 34, 29}));
}

namespace {

/// The field of a monochrome plane, written DN by DN.
std::vector<uint16_t> MakeField(uint32_t nWidth, uint32_t nHeight, const std::vector<uint32_t> &listSums,
                                float fVariance, float fScale)
{
  CPlaneField field({GetPlanes(nWidth, nHeight, false).front(), listSums.data(), 1, nullptr, 1}, {fVariance, 0, 0}, 1);
  field.FindProfiles();
  field.WeightCoarseScales();
  field.LearnFineScales();
  std::vector<uint16_t> listField(listSums.size());
  field.Write({listField.data(), fScale, nullptr});
  return listField;
}

} // namespace

TEST(ReferencePlanes, AFieldBeyondTheScaleIsWrittenAsItsEnd)
{
  EXPECT_EQ(MakeField(20, 12, std::vector<uint32_t>(20 * 12, 5000), 4, 16), std::vector<uint16_t>(20 * 12, 65535));
}

TEST(ReferencePlanes, AMirroredFrameHasTheMirroredField)
{
  constexpr uint32_t WIDTH = 69; // what is taken of the smooth image lies alike from both sides
  constexpr uint32_t HEIGHT = 45;
  std::vector<uint32_t> listSums;
  for (const float fNoise : MakeNoise(std::size_t{WIDTH} * HEIGHT, 2000)) {
    listSums.push_back(static_cast<uint32_t>(std::lround(30000 + fNoise)));
  }
  const auto fnMirror = [](auto list, bool bColumns) {
    const auto listFrom = list;
    for (uint32_t n = 0; n < list.size(); ++n) {
      const uint32_t nX = n % WIDTH;
      const uint32_t nY = n / WIDTH;
      list[n] = bColumns ? listFrom[nY * WIDTH + WIDTH - 1 - nX] : listFrom[(HEIGHT - 1 - nY) * WIDTH + nX];
    }
    return list;
  };
  constexpr float VARIANCE = 1e7F; // more than it has: edges in it would be probed pixel by pixel, as places decide
  const auto listField = MakeField(WIDTH, HEIGHT, listSums, VARIANCE, 1);
  for (const bool bColumns : {false, true}) {
    const auto listMirrored = fnMirror(MakeField(WIDTH, HEIGHT, fnMirror(listSums, bColumns), VARIANCE, 1), bColumns);
    int nLargest = 0;
    for (std::size_t n = 0; n < listField.size(); ++n) {
      nLargest = std::max(nLargest, std::abs(listField[n] - listMirrored[n]));
    }
    EXPECT_LE(nLargest, 1) << "rounding, of a noise of 2000";
  }
}

TEST(ReferencePlanes, AFieldBelowZeroIsWrittenAsZero)
{
  constexpr uint32_t WIDTH = 20;
  constexpr uint32_t HEIGHT = 12;
  const std::vector<uint32_t> listSums(WIDTH * HEIGHT, 90);
  const std::vector<uint16_t> listDark(WIDTH * HEIGHT, 100);
  CPlaneField field({GetPlanes(WIDTH, HEIGHT, false).front(), listSums.data(), 1, listDark.data(), 1}, {4, 0, 0}, 1);
  field.FindProfiles();
  field.WeightCoarseScales();
  field.LearnFineScales();
  std::vector<uint16_t> listField(listSums.size(), 7);
  field.Write({listField.data(), 16, nullptr});
  EXPECT_EQ(listField, std::vector<uint16_t>(listSums.size(), 0));
  field.Write({listField.data(), 1, listDark.data()});
  EXPECT_EQ(listField, std::vector<uint16_t>(listSums.size(), 90));
}

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

TEST(ReferenceParallel, EveryItemIsWorkedOnOnceWithAnyNumberOfThreads)
{
  for (const uint32_t nThreads : {0U, 1U, 3U, 1000U}) {
    std::vector<int> listSeen(100);
    ForEachItem(100, nThreads, [&](uint32_t nItem, uint32_t nWorker) {
      ++listSeen[nItem];
      EXPECT_LT(nWorker, MAX_THREADS);
    });
    EXPECT_EQ(listSeen, std::vector<int>(100, 1)) << nThreads;
  }
}

TEST(ReferenceVariation, ALowStepIsFoundInNoiseAndStaysWhereItIs)
{
  constexpr uint32_t WIDTH = 60;
  constexpr uint32_t HEIGHT = 40;
  constexpr float STEP = 3;
  const auto fnTruth = [](std::size_t n) { return n % WIDTH < WIDTH / 2 ? 100.0F : 100.0F + STEP; };
  std::vector<float> listSamples = MakeNoise(std::size_t{WIDTH} * HEIGHT);
  for (std::size_t n = 0; n < listSamples.size(); ++n) {
    listSamples[n] += fnTruth(n);
  }
  std::vector<float> listErrors(listSamples.size());
  CTotalVariation variation(listSamples.size());
  // An image before it leaves nothing behind.
  for (const float fWeight : {5.0F, 1.2F}) {
    variation.Smooth({listSamples.data(), WIDTH, HEIGHT}, {0, 0, WIDTH, HEIGHT}, fWeight,
                     {listErrors.data(), WIDTH, HEIGHT});
  }
  const double dSum = std::accumulate(listErrors.begin(), listErrors.end(), 0.0);
  EXPECT_NEAR(dSum, std::accumulate(listSamples.begin(), listSamples.end(), 0.0), 1) << "nothing is added";
  std::size_t nWrong = 0;
  for (std::size_t n = 0; n < listErrors.size(); ++n) {
    nWrong += (listErrors[n] > 100 + STEP / 2) != (fnTruth(n) > 100) ? 1U : 0U;
    listErrors[n] -= fnTruth(n);
  }
  EXPECT_LT(GetMeanSquare(listErrors), 0.12) << "of a noise of 1";
  EXPECT_LT(nWrong, listErrors.size() / 100);
}

TEST(ReferenceVariation, AnEvenImageAndOneOfASinglePixelStayWhatTheyAre)
{
  std::vector<float> listEven(35, 12.5F);
  std::vector<float> listResult(35);
  CTotalVariation variation(35);
  variation.Smooth({listEven.data(), 7, 5}, {0, 0, 7, 5}, 2, {listResult.data(), 7, 5});
  EXPECT_EQ(listResult, listEven);
  variation.Smooth({listEven.data(), 1, 1}, {0, 0, 1, 1}, 2, {listResult.data(), 1, 1});
  EXPECT_EQ(listResult[0], 12.5F);
}

TEST(ReferenceVariation, WhatIsAlikeAlongAnAxisStaysSoUpToTheEdge)
{
  constexpr uint32_t SIDE = 12;
  const std::vector<float> listNoise = MakeNoise(SIDE, 5);
  std::vector<float> listLines;
  for (const float fValue : listNoise) {
    listLines.insert(listLines.end(), SIDE, fValue);
  }
  std::vector<float> listColumns;
  for (uint32_t n = 0; n < SIDE; ++n) {
    listColumns.insert(listColumns.end(), listNoise.begin(), listNoise.end());
  }
  CTotalVariation variation(std::size_t{SIDE} * SIDE);
  for (std::vector<float> *pList : {&listLines, &listColumns}) {
    std::vector<float> listSamples = *pList;
    variation.Smooth({listSamples.data(), SIDE, SIDE}, {0, 0, SIDE, SIDE}, 2, {pList->data(), SIDE, SIDE});
  }
  EXPECT_GT(std::abs(listLines[0] - listNoise[0]), 0.1F);
  for (uint32_t nY = 0; nY < SIDE; ++nY) {
    for (uint32_t nX = 0; nX < SIDE; ++nX) {
      EXPECT_NEAR(listLines[nY * SIDE + nX], listLines[nY * SIDE], 1e-3) << nX << ", " << nY;
      EXPECT_NEAR(listColumns[nY * SIDE + nX], listLines[nX * SIDE], 1e-3) << nX << ", " << nY;
    }
  }
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

TEST(ReferenceNoise, ADarkFrameHasNoMoreNoiseThanDetailWhateverTheBrightOnesHave)
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
