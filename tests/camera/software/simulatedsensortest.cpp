#include <cmath>
#include <cstring>
#include <numeric>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "camera/software/simulated/simulatedsensor.h"

using ffc::camera::CLens;
using ffc::camera::CSimulatedSensor;
using ffc::camera::IFrameSource;
using ffc::camera::ISceneControl;
using ffc::camera::SCameraSettings;
using ffc::camera::SScene;
using ffc::camera::SSensorModel;
using ffc::genapi::EColor;
using ffc::genapi::FindSensorFormat;
using ffc::genapi::GetPixelColor;

namespace {

using Image = std::vector<double>;

constexpr uint32_t SIZE = 256;
constexpr double NO_FALLOFF = 1.0; // a slight tilt remains

SCameraSettings MakeExposure(const std::string &strFormat, uint32_t nWidth = SIZE, uint32_t nHeight = SIZE)
{
  SCameraSettings stSettings;
  stSettings.pFormat = FindSensorFormat(strFormat);
  stSettings.nWidth = nWidth;
  stSettings.nHeight = nHeight;
  stSettings.dExposureTime = 10000.0;
  stSettings.dBlackLevel = 0.4;
  return stSettings;
}

const SScene TARGET{};
const SScene CAPPED{true, ISceneControl::EScene::Target, ISceneControl::EPurpose::Acquisition};
const SScene CHART{false, ISceneControl::EScene::TestChart, ISceneControl::EPurpose::Acquisition};

std::vector<uint8_t> ExposeBytes(IFrameSource &sensor, const SCameraSettings &stSettings, const SScene &stScene,
                                 uint64_t nFrameId)
{
  std::vector<uint8_t> listBytes;
  sensor.Expose(stSettings, stScene, nFrameId, listBytes);
  return listBytes;
}

Image Expose(IFrameSource &sensor, const SCameraSettings &stSettings, const SScene &stScene, uint64_t nFrameId)
{
  const auto listBytes = ExposeBytes(sensor, stSettings, stScene, nFrameId);
  if (stSettings.pFormat->GetBytesPerPixel() == 1) {
    return {listBytes.begin(), listBytes.end()};
  }
  std::vector<uint16_t> listSamples(listBytes.size() / 2);
  std::memcpy(listSamples.data(), listBytes.data(), listBytes.size());
  return {listSamples.begin(), listSamples.end()};
}

Image Average(IFrameSource &sensor, const SCameraSettings &stSettings, const SScene &stScene, uint64_t nFirst,
              uint64_t nCount)
{
  Image listSum(std::size_t{stSettings.nWidth} * stSettings.nHeight);
  for (uint64_t nFrame = nFirst; nFrame < nFirst + nCount; ++nFrame) {
    const Image listFrame = Expose(sensor, stSettings, stScene, nFrame);
    for (std::size_t n = 0; n < listSum.size(); ++n) {
      listSum[n] += listFrame[n] / static_cast<double>(nCount);
    }
  }
  return listSum;
}

double GetMean(const Image &listImage)
{
  return std::accumulate(listImage.begin(), listImage.end(), 0.0) / static_cast<double>(listImage.size());
}

double GetVariance(const Image &listImage)
{
  const double dMean = GetMean(listImage);
  double dSum = 0.0;
  for (const double dValue : listImage) {
    dSum += (dValue - dMean) * (dValue - dMean);
  }
  return dSum / static_cast<double>(listImage.size() - 1);
}

// Temporal variance, from the difference of two frames, in which all that is fixed cancels.
double GetTemporalVariance(const Image &listA, const Image &listB)
{
  Image listDifference(listA.size());
  for (std::size_t n = 0; n < listA.size(); ++n) {
    listDifference[n] = listA[n] - listB[n];
  }
  return GetVariance(listDifference) / 2.0;
}

// Correlation of neighbours at a distance, in pixels along the memory.
double GetCorrelation(const Image &listImage, std::size_t nDistance)
{
  const double dMean = GetMean(listImage);
  double dSum = 0.0;
  for (std::size_t n = nDistance; n < listImage.size(); ++n) {
    dSum += (listImage[n] - dMean) * (listImage[n - nDistance] - dMean);
  }
  return dSum / static_cast<double>(listImage.size() - nDistance) / GetVariance(listImage);
}

double GetCellMean(const Image &listImage, uint32_t nWidth, uint32_t nCellX, uint32_t nCellY)
{
  double dSum = 0.0;
  double dCount = 0.0;
  for (std::size_t nY = nCellY; nY < listImage.size() / nWidth; nY += 2) {
    for (std::size_t nX = nCellX; nX < nWidth; nX += 2) {
      dSum += listImage[nY * nWidth + nX];
      dCount += 1.0;
    }
  }
  return dSum / dCount;
}

} // namespace

