#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "camera/software/selfcorrection/framecorrector.h"
#include "tests/camera/software/selfcorrection/handmadetable.h"

using ffc::camera::CFrameCorrector;
using ffc::camera::ECorrectionMode;
using ffc::camera::SBlockLayout;
using ffc::camera::SCameraSettings;
using ffc::camera::SCoefficients;
using ffc::camera::SFrameCorrection;
using ffc::genapi::EColorLayout;
using ffc::genapi::FindSensorFormat;
using ffc::genapi::GetSensorFormats;
using ffc::genapi::SSensorFormat;
using ffc::test::CHandMadeTable;

namespace {

SCameraSettings MakeSettings(const std::string &strFormat, uint32_t nWidth, uint32_t nHeight)
{
  SCameraSettings stSettings;
  stSettings.pFormat = FindSensorFormat(strFormat);
  stSettings.nWidth = nWidth;
  stSettings.nHeight = nHeight;
  return stSettings;
}

std::shared_ptr<SCoefficients> MakeCoefficients(ECorrectionMode eMode, const SCameraSettings &stSettings,
                                                uint32_t nBlockSide, const std::vector<uint8_t> &listRegister)
{
  auto pCoefficients = std::make_shared<SCoefficients>();
  SBlockLayout &stLayout = pCoefficients->stLayout;
  stLayout.eMode = eMode;
  stLayout.bColor = stSettings.pFormat->eLayout != EColorLayout::Mono;
  stLayout.nWidth = stSettings.nWidth;
  stLayout.nHeight = stSettings.nHeight;
  stLayout.nBlockSide = nBlockSide;
  pCoefficients->listRegister = listRegister;
  EXPECT_EQ(listRegister.size(), stLayout.GetRegisterSize());
  return pCoefficients;
}

// Every value of the range, in no order.
std::vector<uint16_t> MakeSamples(const SCameraSettings &stSettings, uint32_t nSeed = 1)
{
  std::mt19937 generator(nSeed);
  std::vector<uint16_t> listSamples(std::size_t{stSettings.nWidth} * stSettings.nHeight);
  for (uint16_t &nSample : listSamples) {
    nSample = static_cast<uint16_t>(generator() % (stSettings.pFormat->GetMaxValue() + 1));
  }
  return listSamples;
}

std::vector<uint16_t> Process(CFrameCorrector &corrector, const SCameraSettings &stSettings,
                              const SFrameCorrection &stCorrection, std::vector<uint16_t> listSamples)
{
  if (stSettings.pFormat->GetBytesPerPixel() == 2) {
    corrector.Process(stSettings, stCorrection, listSamples.data());
    return listSamples;
  }
  std::vector<uint8_t> listBytes(listSamples.size());
  for (std::size_t n = 0; n < listBytes.size(); ++n) {
    listBytes[n] = static_cast<uint8_t>(listSamples[n]);
  }
  corrector.Process(stSettings, stCorrection, listBytes.data());
  return {listBytes.begin(), listBytes.end()};
}

// A table with arbitrary coefficients against the formula, pixel by pixel.
void ExpectFormula(ECorrectionMode eMode, const std::string &strFormat, uint32_t nWidth, uint32_t nHeight,
                   uint32_t nSide, double dGray)
{
  SCOPED_TRACE(strFormat + " " + std::to_string(nWidth) + " x " + std::to_string(nHeight) + " in blocks of " +
               std::to_string(nSide));
  const SCameraSettings stSettings = MakeSettings(strFormat, nWidth, nHeight);
  CHandMadeTable table(eMode, strFormat, nWidth, nHeight, nSide);
  table.Scatter(nWidth + nSide);
  SFrameCorrection stCorrection;
  stCorrection.pCoefficients = MakeCoefficients(eMode, stSettings, nSide, table.Pack());
  stCorrection.dExpectGray = dGray;
  CFrameCorrector corrector;
  const auto listRaw = MakeSamples(stSettings);
  const auto listCorrected = Process(corrector, stSettings, stCorrection, listRaw);
  EXPECT_EQ(table.CountWrong(listRaw, listCorrected, dGray), 0U);
}

constexpr uint32_t FLAT_SIZES[][2] = {
  {64, 64},  // whole blocks
  {96, 48},  // of 32: half a block left over, which is too little
  {100, 72}, // less than half a block left over
  {120, 90}, // more than half a block left over
  {32, 34},
};

} // namespace

TEST(FrameCorrector, FlatFieldFollowsTheFormulaInEveryFormatAndGrid)
{
  for (const SSensorFormat &stFormat : GetSensorFormats()) {
    for (const auto &[nWidth, nHeight] : FLAT_SIZES) {
      ExpectFormula(ECorrectionMode::FlatField, stFormat.pName, nWidth, nHeight, 32, 128.0);
      ExpectFormula(ECorrectionMode::FlatField, stFormat.pName, nWidth, nHeight, 16, 97.0);
    }
  }
}

