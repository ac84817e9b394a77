// \file
// What the correction does to the frames that a camera delivers.

#include <algorithm>
#include <atomic>
#include <cmath>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "camera/iscenecontrol.h"
#include "genapi/sensorformat.h"
#include "tests/camera/software/camerarig.h"
#include "tests/camera/software/selfcorrection/handmadetable.h"

using ffc::camera::ECorrectionMode;
using ffc::camera::FindSceneControl;
using ffc::camera::SSimulatedCameraOptions;
using ffc::test::CCameraRig;
using ffc::test::CHandMadeTable;
using ffc::test::SmallOptions;

namespace {

constexpr uint32_t WIDTH = 320;
constexpr uint32_t HEIGHT = 256;

SSimulatedCameraOptions Options(const std::string &strFormat, ECorrectionMode eMode = ECorrectionMode::FlatField)
{
  SSimulatedCameraOptions stOptions = SmallOptions(strFormat, eMode);
  stOptions.nWidth = WIDTH;
  stOptions.nHeight = HEIGHT;
  return stOptions;
}

// Two cameras that expose the same frames; the second one corrects its own.
class CCameraPair {
public:
  explicit CCameraPair(const SSimulatedCameraOptions &stOptions) : m_raw(stOptions), m_corrected(stOptions)
  {
    Set("TriggerMode", "On");
    m_corrected.Set("FlatFieldCorrection", "On");
  }

  void Set(const char *pName, const char *pValue)
  {
    m_raw.Set(pName, pValue);
    m_corrected.Set(pName, pValue);
  }
  CCameraRig &Raw() { return m_raw; }
  CCameraRig &Corrected() { return m_corrected; }
  void Stop()
  {
    m_raw.Camera().Stop();
    m_corrected.Camera().Stop();
  }

  // Exposes one frame with each.
  void Expose()
  {
    m_listRaw = m_raw.TakeTriggered().GetSamples();
    m_listCorrected = m_corrected.TakeTriggered().GetSamples();
  }
  bool AreEqual()
  {
    Expose();
    return m_listRaw == m_listCorrected;
  }

  std::vector<uint16_t> m_listRaw;
  std::vector<uint16_t> m_listCorrected;

private:
  CCameraRig m_raw;
  CCameraRig m_corrected;
};

std::vector<double> GetBlockMeans(const std::vector<uint16_t> &listFrame, uint32_t nSide)
{
  std::vector<double> listMeans;
  for (uint32_t nTop = 0; nTop < HEIGHT; nTop += nSide) {
    for (uint32_t nLeft = 0; nLeft < WIDTH; nLeft += nSide) {
      double dSum = 0.0;
      for (uint32_t n = 0; n < nSide * nSide; ++n) {
        dSum += listFrame[(nTop + n / nSide) * WIDTH + nLeft + n % nSide];
      }
      listMeans.push_back(dSum / (nSide * nSide));
    }
  }
  return listMeans;
}

double GetMean(const std::vector<double> &listNumbers)
{
  return std::accumulate(listNumbers.begin(), listNumbers.end(), 0.0) / static_cast<double>(listNumbers.size());
}

// Largest less smallest mean of blocks of 64 pixels, in percent of their mean.
double GetShading(const std::vector<uint16_t> &listFrame)
{
  const auto listMeans = GetBlockMeans(listFrame, 64);
  const auto [itMin, itMax] = std::minmax_element(listMeans.begin(), listMeans.end());
  return 100.0 * (*itMax - *itMin) / GetMean(listMeans);
}

// The table that brings every block of an 8-bit frame to full scale.
CHandMadeTable MakeTable(const std::vector<uint16_t> &listFrame)
{
  constexpr uint32_t SIDE = 32;
  CHandMadeTable table(ECorrectionMode::FlatField, "Mono8", WIDTH, HEIGHT, SIDE);
  const auto listMeans = GetBlockMeans(listFrame, SIDE);
  const uint32_t nBlocksPerRow = WIDTH / SIDE;
  for (uint32_t nRow = 0; nRow < table.GetRows(); ++nRow) {
    for (uint32_t nColumn = 0; nColumn < table.GetColumns(); ++nColumn) {
      const uint32_t nBlockRow = std::clamp(nRow, 1U, table.GetRows() - 2) - 1;
      const uint32_t nBlockColumn = std::clamp(nColumn, 1U, table.GetColumns() - 2) - 1;
      const auto nGain = static_cast<uint16_t>(65280.0 / listMeans[nBlockRow * nBlocksPerRow + nBlockColumn]);
      table.At(nRow, nColumn) = {0, nGain, nGain, nGain};
    }
  }
  return table;
}

} // namespace