TEST(SimulatedSensor, ThePhotonTransferIsLinearAndItsSlopeIsTheGain)
{
  CSimulatedSensor sensor(SIZE, SIZE, NO_FALLOFF, 1);
  SCameraSettings stSettings = MakeExposure("Mono12");
  const double dGain = 4095.0 / SSensorModel().dFullWell;
  Image listMeans;
  Image listVariances;
  for (int nStep = 0; nStep < 8; ++nStep) {
    stSettings.dExposureTime = 10.0 + 1600.0 * nStep;
    const auto nFrame = static_cast<uint64_t>(2 * nStep);
    const Image listA = Expose(sensor, stSettings, TARGET, nFrame);
    const Image listB = Expose(sensor, stSettings, TARGET, nFrame + 1);
    listMeans.push_back((GetMean(listA) + GetMean(listB)) / 2.0);
    listVariances.push_back(GetTemporalVariance(listA, listB));
  }
  const double dMean = GetMean(listMeans);
  const double dVariance = GetMean(listVariances);
  double dProduct = 0.0;
  double dSquare = 0.0;
  for (std::size_t n = 0; n < listMeans.size(); ++n) {
    dProduct += (listMeans[n] - dMean) * (listVariances[n] - dVariance);
    dSquare += (listMeans[n] - dMean) * (listMeans[n] - dMean);
  }
  const double dSlope = dProduct / dSquare;
  EXPECT_NEAR(dSlope / dGain, 1.0, 0.02);
  for (std::size_t n = 0; n < listMeans.size(); ++n) {
    const double dOnLine = dVariance + dSlope * (listMeans[n] - dMean);
    EXPECT_NEAR(listVariances[n], dOnLine, 0.02 * listVariances.back()) << n;
  }
}

TEST(SimulatedSensor, TheSignalGrowsWithExposureAndGain)
{
  CSimulatedSensor sensor(SIZE, SIZE, NO_FALLOFF, 1);
  SCameraSettings stSettings = MakeExposure("Mono16");
  const double dBlack = 0.004 * 65535.0;
  stSettings.dExposureTime = 2000.0;
  const double dSignal = GetMean(Expose(sensor, stSettings, TARGET, 0)) - dBlack;
  stSettings.dExposureTime = 6000.0;
  EXPECT_NEAR((GetMean(Expose(sensor, stSettings, TARGET, 1)) - dBlack) / dSignal, 3.0, 0.01);
  stSettings.dExposureTime = 2000.0;
  stSettings.dGain = 6.0;
  EXPECT_NEAR((GetMean(Expose(sensor, stSettings, TARGET, 2)) - dBlack) / dSignal, std::pow(10.0, 0.3), 0.01);
}