TEST(FrameCorrector, VignettingFollowsTheFormulaInEveryFormatAndGrid)
{
  for (const SSensorFormat &stFormat : GetSensorFormats()) {
    ExpectFormula(ECorrectionMode::Vignetting, stFormat.pName, 256, 192, 64, 255.0); // even counts of points
    ExpectFormula(ECorrectionMode::Vignetting, stFormat.pName, 192, 224, 64, 255.0); // odd ones, half a block left
    ExpectFormula(ECorrectionMode::Vignetting, stFormat.pName, 300, 130, 128, 255.0);
    ExpectFormula(ECorrectionMode::Vignetting, stFormat.pName, 330, 200, 128, 255.0);
  }
}

TEST(FrameCorrector, TheNeutralTableLeavesEveryValueAsItIs)
{
  for (const char *pFormat : {"Mono8", "Mono16", "BayerGR10", "BayerBG12"}) {
    const SCameraSettings stSettings = MakeSettings(pFormat, 100, 90);
    for (const ECorrectionMode eMode : {ECorrectionMode::FlatField, ECorrectionMode::Vignetting}) {
      const uint32_t nSide = eMode == ECorrectionMode::FlatField ? 32 : 64;
      const CHandMadeTable table(eMode, pFormat, 100, 90, nSide);
      SFrameCorrection stCorrection;
      stCorrection.pCoefficients = MakeCoefficients(eMode, stSettings, nSide, table.Pack());
      CFrameCorrector corrector;
      const auto listRaw = MakeSamples(stSettings);
      EXPECT_EQ(Process(corrector, stSettings, stCorrection, listRaw), listRaw) << pFormat;
    }
  }
}

TEST(FrameCorrector, WithoutCoefficientsAFrameStaysAsItIs)
{
  const SCameraSettings stSettings = MakeSettings("Mono12", 64, 48);
  CFrameCorrector corrector;
  const auto listRaw = MakeSamples(stSettings);
  SFrameCorrection stCorrection;
  stCorrection.dExpectGray = 10.0;
  EXPECT_EQ(Process(corrector, stSettings, stCorrection, listRaw), listRaw);
}

TEST(FrameCorrector, TheLargestCoefficientsEndAtTheRange)
{
  for (const char *pFormat : {"Mono8", "Mono12", "Mono16"}) {
    const SCameraSettings stSettings = MakeSettings(pFormat, 32, 32);
    CHandMadeTable table(ECorrectionMode::FlatField, pFormat, 32, 32, 32);
    table.At(1, 1) = {0, 65535, 65535, 65535};
    table.At(0, 0) = {65535, 65535, 65535, 65535};
    SFrameCorrection stCorrection;
    stCorrection.pCoefficients = MakeCoefficients(ECorrectionMode::FlatField, stSettings, 32, table.Pack());
    CFrameCorrector corrector;
    const std::vector<uint16_t> listRaw(32 * 32, static_cast<uint16_t>(stSettings.pFormat->GetMaxValue()));
    const auto listCorrected = Process(corrector, stSettings, stCorrection, listRaw);
    EXPECT_EQ(listCorrected[0], 0U) << pFormat;
    EXPECT_EQ(listCorrected[16 * 32 + 16], stSettings.pFormat->GetMaxValue()) << pFormat;
  }
}

TEST(FrameCorrector, DigitalShiftDoublesAndEndsAtTheRange)
{
  for (const char *pFormat : {"Mono8", "Mono10", "Mono16", "BayerGB12"}) {
    const SCameraSettings stSettings = MakeSettings(pFormat, 32, 32);
    const auto listRaw = MakeSamples(stSettings);
    for (uint32_t nShift = 0; nShift <= 4; ++nShift) {
      SFrameCorrection stCorrection;
      stCorrection.nDigitalShift = nShift;
      CFrameCorrector corrector;
      const auto listShifted = Process(corrector, stSettings, stCorrection, listRaw);
      for (std::size_t n = 0; n < listRaw.size(); ++n) {
        const uint32_t nWide = uint32_t{listRaw[n]} << nShift;
        ASSERT_EQ(listShifted[n], nWide > stSettings.pFormat->GetMaxValue() ? stSettings.pFormat->GetMaxValue() : nWide)
          << pFormat << " " << nShift;
      }
    }
  }
}

TEST(FrameCorrector, TheShiftComesBeforeTheCorrection)
{
  const SCameraSettings stSettings = MakeSettings("Mono8", 64, 64);
  CHandMadeTable table(ECorrectionMode::FlatField, "Mono8", 64, 64, 32);
  table.Scatter(3);
  SFrameCorrection stCorrection;
  stCorrection.pCoefficients = MakeCoefficients(ECorrectionMode::FlatField, stSettings, 32, table.Pack());
  stCorrection.nDigitalShift = 1;
  CFrameCorrector corrector;
  auto listRaw = MakeSamples(stSettings);
  const auto listCorrected = Process(corrector, stSettings, stCorrection, listRaw);
  for (uint16_t &nSample : listRaw) {
    nSample = static_cast<uint16_t>(nSample >= 128 ? 255 : 2 * nSample);
  }
  EXPECT_EQ(table.CountWrong(listRaw, listCorrected, 255.0), 0U);
}