TEST(AppliedCorrection, FramesFollowTheTableAndTheExpectedGrey)
{
  for (const char *pFormat : {"Mono8", "Mono12", "Mono16", "BayerGR8", "BayerRG10", "BayerGB12", "BayerBG16"}) {
    for (const uint32_t nSide : {32U, 16U}) {
      CCameraPair pair(Options(pFormat));
      pair.Set("FFCBlockSize", nSide == 32 ? "BlockSize_1024" : "BlockSize_256");
      pair.Set("FFCExpectGray", "200");
      CHandMadeTable table(ECorrectionMode::FlatField, pFormat, WIDTH, HEIGHT, nSide);
      table.Scatter(nSide);
      pair.Corrected().WriteRegister(table.Pack());
      pair.Expose();
      EXPECT_EQ(table.CountWrong(pair.m_listRaw, pair.m_listCorrected, 200.0), 0U) << pFormat << " " << nSide;
    }
  }
}

TEST(AppliedCorrection, VignettingFramesFollowTheTable)
{
  for (const char *pFormat : {"Mono8", "Mono10", "BayerGR12", "BayerRG8", "BayerGB10", "BayerBG12"}) {
    for (const uint32_t nSide : {128U, 64U}) {
      CCameraPair pair(Options(pFormat, ECorrectionMode::Vignetting));
      pair.Set("FFCBlockSize", nSide == 128 ? "BlockSize_16384" : "BlockSize_4096");
      CHandMadeTable table(ECorrectionMode::Vignetting, pFormat, WIDTH, HEIGHT, nSide);
      table.Scatter(nSide);
      pair.Corrected().WriteRegister(table.Pack());
      pair.Expose();
      EXPECT_EQ(table.CountWrong(pair.m_listRaw, pair.m_listCorrected, 255.0), 0U) << pFormat << " " << nSide;
    }
  }
}

TEST(AppliedCorrection, ARegionHasItsOwnTable)
{
  CCameraPair pair(Options("BayerGB12"));
  for (const auto &[pName, pValue] :
       {std::pair("Width", "150"), {"Height", "98"}, {"OffsetX", "66"}, {"OffsetY", "22"}}) {
    pair.Set(pName, pValue);
  }
  CHandMadeTable table(ECorrectionMode::FlatField, "BayerGB12", 150, 98, 32);
  table.Scatter(1);
  pair.Corrected().WriteRegister(table.Pack());
  pair.Expose();
  EXPECT_EQ(table.CountWrong(pair.m_listRaw, pair.m_listCorrected, 128.0), 0U);
}

TEST(AppliedCorrection, OnlyCoefficientsThatCountAreApplied)
{
  CCameraPair pair(Options("Mono8"));
  EXPECT_TRUE(pair.AreEqual()) << "none were written";
  CHandMadeTable table(ECorrectionMode::FlatField, "Mono8", WIDTH, HEIGHT, 32);
  table.Scatter(1);
  pair.Corrected().WriteRegister(table.Pack());
  EXPECT_FALSE(pair.AreEqual()) << "written while the camera streams";
  pair.Corrected().Set("FlatFieldCorrection", "Off");
  EXPECT_TRUE(pair.AreEqual());
  pair.Corrected().Set("FlatFieldCorrection", "On");
  EXPECT_FALSE(pair.AreEqual());
  pair.Set("FFCBlockSize", "BlockSize_256");
  EXPECT_TRUE(pair.AreEqual()) << "they are for other blocks";
  pair.Set("FFCBlockSize", "BlockSize_1024");
  EXPECT_FALSE(pair.AreEqual());
  const auto expectLostWhile = [&](const char *pName, const char *pOther, const char *pBack) {
    pair.Stop();
    pair.Set(pName, pOther);
    EXPECT_TRUE(pair.AreEqual()) << pName;
    pair.Stop();
    pair.Set(pName, pBack);
    EXPECT_FALSE(pair.AreEqual()) << pName;
  };
  expectLostWhile("Width", "318", "320");
  expectLostWhile("Height", "30", "256"); // smaller than a block
}