TEST(SimulatedSensor, TheCapLeavesBlackLevelAndDarkNoise)
{
  CSimulatedSensor sensor(SIZE, SIZE, NO_FALLOFF, 1);
  for (const char *pFormat : {"Mono8", "Mono10", "Mono12", "Mono14", "Mono16"}) {
    const SCameraSettings stSettings = MakeExposure(pFormat);
    const double dFullScale = stSettings.pFormat->GetMaxValue();
    const double dGain = dFullScale / SSensorModel().dFullWell;
    const Image listA = Expose(sensor, stSettings, CAPPED, 0);
    const Image listB = Expose(sensor, stSettings, CAPPED, 1);
    EXPECT_NEAR(GetMean(listA), 0.004 * dFullScale, 0.05 + 0.0001 * dFullScale) << pFormat;
    if (stSettings.pFormat->nBitDepth >= 12) { // below, rounding hides the noise
      const double dNoise = std::sqrt(GetTemporalVariance(listA, listB) - 1.0 / 12.0) / dGain;
      EXPECT_NEAR(dNoise, SSensorModel().dDarkNoise, 0.05 * SSensorModel().dDarkNoise) << pFormat;
    }
  }
}

TEST(SimulatedSensor, TheBrightFieldStandsAtAboutSeventyPercentInTheCentre)
{
  CSimulatedSensor sensor(SIZE, SIZE, 0.6, 1);
  for (const char *pFormat : {"Mono8", "Mono10", "Mono12", "Mono16"}) {
    const SCameraSettings stSettings = MakeExposure(pFormat);
    const Image listFrame = Expose(sensor, stSettings, TARGET, 0);
    double dCentre = 0.0;
    for (std::size_t nY = 112; nY < 144; ++nY) {
      for (std::size_t nX = 112; nX < 144; ++nX) {
        dCentre += listFrame[nY * SIZE + nX] / 1024.0;
      }
    }
    EXPECT_GT(dCentre / stSettings.pFormat->GetMaxValue(), 0.70) << pFormat;
    EXPECT_LT(dCentre / stSettings.pFormat->GetMaxValue(), 0.75) << pFormat;
  }
}

TEST(SimulatedSensor, ResponseAndDarkSignalDifferFromPixelToPixelAsModelled)
{
  constexpr uint64_t FRAMES = 32;
  CSimulatedSensor sensor(SIZE, SIZE, NO_FALLOFF, 3);
  const SCameraSettings stSettings = MakeExposure("Mono16");
  const SSensorModel stModel;
  const double dGain = 65535.0 / stModel.dFullWell;

  const Image listDark = Average(sensor, stSettings, CAPPED, 0, FRAMES);
  const double dDarkTemporal =
    GetTemporalVariance(Expose(sensor, stSettings, CAPPED, 100), Expose(sensor, stSettings, CAPPED, 101));
  const double dDsnu = std::sqrt(GetVariance(listDark) - dDarkTemporal / FRAMES) / dGain;
  EXPECT_NEAR(dDsnu, stModel.dDsnu, 0.03 * stModel.dDsnu);

  const Image listBright = Average(sensor, stSettings, TARGET, 200, FRAMES);
  const double dTemporal =
    GetTemporalVariance(Expose(sensor, stSettings, TARGET, 300), Expose(sensor, stSettings, TARGET, 301));
  const CLens lens(SIZE, SIZE, NO_FALLOFF);
  Image listResponse(listBright.size());
  for (uint32_t n = 0; n < listResponse.size(); ++n) {
    listResponse[n] = (listBright[n] - listDark[n]) / lens.GetFalloff(n % SIZE, n / SIZE);
  }
  const double dMean = GetMean(listResponse);
  const double dPrnu = std::sqrt(GetVariance(listResponse) - (dTemporal + dDarkTemporal) / FRAMES) / dMean;
  EXPECT_NEAR(dPrnu, stModel.dPrnu, 0.03 * stModel.dPrnu);
}