TEST(FrameCorrector, EveryChangeTakesEffectOnTheNextFrame)
{
  CFrameCorrector corrector;
  const auto expect = [&](const char *pFormat, uint32_t nWidth, uint32_t nSeed, double dGray) {
    const SCameraSettings stSettings = MakeSettings(pFormat, nWidth, 64);
    CHandMadeTable table(ECorrectionMode::FlatField, pFormat, nWidth, 64, 32);
    table.Scatter(nSeed);
    SFrameCorrection stCorrection;
    stCorrection.pCoefficients = MakeCoefficients(ECorrectionMode::FlatField, stSettings, 32, table.Pack());
    for (const double dStep : {dGray, dGray + 50.0, dGray}) {
      stCorrection.dExpectGray = dStep;
      const auto listRaw = MakeSamples(stSettings, nSeed);
      const auto listCorrected = Process(corrector, stSettings, stCorrection, listRaw);
      EXPECT_EQ(table.CountWrong(listRaw, listCorrected, dStep), 0U) << pFormat << nWidth << " " << nSeed;
    }
  };
  expect("Mono8", 64, 1, 100.0);
  expect("Mono8", 64, 2, 100.0);
  expect("Mono8", 96, 2, 100.0);
  expect("Mono12", 96, 2, 100.0);
  expect("Mono16", 96, 2, 100.0);
  expect("Mono8", 64, 1, 0.0);
}

TEST(FrameCorrector, TheSameCoefficientsServeAnotherBitDepth)
{
  CHandMadeTable table(ECorrectionMode::FlatField, "Mono8", 64, 64, 32);
  table.Scatter(5);
  SFrameCorrection stCorrection;
  stCorrection.pCoefficients =
    MakeCoefficients(ECorrectionMode::FlatField, MakeSettings("Mono8", 64, 64), 32, table.Pack());
  CFrameCorrector corrector;
  for (const char *pFormat : {"Mono8", "Mono12", "Mono16", "Mono8"}) {
    const SCameraSettings stSettings = MakeSettings(pFormat, 64, 64);
    CHandMadeTable twin(ECorrectionMode::FlatField, pFormat, 64, 64, 32);
    twin.Scatter(5);
    const auto listRaw = MakeSamples(stSettings);
    EXPECT_EQ(twin.CountWrong(listRaw, Process(corrector, stSettings, stCorrection, listRaw), 255.0), 0U) << pFormat;
  }
}

TEST(BlockLayout, TableSizesAreThoseOfTheHost)
{
  const auto getSize = [](ECorrectionMode eMode, bool bColor, uint32_t nWidth, uint32_t nHeight, uint32_t nSide) {
    SBlockLayout stLayout;
    stLayout.eMode = eMode;
    stLayout.bColor = bColor;
    stLayout.nWidth = nWidth;
    stLayout.nHeight = nHeight;
    stLayout.nBlockSide = nSide;
    EXPECT_EQ(stLayout.GetRegisterSize(), stLayout.GetTableSize() + 24);
    return stLayout.GetTableSize();
  };
  EXPECT_EQ(getSize(ECorrectionMode::FlatField, false, 64, 64, 32), 128U);
  EXPECT_EQ(getSize(ECorrectionMode::FlatField, true, 64, 64, 32), 128U);
  EXPECT_EQ(getSize(ECorrectionMode::FlatField, false, 100, 64, 32), 5U * 4 * 8);
  EXPECT_EQ(getSize(ECorrectionMode::FlatField, false, 112, 64, 32), 5U * 4 * 8) << "half a block left over";
  EXPECT_EQ(getSize(ECorrectionMode::FlatField, false, 120, 64, 32), 6U * 4 * 8);
  EXPECT_EQ(getSize(ECorrectionMode::FlatField, false, 2048, 1536, 16), 130U * 98 * 8);
  EXPECT_EQ(getSize(ECorrectionMode::FlatField, false, 30, 64, 32), 0U) << "smaller than a block";
  EXPECT_EQ(getSize(ECorrectionMode::FlatField, false, 64, 30, 32), 0U);
  EXPECT_EQ(getSize(ECorrectionMode::Vignetting, true, 640, 480, 64), 720U);
  EXPECT_EQ(getSize(ECorrectionMode::Vignetting, false, 640, 480, 64), 240U);
  EXPECT_EQ(getSize(ECorrectionMode::Vignetting, false, 2048, 1536, 128), 18U * 14 * 2);
  EXPECT_EQ(getSize(ECorrectionMode::Vignetting, false, 126, 1536, 128), 0U);
}