TEST(AppliedCorrection, ARegionWithoutABlockIsNotCorrected)
{
  CCameraPair pair(Options("Mono8"));
  pair.Set("Width", "30");
  pair.Corrected().WriteRegister(std::vector<uint8_t>(24, 1));
  EXPECT_TRUE(pair.AreEqual());
}

TEST(AppliedCorrection, CoefficientsFromTheFlashAreAppliedAtTheNextFrame)
{
  CCameraPair pair(Options("Mono8"));
  CHandMadeTable table(ECorrectionMode::FlatField, "Mono8", WIDTH, HEIGHT, 32);
  table.Scatter(1);
  pair.Corrected().WriteRegister(table.Pack());
  pair.Corrected().Execute("FFCFlashSave");
  pair.Corrected().WriteRegister(CHandMadeTable(ECorrectionMode::FlatField, "Mono8", WIDTH, HEIGHT, 32).Pack());
  pair.Expose();
  EXPECT_NE(table.CountWrong(pair.m_listRaw, pair.m_listCorrected, 128.0), 0U);
  pair.Corrected().Execute("FFCFlashLoad");
  pair.Expose();
  EXPECT_EQ(table.CountWrong(pair.m_listRaw, pair.m_listCorrected, 128.0), 0U);
}

TEST(AppliedCorrection, ATableOfTheTargetEvensItOutAndAMixedUpOneDoesNot)
{
  CCameraPair pair(Options("Mono8"));
  pair.Set("FFCExpectGray", "180");
  pair.Expose();
  EXPECT_GT(GetShading(pair.m_listRaw), 25.0);
  const auto correct = [&](const std::vector<uint8_t> &listRegister) {
    pair.Corrected().WriteRegister(listRegister);
    pair.Expose();
  };
  const CHandMadeTable table = MakeTable(pair.m_listRaw);
  const std::vector<uint8_t> listGood = table.Pack();
  correct(listGood);
  EXPECT_LT(GetShading(pair.m_listCorrected), 2.0);
  EXPECT_NEAR(GetMean(GetBlockMeans(pair.m_listCorrected, 64)), 180.0, 1.0);

  std::vector<uint8_t> listSwapped = listGood;
  for (std::size_t n = 0; n + 24 < listSwapped.size(); n += 2) {
    std::swap(listSwapped[n], listSwapped[n + 1]);
  }
  correct(listSwapped);
  EXPECT_GT(GetMean(GetBlockMeans(pair.m_listCorrected, 64)), 240.0) << "gains a hundred times too large";

  CHandMadeTable shifted = table; // as if the blocks began where the ring is
  for (uint32_t nRow = 0; nRow + 1 < shifted.GetRows(); ++nRow) {
    for (uint32_t nColumn = 0; nColumn + 1 < shifted.GetColumns(); ++nColumn) {
      shifted.At(nRow, nColumn) = shifted.At(nRow + 1, nColumn + 1);
    }
  }
  correct(shifted.Pack());
  EXPECT_GT(GetShading(pair.m_listCorrected), 5.0);
  correct(listGood);
  EXPECT_LT(GetShading(pair.m_listCorrected), 2.0) << "and back";
}