TEST(SimulatedSensor, AveragesConvergeAsIndependentNoiseDoes)
{
  constexpr uint64_t FRAMES = 64;
  CSimulatedSensor sensor(SIZE, SIZE, NO_FALLOFF, 1);
  const SCameraSettings stSettings = MakeExposure("Mono16");
  const Image listA = Average(sensor, stSettings, TARGET, 0, FRAMES);
  const Image listB = Average(sensor, stSettings, TARGET, FRAMES, FRAMES);
  const double dSingle =
    GetTemporalVariance(Expose(sensor, stSettings, TARGET, 200), Expose(sensor, stSettings, TARGET, 201));
  EXPECT_NEAR(GetTemporalVariance(listA, listB) * FRAMES / dSingle, 1.0, 0.05);
  Image listNoise(listA.size());
  for (std::size_t n = 0; n < listNoise.size(); ++n) {
    listNoise[n] = listA[n] - listB[n];
  }
  for (const std::size_t nDistance : {1U, 2U, SIZE - 1, SIZE, SIZE + 1, 2 * SIZE}) {
    EXPECT_NEAR(GetCorrelation(listNoise, nDistance), 0.0, 0.02) << nDistance;
  }
}

TEST(SimulatedSensor, TheSameSeedGivesTheSameFramesInAnyOrder)
{
  const SCameraSettings stSettings = MakeExposure("Mono12", 64, 32);
  CSimulatedSensor first(64, 32, 0.6, 7);
  CSimulatedSensor second(64, 32, 0.6, 7);
  CSimulatedSensor other(64, 32, 0.6, 8);
  const auto listFrame5 = ExposeBytes(first, stSettings, TARGET, 5);
  const auto listFrame6 = ExposeBytes(first, stSettings, TARGET, 6);
  EXPECT_NE(listFrame5, listFrame6);
  ExposeBytes(second, stSettings, CAPPED, 0);
  EXPECT_EQ(ExposeBytes(second, stSettings, TARGET, 6), listFrame6);
  EXPECT_EQ(ExposeBytes(second, stSettings, TARGET, 5), listFrame5);
  EXPECT_NE(ExposeBytes(other, stSettings, TARGET, 5), listFrame5);
}

TEST(SimulatedSensor, TheLensLeavesSixtyPercentInTheCorners)
{
  const uint32_t nWidth = 640;
  const uint32_t nHeight = 480;
  const CLens lens(nWidth, nHeight, 0.6);
  const float fCorners = (lens.GetFalloff(0, 0) + lens.GetFalloff(nWidth - 1, 0) + lens.GetFalloff(0, nHeight - 1) +
                          lens.GetFalloff(nWidth - 1, nHeight - 1)) /
                         4.0F;
  EXPECT_NEAR(fCorners, 0.6F, 0.005F);
  EXPECT_NEAR(lens.GetFalloff(nWidth / 2, nHeight / 2), 1.0F, 0.001F);
  EXPECT_NE(lens.GetFalloff(0, 0), lens.GetFalloff(nWidth - 1, 0)) << "off centre";
  for (uint32_t nX = nWidth / 2 + 40; nX < nWidth; ++nX) {
    EXPECT_LT(lens.GetFalloff(nX, nHeight / 2), lens.GetFalloff(nX - 1, nHeight / 2)) << nX;
  }
}

TEST(SimulatedSensor, BlocksOfTheBrightFieldDifferByMoreThanThirtyPercent)
{
  const uint32_t nWidth = 640;
  const uint32_t nHeight = 480;
  CSimulatedSensor sensor(nWidth, nHeight, 0.6, 1);
  const Image listFrame = Expose(sensor, MakeExposure("Mono12", nWidth, nHeight), TARGET, 0);
  double dLargest = 0.0;
  double dSmallest = 1e9;
  for (std::size_t nBlockY = 0; nBlockY < nHeight; nBlockY += 32) {
    for (std::size_t nBlockX = 0; nBlockX < nWidth; nBlockX += 32) {
      double dBlock = 0.0;
      for (std::size_t n = 0; n < 1024; ++n) {
        dBlock += listFrame[(nBlockY + n / 32) * nWidth + nBlockX + n % 32] / 1024.0;
      }
      dLargest = std::max(dLargest, dBlock);
      dSmallest = std::min(dSmallest, dBlock);
    }
  }
  EXPECT_GT((dLargest - dSmallest) / GetMean(listFrame), 0.30);
}