TEST(AppliedCorrection, DigitalShiftDoublesTheFrames)
{
  CCameraPair pair(Options("Mono12"));
  pair.Set("ExposureTime", "3000");
  pair.Corrected().Set("DigitalShift", "2");
  pair.Expose();
  for (std::size_t n = 0; n < pair.m_listRaw.size(); ++n) {
    ASSERT_EQ(pair.m_listCorrected[n], std::min(4 * pair.m_listRaw[n], 4095)) << n;
  }
}

TEST(AppliedCorrection, TheSensorsOwnPatternCanBeSwitchedOff)
{
  CCameraPair pair(Options("Mono16"));
  FindSceneControl(pair.Raw().Camera())->SetLensCap(true);
  FindSceneControl(pair.Corrected().Camera())->SetLensCap(true);
  const auto countHot = [](const std::vector<uint16_t> &listFrame) {
    return std::count_if(listFrame.begin(), listFrame.end(), [](uint16_t nSample) { return nSample > 8000; });
  };
  pair.Corrected().Set("DeadPixelCorrect", "On");
  pair.Expose();
  EXPECT_GE(countHot(pair.m_listRaw), 1);
  EXPECT_EQ(countHot(pair.m_listCorrected), 0);
  pair.Corrected().Set("DeadPixelCorrect", "Off");
  EXPECT_TRUE(pair.AreEqual());
  pair.Set("DeadPixelCorrect", "On");
  pair.Corrected().Set("FixedPatternNoiseCorrectMode", "On");
  pair.Expose();
  const auto getVariance = [](const std::vector<uint16_t> &listFrame) {
    const double dCount = static_cast<double>(listFrame.size());
    const double dMean = std::accumulate(listFrame.begin(), listFrame.end(), 0.0) / dCount;
    return std::inner_product(listFrame.begin(), listFrame.end(), listFrame.begin(), 0.0) / dCount - dMean * dMean;
  };
  EXPECT_LT(getVariance(pair.m_listCorrected), 0.9 * getVariance(pair.m_listRaw));
}

TEST(AppliedCorrection, TheWhiteBalanceLooksAtTheSensorsFrame)
{
  CCameraPair pair(Options("BayerRG12"));
  CHandMadeTable table(ECorrectionMode::FlatField, "BayerRG12", WIDTH, HEIGHT, 32);
  for (uint32_t nRow = 0; nRow < table.GetRows(); ++nRow) {
    for (uint32_t nColumn = 0; nColumn < table.GetColumns(); ++nColumn) {
      table.At(nRow, nColumn) = {10, 512, 256, 128};
    }
  }
  pair.Corrected().WriteRegister(table.Pack());
  pair.Set("BalanceWhiteAuto", "Once");
  for (int n = 0; n < 3; ++n) {
    EXPECT_FALSE(pair.AreEqual());
  }
  for (const char *pColor : {"Red", "Green", "Blue"}) {
    pair.Set("BalanceRatioSelector", pColor);
    EXPECT_EQ(pair.Raw().Get("BalanceRatio"), pair.Corrected().Get("BalanceRatio")) << pColor;
  }
}

TEST(AppliedCorrection, EverythingMayBeWrittenWhileFramesCome)
{
  CCameraRig rig(Options("BayerBG10"));
  rig.Set("FlatFieldCorrection", "On");
  CHandMadeTable table(ECorrectionMode::FlatField, "BayerBG10", WIDTH, HEIGHT, 32);
  rig.WriteRegister(table.Pack()); // so that there is something to save from the start
  std::atomic<bool> bStop{false};
  ASSERT_EQ(rig.Camera().Start().GetError(), "");
  std::thread other([&] {
    while (!bStop) {
      rig.Execute("FFCFlashSave");
      rig.Set("FFCExpectGray", "100");
      rig.Execute("FFCFlashLoad");
      rig.Set("FFCExpectGray", "200");
      rig.Set("DigitalShift", "1");
      rig.Set("DigitalShift", "0");
    }
  });
  for (uint32_t n = 0; n < 20; ++n) {
    table.Scatter(n);
    rig.WriteRegister(table.Pack());
    rig.ReadRegister();
    EXPECT_EQ(rig.Frames().Take(2).size(), 2U);
  }
  bStop = true;
  other.join();
}