TEST(SimulatedSensor, EachColorPlaneSeesItsShareOfTheLamp)
{
  CSimulatedSensor sensor(SIZE, SIZE, NO_FALLOFF, 1);
  for (const char *pLayout : {"BayerGR", "BayerRG", "BayerGB", "BayerBG"}) {
    for (const char *pDepth : {"8", "10", "12", "16"}) {
      SCameraSettings stSettings = MakeExposure(std::string(pLayout) + pDepth);
      const double dBlack = 0.004 * stSettings.pFormat->GetMaxValue();
      const double dFull = 0.716 * stSettings.pFormat->GetMaxValue();
      const Image listFrame = Expose(sensor, stSettings, TARGET, 0);
      stSettings.adBalance = {1.0 / 0.7, 1.0, 1.0 / 0.55};
      const Image listBalanced = Expose(sensor, stSettings, TARGET, 0);
      for (uint32_t nCell = 0; nCell < 4; ++nCell) {
        const EColor eColor = GetPixelColor(stSettings.pFormat->eLayout, nCell % 2, nCell / 2);
        const double dShare = eColor == EColor::Red ? 0.7 : eColor == EColor::Green ? 1.0 : 0.55;
        EXPECT_NEAR((GetCellMean(listFrame, SIZE, nCell % 2, nCell / 2) - dBlack) / dFull, dShare, 0.01)
          << pLayout << pDepth << " " << nCell;
        EXPECT_NEAR((GetCellMean(listBalanced, SIZE, nCell % 2, nCell / 2) - dBlack) / dFull, 1.0, 0.01)
          << pLayout << pDepth << " " << nCell;
      }
    }
  }
}

TEST(SimulatedSensor, TooMuchLightEndsAtFullScale)
{
  CSimulatedSensor sensor(64, 64, NO_FALLOFF, 1);
  for (const char *pFormat : {"Mono8", "Mono10", "Mono12", "Mono16"}) {
    SCameraSettings stSettings = MakeExposure(pFormat, 64, 64);
    stSettings.dExposureTime = 1000000.0;
    stSettings.dGain = 24.0;
    for (const double dValue : Expose(sensor, stSettings, TARGET, 0)) {
      ASSERT_EQ(dValue, stSettings.pFormat->GetMaxValue()) << pFormat;
    }
  }
}

TEST(SimulatedSensor, ARegionShowsItsPartOfTheSensor)
{
  CSimulatedSensor sensor(SIZE, SIZE, 0.6, 1);
  SCameraSettings stSettings = MakeExposure("Mono16");
  const Image listWhole = Average(sensor, stSettings, TARGET, 0, 16);
  stSettings.nOffsetX = 32;
  stSettings.nOffsetY = 64;
  stSettings.nWidth = 100;
  stSettings.nHeight = 50;
  const Image listRegion = Average(sensor, stSettings, TARGET, 50, 16);
  Image listPart;
  for (std::size_t n = 0; n < listRegion.size(); ++n) {
    listPart.push_back(listWhole[(64 + n / 100) * SIZE + 32 + n % 100]);
  }
  // Only noise is left between the two when the response patterns coincide.
  EXPECT_LT(GetTemporalVariance(listRegion, listPart), 0.2 * GetVariance(listPart));
  EXPECT_NEAR(GetMean(listRegion) / GetMean(listPart), 1.0, 0.002);
}

TEST(SimulatedSensor, TheChartHasStructureAndStaysWithinTheTarget)
{
  CSimulatedSensor sensor(SIZE, SIZE, NO_FALLOFF, 1);
  const SCameraSettings stSettings = MakeExposure("Mono12");
  const Image listChart = Average(sensor, stSettings, CHART, 0, 4);
  const Image listTarget = Average(sensor, stSettings, TARGET, 10, 4);
  EXPECT_GT(std::sqrt(GetVariance(listChart)), 0.2 * GetMean(listChart));
  for (std::size_t n = 0; n < listChart.size(); ++n) {
    ASSERT_LT(listChart[n], listTarget[n]);
  }
}
